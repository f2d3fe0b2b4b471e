#include "events/detail/orin_event_observer_ex.h"

#include <algorithm>

#include "attributes/reserved_keys.h"
#include "properties/property_mangler.h"

namespace NQuillUtils::NEvents {

using Orin::EEventsAdd;
using Orin::EEventsChange;
using Orin::EEventsDelete;
using Orin::EObjectType;
using Quill::DataModel::PropertyType;
using Quill::Utils::CPropertyMangler;

namespace {

// Mangled once, and kept to the end of the process: callbacks may still come when static objects go.
const Orin::String& ReadOnlyMark() {
    static const auto* const mark =
        new Orin::String(CPropertyMangler::Mangle(NReservedKeys::ReadOnlySheet, PropertyType::Internal));
    return *mark;
}
const Orin::String& DesignNameAttribute() {
    static const auto* const name = new Orin::String(CPropertyMangler::Mangle("Design_Name", PropertyType::Internal));
    return *name;
}

bool RenamesBlock(const Index& object, EEventsChange kind) {
    return kind == EEventsChange::Name && object.GetType() == EObjectType::Block;
}

bool ChangesAttributeOfBlock(const Index& object, EEventsChange kind) {
    return (kind == EEventsChange::SetAttribute || kind == EEventsChange::RemoveAttribute) &&
           object.GetType() == EObjectType::Block;
}

}  // namespace

void TextsBeforeChange::Remember(const Index& object, const Orin::String& text, bool undo) {
    const Quill::Platform::MutexLock lock(m_mutex);
    OfThread& own = m_threads[ThisThread()];
    if (undo)
        own.undone.insert_or_assign(object, text);
    else
        own.changes.emplace_back(object, text);
}

std::optional<Orin::String> TextsBeforeChange::Take(const Index& object, bool undo) {
    std::optional<Orin::String> text;
    if (!undo) text.emplace();
    const Quill::Platform::MutexLock lock(m_mutex);
    const auto thread = m_threads.find(ThisThread());
    if (thread == m_threads.end()) return text;
    OfThread& own = thread->second;
    if (undo) {
        if (auto found = own.undone.extract(object)) text = std::move(found.mapped());
    } else {
        auto& changes = own.changes;
        const auto is = [&](const auto& change) { return change.first == object; };
        const auto found = std::find_if(changes.rbegin(), changes.rend(), is);
        if (found != changes.rend()) {
            text = std::move(found->second);
            changes.erase(found.base() - 1, changes.end());
        }
    }
    if (own.changes.empty() && own.undone.empty()) m_threads.erase(thread);
    return text;
}

void CORINEventObserverEx::OnAfterAdd(const Index& parent, const Index& object, EEventsAdd kind, bool undo) {
    if (kind == EEventsAdd::Net)
        Notify<NotificationOnAddDelete<Orin::INet, callOnAddNet>>(m_observerEx.Get(), Objects(), object);
    else if (kind == EEventsAdd::Bus)
        Notify<NotificationOnAddDelete<Orin::IBus, callOnAddBus>>(m_observerEx.Get(), Objects(), object);
    else if (kind == EEventsAdd::NetQuill)
        Notify<NotificationOnAddDeleteNetQuill<callOnAddNetQuill>>(m_observerEx.Get(), Objects(), object);
    else
        CORINEventObserver::OnAfterAdd(parent, object, kind, undo);
}

void CORINEventObserverEx::OnBeforeDelete(const Index& parent, const Index& object, EEventsDelete kind, bool undo) {
    const auto is = [&](EEventsDelete deleted, EObjectType type) {
        return kind == deleted && object.GetType() == type;
    };
    if (is(EEventsDelete::Block, EObjectType::Block))
        Notify<NotificationOnDeleteBlock>(m_observerEx.Get(), Objects(), object);
    else if (is(EEventsDelete::Comp, EObjectType::Comp))
        Notify<NotificationOnDeleteBlockComp>(m_observerEx.Get(), Objects(), object);
    else if (is(EEventsDelete::Group, EObjectType::Group))
        Notify<NotificationOnDeleteGroup>(m_observerEx.Get(), Objects(), object);
    else if (is(EEventsDelete::Net, EObjectType::Net))
        Notify<NotificationOnAddDelete<Orin::INet, callOnDeleteNet>>(m_observerEx.Get(), Objects(), object);
    else if (is(EEventsDelete::Bus, EObjectType::Bus))
        Notify<NotificationOnAddDelete<Orin::IBus, callOnDeleteBus>>(m_observerEx.Get(), Objects(), object);
    else if (is(EEventsDelete::NetQuill, EObjectType::NetQuill))
        Notify<NotificationOnAddDeleteNetQuill<callOnDeleteNetQuill>>(m_observerEx.Get(), Objects(), object);
    else
        CORINEventObserver::OnBeforeDelete(parent, object, kind, undo);
}

bool CORINEventObserverEx::TranslateChange(const Index& object, EEventsChange kind, Moment moment) {
    const EObjectType type = object.GetType();
    if (kind == EEventsChange::Label &&
        (type == EObjectType::Net || type == EObjectType::Bus || type == EObjectType::Comp)) {
        Notify<NotificationOnLabelChange>(m_observerEx.Get(), Objects(), object, moment);
        return true;
    }
    if (kind == EEventsChange::NetQuillData && type == EObjectType::NetQuill) {
        Notify<NotificationOnNetQuillSetData>(m_observerEx.Get(), Objects(), object, moment);
        return true;
    }
    return false;
}

Orin::String CORINEventObserverEx::BlockName(const Index& block) const {
    Orin::String name;
    RequireBlock(Objects(), block)->GetName(name);
    return name;
}

void CORINEventObserverEx::OnBeforeChange(const Index& object, EEventsChange kind, bool undo) {
    if (TranslateChange(object, kind, Moment::Before)) return;
    // Remembering is no translation: the observer is told of the change to come as every plain observer is.
    if (RenamesBlock(object, kind)) m_names.Remember(object, BlockName(object), undo);
    CORINEventObserver::OnBeforeChange(object, kind, undo);
}

void CORINEventObserverEx::OnAfterChange(const Index& object, EEventsChange kind, bool undo) {
    if (TranslateChange(object, kind, Moment::After)) return;
    if (RenamesBlock(object, kind)) {
        const std::optional<Orin::String> before = m_names.Take(object, undo);
        const Orin::String after = BlockName(object);
        if (before && *before != after) {
            Notify<Notification::Vellum::OnBlockNameChange>(m_observerEx.Get(), object, *before, after);
            return;
        }
    }
    CORINEventObserver::OnAfterChange(object, kind, undo);
}

void CORINEventObserverEx::TranslateAttribute(const Index& object, const Orin::String& name) {
    const EObjectType type = object.GetType();
    if (type != EObjectType::Block && type != EObjectType::Group) return;
    if (name != ReadOnlyMark()) return;
    Index block = object;
    if (type == EObjectType::Group) {
        block = Index();
        Orin::ContainerT<const Orin::IGroup> group;
        if (Objects().GetGroup(group, object)) group->GetOwner(block);
    }
    Notify<Notification::Vellum::OnReadOnlyFlagChange>(m_observerEx.Get(), block);
}

void CORINEventObserverEx::OnAfterSetAttribute(const Index& object, const Orin::String& name, const Orin::String&,
                                               Orin::EAttributeType, int, bool) {
    TranslateAttribute(object, name);
}

void CORINEventObserverEx::OnAfterRemoveAttribute(const Index& object, const Orin::String& name, Orin::EAttributeType,
                                                  int, bool) {
    TranslateAttribute(object, name);
}

void CORINEventObserverNavigator::OnBeforeDelete(const Index& parent, const Index& object, EEventsDelete kind,
                                                 bool undo) {
    const EObjectType type = object.GetType();
    if (type == EObjectType::Bus)
        Notify<Notification::Navigator::OnDeleteBus>(m_observerEx.Get(), Objects(), object);
    else if (type == EObjectType::Block || type == EObjectType::Group)
        Notify<Notification::Navigator::OnDeleteBlock>(m_observerEx.Get(), object);
    else
        CORINEventObserver::OnBeforeDelete(parent, object, kind, undo);
}

Orin::String CORINEventObserverNavigator::DesignName(const Index& block) const {
    Orin::String name;
    RequireBlock(Objects(), block)->GetAttribute(DesignNameAttribute(), name);
    return name;
}

void CORINEventObserverNavigator::OnBeforeChange(const Index& object, EEventsChange kind, bool undo) {
    if (kind == EEventsChange::RipBus) {
        Notify<Notification::Navigator::OnBeforeRipBus>(m_observerEx.Get(), Objects(), object);
        return;
    }
    if (ChangesAttributeOfBlock(object, kind)) m_designNames.Remember(object, DesignName(object), undo);
    CORINEventObserver::OnBeforeChange(object, kind, undo);
}

void CORINEventObserverNavigator::OnAfterChange(const Index& object, EEventsChange kind, bool undo) {
    if (kind == EEventsChange::RipBus) {
        Notify<Notification::Navigator::OnAfterRipBus>(m_observerEx.Get(), Objects(), object);
        return;
    }
    if (ChangesAttributeOfBlock(object, kind)) {
        const std::optional<Orin::String> before = m_designNames.Take(object, undo);
        const Orin::String after = DesignName(object);
        if (before && *before != after) {
            Notify<Notification::Navigator::OnDesignRootChange>(m_observerEx.Get(), object, *before, after);
            return;
        }
    }
    CORINEventObserver::OnAfterChange(object, kind, undo);
}

}  // namespace NQuillUtils::NEvents
