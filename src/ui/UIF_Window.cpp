#include "ui/UIF_Window.h"

#include <cassert>
#include <utility>

void UIF_Window::AddChild(std::unique_ptr<UIF_Widget> child) {
    assert(child != nullptr);
    children.push_back(std::move(child));
}

void UIF_Window::Update() {
    UpdateAll(children);
}

void UIF_Window::Render(const Rect& parent) {
    const Rect area = AbsoluteRect(parent);
    RenderPanel(area, fillColor, borderColor);
    RenderAll(children, area);
}
