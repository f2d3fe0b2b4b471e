// Reversible changes of a graph.
#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "designdb/detail/event.h"
#include "designdb/detail/graph.h"
#include "designdb/detail/touches.h"

namespace Orin::DesignDb {

class EditMark;

// One step of a change. Applying it a second time takes it back.
class UndoStep {
public:
    virtual ~UndoStep() = default;
    // Either happens as a whole or, on an allocation failure, not at all.
    virtual void Apply(Graph& graph) = 0;
    // Names what the step, which is applied, changed. `graph` is the design after all steps.
    virtual void Touch(const Graph& graph, Touches& touches) const = 0;
    virtual const EditMark* AsMark() const noexcept { return nullptr; }
    // The state of the whole design that applying the step leads to, when that is what it is about.
    virtual const Graph* AsState() const noexcept { return nullptr; }

    UndoStep* below = nullptr;  // the step done before
};

// The applied steps since a point in time, newest on top. Steps are laid down in blocks that are freed together.
class UndoLog {
public:
    UndoLog() = default;
    UndoLog(const UndoLog&) = delete;
    UndoLog& operator=(const UndoLog&) = delete;
    ~UndoLog() { Forget(nullptr); }

    using Mark = const UndoStep*;
    Mark Top() const noexcept { return m_top; }

    // Applies a new step and keeps it. An exception leaves the graph and the log as they were.
    template <class Step, class... Arguments>
    void Do(Graph& graph, Arguments&&... arguments) {
        static_assert(alignof(Step) <= Alignment);
        static_assert(sizeof(Step) <= BlockSize);
        void* const memory = Allocate(sizeof(Step));
        Step* const step = new (memory) Step(std::forward<Arguments>(arguments)...);
        try {
            step->Apply(graph);
        } catch (...) {
            step->~Step();
            throw;
        }
        step->below = m_top;
        m_top = step;
    }

    // What the edit on top was; null when nothing or no such mark is on top.
    const EditMark* TopEdit() const noexcept;

    // Takes back the steps above the mark, newest first. After an allocation failure, which is thrown, the rest can be
    // taken back by calling again.
    void Revert(Graph& graph, Mark mark);

    // Takes back the edit on top, with its mark.
    void RevertEdit(Graph& graph);

    // Drops the steps above the mark without taking them back.
    void Forget(Mark mark) noexcept;

private:
    static constexpr std::size_t BlockSize = std::size_t{1} << 16;
    static constexpr std::size_t Alignment = alignof(void*) > alignof(std::uint64_t) ? alignof(void*)
                                                                                     : alignof(std::uint64_t);
    struct Block {
        std::unique_ptr<std::byte[]> memory;
        std::size_t used = 0;
    };

    void* Allocate(std::size_t size);
    void DropTop() noexcept;

    std::vector<Block> m_blocks;
    UndoStep* m_top = nullptr;
};

// Exchanges a field of a record.
template <class Record, class Value>
class FieldStep final : public UndoStep {
public:
    FieldStep(Slot slot, Value Record::*field, Value value) : m_slot(slot), m_field(field), m_value(std::move(value)) {}
    void Apply(Graph& graph) override { std::swap(graph.Of<Record>().Write(m_slot).*m_field, m_value); }
    void Touch(const Graph&, Touches& touches) const override {
        if constexpr (std::is_same_v<Value, Memberships>) {
            touches.memberships.push_back({Record::Kind, m_slot});
        } else {
            touches.Add(Record::Kind, m_slot, Touches::Extent::Fields);
        }
    }

private:
    Slot m_slot;
    Value Record::*m_field;
    Value m_value;
};

// A record that is taken out; taking the deletion back puts it in again as it was.
template <class Record>
class TakeStep final : public UndoStep {
public:
    explicit TakeStep(Slot slot) : m_slot(slot) {}
    void Apply(Graph& graph) override {
        Table<Record>& table = graph.Of<Record>();
        if (const Record* const present = table.Find(m_slot)) {
            const Index index = present->index;
            table.Write(m_slot);  // a shared chunk is copied before anything changes
            if (Graph::IsForeign<Record>(index, m_slot)) graph.Foreign().Remove(index);
            m_record = table.Take(m_slot);
        } else {
            PutRecord(graph, m_slot, m_record);
        }
    }
    void Touch(const Graph&, Touches& touches) const override {
        touches.Add(Record::Kind, m_slot, Touches::Extent::Fields);
    }

