// One number for generated records, to compare worlds by, and two samples of the world.
//
// Two builds, machines or orders of generation make the same world when they make the same digests.
// The game itself has no use for them; the digest tool and the tests do. No state; any thread may
// call. The generators write their lines on standard error all the while.
#pragma once

#include "gen/Clusters.h"
#include "gen/DungeonRecord.h"
#include "gen/GridKey.h"
#include "gfx/Vec2.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <type_traits>

/// Takes in values one after the other; their order matters. Takes integers, enumerations, floats
/// (by their bits; every NaN is the same), pairs, lists (their size first), and what has a function
/// `AddTo(Digest&, const T&)` in the namespace of its type.
class Digest {
public:
    template <typename... Values>
    Digest& Add(const Values&... values) {
        (AddOne(values), ...);
        return *this;
    }

    std::uint64_t Value() const { return sum; }

private:
    template <typename T>
    void AddOne(const T& value) {
        if constexpr (requires { AddTo(*this, value); }) {
            AddTo(*this, value);
        } else if constexpr (requires { value.begin(); }) {
            AddWord(value.size());
            for (const auto& element : value) {
                AddOne(element);
            }
        } else if constexpr (requires { value.first; }) {
            Add(value.first, value.second);
        } else if constexpr (std::is_same_v<T, float>) {
            std::uint32_t bits = 0xffffffffu;
            if (value == value) {
                std::memcpy(&bits, &value, sizeof bits);
            }
            AddWord(bits);
        } else {
            AddWord(static_cast<std::uint64_t>(value) &
                    ~std::uint64_t{0} >> (64 - 8 * sizeof value));
        }
    }

    void AddWord(std::uint64_t word) {
        sum = (sum ^ word) * 0x9e3779b97f4a7c15u;
        sum ^= sum >> 32;
    }

    std::uint64_t sum = 0xcbf29ce484222325u;
};

void AddTo(Digest& digest, Vec2i v);
void AddTo(Digest& digest, Vec2f v);
void AddTo(Digest& digest, const GridKey& key);
void AddTo(Digest& digest, const ClusterRecord& record);
void AddTo(Digest& digest, const DungeonEdge& edge);
void AddTo(Digest& digest, const DungeonRoom& room);
void AddTo(Digest& digest, const DungeonRecord& record);

/// The digest of the dungeon of a cell (cell coordinates) with so many neighbours.
std::uint64_t DungeonDigest(Vec2i cell, std::size_t neighborCount);

/// A wide sample of clusters, neighbour maps and dungeons, keys that wrap included: a line with the
/// number of records and a digest for each kind, then one for all.
std::string SampleDigests();

/// A smaller sample: a line for each record.
std::string GoldenDigests();
