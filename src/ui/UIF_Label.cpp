#include "ui/UIF_Label.h"

#include "gfx/GFX_GraphicsManager.h"

void UIF_Label::Render(const Rect& parent) {
    GFX_GraphicsManager::GetInstance()->DrawText(text.c_str(), AbsoluteRect(parent), color);
}
