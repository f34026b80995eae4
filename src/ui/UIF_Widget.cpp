#include "ui/UIF_Widget.h"

#include "common/Arithmetic.h"
#include "gfx/GFX_GraphicsManager.h"

#include <cstddef>

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

void UIF_Widget::RenderPanel(const Rect& area, const SDL_Color& fill, const SDL_Color& border) {
    GFX_GraphicsManager& graphics = *GFX_GraphicsManager::GetInstance();
    graphics.FillRect(area, fill);
    graphics.DrawRect(area, border);
}

// By index: iterators would not survive a callback that adds a child.
void UIF_Widget::UpdateAll(const Children& children) {
    for (std::size_t i = 0; i < children.size(); ++i) {
        children[i]->Update();
    }
}

void UIF_Widget::RenderAll(const Children& children, const Rect& parent) {
    for (const auto& child : children) {
        child->Render(parent);
    }
}
