#include "ids/id_generator.h"

#include <cstdint>
#include <string_view>

#include "designdata/result_rule.h"
#include "ids/detail/id_counter.h"
#include "ids/detail/max_finder.h"
#include "orin/views.h"
#include "properties/property_mangler.h"
#include "sheets/sheet_name.h"
#include "text/ascii.h"
#include "text/number.h"

namespace Quill::Utils {

using Block = Orin::ContainerT<const Orin::IBlock>;
using Group = Orin::ContainerT<const Orin::IGroup>;
using Comp = Orin::ContainerT<const Orin::IComp>;
using ECode = IdGeneratorResult::ECode;

namespace detail {

// What a generator holds of the design; nothing for joints and segments.
template <class Kind, int Locked>
struct Holdings {};

template <>
struct Holdings<AttributeId, 0> {
    int sheetId = -1;  // -1 on a symbol
};

template <>
struct Holdings<AttributeId, 1> : Holdings<AttributeId, 0> {
    Orin::MutableContainerT<Orin::IBlockViewQuill> blockView;
    Orin::MutableContainerT<Orin::ICompViewQuill> compView;
};

// One of both at most is not empty.
template <>
struct Holdings<ObjectId, 0> {
    Group group;
    Comp comp;
};

template <>
struct Holdings<ObjectId, 1> {
    Orin::MutableContainerT<Orin::IGroup> group;
    Orin::MutableContainerT<Orin::IComp> comp;
};

template <class Kind, int Locked>
struct IdGeneratorState {
    unsigned owners = 1;  // the generators that refer to it
    IdCounter<Kind> counter;
    Holdings<Kind, Locked> held;

