// Reference-counted records of one kind, handed out by id from a pool.
//
// The table owns every record. A record is pooled or in use; the last release of its id returns it
// to the back of the pool, from where the next key takes it. When a burst empties the pool, it
// grows. A record is generated outside the lock; others that want the same key meanwhile wait for
// it, so it is generated once and never seen half-made. Any thread may call.
//
// A key is an id and, where the record depends on it, the number of neighbours that it is generated
// for. A cell can be held with two numbers at once, when its neighbours have changed between two
// loads: these are two records under one id, which share its count and return to the pool together.
#pragma once

#include "common/Mutex.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <utility>

template <typename Record>
class RecordTable {
public:
    using Key = std::pair<std::int32_t, std::size_t>;   ///< id, number of neighbours
    using Refs = std::map<std::int32_t, std::uint32_t>; ///< id -> count, never 0

    /// Puts so many new records into the pool.
    void Fill(std::int32_t count) VESK_EXCLUDES(lock) {
        const MutexLock guard(lock);
        for (std::int32_t i = 0; i < count; ++i) {
            free.push_back(std::make_unique<Record>());
        }
    }

    /// A reference to the record of a key, made by `generate(Record&)` when it is not in use. Never
    /// null; valid until the caller releases the id.
    template <typename Generate>
    Record* Acquire(std::int32_t id, std::size_t neighbors, Generate generate) VESK_EXCLUDES(lock) {
        const Key key{id, neighbors};
        std::unique_ptr<Record> fresh;
        if (Record* known = FindOrReserve(key, fresh)) {
            return known;
        }
        generate(*fresh);
        return Publish(key, std::move(fresh));
    }

    /// Gives a reference back; does nothing when the id has none.
    void Release(std::int32_t id) VESK_EXCLUDES(lock) {
        const MutexLock guard(lock);
        const auto count = refs.find(id);
        if (count == refs.end() || --count->second > 0) {
            return;
        }
        refs.erase(count);
        auto entry = records.lower_bound({id, 0});
        while (entry != records.end() && entry->first.first == id) {
            if (entry->second == nullptr) {
                ++entry; // being generated for somebody else
            } else {
                free.push_back(std::move(entry->second));
                entry = records.erase(entry);
            }
        }
    }

    /// The record of an id in use, or null; takes no reference, so the caller must know that
    /// nobody releases the last one meanwhile.
    Record* Find(std::int32_t id) const VESK_EXCLUDES(lock) {
        const MutexLock guard(lock);
        const auto entry = records.lower_bound({id, 0});
        return entry == records.end() || entry->first.first != id ? nullptr : entry->second.get();
    }

    /// A copy of the reference counts.
    Refs GetRefs() const VESK_EXCLUDES(lock) {
        const MutexLock guard(lock);
        return refs;
    }

    mutable Mutex lock;
    /// The records in use; null while one is being generated.
    std::map<Key, std::unique_ptr<Record>> records VESK_GUARDED_BY(lock);
    std::deque<std::unique_ptr<Record>> free VESK_GUARDED_BY(lock); ///< the pool, used at its back
    Refs refs VESK_GUARDED_BY(lock);

private:
    Record* FindOrReserve(const Key& key, std::unique_ptr<Record>& fresh) VESK_EXCLUDES(lock) {
        const MutexLock guard(lock);
        auto entry = records.find(key);
        while (entry != records.end() && entry->second == nullptr) {
            generated.Wait(lock);
            entry = records.find(key);
        }
        if (entry != records.end()) {
            ++refs[key.first];
            return entry->second.get();
        }
        records.emplace(key, nullptr);
        fresh = TakeFromPool();
        return nullptr;
    }

    std::unique_ptr<Record> TakeFromPool() VESK_REQUIRES(lock) {
        if (free.empty()) {
            return std::make_unique<Record>();
        }
        std::unique_ptr<Record> record = std::move(free.back());
        free.pop_back();
        return record;
    }

    Record* Publish(const Key& key, std::unique_ptr<Record> fresh) VESK_EXCLUDES(lock) {
        const MutexLock guard(lock);
        ++refs[key.first];
        generated.Broadcast();
        return (records[key] = std::move(fresh)).get();
    }

    Condition generated;
};
