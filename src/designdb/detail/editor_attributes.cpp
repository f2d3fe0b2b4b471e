// Attributes, through the editor and through write handles.
#include <algorithm>

#include "designdb/detail/editing.h"

namespace Orin::DesignDb {

namespace {

// Which attributes an edit is about: of an object, of a component at a place, or of the design as a whole.
struct Bearer {
    Location at;  // of kind Snapshot: the design as a whole
    const PathNode* place = nullptr;

    LockKey Key() const noexcept { return {at.kind, at.slot, place != nullptr ? place->slot : 0}; }
};

// The attributes as they are; null when the object is not there (any more) or bears none.
const ListAttribute* AttributesOf(const Graph& graph, const Bearer& bearer) {
    static const ListAttribute s_none;
    if (bearer.at.kind == EObjectType::Snapshot) return &graph.attributes;
    if (bearer.place != nullptr) {
        const CompRecord* const comp = graph.Find<CompRecord>(bearer.at.slot);
        if (comp == nullptr || !StandsAt(graph, *bearer.place, *comp)) return nullptr;
        const OccurrenceAttributes* const own = FindOccurrence(comp->occurrences, bearer.place->slot);
        return own != nullptr ? &own->attributes : &s_none;
    }
    const ListAttribute* const none = nullptr;
    return VisitRecord(graph, bearer.at, none, [](const auto& record) -> const ListAttribute* {
        if constexpr (requires { record.attributes; }) {
            return &record.attributes;
        } else {
            return nullptr;
        }
    });
}

// Sets the attribute, or removes it when `present` is false. `all` is the list that bears it.
void Exchange(Edit& edit, const Bearer& bearer, const ListAttribute& all, Attribute attribute, bool present) {
    const Slot slot = bearer.at.slot;
    if (bearer.at.kind == EObjectType::Snapshot || bearer.place != nullptr) {
        ListAttribute changed = present ? WithAttribute(all, attribute.name, attribute.value, attribute.type)
                                        : WithoutAttribute(all, attribute.name.View(), attribute.type);
        if (bearer.place != nullptr) return edit.Do().SetOccurrence(slot, bearer.place->slot, std::move(changed));
        return edit.Do().SetDesignAttributes(std::move(changed));
    }
    VisitRecord(edit.Now(), bearer.at, 0, [&]<class Record>(const Record& record) {
        if constexpr (requires { record.attributes; })
            edit.Do().ChangeAttribute<Record>(slot, std::move(attribute), present);
        return 0;
    });
}

Index IndexOf(const Session& session, const Graph& graph, const Bearer& bearer) {
    if (bearer.at.kind == EObjectType::Snapshot) return session.snapshot->DesignIndex();
    return VisitRecord(graph, bearer.at, Index(), [](const auto& record) { return record.index; });
}

Result Set(Session& session, Edit& edit, const Bearer& bearer, const String& name, const String& value,
           EAttributeType type) {
    if (name.IsEmpty()) return EErrorCode::InvalidArgument;
    const ListAttribute* const attributes = AttributesOf(edit.Now(), bearer);
    if (attributes == nullptr) return EErrorCode::ObjectNotFound;
    if (bearer.at.kind != EObjectType::Comp) type = EAttributeType::User;
    if (Result r = edit.Permit(bearer.Key(), ELockScope::Shallow); !r) return r;
    const Attribute* const before = FindAttribute(*attributes, name.View(), type);
    if (!edit.Begin(Event::SetAttribute(IndexOf(session, edit.Now(), bearer), name, value, type, before))) return {};
    const String shared = before != nullptr ? before->name : session.snapshot->attributeNames.Shared(name);
    Exchange(edit, bearer, *attributes, {shared, value, type}, true);
    return {};
}

Result Remove(Session& session, Edit& edit, const Bearer& bearer, const String& name, EAttributeType type) {
    const ListAttribute* const attributes = AttributesOf(edit.Now(), bearer);
    if (attributes == nullptr) return EErrorCode::ObjectNotFound;
    if (bearer.at.kind != EObjectType::Comp) type = EAttributeType::User;
    if (Result r = edit.Permit(bearer.Key(), ELockScope::Shallow); !r) return r;
    const Attribute* const before = FindAttribute(*attributes, name.View(), type);
    if (before == nullptr) return EErrorCode::AttributeNotFound;
    if (!edit.Begin(Event::RemoveAttribute(IndexOf(session, edit.Now(), bearer), name, type, before->value))) return {};
    Exchange(edit, bearer, *attributes, {before->name, before->value, type}, false);
    return {};
}

// The bearer that an index of the editor's names.
Bearer BearerOf(const Graph& graph, const Index& object) {
    return {object.IsEmpty() ? Location{EObjectType::Snapshot, 0} : graph.Locate(object), nullptr};
}

// The bearer at a place; an empty location when there is no such component or place.
Bearer BearerAt(const Session& session, const Graph& graph, const Index& path, const Index& comp) {
    const PathNode* const place =
        path.GetType() == EObjectType::Path && path.Middle() == 0 ? session.Project().paths.Find(path.Low()) : nullptr;
    const Slot slot = graph.SlotOf<CompRecord>(comp);
    if (place == nullptr || slot == 0) return {};
    return {{EObjectType::Comp, slot}, place};
}

}  // namespace

Result Editor::SetAttribute(const Index& object, const String& name, const String& value, EAttributeType type) {
    return Run(m_impl, [&](Edit& edit) {
        return Set(*m_impl->session, edit, BearerOf(edit.Now(), object), name, value, type);
    });
}

Result Editor::RemoveAttribute(const Index& object, const String& name, EAttributeType type) {
    return Run(m_impl,
               [&](Edit& edit) { return Remove(*m_impl->session, edit, BearerOf(edit.Now(), object), name, type); });
}

Result Editor::SetAttributeInPath(const Index& path, const Index& comp, const String& name, const String& value,
                                  EAttributeType type) {
    return Run(m_impl, [&](Edit& edit) {
        Session& session = *m_impl->session;
        return Set(session, edit, BearerAt(session, edit.Now(), path, comp), name, value, type);
    });
}

Result Editor::RemoveAttributeInPath(const Index& path, const Index& comp, const String& name, EAttributeType type) {
    return Run(m_impl, [&](Edit& edit) {
        Session& session = *m_impl->session;
        return Remove(session, edit, BearerAt(session, edit.Now(), path, comp), name, type);
    });
}

Result SetAttributeLocked(Session& session, Location at, const PathNode* place, const String& name, const String& value,
                          EAttributeType type) {
    return Perform(session, EditRight::Locked, [&](Edit& edit) {
        return Set(session, edit, {at, place}, name, value, type);
    });
}

Result RemoveAttributeLocked(Session& session, Location at, const PathNode* place, const String& name,
                             EAttributeType type) {
    return Perform(session, EditRight::Locked, [&](Edit& edit) {
        return Remove(session, edit, {at, place}, name, type);
    });
}

}  // namespace Orin::DesignDb
