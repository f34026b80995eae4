// A line of text at its font's natural size, whatever the size of the widget. Main thread.
#pragma once

#include <string>
#include <utility>

#include <SDL_pixels.h>

#include "ui/UIF_Widget.h"

class UIF_Label : public UIF_Widget {
public:
    UIF_Label(const Rect& place, std::string content)
        : UIF_Widget(place), text(std::move(content)) {}

    void Update() override {}

    /// Puts the text's upper left corner on the widget's.
    void Render(const Rect& parent) override;

    std::string text;
    SDL_Color color{0, 0, 0, 255};
};