    static void PutRecord(Graph& graph, Slot slot, Record& record) {
        Table<Record>& table = graph.Of<Record>();
        table.Prepare(slot);
        if (Graph::IsForeign<Record>(record.index, slot)) graph.Foreign().Enter(record.index, {Record::Kind, slot});
        table.Put(slot, std::move(record));
    }

private:
    Slot m_slot;
    Record m_record;
};

// A record that is put in. Steps are taken back at most once, so the record need not be kept then.
template <class Record>
class PutStep final : public UndoStep {
public:
    PutStep(Slot slot, Record& record) : m_slot(slot), m_record(&record) {}
    void Apply(Graph& graph) override {
        if (m_record == nullptr) return TakeStep<Record>(m_slot).Apply(graph);
        TakeStep<Record>::PutRecord(graph, m_slot, *m_record);
        m_record = nullptr;
    }
    void Touch(const Graph&, Touches& touches) const override {
        touches.Add(Record::Kind, m_slot, Touches::Extent::Added);
    }

private:
    Slot m_slot;
    Record* m_record;  // to be put in; null when it is there
};

// Enters a slot into a sorted set of a record, and takes it out.
template <class Record>
class SetStep final : public UndoStep {
public:
    using Access = SlotSet& (*)(Record&);
    SetStep(Slot slot, Access access, Slot value, bool insert)
        : m_slot(slot), m_value(value), m_access(access), m_insert(insert) {}
    void Apply(Graph& graph) override {
        SlotSet& set = m_access(graph.Of<Record>().Write(m_slot));
        m_insert ? set.InsertSorted(m_value) : set.EraseSorted(m_value);
        m_insert = !m_insert;
    }
    // Sets follow from other records, but for what buses and nets enter for each other.
    void Touch(const Graph&, Touches& touches) const override {
        if constexpr (std::is_same_v<Record, BusRecord>) touches.connections.emplace_back(m_slot, m_value);
    }

private:
    Slot m_slot;
    Slot m_value;
    Access m_access;
    bool m_insert;
};

// Enters a member into a group, and takes it out.
class MemberStep final : public UndoStep {
public:
    MemberStep(Slot group, std::size_t position, std::uint64_t member, bool insert)
        : m_group(group), m_insert(insert), m_position(position), m_member(member) {}
    void Apply(Graph& graph) override;
    void Touch(const Graph&, Touches& touches) const override { touches.members.emplace_back(m_group, m_member); }

private:
    Slot m_group;
    bool m_insert;
    std::size_t m_position;
    std::uint64_t m_member;
};

// Enters a value into a list of a record at a position, and takes it out. The list itself is not copied, so that a long
// one may grow within a transaction at the cost of its growth.
template <class Record, class Value>
class ListStep final : public UndoStep {
public:
    ListStep(Slot slot, ListT<Value> Record::*field, std::size_t position, Value value, bool insert)
        : m_slot(slot), m_insert(insert), m_field(field), m_position(position), m_value(value) {}
    void Apply(Graph& graph) override {
        ListT<Value>& list = graph.Of<Record>().Write(m_slot).*m_field;
        m_insert ? list.Insert(m_position, m_value) : list.Erase(m_position);
        m_insert = !m_insert;
    }
    void Touch(const Graph&, Touches&) const override {}  // the lists follow from other records

private:
    Slot m_slot;
    bool m_insert;
    ListT<Value> Record::*m_field;
    std::size_t m_position;
    Value m_value;
};

// Sets or removes one attribute of a list; what it was before takes the place of what it is to be.
class AttributeChange {
public:
    // Removes when `present` is false; the attribute is there then.
    AttributeChange(Attribute attribute, bool present) : m_attribute(std::move(attribute)), m_present(present) {}
    void ApplyTo(ListAttribute& list);
    void Touch(Location of, Touches& touches) const {
        touches.attributes.push_back({of, 0, m_attribute.type, m_attribute.name});
    }

private:
    Attribute m_attribute;
    bool m_present;
};

template <class Record>
class AttributeStep final : public UndoStep {
public:
    AttributeStep(Slot slot, Attribute attribute, bool present)
        : m_slot(slot), m_change(std::move(attribute), present) {}
    void Apply(Graph& graph) override { m_change.ApplyTo(graph.Of<Record>().Write(m_slot).attributes); }
    void Touch(const Graph&, Touches& touches) const override { m_change.Touch({Record::Kind, m_slot}, touches); }

private:
    Slot m_slot;
    AttributeChange m_change;
};

// Exchanges all attributes that a component has at one place of the hierarchy; none is no entry in its list.
class OccurrenceStep final : public UndoStep {
public:
    OccurrenceStep(Slot comp, Slot path, ListAttribute attributes)
        : m_comp(comp), m_path(path), m_attributes(std::move(attributes)) {}
    void Apply(Graph& graph) override;
    void Touch(const Graph&, Touches& touches) const override { touches.occurrences.emplace_back(m_comp, m_path); }

private:
    Slot m_comp;
    Slot m_path;
    ListAttribute m_attributes;
};

// Exchanges the attributes of the design as a whole.
class DesignAttributesStep final : public UndoStep {
public:
    explicit DesignAttributesStep(ListAttribute attributes) : m_attributes(std::move(attributes)) {}
    void Apply(Graph& graph) override { std::swap(graph.attributes, m_attributes); }
    void Touch(const Graph&, Touches& touches) const override { touches.designAttributes = true; }

private:
    ListAttribute m_attributes;
};

// Exchanges the whole content of the design for another state of it.
class RestoreStep final : public UndoStep {
public:
    explicit RestoreStep(Graph state) noexcept : m_state(std::move(state)) {}
    void Apply(Graph& graph) override { Exchange(graph, m_state); }
    void Touch(const Graph& graph, Touches& touches) const override;
    const Graph* AsState() const noexcept override { return &m_state; }

