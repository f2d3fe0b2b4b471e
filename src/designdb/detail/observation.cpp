#include "designdb/detail/observation.h"

#include <condition_variable>

#include "designdb/detail/project.h"

namespace Orin::DesignDb {

namespace {

// The innermost call that the thread is inside.
thread_local const Registration::Visit* t_innermost = nullptr;

}  // namespace

// ---- Registration ----

// A removal that waits, and what its thread is inside meanwhile.
struct Registration::Wait {
    const Registration* target = nullptr;
    const Visit* innermost = nullptr;
    Wait* next = nullptr;
    bool reached = false;
};

// All removals of the process that wait. They are rare, so one lock and one condition do for all.
struct Registration::Waits {
    std::mutex mutex;
    std::condition_variable left;
    Wait* first = nullptr;

    // Never destroyed: observers may be removed in static destructors.
    static Waits& Instance() {
        static Waits* const waits = new Waits;
        return *waits;
    }

    // Whether somebody inside the wait's target waits, perhaps through further ones, for a call of the wait's thread.
    bool WouldNeverEnd(const Wait& wait) noexcept {
        for (Wait* other = first; other != nullptr; other = other->next)
            other->reached = false;
        for (bool more = true; more;) {
            more = false;
            for (Wait* other = first; other != nullptr; other = other->next) {
                if (other->reached) continue;
                other->reached = IsInside(other->innermost, *wait.target);
                for (const Wait* way = first; way != nullptr && !other->reached; way = way->next)
                    other->reached = way->reached && IsInside(other->innermost, *way->target);
                if (!other->reached) continue;
                if (IsInside(wait.innermost, *other->target)) return true;
                more = true;
            }
        }
        return false;
    }
};

Registration::Registration(const Client& owner, std::uint64_t place) noexcept : order(place), client(&owner) {}

Registration::~Registration() = default;

// The count is raised before anybody asks whether the observer was removed, and a removal says so before it reads the
// count: in the single order of these four accesses at least one side sees the other.
Registration::Visit::Visit(Registration& registration) noexcept : m_registration(registration), m_outer(t_innermost) {
    t_innermost = this;
    registration.m_inside.fetch_add(1, std::memory_order_seq_cst);
}

Registration::Visit::~Visit() {
    t_innermost = m_outer;
    m_registration.m_inside.fetch_sub(1, std::memory_order_seq_cst);
    if (!m_registration.IsRemoved()) return;
    Waits& waits = Waits::Instance();
    const std::lock_guard lock(waits.mutex);
    waits.left.notify_all();
}

bool Registration::IsInside(const Visit* innermost, const Registration& registration) noexcept {
    for (const Visit* visit = innermost; visit != nullptr; visit = visit->m_outer)
        if (&visit->m_registration == &registration) return true;
    return false;
}

void Registration::Remove() noexcept {
    m_removed.store(true, std::memory_order_seq_cst);
    std::uint32_t own = 0;
    for (const Visit* visit = t_innermost; visit != nullptr; visit = visit->m_outer)
        if (&visit->m_registration == this) ++own;
    const auto isLeft = [&] { return m_inside.load(std::memory_order_seq_cst) == own; };
    if (isLeft()) return;
    Waits& waits = Waits::Instance();
    std::unique_lock lock(waits.mutex);
    Wait wait{this, t_innermost, nullptr, false};
    if (waits.WouldNeverEnd(wait)) return;
    wait.next = std::exchange(waits.first, &wait);
    waits.left.wait(lock, isLeft);
    Wait** place = &waits.first;
    while (*place != &wait)
        place = &(*place)->next;
    *place = wait.next;
}

void Registration::ReportUnexpected() const noexcept {
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
    const ProjectCore& project = *client->project;
    project.Notify(client.Get(), [&](ClientObserver& observer) { observer.OnErrorUnexpected(project.name, error); });
}

// ---- ObserverList ----

template <class Observer>
Result ObserverList<Observer>::Add(Observer* observer, const Client& client) {
    if (observer == nullptr) return EErrorCode::InvalidArgument;
    const std::lock_guard lock(m_mutex);
    const std::uint64_t order = Last() + 1;
    const auto [place, added] = m_orders.try_emplace({&client, observer}, order);
    if (!added) return EErrorCode::AlreadyExists;
    try {
        m_entries.emplace_hint(m_entries.end(), order, RefPtr<Entry>(new Entry(*observer, client, order)));
    } catch (...) {
        m_orders.erase(place);
        throw;
    }
    m_last.store(order, std::memory_order_release);
    m_count.store(m_entries.size(), std::memory_order_release);
    return {};
}

template <class Observer>
RefPtr<typename ObserverList<Observer>::Entry> ObserverList<Observer>::TakeOut(
    typename std::map<Owner, std::uint64_t>::iterator place) noexcept {
    const auto entry = m_entries.find(place->second);
    RefPtr<Entry> taken = std::move(entry->second);
    m_entries.erase(entry);
    m_orders.erase(place);
    m_count.store(m_entries.size(), std::memory_order_release);
    return taken;
}

template <class Observer>
Result ObserverList<Observer>::Remove(Observer* observer, const Client& client) noexcept {
    RefPtr<Entry> removed;  // goes after the lock: it may be the last to hold the client, and that the list
    {
        const std::lock_guard lock(m_mutex);
        const auto place = m_orders.find({&client, observer});
        if (place == m_orders.end()) return EErrorCode::ObjectNotFound;
        removed = TakeOut(place);
    }
    removed->Remove();
    return {};
}

template <class Observer>
void ObserverList<Observer>::RemoveAll(const Client& client) noexcept {
    for (;;) {
        RefPtr<Entry> removed;
        {
            const std::lock_guard lock(m_mutex);
            const auto place = m_orders.lower_bound({&client, nullptr});
            if (place == m_orders.end() || place->first.first != &client) return;
            removed = TakeOut(place);
        }
        removed->Remove();
    }
}

template <class Observer>
std::size_t ObserverList<Observer>::Next(std::array<RefPtr<Entry>, 8>& some, std::uint64_t after,
                                         std::uint64_t last) const noexcept {
    const std::lock_guard lock(m_mutex);
    std::size_t count = 0;
    for (auto place = m_entries.upper_bound(after); place != m_entries.end() && count < some.size(); ++place) {
        if (place->first > last) break;
        some[count++] = place->second;
    }
    return count;
}

template class ObserverList<EventObserver>;
template class ObserverList<ClientObserver>;

// ---- Announcement ----

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

constexpr std::pair<EEventsConnectivityChange, EEventsConnectivityChange> ConnectivityPairs[] = {
    {EEventsConnectivityChange::Connect, EEventsConnectivityChange::Disconnect},
    {EEventsConnectivityChange::JoinGroup, EEventsConnectivityChange::LeaveGroup},
};

}  // namespace

void Announcement::Before(const Event& event, bool undo) const noexcept {
    Tell(event, CallBefore, &EventObserver::OnBeforeChange, undo);
}

void Announcement::After(const Event& event, bool undo) const noexcept {
    Tell(event, CallAfter, &EventObserver::OnAfterChange, undo);
}

// An attribute edit is told twice: by its own callback, and as a change of the object.
void Announcement::Tell(const Event& event, void (*call)(EventObserver&, const Event&, bool),
                        void (EventObserver::*change)(const Index&, EEventsChange, bool), bool undo) const noexcept {
    const auto own = [&](EventObserver& observer) { call(observer, event, undo); };
    if (!event.IsOfAttribute()) return Each(own);
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
