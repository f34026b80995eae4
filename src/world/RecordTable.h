// Reference-counted records of one kind, handed out by id from a pool.
//
// The table owns every record. A record is pooled or in use; its last release returns it to the
// back of the pool, from where the next key takes it. When a burst empties the pool, it grows. A
// record is generated outside the lock; others that want the same id meanwhile wait for it, so it
// is generated once and never seen half-made. Any thread may call.
//
// A request may name a variant (for a dungeon, the number of neighbours that it was generated for).
// A record in use with another variant cannot serve it and cannot change under its holders: it is
// displaced. It serves again when its variant is asked for, and returns to the pool with the last
// reference to its id.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <set>
#include <utility>
#include <vector>

#include "common/Mutex.h"

template <typename Record>
class RecordTable {
public:
    struct Held {
        std::int32_t id;
        std::uint32_t count;
    };

    /// Puts new records into the pool.
    void Fill(std::int32_t count) VESK_EXCLUDES(lock) {
        const MutexLock guard(lock);
        for (std::int32_t i = 0; i < count; ++i) {
            pool.push_back(std::make_unique<Record>());
        }
    }

    /// A reference to the record of an id, made by `generate(Record&)` when none fits. Never null.
    template <typename Generate>
    const Record* Acquire(std::int32_t id, std::size_t variant, Generate generate)
        VESK_EXCLUDES(lock) {
        std::unique_ptr<Record> fresh;
        if (const Record* known = FindOrReserve(id, variant, fresh)) {
            return known;
        }
        generate(*fresh);
        return Publish(id, variant, std::move(fresh));
    }

    /// Gives a reference back; does nothing when the id has none.
    void Release(std::int32_t id) VESK_EXCLUDES(lock) {
        const MutexLock guard(lock);
        const auto count = counts.find(id);
        if (count == counts.end() || --count->second > 0) {
            return;
        }
        counts.erase(count);
        const auto [first, last] = displaced.equal_range(id);
        for (auto entry = first; entry != last; ++entry) {
            pool.push_back(std::move(entry->second.record));
        }
        displaced.erase(first, last);
        const auto entry = inUse.find(id);
        pool.push_back(std::move(entry->second.record));
        inUse.erase(entry);
    }

    /// The record in use under an id, or null; takes no reference.
    const Record* Find(std::int32_t id) const VESK_EXCLUDES(lock) {
        const MutexLock guard(lock);
        const auto entry = inUse.find(id);
        return entry == inUse.end() ? nullptr : entry->second.record.get();
    }

    /// The ids in use with their counts, in ascending order.
    std::vector<Held> ListHeld() const VESK_EXCLUDES(lock) {
        const MutexLock guard(lock);
        std::vector<Held> held;
        for (const auto& [id, count] : counts) {
            held.push_back({id, count});
        }
        return held;
    }

    std::size_t PoolSize() const VESK_EXCLUDES(lock) {
        const MutexLock guard(lock);
        return pool.size();
    }

private:
    struct Entry {
        std::unique_ptr<Record> record;
        std::size_t variant = 0;
    };

    const Record* FindOrReserve(std::int32_t id, std::size_t variant,
                                std::unique_ptr<Record>& fresh) VESK_EXCLUDES(lock) {
        const MutexLock guard(lock);
        while (generating.contains(id)) {
            generated.Wait(lock);
        }
        const auto entry = inUse.find(id);
        if (entry != inUse.end() && HasVariant(id, entry->second, variant)) {
            ++counts[id];
            return entry->second.record.get();
        }
        generating.insert(id);
        fresh = TakeFromPool();
        return nullptr;
    }

    /// True when the current record of an id is of a variant, or a displaced one is, which then
    /// takes its place.
    bool HasVariant(std::int32_t id, Entry& current, std::size_t variant) VESK_REQUIRES(lock) {
        const auto [first, last] = displaced.equal_range(id);
        for (auto former = first; former != last && current.variant != variant; ++former) {
            if (former->second.variant == variant) {
                std::swap(former->second, current);
            }
        }
        return current.variant == variant;
    }

    std::unique_ptr<Record> TakeFromPool() VESK_REQUIRES(lock) {
        if (pool.empty()) {
            return std::make_unique<Record>();
        }
        std::unique_ptr<Record> record = std::move(pool.back());
        pool.pop_back();
        return record;
    }

    const Record* Publish(std::int32_t id, std::size_t variant, std::unique_ptr<Record> fresh)
        VESK_EXCLUDES(lock) {
        const MutexLock guard(lock);
        Entry& entry = inUse[id];
        if (entry.record != nullptr) {
            displaced.emplace(id, std::move(entry));
        }
        entry = {std::move(fresh), variant};
        ++counts[id];
        generating.erase(id);
        generated.Broadcast();
        return entry.record.get();
    }

    mutable Mutex lock;
    Condition generated;
    std::deque<std::unique_ptr<Record>> pool VESK_GUARDED_BY(lock); ///< used at its back
    std::map<std::int32_t, Entry> inUse VESK_GUARDED_BY(lock);
    std::map<std::int32_t, std::uint32_t> counts VESK_GUARDED_BY(lock); ///< absent means 0
    std::set<std::int32_t> generating VESK_GUARDED_BY(lock);
    std::multimap<std::int32_t, Entry> displaced VESK_GUARDED_BY(lock);
};
