// The places of the hierarchy that anybody has asked for.
#pragma once

#include <atomic>
#include <deque>
#include <unordered_map>

#include "designdb/detail/graph.h"
#include "designdb/detail/readers_writer_lock.h"

namespace Orin::DesignDb {

// One place: a configuration's root, or below a component of the place above. Nodes live as long as the project and,
// but for what is remembered of the last look, never change. What stands at the place is asked of a snapshot's graph.
struct PathNode {
    PathNode(Slot ownSlot, const PathNode* above, Slot way, Slot root, unsigned levels) noexcept
        : slot(ownSlot), parent(above), comp(way), config(root), depth(levels) {}

    const Slot slot;
    const PathNode* const parent;  // null at a root
    const Slot comp;               // the component on the way down; at a root 0
    const Slot config;
    const unsigned depth;

    // The structure under which the place was last found to exist. A place is asked for many times between two edits,
    // and looking at the whole way down each time would make deep hierarchies slow.
    mutable std::atomic<std::uint64_t> knownUnder{0};

    Index GetIndex() const noexcept { return Index(EObjectType::Path, 0, slot); }
};

// All places of a project, shared by its snapshots, so that a place keeps its index. Any thread may call.
class ORINPI_EXPORT PathTable {
public:
    const PathNode& Root(Slot config) { return Node(nullptr, config); }
    const PathNode& Child(const PathNode& parent, Slot comp) { return Node(&parent, comp); }
    // The place of that slot, or null.
    const PathNode* Find(Slot slot) const noexcept;

private:
    const PathNode& Node(const PathNode* parent, Slot below);

    mutable ReadersWriterLock m_lock;
    std::deque<PathNode> m_nodes;  // by slot - 1
    std::unordered_map<std::uint64_t, const PathNode*> m_byPlace;
};

// The block that stands at a place, or 0 when there is none (any more).
Slot BlockAt(const Graph& graph, const PathNode& place) noexcept;

// Whether the whole way down to the place exists, and no block stands twice on it.
bool Exists(const Graph& graph, const PathNode& place) noexcept;

// Whether the component is one of the block at a place that exists.
bool StandsAt(const Graph& graph, const PathNode& place, const CompRecord& comp) noexcept;

// Whether the block stands at the place or above it.
bool IsOnPath(const Graph& graph, const PathNode& place, Slot block) noexcept;

}  // namespace Orin::DesignDb
