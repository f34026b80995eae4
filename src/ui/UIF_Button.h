// A button: it is pressed with the confirm edge while it is selected, and carries children, such as
// a label, which it owns. Main thread.
#pragma once

#include <memory>

#include <SDL_pixels.h>

#include "ui/UIF_CallbackList.h"
#include "ui/UIF_Hoverable.h"

class UIF_Button : public UIF_Hoverable {
public:
    using UIF_Hoverable::UIF_Hoverable;

    /// Takes the child (not null) over; it is updated and drawn after those added before.
    void AddChild(std::unique_ptr<UIF_Widget> child);

    /// Clicks first, then navigates, so that both take effect in one tick; then the children.
    void Update() override;

    void Render(const Rect& parent) override;

    Children children;
    UIF_CallbackList<UIF_Button> onClick;
    SDL_Color borderColor{0, 0, 0, 255};
    SDL_Color fillColor{0, 0, 0, 255};

private:
    void Click();
};
