#include "ui/UIF_Widget.h"

#include "common/Arithmetic.h"
#include "gfx/GFX_GraphicsManager.h"
#include "input/CMN_InputManager.h"

#include <array>
#include <cassert>

Rect UIF_Widget::AbsoluteRect(const Rect& parent) const {
    const std::int32_t right = SaturatingAdd(rect.right, parent.left);
    const std::int32_t left = SaturatingAdd(rect.left, parent.left);
    const std::int32_t top = SaturatingAdd(rect.top, parent.bottom);
    const std::int32_t bottom = SaturatingAdd(rect.bottom, parent.bottom);
    return {right, left, top, bottom, SaturatingSub(right, left), SaturatingSub(top, bottom)};
}

void UIF_Hoverable::Update() {
    if (!hovered) {
        return;
    }
    const std::array<std::pair<InputAction, UIF_Hoverable*>, 4> links{
        {{InputAction::Up, up},
         {InputAction::Down, down},
         {InputAction::Left, left},
         {InputAction::Right, right}}};
    CMN_InputManager& input = *CMN_InputManager::GetInstance();
    for (const auto& [edge, neighbor] : links) {
        if (input.IsPressed(edge)) {
            input.ClearPressed(edge);
            if (neighbor != nullptr) {
                Unhover();
                neighbor->Hover();
            }
            return;
        }
    }
}

void UIF_Hoverable::Hover() {
    hovered = true;
    onHover.Call(this);
}

void UIF_Hoverable::Unhover() {
    hovered = false;
    onUnhover.Call(this);
}

void UIF_Hoverable::Select() {
    for (UIF_Hoverable* neighbor : {left, up, right, down}) {
        if (neighbor != nullptr) {
            neighbor->Unhover();
        }
    }
    Hover();
}

template <typename Base>
void UIF_Panel<Base>::AddChild(std::unique_ptr<UIF_Widget> child) {
    assert(child != nullptr);
    children.push_back(std::move(child));
}

template <typename Base>
void UIF_Panel<Base>::RenderPanel(const Rect& parent, const SDL_Color& border,
                                  const SDL_Color& fill) {
    GFX_GraphicsManager& graphics = *GFX_GraphicsManager::GetInstance();
    const Rect area = this->AbsoluteRect(parent);
    graphics.FillRect(area, fill);
    graphics.DrawRect(area, border);
    for (const auto& child : children) {
        child->Render(area);
    }
}

// By index: iterators would not survive a callback that adds a child.
template <typename Base>
void UIF_Panel<Base>::UpdateChildren() {
    for (std::size_t i = 0; i < children.size(); ++i) {
        children[i]->Update();
    }
}

template class UIF_Panel<UIF_Hoverable>;
template class UIF_Panel<UIF_Widget>;

void UIF_Button::Update() {
    CMN_InputManager& input = *CMN_InputManager::GetInstance();
    if (hovered && input.IsPressed(InputAction::Confirm)) {
        input.ClearPressed(InputAction::Confirm);
        onClick.Call(this);
    }
    UIF_Hoverable::Update();
    UpdateChildren();
}

void UIF_Label::Render(const Rect& parent) {
    GFX_GraphicsManager::GetInstance()->DrawText(text.c_str(), AbsoluteRect(parent), color);
}

void UIF_Window::Update() {
    UpdateChildren();
}
