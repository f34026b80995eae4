// An ordered map from cell id to land flag, held in one sorted array.
//
// A cluster always has its 256 cells, written at once and then only read, so a flat array serves
// better than a tree: filling it allocates nothing, and walking it is a walk through memory. It
// behaves like std::map<int, int> in what it offers. Plain data, owned by its record.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

class CellFlagMap {
public:
    using value_type = std::pair<std::int32_t, std::int32_t>; ///< cell id, flag
    using const_iterator = std::vector<value_type>::const_iterator;

    CellFlagMap() { entries.reserve(kUsualSize); }

    const_iterator begin() const { return entries.begin(); }
    const_iterator end() const { return entries.end(); }
    bool empty() const { return entries.empty(); }
    std::size_t size() const { return entries.size(); }

    /// Removes every entry and keeps the memory.
    void clear() { entries.clear(); }

    const_iterator find(std::int32_t id) const {
        const auto at = std::lower_bound(entries.begin(), entries.end(), id, IdBefore);
        return at != entries.end() && at->first == id ? at : entries.end();
    }

    /// The flag of a cell; a missing entry is made with flag 0.
    std::int32_t& operator[](std::int32_t id) {
        auto at = std::lower_bound(entries.begin(), entries.end(), id, IdBefore);
        if (at == entries.end() || at->first != id) {
            at = entries.insert(at, {id, 0});
        }
        return at->second;
    }

    /// Replaces everything by entries whose ids ascend strictly.
    void AssignAscending(std::span<const value_type> sorted) {
        entries.assign(sorted.begin(), sorted.end());
    }

    friend bool operator==(const CellFlagMap&, const CellFlagMap&) = default;

private:
    static constexpr std::size_t kUsualSize = 256;

    static bool IdBefore(const value_type& entry, std::int32_t id) { return entry.first < id; }

    std::vector<value_type> entries; ///< ascending by id
};
