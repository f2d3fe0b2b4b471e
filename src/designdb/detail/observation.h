// The observers of a snapshot, and how they are called.
#pragma once

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "designdb/detail/event.h"
#include "orin/object.h"
#include "orin/observers.h"

namespace Orin::DesignDb {

class Client;

// One registered observer. It is called by any number of threads at once, which are noted while they are inside.
class Registration {
public:
    Registration(EventObserver& observer, const Client& client) noexcept;
    ~Registration();

    bool Is(const EventObserver* observer, const Client& client) const noexcept {
        return &m_observer == observer && IsOf(client);
    }
    bool IsOf(const Client& client) const noexcept { return m_client.Get() == &client; }

    // Calls the observer unless it was removed. What it throws is reported to the client's own observers. Needs no
    // memory, so that want of it cannot keep an event from an observer.
    template <class Function>
    void Call(Function&& call) noexcept {
        Visit visit;
        if (!Enter(visit)) return;
        try {
            call(m_observer);
        } catch (...) {
            ReportUnexpected();
        }
        Leave(visit);
    }

    // From now on the observer is not called. Returns when no other thread is inside it.
    void Remove() noexcept;

private:
    // A call under way; it stands on the stack of its thread.
    struct Visit {
        std::thread::id thread = std::this_thread::get_id();
        Visit* next = nullptr;
    };

    bool Enter(Visit& visit) noexcept;
    void Leave(const Visit& visit) noexcept;
    void ReportUnexpected() noexcept;

    EventObserver& m_observer;
    // A callback may close and let go of its own client, and throw after that.
    const RefPtr<const Client> m_client;
    std::mutex m_mutex;
    Visit* m_inside = nullptr;
    std::condition_variable m_left;
    bool m_removed = false;
};

using RegistrationList = std::vector<std::shared_ptr<Registration>>;

// All observers of one snapshot, in the order of registration. Any thread may call.
class Observation {
public:
    Result Add(EventObserver* observer, const Client& client);
    Result Remove(EventObserver* observer, const Client& client);
    void RemoveAll(const Client& client) noexcept;

    bool IsObserved() const noexcept { return m_observed.load(std::memory_order_acquire); }
    // The observers as they are now; the list itself never changes.
    std::shared_ptr<const RegistrationList> Current() const;

private:
    void Exchange(RegistrationList list);

    mutable std::mutex m_mutex;
    std::shared_ptr<const RegistrationList> m_list = std::make_shared<RegistrationList>();
    std::atomic<bool> m_observed{false};
};

// One edit as the observers of its beginning hear of it.
class Announcement {
public:
    explicit Announcement(const Observation& observation) : m_list(observation.Current()) {}

    void Before(const Event& event, bool undo) const;
    void After(const Event& event, bool undo) const;

    // Calls every observer with each `call(observer)` in turn; one that throws in the first still gets the others.
    template <class... Functions>
    void Each(const Functions&... calls) const {
        for (const std::shared_ptr<Registration>& registration : *m_list)
            (registration->Call(calls), ...);
    }

private:
    void Tell(const Event& event, void (*call)(EventObserver&, const Event&, bool),
              void (EventObserver::*change)(const Index&, EEventsChange, bool), bool undo) const;

    std::shared_ptr<const RegistrationList> m_list;
};

// The event that tells of the inverse edit.
Event Inverse(const Event& event);

}  // namespace Orin::DesignDb
