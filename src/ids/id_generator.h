// Hands out ids that collide with none in use on a sheet or symbol.
#pragma once

#include "ids/id_generator_result.h"
#include "ids/id_values.h"
#include "orin/design_objects.h"
#include "orin/handles.h"
#include "quillutils_export.h"

namespace Quill::Utils {

namespace detail {
template <class Kind, int Locked>
struct IdGeneratorState;
}

// What the generators of every kind share. A generator is a handle to its state: assignment does not copy the state but
// shares the other's, so that both go on counting together, and the last of them frees it. Generators that share a
// state are used by one thread at a time. Operations report by their result and throw nothing but for want of memory,
// `Store` apart.
template <class Kind, int Locked>
class QUILLUTILS_EXPORT IdGeneratorBase {
    static_assert(Locked == 0 || Locked == 1);

public:
    IdGeneratorBase(const IdGeneratorBase&) = delete;
    IdGeneratorBase& operator=(const IdGeneratorBase& other) noexcept;

    // Covers an id that the caller knows to be in use, when it is larger than the last one; of attribute ids the low 22
    // bits alone are compared, since ids of other sheets may stand on a sheet. NoId changes nothing.
    // NotInitialized; IdSpaceExhausted, with nothing changed, for ReservedId.
    IdGeneratorResult UpdateLast(const Kind& id) noexcept;

protected:
    IdGeneratorBase();
    ~IdGeneratorBase();  // gives up what the state holds, when it was the last

    detail::IdGeneratorState<Kind, Locked>* m_state;
};

// A generator of ids of one kind: ObjectId, AttributeId, JointId or SegmentId.
//
// Each Init finds the highest id in use and so decides for which sheet or symbol ids are handed out. It starts afresh,
// whatever the generator was before, and gives up every handle and lock of before. When it fails, the generator holds
// nothing and is as it was made: NotInitialized. Any database failure that does not merely say that something is absent
// is DatabaseError; so are handles to nothing.
//
// `Locked` says how the sheet or symbol is held from a successful Init to the next Init or the end of the last
// generator that shares the state:
//     0    read-only; other clients may edit it
//     1    by a write lock, so that no other client draws ids meanwhile. DatabaseError when another client holds what
//          is to be locked.
//
// Generators of joint and segment ids, which this general form is, have no Init and hence nothing to hand out.
template <class Kind, int Locked>
class QUILLUTILS_EXPORT IdGenerator : public IdGeneratorBase<Kind, Locked> {};

// Attribute ids are not stored: what is in use is found by looking.
template <int Locked>
class QUILLUTILS_EXPORT IdGenerator<AttributeId, Locked> : public IdGeneratorBase<AttributeId, Locked> {
public:
    // For a sheet that has no attributes yet: nothing is looked at but the sheet's id, and ids start at sequence number
    // 1. NoSheetId when that id cannot be read, also because the handle is empty. With Locked = 1 it is NotSupported,
    // since there is no view to lock without the block.
    IdGeneratorResult Init(const Orin::ContainerT<const Orin::IGroup>& group);

    // For the sheet `group` of `block`, after all attributes drawn on it. With Locked = 1 the sheet's view is locked
    // with its contents, once they have been looked at: what another client draws just before the lock is missed.
    // NoSheetId when the sheet's id cannot be read.
    IdGeneratorResult Init(const Orin::ContainerT<const Orin::IBlock>& block,
                           const Orin::ContainerT<const Orin::IGroup>& group);

    // For a symbol, after all attributes drawn on it. With Locked = 1 the symbol's view is locked in the same way.
    IdGeneratorResult Init(const Orin::ContainerT<const Orin::IComp>& comp);

    // On a sheet, the sheet's id above the next sequence number, which goes from 0x3FFFFF back to 0: the ids of a sheet
    // repeat after that many. On a symbol the number after the last. NotInitialized; `id` is then untouched.
    IdGeneratorResult GetNext(AttributeId& id) noexcept;
};

// The highest object id of a sheet or symbol is stored with it, as the internal property "LastIdUsed" of the group, or
// of the component among its system attributes. A stored mark is believed, whatever is drawn; only without one the
// sheet or symbol is looked at. A mark that is no number of 1 to 0xFFFFFFFD counts as 0, and then too nothing is looked
// at. With Locked = 1 the lock is a shallow one, on the attributes of the group or component and hence the mark; it is
// taken before the mark is read.
template <int Locked>
class QUILLUTILS_EXPORT IdGenerator<ObjectId, Locked> : public IdGeneratorBase<ObjectId, Locked> {
public:
    // For the sheet `group` of `block`.
    IdGeneratorResult Init(const Orin::ContainerT<const Orin::IBlock>& block,
                           const Orin::ContainerT<const Orin::IGroup>& group);

    // For a symbol.
    IdGeneratorResult Init(const Orin::ContainerT<const Orin::IComp>& comp);

    // The number after the last. The very last one is ReservedId, although UpdateLast refuses it; from then on
    // IdSpaceExhausted. NotInitialized. On either failure nothing changes and `id` is untouched.
    IdGeneratorResult GetNext(ObjectId& id) noexcept;

    // Stores the last id as the mark, under a shallow lock that with Locked = 0 is held for the moment. Nothing is
    // written when the sheet or symbol was deleted. NotInitialized. Throws the failed Orin::Result of the lock or the
    // write.
    IdGeneratorResult Store();
};

extern template class IdGeneratorBase<ObjectId, 0>;
extern template class IdGeneratorBase<ObjectId, 1>;
extern template class IdGeneratorBase<AttributeId, 0>;
extern template class IdGeneratorBase<AttributeId, 1>;
extern template class IdGeneratorBase<JointId, 0>;
extern template class IdGeneratorBase<JointId, 1>;
extern template class IdGeneratorBase<SegmentId, 0>;
extern template class IdGeneratorBase<SegmentId, 1>;
extern template class IdGenerator<ObjectId, 0>;
extern template class IdGenerator<ObjectId, 1>;
extern template class IdGenerator<AttributeId, 0>;
extern template class IdGenerator<AttributeId, 1>;

}  // namespace Quill::Utils
