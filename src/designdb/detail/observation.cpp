#include "designdb/detail/observation.h"

#include <algorithm>

#include "designdb/detail/project.h"

namespace Orin::DesignDb {

Registration::Registration(EventObserver& observer, const Client& client) noexcept
    : m_observer(observer), m_client(&client) {}

Registration::~Registration() = default;

bool Registration::Enter(Visit& visit) noexcept {
    const std::lock_guard lock(m_mutex);
    if (m_removed) return false;
    visit.next = std::exchange(m_inside, &visit);
    return true;
}

void Registration::Leave(const Visit& visit) noexcept {
    const std::lock_guard lock(m_mutex);
    Visit** place = &m_inside;
    while (*place != &visit)
        place = &(*place)->next;
    *place = visit.next;
    m_left.notify_all();
}

void Registration::Remove() noexcept {
    std::unique_lock lock(m_mutex);
    m_removed = true;
    const std::thread::id self = std::this_thread::get_id();
    m_left.wait(lock, [&] {
        for (const Visit* visit = m_inside; visit != nullptr; visit = visit->next)
            if (visit->thread != self) return false;
        return true;
    });
}

void Registration::ReportUnexpected() noexcept {
    String error;
    try {
        try {
            throw;
        } catch (const std::exception& thrown) {
            error = String("An observer threw: ") + thrown.what();
        } catch (const Result& thrown) {
            error = String("An observer threw: ") + thrown.GetDescription();
        } catch (...) {
            error = "An observer threw something that is no exception";
        }
    } catch (const std::exception&) {
        // For want of memory it is told without the reason.
    }
    m_client->ReportUnexpected(error);
}

Result Observation::Add(EventObserver* observer, const Client& client) {
    if (observer == nullptr) return EErrorCode::InvalidArgument;
    const std::lock_guard lock(m_mutex);
    RegistrationList list = *m_list;
    for (const std::shared_ptr<Registration>& registration : list)
        if (registration->Is(observer, client)) return EErrorCode::AlreadyExists;
    list.push_back(std::make_shared<Registration>(*observer, client));
    Exchange(std::move(list));
    return {};
}

Result Observation::Remove(EventObserver* observer, const Client& client) {
    std::shared_ptr<Registration> removed;
    {
        const std::lock_guard lock(m_mutex);
        RegistrationList list = *m_list;
        const auto found = std::find_if(
            list.begin(), list.end(), [&](const std::shared_ptr<Registration>& r) { return r->Is(observer, client); });
        if (found == list.end()) return EErrorCode::ObjectNotFound;
        removed = *found;
        list.erase(found);
        Exchange(std::move(list));
    }
    removed->Remove();
    return {};
}

void Observation::RemoveAll(const Client& client) noexcept {
    const std::shared_ptr<const RegistrationList> before = Current();
    for (const std::shared_ptr<Registration>& registration : *before)
        if (registration->IsOf(client)) registration->Remove();
    for (;;) {
        try {
            const std::lock_guard lock(m_mutex);
            RegistrationList list = *m_list;
            std::erase_if(list, [&](const std::shared_ptr<Registration>& r) { return r->IsOf(client); });
            return Exchange(std::move(list));
        } catch (const std::bad_alloc&) {
            // A registration that stayed would hold its client for ever.
            std::this_thread::yield();
        }
    }
}

std::shared_ptr<const RegistrationList> Observation::Current() const {
    const std::lock_guard lock(m_mutex);
    return m_list;
}

void Observation::Exchange(RegistrationList list) {
    const bool observed = !list.empty();
    m_list = std::make_shared<const RegistrationList>(std::move(list));
    m_observed.store(observed, std::memory_order_release);
}

namespace {

template <class Kind>
Kind KindOf(const Event& event) noexcept {
    return static_cast<Kind>(event.kind);
}

void CallBefore(EventObserver& observer, const Event& event, bool undo) {
    switch (event.family) {
        case Event::Family::None:
            break;
        case Event::Family::Add:
            observer.OnBeforeAdd(event.parent, event.object, KindOf<EEventsAdd>(event), undo);
            break;
        case Event::Family::Delete:
            observer.OnBeforeDelete(event.parent, event.object, KindOf<EEventsDelete>(event), undo);
            break;
        case Event::Family::Change:
            observer.OnBeforeChange(event.object, KindOf<EEventsChange>(event), undo);
            break;
        case Event::Family::QuillData:
            observer.OnBeforeQuillDataChange(event.parent, event.object, KindOf<EEventsQuillDataChange>(event), undo);
            break;
        case Event::Family::Connectivity:
            observer.OnBeforeConnectivityChange(event.parent, event.object, KindOf<EEventsConnectivityChange>(event),
                                                undo);
            break;
        case Event::Family::SetAttribute:
            observer.OnBeforeSetAttribute(event.object, event.name, event.value, event.type, 0, undo);
            break;
        case Event::Family::RemoveAttribute:
            observer.OnBeforeRemoveAttribute(event.object, event.name, event.type, 0, undo);
            break;
    }
}

void CallAfter(EventObserver& observer, const Event& event, bool undo) {
    switch (event.family) {
        case Event::Family::None:
            break;
        case Event::Family::Add:
            observer.OnAfterAdd(event.parent, event.object, KindOf<EEventsAdd>(event), undo);
            break;
        case Event::Family::Delete:
            observer.OnAfterDelete(event.parent, event.object, KindOf<EEventsDelete>(event), undo);
            break;
        case Event::Family::Change:
            observer.OnAfterChange(event.object, KindOf<EEventsChange>(event), undo);
            break;
        case Event::Family::QuillData:
            observer.OnAfterQuillDataChange(event.parent, event.object, KindOf<EEventsQuillDataChange>(event), undo);
            break;
        case Event::Family::Connectivity:
            observer.OnAfterConnectivityChange(event.parent, event.object, KindOf<EEventsConnectivityChange>(event),
                                               undo);
            break;
        case Event::Family::SetAttribute:
            observer.OnAfterSetAttribute(event.object, event.name, event.value, event.type, 0, undo);
            break;
        case Event::Family::RemoveAttribute:
            observer.OnAfterRemoveAttribute(event.object, event.name, event.type, 0, undo);
            break;
    }
}

// The kinds of objects that come and go, as adding and as deleting calls them.
struct KindPair {
    EEventsAdd add;
    EEventsDelete remove;
};

constexpr KindPair KindPairs[] = {
    {EEventsAdd::Block, EEventsDelete::Block},       {EEventsAdd::Comp, EEventsDelete::Comp},
    {EEventsAdd::Pin, EEventsDelete::Pin},           {EEventsAdd::Net, EEventsDelete::Net},
    {EEventsAdd::Bus, EEventsDelete::Bus},           {EEventsAdd::Group, EEventsDelete::Group},
    {EEventsAdd::NetQuill, EEventsDelete::NetQuill}, {EEventsAdd::GraphicItem, EEventsDelete::GraphicItem},
    {EEventsAdd::Config, EEventsDelete::Config},
};

constexpr std::pair<EEventsConnectivityChange, EEventsConnectivityChange> ConnectivityPairs[] = {
    {EEventsConnectivityChange::Connect, EEventsConnectivityChange::Disconnect},
    {EEventsConnectivityChange::JoinGroup, EEventsConnectivityChange::LeaveGroup},
};

}  // namespace

void Announcement::Before(const Event& event, bool undo) const {
    Tell(event, CallBefore, &EventObserver::OnBeforeChange, undo);
}

void Announcement::After(const Event& event, bool undo) const {
    Tell(event, CallAfter, &EventObserver::OnAfterChange, undo);
}

// An attribute edit is told twice: by its own callback, and as a change of the object.
void Announcement::Tell(const Event& event, void (*call)(EventObserver&, const Event&, bool),
                        void (EventObserver::*change)(const Index&, EEventsChange, bool), bool undo) const {
    const auto own = [&](EventObserver& observer) { call(observer, event, undo); };
    const bool ofAttribute =
        event.family == Event::Family::SetAttribute || event.family == Event::Family::RemoveAttribute;
    if (!ofAttribute) return Each(own);
    Each(own, [&](EventObserver& observer) { (observer.*change)(event.object, KindOf<EEventsChange>(event), undo); });
}

Event Inverse(const Event& event) {
    Event inverse = event;
    switch (event.family) {
        case Event::Family::Add:
            inverse.family = Event::Family::Delete;
            for (const KindPair& pair : KindPairs)
                if (static_cast<int>(pair.add) == event.kind) inverse.kind = static_cast<int>(pair.remove);
            break;
        case Event::Family::Delete:
            inverse.family = Event::Family::Add;
            for (const KindPair& pair : KindPairs)
                if (static_cast<int>(pair.remove) == event.kind) inverse.kind = static_cast<int>(pair.add);
            break;
        case Event::Family::Connectivity:
            for (const auto& [on, off] : ConnectivityPairs) {
                if (static_cast<int>(on) == event.kind) inverse.kind = static_cast<int>(off);
                if (static_cast<int>(off) == event.kind) inverse.kind = static_cast<int>(on);
            }
            break;
        case Event::Family::SetAttribute:
        case Event::Family::RemoveAttribute: {
            const bool exists = event.family == Event::Family::SetAttribute;
            inverse.family = event.existed ? Event::Family::SetAttribute : Event::Family::RemoveAttribute;
            inverse.kind =
                static_cast<int>(event.existed ? EEventsChange::SetAttribute : EEventsChange::RemoveAttribute);
            inverse.value = event.before;
            inverse.existed = exists;
            inverse.before = event.value;
            break;
        }
        default:
            break;
    }
    return inverse;
}

}  // namespace Orin::DesignDb
