#include "ui/UIF_Widget.h"

#include "common/Arithmetic.h"
#include "gfx/GFX_GraphicsManager.h"
#include "input/CMN_InputManager.h"

#include <array>
#include <cassert>

Rect UIF_Widget::AbsoluteRect(const Rect& parent) const {
    Rect area;
    area.right = SaturatingAdd(rect.right, parent.left);
    area.left = SaturatingAdd(rect.left, parent.left);
    area.top = SaturatingAdd(rect.top, parent.bottom);
    area.bottom = SaturatingAdd(rect.bottom, parent.bottom);
    area.width = SaturatingSub(area.right, area.left);
    area.height = SaturatingSub(area.top, area.bottom);
    return area;
}

// By index: iterators would not survive a callback that adds a child.
void UIF_Widget::UpdateAll(const Children& children) {
    for (std::size_t i = 0; i < children.size(); ++i) {
        children[i]->Update();
    }
}

void UIF_Widget::RenderPanel(const Rect& area, const SDL_Color& fill, const SDL_Color& border,
                             const Children& children) {
    GFX_GraphicsManager& graphics = *GFX_GraphicsManager::GetInstance();
    graphics.FillRect(area, fill);
    graphics.DrawRect(area, border);
    for (const auto& child : children) {
        child->Render(area);
    }
}

void UIF_Hoverable::Update() {
    if (!hovered) {
        return;
    }
    struct Direction {
        InputAction edge;
        UIF_Hoverable* neighbor;
    };
    const std::array<Direction, 4> directions{{{InputAction::Up, up},
                                               {InputAction::Down, down},
                                               {InputAction::Left, left},
                                               {InputAction::Right, right}}};
    CMN_InputManager& input = *CMN_InputManager::GetInstance();
    for (const auto& [edge, neighbor] : directions) {
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

void UIF_Button::AddChild(std::unique_ptr<UIF_Widget> child) {
    assert(child != nullptr);
    children.push_back(std::move(child));
}

void UIF_Button::Update() {
    CMN_InputManager& input = *CMN_InputManager::GetInstance();
    if (hovered && input.IsPressed(InputAction::Confirm)) {
        input.ClearPressed(InputAction::Confirm);
        onClick.Call(this);
    }
    UIF_Hoverable::Update();
    UpdateAll(children);
}

void UIF_Button::Render(const Rect& parent) {
    RenderPanel(AbsoluteRect(parent), fillColor, borderColor, children);
}

void UIF_Label::Render(const Rect& parent) {
    GFX_GraphicsManager::GetInstance()->DrawText(text.c_str(), AbsoluteRect(parent), color);
}

void UIF_Window::AddChild(std::unique_ptr<UIF_Widget> child) {
    assert(child != nullptr);
    children.push_back(std::move(child));
}

void UIF_Window::Update() {
    UpdateAll(children);
}

void UIF_Window::Render(const Rect& parent) {
    RenderPanel(AbsoluteRect(parent), fillColor, borderColor, children);
}
