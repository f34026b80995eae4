// A panel that holds other widgets and owns them. Main thread.
#pragma once

#include <memory>

#include <SDL_pixels.h>

#include "ui/UIF_Widget.h"

class UIF_Window : public UIF_Widget {
public:
    using UIF_Widget::UIF_Widget;

    /// Takes the child (not null) over; it is updated and drawn after those added before.
    void AddChild(std::unique_ptr<UIF_Widget> child);

    void Update() override;
    void Render(const Rect& parent) override;

    Children children;
    SDL_Color borderColor{0, 0, 0, 255};
    SDL_Color fillColor{0, 0, 0, 255};
};
