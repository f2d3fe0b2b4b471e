#include "designdb/detail/change.h"

#include <algorithm>
#include <thread>

namespace Orin::DesignDb {

void* UndoLog::Allocate(std::size_t size) {
    size = (size + Alignment - 1) / Alignment * Alignment;
    if (m_blocks.empty() || BlockSize - m_blocks.back().used < size) {
        m_blocks.reserve(m_blocks.size() + 1);
        m_blocks.push_back({std::make_unique_for_overwrite<std::byte[]>(BlockSize), 0});
    }
    Block& block = m_blocks.back();
    void* const memory = block.memory.get() + block.used;
    block.used += size;
    return memory;
}

void UndoLog::Revert(Graph& graph, Mark mark) {
    while (m_top != mark) {
        m_top->Apply(graph);
        DropTop();
    }
}

const EditMark* UndoLog::TopEdit() const noexcept {
    return m_top != nullptr ? m_top->AsMark() : nullptr;
}

void UndoLog::RevertEdit(Graph& graph) {
    // The mark goes last, so that an edit that could be taken back in part only is still known as one.
    while (m_top->below != nullptr && m_top->below->AsMark() == nullptr) {
        UndoStep* const mark = m_top;
        UndoStep* const step = mark->below;
        step->Apply(graph);
        mark->below = step->below;
        step->~UndoStep();
    }
    DropTop();
}

void UndoLog::Forget(Mark mark) noexcept {
    while (m_top != mark)
        DropTop();
}

void UndoLog::DropTop() noexcept {
    UndoStep* const step = m_top;
    m_top = step->below;
    step->~UndoStep();
    if (m_top == nullptr && !m_blocks.empty()) {
        // One block is kept, since most edits stand alone and need no more.
        m_blocks.resize(1);
        m_blocks.front().used = 0;
    }
}

void MemberStep::Apply(Graph& graph) {
    ChunkedSequence<std::uint64_t>& members = graph.Of<GroupRecord>().Write(m_group).members;
    m_insert ? members.Insert(m_position, m_member) : members.Erase(m_position);
    m_insert = !m_insert;
}

void AttributeChange::ApplyTo(ListAttribute& list) {
    const std::size_t position = AttributePosition(list, m_attribute.name.View(), m_attribute.type);
    const bool isThere = FindAttribute(list, m_attribute.name.View(), m_attribute.type) != nullptr;
    if (!m_present) {
        String value = list[position].value;
        list.Erase(position);
        std::swap(m_attribute.value, value);
        m_present = true;
    } else if (isThere) {
        std::swap((&list.Front())[position].value, m_attribute.value);
    } else {
        list.Insert(position, m_attribute);
        m_present = false;
    }
}

void OccurrenceStep::Apply(Graph& graph) {
    ListT<OccurrenceAttributes>& all = graph.Of<CompRecord>().Write(m_comp).occurrences;
    const OccurrenceAttributes* const place = std::lower_bound(
        all.begin(), all.end(), m_path, [](const OccurrenceAttributes& o, Slot wanted) { return o.path < wanted; });
    const std::size_t position = static_cast<std::size_t>(place - all.begin());
    const bool isThere = place != all.end() && place->path == m_path;
    if (isThere && !m_attributes.IsEmpty()) {
        std::swap((&all.Front())[position].attributes, m_attributes);
    } else if (isThere) {
        ListAttribute before = place->attributes;
        all.Erase(position);
        m_attributes = std::move(before);
    } else if (!m_attributes.IsEmpty()) {
        all.Insert(position, {m_path, m_attributes});
        m_attributes = {};
    }
}

Change::~Change() {
    // Where the only element of a set or a foreign index goes back in, taking back needs memory. It cannot be given up
    // half way, and goes on where it stopped.
    while (!m_kept) {
        try {
            m_log.Revert(m_graph, m_begin);
            return;
        } catch (const std::bad_alloc&) {
            std::this_thread::yield();
        }
    }
}

}  // namespace Orin::DesignDb
