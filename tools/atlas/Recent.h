// What was made last, up to a number of things: the one that was not asked for longest goes first.
#pragma once

#include "gfx/Vec2.h"

#include <cstddef>
#include <list>
#include <map>
#include <utility>

/// One thread at a time.
template <typename Value>
class Recent {
public:
    explicit Recent(std::size_t mostValues) : most(mostValues) {}

    /// The value at a place, from make() where it is not kept. It stays where it is until `most`
    /// others have been asked for.
    template <typename Make>
    const Value& At(Vec2i place, const Make& make) {
        const std::pair key(place.x, place.y);
        const auto found = places.find(key);
        if (found != places.end()) {
            values.splice(values.begin(), values, found->second);
        } else {
            values.emplace_front(key, make());
            places[key] = values.begin();
            if (values.size() > most) {
                places.erase(values.back().first);
                values.pop_back();
            }
        }
        return values.front().second;
    }

private:
    using Key = std::pair<std::int32_t, std::int32_t>;

    std::size_t most;
    std::list<std::pair<Key, Value>> values; // the last asked for in front
    std::map<Key, typename std::list<std::pair<Key, Value>>::iterator> places;
};
