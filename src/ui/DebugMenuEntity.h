// The debug menu: nine buttons, one under the other, that switch debug drawing on and off, reset
// the camera's zoom and move the player to the place shown at the map's centre.
//
// The world manager owns it and shows it by its `active` flag; hidden, it keeps its hovered button
// and its labels. The switches themselves belong to the world manager and the map. Main thread.
#pragma once

#include "ui/UIF_Widget.h"
#include "world/IEntity.h"

class DebugMenuEntity : public IEntity {
public:
    /// Builds the buttons and hovers the first. They look the world up only when pressed.
    DebugMenuEntity();

    void Update() override;
    void Render() override;

    UIF_Window menuWindow; ///< its children are the buttons, from the top down
};
