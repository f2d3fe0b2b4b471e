#include "designdb/detail/lock_table.h"

#include <algorithm>

namespace Orin::DesignDb {

namespace {

LockKey ContainerOf(const Graph& graph, const LockKey& key) {
    if (key.path != 0) return {key.kind, key.slot, 0};
    switch (key.kind) {
        case EObjectType::BlockView:
            return {EObjectType::Group, key.slot, 0};
        case EObjectType::CompView:
            return {EObjectType::Comp, key.slot, 0};
        case EObjectType::Pin:
            if (const PinRecord* const pin = graph.Find<PinRecord>(key.slot)) return {EObjectType::Comp, pin->comp, 0};
            break;
        case EObjectType::Comp:
            if (const CompRecord* const comp = graph.Find<CompRecord>(key.slot))
                return {EObjectType::Block, comp->block, 0};
            break;
        case EObjectType::Net:
            if (const NetRecord* const net = graph.Find<NetRecord>(key.slot))
                return {EObjectType::Block, net->block, 0};
            break;
        case EObjectType::Bus:
            if (const BusRecord* const bus = graph.Find<BusRecord>(key.slot))
                return {EObjectType::Block, bus->block, 0};
            break;
        case EObjectType::Group:
            if (const GroupRecord* const group = graph.Find<GroupRecord>(key.slot)) {
                if (group->ownerGroup != 0) return {EObjectType::Group, group->ownerGroup, 0};
                return {EObjectType::Block, group->block, 0};
            }
            break;
        case EObjectType::NetQuill:
        case EObjectType::Line:
        case EObjectType::Rect:
        case EObjectType::Arc:
        case EObjectType::Circle:
        case EObjectType::Text: {
            const Slot view = VisitRecord(graph, {key.kind, key.slot}, Slot{0}, [](const auto& record) -> Slot {
                if constexpr (requires { record.data; }) {
                    return record.view;
                } else {
                    return 0;
                }
            });
            if (const ViewRecord* const found = graph.Find<ViewRecord>(view))
                return found->group != 0 ? LockKey{EObjectType::BlockView, found->group, 0}
                                         : LockKey{EObjectType::CompView, found->comp, 0};
            break;
        }
        default:
            break;
    }
    return {EObjectType::Snapshot, 0, 0};
}

}  // namespace

LockChain ChainOf(const Graph& graph, const LockKey& object) {
    LockChain chain{object};
    while (chain.back().kind != EObjectType::Snapshot)
        chain.push_back(ContainerOf(graph, chain.back()));
    return chain;
}

bool LockTable::Conflicts(const Client& client, const LockChain& chain, ELockScope scope) const {
    for (const LockKey& key : chain) {
        const auto hold = m_holds.find(key);
        if (hold == m_holds.end() || hold->second.client == &client) continue;
        // A shallow lock on what contains the object leaves its contents free.
        if (&key == &chain.front() || hold->second.whole != 0) return true;
    }
    if (scope == ELockScope::Shallow) return false;
    const auto inside = m_inside.find(chain.front());
    return inside != m_inside.end() && std::any_of(inside->second.begin(), inside->second.end(),
                                                   [&client](const Inside& i) { return i.client != &client; });
}

Result LockTable::Acquire(const Client& client, const LockChain& chain, ELockScope scope, const Index& object,
                          bool& first) {
    const std::lock_guard lock(m_mutex);
    if (Conflicts(client, chain, scope)) return EErrorCode::AccessDenied;
    const auto [entry, added] = m_holds.try_emplace(chain.front());
    Hold& hold = entry->second;
    if (added) {
        std::size_t entered = 1;
        try {
            hold.client = &client;
            hold.object = object;
            hold.chain = chain;
            for (; entered < chain.size(); ++entered) {
                std::vector<Inside>& inside = m_inside[chain[entered]];
                const auto own = std::find_if(inside.begin(), inside.end(),
                                              [&client](const Inside& i) { return i.client == &client; });
                own != inside.end() ? ++own->count : (inside.push_back({&client, 1}), std::size_t{1});
            }
        } catch (...) {
            hold.chain.resize(std::min(entered, hold.chain.size()));
            Remove(entry);
            throw;
        }
        m_count.store(m_holds.size(), std::memory_order_release);
    }
    ++(scope == ELockScope::Whole ? hold.whole : hold.shallow);
    first = added;
    return {};
}

bool LockTable::Release(const Client& client, const LockChain& chain, ELockScope scope) noexcept {
    const std::lock_guard lock(m_mutex);
    const auto entry = m_holds.find(chain.front());
    if (entry == m_holds.end() || entry->second.client != &client) return false;
    Hold& hold = entry->second;
    --(scope == ELockScope::Whole ? hold.whole : hold.shallow);
    if (hold.whole != 0 || hold.shallow != 0) return false;
    Remove(entry);
    return true;
}

ListT<Index> LockTable::ReleaseAll(const Client& client) {
    const std::lock_guard lock(m_mutex);
    ListT<Index> objects;
    for (const auto& [key, hold] : m_holds)
        if (hold.client == &client) objects.Append(hold.object);
    for (auto entry = m_holds.begin(); entry != m_holds.end();) {
        const auto next = std::next(entry);
        if (entry->second.client == &client) Remove(entry);
        entry = next;
    }
    return objects;
}

void LockTable::Remove(std::unordered_map<LockKey, Hold>::iterator hold) noexcept {
    const LockChain& chain = hold->second.chain;
    for (std::size_t i = 1; i < chain.size(); ++i) {
        const auto inside = m_inside.find(chain[i]);
        if (inside == m_inside.end()) continue;
        const auto own = std::find_if(inside->second.begin(), inside->second.end(),
                                      [&](const Inside& in) { return in.client == hold->second.client; });
        if (own != inside->second.end() && --own->count == 0) inside->second.erase(own);
        if (inside->second.empty()) m_inside.erase(inside);
    }
    m_holds.erase(hold);
    m_count.store(m_holds.size(), std::memory_order_release);
}

bool LockTable::IsHeldByOther(const Client& client, const LockChain& chain, ELockScope edit) const {
    const std::lock_guard lock(m_mutex);
    return Conflicts(client, chain, edit);
}

bool LockTable::Allows(const Client& client, const LockChain& chain, ELockScope edit) const {
    const std::lock_guard lock(m_mutex);
    for (const LockKey& key : chain) {
        const auto hold = m_holds.find(key);
        if (hold == m_holds.end() || hold->second.client != &client) continue;
        if (hold->second.whole != 0 || (edit == ELockScope::Shallow && &key == &chain.front())) return true;
    }
    return false;
}

}  // namespace Orin::DesignDb
