// The places of the hierarchy that anybody has asked for.
#pragma once

#include <deque>
#include <unordered_map>

#include "designdb/detail/graph.h"
#include "designdb/detail/readers_writer_lock.h"

namespace Orin::DesignDb {

// One place: a configuration's root, or below a component of the place above. Nodes never change and live as long as
// the project. What stands at the place is asked of a snapshot's graph.
struct PathNode {
    Slot slot = 0;
    const PathNode* parent = nullptr;  // null at a root
    Slot comp = 0;                     // the component on the way down; at a root 0
    Slot config = 0;
    unsigned depth = 0;

    Index GetIndex() const noexcept { return Index(EObjectType::Path, 0, slot); }
};

// All places of a project, shared by its snapshots, so that a place keeps its index. Any thread may call.
class PathTable {
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

// Whether the block stands at the place or above it.
bool IsOnPath(const Graph& graph, const PathNode& place, Slot block) noexcept;

}  // namespace Orin::DesignDb
