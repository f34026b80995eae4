// A widget that can be selected, and that hands the selection on to a neighbour when the player
// navigates. At most one widget of a tree is meant to be selected. Main thread.
#pragma once

#include "ui/UIF_CallbackList.h"
#include "ui/UIF_Widget.h"

class UIF_Hoverable : public UIF_Widget {
public:
    using UIF_Widget::UIF_Widget;

    /// While selected, follows the first navigation edge that is set (in the order up, down, left,
    /// right) and uses it up, also when there is no neighbour that way.
    void Update() override;

    /// Selects this widget, whatever else is selected.
    void Hover();

    void Unhover();

    /// Selects this widget instead of any of its neighbours.
    void Select();

    UIF_CallbackList<UIF_Hoverable> onHover;
    UIF_CallbackList<UIF_Hoverable> onUnhover;

    // The neighbours, null where there is none. Not owned.
    UIF_Hoverable* left = nullptr;
    UIF_Hoverable* up = nullptr;
    UIF_Hoverable* right = nullptr;
    UIF_Hoverable* down = nullptr;

    bool hovered = false; ///< selected
};
