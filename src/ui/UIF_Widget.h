// The base of every widget: a rectangle within a parent.
//
// Widgets form a tree that is built once by its owner, updated once per tick and drawn every frame,
// all on the main thread. Parents own their children. Rectangles are in window pixels with y up,
// relative to the parent's left and bottom edges; a root is drawn with an all-zero parent.
#pragma once

#include <memory>
#include <vector>

#include <SDL_pixels.h>

#include "gfx/Rect.h"

class UIF_Widget {
public:
    using Children = std::vector<std::unique_ptr<UIF_Widget>>;

    explicit UIF_Widget(const Rect& place) : rect(place) {}
    UIF_Widget(const UIF_Widget&) = delete;
    UIF_Widget& operator=(const UIF_Widget&) = delete;
    virtual ~UIF_Widget() = default;

    /// One tick. May use up edges of the input state.
    virtual void Update() = 0;

    /// Draws within the parent's absolute rectangle (window pixels, y up).
    virtual void Render(const Rect& parent) = 0;

    Rect rect; ///< relative to the parent; the edges count for drawing, width and height do not

protected:
    /// Where the widget lies in the window; coordinates beyond 32 bits become their nearest end.
    Rect AbsoluteRect(const Rect& parent) const;

    /// Fills an absolute rectangle and draws its border.
    static void RenderPanel(const Rect& area, const SDL_Color& fill, const SDL_Color& border);

    // A callback may add children while these run; what it adds takes part at once.
    static void UpdateAll(const Children& children);
    static void RenderAll(const Children& children, const Rect& parent);
};
