// Who holds write access to what.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <mutex>
#include <unordered_map>
#include <vector>

#include "designdb/detail/graph.h"
#include "orin/list.h"
#include "orin/object.h"

namespace Orin::DesignDb {

class Client;

// Something that can be locked. The view of a sheet or symbol is locked apart from its group or component, and a
// component at a place of the hierarchy apart from its definition; both lie inside it.
struct LockKey {
    EObjectType kind = EObjectType::None;
    Slot slot = 0;  // of a view: that of its group or component
    Slot path = 0;  // of a component at a place

    bool operator==(const LockKey&) const = default;
};

}  // namespace Orin::DesignDb

template <>
struct std::hash<Orin::DesignDb::LockKey> {
    std::size_t operator()(const Orin::DesignDb::LockKey& key) const noexcept {
        const std::uint64_t mixed =
            (static_cast<std::uint64_t>(key.path) << 40 ^ static_cast<std::uint64_t>(key.kind) << 32 ^ key.slot) *
            0x9E3779B97F4A7C15ULL;
        return static_cast<std::size_t>(mixed ^ mixed >> 32);
    }
};

namespace Orin::DesignDb {

// An object first, then what contains it, up to the snapshot.
using LockChain = std::vector<LockKey>;
LockChain ChainOf(const Graph& graph, const LockKey& object);

// The locks of one snapshot, held by clients. Any thread may call; clients are told apart by their address, which stays
// taken while they hold a lock.
class LockTable {
public:
    // AccessDenied when another client holds the object, holds all of what contains it, or, for Whole, holds something
    // inside it. `first` tells whether the client did not hold the object yet; `object` is its index.
    Result Acquire(const Client& client, const LockChain& chain, ELockScope scope, const Index& object, bool& first);
    // Gives up one acquisition; nothing happens after ReleaseAll. True when it was the client's last of the object.
    bool Release(const Client& client, const LockChain& chain, ELockScope scope) noexcept;
    // Gives up all that the client holds, and gives the indexes. Throws std::bad_alloc with nothing given up.
    ListT<Index> ReleaseAll(const Client& client);

    // Whether another client's lock forbids an edit of the object itself (Shallow) or of it and what is inside it.
    bool IsHeldByOther(const Client& client, const LockChain& chain, ELockScope edit) const;
    // Whether the client's locks allow an edit of the object itself or of it and its contents.
    bool Allows(const Client& client, const LockChain& chain, ELockScope edit) const;

    // Whether nothing is locked; edits need not build chains then.
    bool IsEmpty() const noexcept { return m_count.load(std::memory_order_acquire) == 0; }

private:
    struct Hold {
        const Client* client = nullptr;
        unsigned whole = 0;
        unsigned shallow = 0;
        Index object;
        LockChain chain;
    };
    struct Inside {  // how many locks a client holds inside an object
        const Client* client = nullptr;
        std::size_t count = 0;
    };

    bool Conflicts(const Client& client, const LockChain& chain, ELockScope scope) const;
    void Remove(std::unordered_map<LockKey, Hold>::iterator hold) noexcept;

    mutable std::mutex m_mutex;
    std::unordered_map<LockKey, Hold> m_holds;
    std::unordered_map<LockKey, std::vector<Inside>> m_inside;
    std::atomic<std::size_t> m_count{0};
};

}  // namespace Orin::DesignDb
