#include "ui/UIF_Button.h"

#include "input/CMN_InputManager.h"

#include <cassert>
#include <utility>

void UIF_Button::AddChild(std::unique_ptr<UIF_Widget> child) {
    assert(child != nullptr);
    children.push_back(std::move(child));
}

void UIF_Button::Update() {
    if (hovered) {
        Click();
    }
    UIF_Hoverable::Update();
    UpdateAll(children);
}

void UIF_Button::Click() {
    CMN_InputManager& input = *CMN_InputManager::GetInstance();
    if (input.IsPressed(InputAction::Confirm)) {
        input.ClearPressed(InputAction::Confirm);
        onClick.Call(this);
    }
}

void UIF_Button::Render(const Rect& parent) {
    const Rect area = AbsoluteRect(parent);
    RenderPanel(area, fillColor, borderColor);
    RenderAll(children, area);
}
