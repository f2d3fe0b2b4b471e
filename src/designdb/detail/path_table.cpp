#include "designdb/detail/path_table.h"

#include <mutex>
#include <shared_mutex>

namespace Orin::DesignDb {

const PathNode* PathTable::Find(Slot slot) const noexcept {
    const std::shared_lock lock(m_lock);
    return slot != 0 && slot <= m_nodes.size() ? &m_nodes[slot - 1] : nullptr;
}

const PathNode& PathTable::Node(const PathNode* parent, Slot below) {
    const std::uint64_t place = static_cast<std::uint64_t>(parent != nullptr ? parent->slot : 0) << 32 | below;
    {
        const std::shared_lock lock(m_lock);
        const auto found = m_byPlace.find(place);
        if (found != m_byPlace.end()) return *found->second;
    }
    const std::lock_guard lock(m_lock);
    const auto [entry, added] = m_byPlace.try_emplace(place, nullptr);
    if (!added) return *entry->second;
    try {
        const Slot slot = static_cast<Slot>(m_nodes.size() + 1);
        if (parent != nullptr) {
            m_nodes.emplace_back(slot, parent, below, parent->config, parent->depth + 1);
        } else {
            m_nodes.emplace_back(slot, nullptr, 0, below, 0);
        }
    } catch (...) {
        m_byPlace.erase(entry);
        throw;
    }
    entry->second = &m_nodes.back();
    return m_nodes.back();
}

Slot BlockAt(const Graph& graph, const PathNode& place) noexcept {
    Slot block = 0;
    if (place.parent != nullptr) {
        const CompRecord* const comp = graph.Find<CompRecord>(place.comp);
        if (comp != nullptr) block = comp->child;
    } else if (const ConfigRecord* const config = graph.Find<ConfigRecord>(place.config)) {
        block = config->root;
    }
    return graph.Find<BlockRecord>(block) != nullptr ? block : 0;
}

bool Exists(const Graph& graph, const PathNode& place) noexcept {
    const auto isKnown = [&graph](const PathNode& node) {
        return node.knownUnder.load(std::memory_order_relaxed) == graph.Structure();
    };
    if (isKnown(place)) return true;
    for (const PathNode* node = &place; !isKnown(*node); node = node->parent) {
        if (BlockAt(graph, *node) == 0) return false;
        if (node->parent == nullptr) break;
        if (graph.Find<CompRecord>(node->comp)->block != BlockAt(graph, *node->parent)) return false;
    }
    // Above the last block all are those that their components are of, which never change; only the last may have been
    // exchanged for one that stands above.
    if (place.parent != nullptr && IsOnPath(graph, *place.parent, BlockAt(graph, place))) return false;
    place.knownUnder.store(graph.Structure(), std::memory_order_relaxed);
    return true;
}

bool StandsAt(const Graph& graph, const PathNode& place, const CompRecord& comp) noexcept {
    return Exists(graph, place) && BlockAt(graph, place) == comp.block;
}

bool IsOnPath(const Graph& graph, const PathNode& place, Slot block) noexcept {
    for (const PathNode* node = &place; node != nullptr; node = node->parent)
        if (BlockAt(graph, *node) == block) return true;
    return false;
}

}  // namespace Orin::DesignDb
