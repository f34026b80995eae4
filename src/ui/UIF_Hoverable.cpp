#include "ui/UIF_Hoverable.h"

#include "input/CMN_InputManager.h"

#include <array>

namespace {

struct Way {
    InputAction edge;
    UIF_Hoverable* neighbor;
};

} // namespace

void UIF_Hoverable::Update() {
    if (!hovered) {
        return;
    }
    CMN_InputManager& input = *CMN_InputManager::GetInstance();
    const std::array<Way, 4> ways{{{InputAction::Up, up},
                                   {InputAction::Down, down},
                                   {InputAction::Left, left},
                                   {InputAction::Right, right}}};
    for (const Way& way : ways) {
        if (input.IsPressed(way.edge)) {
            input.ClearPressed(way.edge);
            if (way.neighbor != nullptr) {
                Unhover();
                way.neighbor->Hover();
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
