// What order suppliers read pages through: the design's index resolver and the object lists of the pages in work.
#pragma once

#include <cstddef>
#include <unordered_map>

#include "orin/design_objects.h"
#include "orin/uid_manager.h"

namespace Quill {

// Keeps the object lists that were read until they are forgotten; a page traverser forgets them at every block that it
// comes to, so that the lists are those of the design as it stands. One thread at a time.
class PageObjects {
public:
    explicit PageObjects(const Orin::IUIDManager& resolver) : m_resolver(resolver) {}

    const Orin::IUIDManager& Resolver() const noexcept { return m_resolver; }

    // The members of the sheet in their order; empty when the handle is, or when they cannot be read. The list shares
    // the database's records.
    Orin::ListT<Orin::Index> ObjectsOf(const Orin::ContainerT<const Orin::IGroup>& sheet) {
        Orin::Index index;
        Orin::ListT<Orin::Index> objects;
        if (!sheet || !sheet->GetIndex(index)) return objects;
        const auto found = m_lists.find(index);
        if (found != m_lists.end()) return found->second;
        // A list that could not be read is not kept: the next reader tries again.
        if (sheet->GetListObjects(objects)) m_lists.emplace(index, objects);
        return objects;
    }

    void Forget() noexcept {
        // Clearing keeps the room of a table and goes through all of it, so the room of a large block is given up: many
        // small ones may follow.
        constexpr std::size_t SmallBlock = 64;
        if (m_lists.size() <= SmallBlock)
            m_lists.clear();
        else
            Lists().swap(m_lists);
    }

private:
    using Lists = std::unordered_map<Orin::Index, Orin::ListT<Orin::Index>>;

    Orin::IUIDManager m_resolver;
    Lists m_lists;
};

}  // namespace Quill