    // Slots that were given stay given: an object that is not in the other state leaves its own to nobody.
    static void Exchange(Graph& graph, Graph& state) noexcept {
        state.ReserveThrough(graph);
        std::swap(graph, state);
    }

private:
    Graph m_state;
};

// Stands on top of the steps of one edit, and says what the edit was. There is one for each edit of a transaction, so
// it is kept small.
class EditMark : public UndoStep {
public:
    explicit EditMark(const Event& event) noexcept
        : m_kind(static_cast<std::int16_t>(event.kind)),
          m_family(event.family),
          m_parent(event.parent),
          m_object(event.object) {}
    void Apply(Graph&) override {}
    void Touch(const Graph&, Touches&) const override {}
    const EditMark* AsMark() const noexcept override { return this; }

    virtual Event What() const {
        Event event;
        event.family = m_family;
        event.kind = m_kind;
        event.parent = m_parent;
        event.object = m_object;
        return event;
    }

private:
    std::int16_t m_kind;
    Event::Family m_family;
    Index m_parent;
    Index m_object;
};

// The same of an attribute edit, with the attribute as it is and as it was.
class AttributeMark final : public EditMark {
public:
    explicit AttributeMark(Event event) noexcept
        : EditMark(event),
          m_existed(event.existed),
          m_type(event.type),
          m_name(std::move(event.name)),
          m_value(std::move(event.value)),
          m_before(std::move(event.before)) {}

    Event What() const override {
        Event event = EditMark::What();
        event.existed = m_existed;
        event.type = m_type;
        event.name = m_name;
        event.value = m_value;
        event.before = m_before;
        return event;
    }

private:
    bool m_existed;
    EAttributeType m_type;
    String m_name, m_value, m_before;
};

// Changes to a graph that are kept as a whole or, when the object goes before Keep, taken back as a whole.
class Change {
public:
    Change(Graph& graph, UndoLog& log) noexcept : m_graph(graph), m_log(log), m_begin(log.Top()) {}
    ~Change();
    Change(const Change&) = delete;
    Change& operator=(const Change&) = delete;

    const Graph& Now() const noexcept { return m_graph; }
    // Says what the changes so far were, for who takes them back.
    void Mark(Event event) {
        event.IsOfAttribute() ? m_log.Do<AttributeMark>(m_graph, std::move(event)) : m_log.Do<EditMark>(m_graph, event);
    }
    void Keep() noexcept { m_kept = true; }

    template <class Record, class Value>
    void Set(Slot slot, Value Record::*field, std::type_identity_t<Value> value) {
        m_log.Do<FieldStep<Record, Value>>(m_graph, slot, field, std::move(value));
    }
    template <class Record>
    void Put(Slot slot, Record record) {
        m_log.Do<PutStep<Record>>(m_graph, slot, record);
    }
    template <class Record>
    void Take(Slot slot) {
        m_log.Do<TakeStep<Record>>(m_graph, slot);
    }
    template <class Record>
    void Enter(Slot slot, typename SetStep<Record>::Access access, Slot value) {
        m_log.Do<SetStep<Record>>(m_graph, slot, access, value, true);
    }
    template <class Record>
    void Leave(Slot slot, typename SetStep<Record>::Access access, Slot value) {
        m_log.Do<SetStep<Record>>(m_graph, slot, access, value, false);
    }
    void InsertMember(Slot group, std::size_t position, std::uint64_t member) {
        m_log.Do<MemberStep>(m_graph, group, position, member, true);
    }
    void EraseMember(Slot group, std::size_t position, std::uint64_t member) {
        m_log.Do<MemberStep>(m_graph, group, position, member, false);
    }
    template <class Record, class Value>
    void InsertAt(Slot slot, ListT<Value> Record::*field, std::size_t position,
                  const std::type_identity_t<Value>& value) {
        m_log.Do<ListStep<Record, Value>>(m_graph, slot, field, position, value, true);
    }
    template <class Record, class Value>
    void EraseAt(Slot slot, ListT<Value> Record::*field, std::size_t position) {
        const Value value = (m_graph.Find<Record>(slot)->*field)[position];
        m_log.Do<ListStep<Record, Value>>(m_graph, slot, field, position, value, false);
    }
    // Sets the attribute, or removes it when `present` is false.
    template <class Record>
    void ChangeAttribute(Slot slot, Attribute attribute, bool present) {
        m_log.Do<AttributeStep<Record>>(m_graph, slot, std::move(attribute), present);
    }
    void SetOccurrence(Slot comp, Slot path, ListAttribute attributes) {
        m_log.Do<OccurrenceStep>(m_graph, comp, path, std::move(attributes));
    }
    void Restore(Graph state) { m_log.Do<RestoreStep>(m_graph, std::move(state)); }
    void SetDesignAttributes(ListAttribute attributes) {
        m_log.Do<DesignAttributesStep>(m_graph, std::move(attributes));
    }

private:
    Graph& m_graph;
    UndoLog& m_log;
    UndoLog::Mark m_begin;
    bool m_kept = false;
};

}  // namespace Orin::DesignDb