    void Reset() noexcept {
        counter = {};
        held = {};
    }
};

}  // namespace detail

namespace {

constexpr Orin::EAttributeType MarkFamily = Orin::EAttributeType::System;  // of a component's mark

const Orin::String& MarkName() {
    // Never destroyed: generators may still store when the process ends.
    static const Orin::String* const name =
        new Orin::String(CPropertyMangler::Mangle("LastIdUsed", DataModel::PropertyType::Internal));
    return *name;
}

// The decimal digits at the front, as far as they are an id that can be the last one; otherwise 0.
std::uint32_t ParseMark(std::string_view text) noexcept {
    if (text.empty() || !Text::IsDigit(text.front())) return 0;
    const Text::ParsedNumber<std::uint32_t> number = Text::ParseUInt32(text);
    return number.Ok() && number.value < ReservedId ? number.value : 0;
}

// False when the object bears no mark. `family` is the attribute type of a component.
template <class Object, class... Family>
bool ReadMark(const Object& object, std::uint32_t& last, Family... family) {
    Orin::String text;
    if (!Present(object.GetAttribute(MarkName(), text, family...))) return false;
    last = ParseMark(text.View());
    return true;
}

template <class T, class... Family>
void WriteMark(const Orin::MutableContainerT<T>& object, const Orin::String& mark, Family... family) {
    Require(object->SetAttribute(MarkName(), mark, family...));
}

template <class T, class... Family>
void WriteMark(const Orin::ContainerT<const T>& object, const Orin::String& mark, Family... family) {
    Orin::MutableContainerT<T> writable;
    Require(Orin::LockerT<T>::ShallowLock(object, writable));
    WriteMark(writable, mark, family...);
}

template <class T>
void Hold(const Orin::ContainerT<const T>& from, Orin::ContainerT<const T>& to) {
    if (!from) throw from.IsValid();
    to = from;
}

template <class T>
void Hold(const Orin::ContainerT<const T>& from, Orin::MutableContainerT<T>& to) {
    Require(Orin::LockerT<T>::ShallowLock(from, to));
}

detail::CounterSlots SlotOf(detail::IdCounter<ObjectId>& counter) noexcept {
    return {.object = &counter};
}

detail::CounterSlots SlotOf(detail::IdCounter<AttributeId>& counter) noexcept {
    return {.attribute = &counter};
}

template <class Kind>
void Scan(const Block& block, const Group& group, detail::IdCounter<Kind>& counter) {
    detail::MaxFinder_Sch(SlotOf(counter)).process(block, group);
}

template <class Kind>
void Scan(const Comp& comp, detail::IdCounter<Kind>& counter) {
    detail::MaxFinder_Sym(SlotOf(counter)).process(comp);
}

// What every Init has in common: `find` starts from a fresh state, and whatever ends it badly leaves one behind, which
// holds no lock.
template <class State, class Find>
IdGeneratorResult Initialise(State& state, const Find& find) {
    state.Reset();
    state.counter.initialised = true;  // a counter takes ids from then on only
    IdGeneratorResult result;
    try {
        result = find();
    } catch (const Orin::Result&) {
        result = ECode::DatabaseError;
    } catch (...) {
        state.Reset();
        throw;
    }
    if (!result) state.Reset();
    return result;
}

constexpr bool IsReserved(std::uint32_t number) noexcept {
    return number == ReservedId;
}

}  // namespace

// ---- All kinds ----

template <class Kind, int Locked>
IdGeneratorBase<Kind, Locked>::IdGeneratorBase() : m_state(new detail::IdGeneratorState<Kind, Locked>) {}

template <class Kind, int Locked>
IdGeneratorBase<Kind, Locked>::~IdGeneratorBase() {
    if (--m_state->owners == 0) delete m_state;
}

template <class Kind, int Locked>
IdGeneratorBase<Kind, Locked>& IdGeneratorBase<Kind, Locked>::operator=(const IdGeneratorBase& other) noexcept {
    if (this == &other) return *this;
    ++other.m_state->owners;  // first, since both may share one state already
    if (--m_state->owners == 0) delete m_state;
    m_state = other.m_state;
    return *this;
}

template <class Kind, int Locked>
IdGeneratorResult IdGeneratorBase<Kind, Locked>::UpdateLast(const Kind& id) noexcept {
    return m_state->counter.Cover(id);
}

// ---- Attributes ----

template <int Locked>
IdGeneratorResult IdGenerator<AttributeId, Locked>::Init(const Group& group) {
    auto& state = *this->m_state;
    return Initialise(state, [&]() -> IdGeneratorResult {
        if constexpr (Locked == 1) return ECode::NotSupported;
        return group && ReadSheetId(*group, state.held.sheetId) ? ECode::Ok : ECode::NoSheetId;
    });
}

template <int Locked>
IdGeneratorResult IdGenerator<AttributeId, Locked>::Init(const Block& block, const Group& group) {
    auto& state = *this->m_state;
    return Initialise(state, [&]() -> IdGeneratorResult {
        Scan(block, group, state.counter);
        if constexpr (Locked == 1) {
            Orin::ContainerT<const Orin::IBlockViewQuill> view;
            Require(Orin::IBlockViewQuill::Init(view, *block, *group));
            Require(Orin::LockerT<Orin::IBlockViewQuill>::Lock(view, state.held.blockView));
        }
        return ReadSheetId(*group, state.held.sheetId) ? ECode::Ok : ECode::NoSheetId;
    });
}

template <int Locked>
IdGeneratorResult IdGenerator<AttributeId, Locked>::Init(const Comp& comp) {
    auto& state = *this->m_state;
    return Initialise(state, [&]() -> IdGeneratorResult {
        Scan(comp, state.counter);
        if constexpr (Locked == 1) {
            Orin::ContainerT<const Orin::ICompViewQuill> view;
            Require(Orin::ICompViewQuill::Init(view, *comp));
            Require(Orin::LockerT<Orin::ICompViewQuill>::Lock(view, state.held.compView));
        }
        return {};
    });
}

template <int Locked>
IdGeneratorResult IdGenerator<AttributeId, Locked>::GetNext(AttributeId& id) noexcept {
    auto& state = *this->m_state;
    if (!state.counter.initialised) return ECode::NotInitialized;
    // A sequence number never gets there. Sheets that have used theirs up are meant to start over rather than to end.
    if (IsReserved(state.counter.last & detail::SequenceMask)) return ECode::IdSpaceExhausted;
    std::uint32_t next = state.counter.last + 1;
    if (state.held.sheetId != -1)
        next = (static_cast<std::uint32_t>(state.held.sheetId) << detail::SequenceBits) + (next & detail::SequenceMask);
    state.counter.last = next;
    id = AttributeId(next);
    return {};
}

// ---- Objects ----

template <int Locked>
IdGeneratorResult IdGenerator<ObjectId, Locked>::Init(const Block& block, const Group& group) {
    auto& state = *this->m_state;
    return Initialise(state, [&]() -> IdGeneratorResult {
        Hold(group, state.held.group);
        if (!ReadMark(*state.held.group, state.counter.last)) Scan(block, group, state.counter);
        return {};
    });
}

template <int Locked>
IdGeneratorResult IdGenerator<ObjectId, Locked>::Init(const Comp& comp) {
    auto& state = *this->m_state;
    return Initialise(state, [&]() -> IdGeneratorResult {
        Hold(comp, state.held.comp);
        if (!ReadMark(*state.held.comp, state.counter.last, MarkFamily)) Scan(comp, state.counter);
        return {};
    });
}

template <int Locked>
IdGeneratorResult IdGenerator<ObjectId, Locked>::GetNext(ObjectId& id) noexcept {
    auto& counter = this->m_state->counter;
    if (!counter.initialised) return ECode::NotInitialized;
    if (counter.last >= ReservedId) return ECode::IdSpaceExhausted;
    id = ObjectId(++counter.last);
    return {};
}

template <int Locked>
IdGeneratorResult IdGenerator<ObjectId, Locked>::Store() {
    const auto& state = *this->m_state;
    if (!state.counter.initialised) return ECode::NotInitialized;
    const Orin::String mark(Text::Render(state.counter.last));
    if (state.held.group.IsValid()) {
        WriteMark(state.held.group, mark);
    } else if (state.held.comp.IsValid()) {
        WriteMark(state.held.comp, mark, MarkFamily);
    }
    return {};
}

template class IdGeneratorBase<ObjectId, 0>;
template class IdGeneratorBase<ObjectId, 1>;
template class IdGeneratorBase<AttributeId, 0>;
template class IdGeneratorBase<AttributeId, 1>;
template class IdGeneratorBase<JointId, 0>;
template class IdGeneratorBase<JointId, 1>;
template class IdGeneratorBase<SegmentId, 0>;
template class IdGeneratorBase<SegmentId, 1>;
template class IdGenerator<ObjectId, 0>;
template class IdGenerator<ObjectId, 1>;
template class IdGenerator<AttributeId, 0>;
template class IdGenerator<AttributeId, 1>;

}  // namespace Quill::Utils
