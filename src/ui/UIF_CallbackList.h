// Callbacks that a widget calls when something happens to it, in the order added. Main thread;
// owned by the widget.
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <utility>

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
