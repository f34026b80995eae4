// Widgets: windows and buttons that hold other widgets, labels, and buttons of which one is hovered
// and pressed with the keyboard.
//
// They form a tree that is built once by its owner, updated once per tick and drawn every frame,
// all on the main thread. Parents own their children. Rectangles are in window pixels with y up,
// relative to the parent's left and bottom edges; a root is drawn with an all-zero parent.
#pragma once

#include "gfx/Rect.h"

#include <SDL_pixels.h>

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// Callbacks that a widget calls when something happens to it, in the order added.
template <typename Widget>
class UIF_CallbackList {
public:
    using Callback = std::function<void(Widget*)>;

    /// Appends a callback, which must not be empty.
    void AddCallback(Callback callback) { callbacks.push_back(std::move(callback)); }

    /// Calls every callback with this widget. A callback may add others to this list, which are
    /// called from the next time on, and change its own state.
    void Call(Widget* widget) const {
        const std::size_t count = callbacks.size();
        for (std::size_t i = 0; i < count; ++i) {
            callbacks[i](widget);
        }
    }

private:
    std::deque<Callback> callbacks; ///< stays where it is when one is added while another runs
};

class UIF_Widget {
public:
    explicit UIF_Widget(const Rect& area) : rect(area) {}
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
};

/// A widget that can be hovered; navigation moves the hover to a neighbour.
/// At most one widget of a tree is meant to be hovered.
class UIF_Hoverable : public UIF_Widget {
public:
    using UIF_Widget::UIF_Widget;

    /// While hovered, follows the first navigation edge that is set (in the order up, down, left,
    /// right) and uses it up, also when there is no neighbour that way.
    void Update() override;

    /// Makes this widget the hovered one, whatever else is hovered, and says so to `onHover`.
    void Hover();

    /// Makes this widget no longer hovered, even if it was not, and says so to `onUnhover`.
    void Unhover();

    /// Unhovers every neighbour and hovers this widget.
    void Select();

    UIF_CallbackList<UIF_Hoverable> onHover;
    UIF_CallbackList<UIF_Hoverable> onUnhover;

    // The neighbours, null where there is none. Not owned.
    UIF_Hoverable* left = nullptr;
    UIF_Hoverable* up = nullptr;
    UIF_Hoverable* right = nullptr;
    UIF_Hoverable* down = nullptr;

    bool hovered = false;
};

/// A filled and bordered widget that holds others. `Base` is UIF_Hoverable for a button, UIF_Widget
/// for a window.
template <typename Base>
class UIF_Panel : public Base {
public:
    using Base::Base;

    /// Takes the child (not null) over; it is updated and drawn after those added before.
    void AddChild(std::unique_ptr<UIF_Widget> child);

    std::vector<std::unique_ptr<UIF_Widget>> children;

protected:
    /// Draws fill, border and children, in this order.
    void RenderPanel(const Rect& parent, const SDL_Color& border, const SDL_Color& fill);

    /// Updates the children in order. A callback may add some meanwhile; they are updated as well.
    void UpdateChildren();
};

/// A button: while it is hovered the confirm edge presses it.
class UIF_Button : public UIF_Panel<UIF_Hoverable> {
public:
    using UIF_Panel::UIF_Panel;

    /// Clicks first, then navigates, so that both take effect in one tick; then the children.
    void Update() override;

    void Render(const Rect& parent) override { RenderPanel(parent, borderColor, fillColor); }

    UIF_CallbackList<UIF_Button> onClick;
    SDL_Color borderColor{0, 0, 0, 255};
    SDL_Color fillColor{0, 0, 0, 255};
};

/// A line of text at its font's natural size, whatever the size of the widget.
class UIF_Label : public UIF_Widget {
public:
    UIF_Label(const Rect& area, std::string content) : UIF_Widget(area), text(std::move(content)) {}

    void Update() override {}

    /// Puts the text's upper left corner on the widget's.
    void Render(const Rect& parent) override;

    std::string text;
    SDL_Color color{0, 0, 0, 255};
};

/// A panel and nothing else.
class UIF_Window : public UIF_Panel<UIF_Widget> {
public:
    using UIF_Panel::UIF_Panel;

    void Update() override;

    void Render(const Rect& parent) override { RenderPanel(parent, borderColor, fillColor); }

    SDL_Color borderColor{0, 0, 0, 255};
    SDL_Color fillColor{0, 0, 0, 255};
};
