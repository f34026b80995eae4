// The state of the running game as a list of digests, one per part of it, for comparing runs.
//
// What depends on the timing of load jobs alone, as the order of different cells' enemies in their
// layer, is left out, and so is what is drawn anyway: menu, radar, flags. Main thread.
#pragma once

#include "entities/CompassEntity.h"
#include "gen/GridKey.h"
#include "input/CMN_InputManager.h"

#include <bit>
#include <cstdint>
#include <ranges>
#include <string_view>
#include <utility>
#include <vector>

// FNV-1a, 64 bits, a value at a time.
class Hasher {
public:
    template <typename... Values>
    Hasher& Add(const Values&... values) {
        (AddValue(values), ...);
        return *this;
    }

    std::uint64_t state = 14695981039346656037U;

private:
    template <typename T>
    void AddValue(const T& value) requires(!std::is_pointer_v<T>) {
        if constexpr (std::ranges::range<T>) {
            for (const auto& element : value) {
                AddValue(element);
            }
            AddValue(std::ranges::size(value));
        } else {
            state = (state ^ static_cast<std::uint64_t>(value)) * 1099511628211U;
        }
    }

    void AddValue(char value) { AddValue(static_cast<unsigned char>(value)); }
    void AddValue(float value) { AddValue(std::bit_cast<std::uint32_t>(value)); }
    void AddValue(Vec2i value) { Add(value.x, value.y); }
    void AddValue(Vec2f value) { Add(value.x, value.y); }
    void AddValue(const GridKey& key) { Add(key.x, key.y, key.id); }
    void AddValue(const CMN_InputManager::Timer& timer) { Add(timer.lastTime, timer.minInterval); }
    void AddValue(const std::pair<const std::int32_t, std::uint32_t>& held) {
        Add(held.first, held.second);
    }
    void AddValue(const IEntity* entity) {
        const auto* marker = dynamic_cast<const CompassEntity*>(entity);
        Add(entity->position, entity->active, marker == nullptr ? -1 : marker->index);
    }
};

using StateDigest = std::vector<std::pair<std::string_view, std::uint64_t>>;

/// What must be equal after every tick, whatever the loads are doing.
StateDigest DigestTick();

/// What must be equal as well whenever the world is at rest: slots with their dungeons, enemies and
/// markers, the layers, the reference counts.
StateDigest DigestRest();
