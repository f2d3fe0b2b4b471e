// Helpers that the parts of the editor share.
#pragma once

#include "designdb/detail/edit.h"
#include "designdb/detail/face.h"
#include "designdb/editor.h"

namespace Orin::DesignDb {

class Editor::Impl {
public:
    explicit Impl(const SessionRef& ref) : session(ref) {}
    SessionRef session;
};

// An edit of the editor's: see Perform. NotConnected for an editor that never opened.
template <class ImplPointer, class Body>
Result Run(const ImplPointer& impl, Body&& body) {
    if (!impl) return EErrorCode::NotConnected;
    return Perform(*impl->session, EditRight::Free, std::forward<Body>(body));
}

// The slot for a new record, kept between the two runs of an edit.
using Place = std::optional<std::pair<Slot, Index>>;

// Permission to edit the object itself, when it is there.
template <class Record>
Result PermitRecord(const Edit& edit, Slot slot, ELockScope scope = ELockScope::Shallow) {
    if (edit.Now().Find<Record>(slot) == nullptr) return EErrorCode::ObjectNotFound;
    return edit.Permit({Record::Kind, slot, 0}, scope);
}

inline Result PermitSnapshot(const Edit& edit) {
    return edit.Permit({EObjectType::Snapshot, 0, 0}, ELockScope::Shallow);
}

// The set without the slot, or with it at the end.
Memberships With(Memberships memberships, Slot group);
Memberships Without(Memberships memberships, Slot group);

template <class Visit>
void ForEach(const Memberships& memberships, Visit&& visit) {
    if (memberships.first != 0) visit(memberships.first);
    for (const Slot group : memberships.further)
        visit(group);
}

// The list without the value.
template <class T>
ListT<T> Without(ListT<T> list, const T& value) {
    for (unsigned i = 0; i < list.Count(); ++i) {
        if (!(list[i] == value)) continue;
        list.Erase(i);
        break;
    }
    return list;
}

}  // namespace Orin::DesignDb
