// Observers of snapshots and of clients, and how they are called.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <map>
#include <mutex>
#include <utility>

#include "designdb/detail/event.h"
#include "orin/object.h"
#include "orin/observers.h"

namespace Orin::DesignDb {

class Client;

// One observer that a client registered. It is called by any number of threads at once; each thread keeps a chain of
// the calls that it is inside, so that a removal knows which of them are its own and cannot be waited for.
class Registration : public Counted {
public:
    Registration(const Client& owner, std::uint64_t place) noexcept;
    ~Registration() override;

    // A call under way; it stands on the stack of its thread.
    class Visit {
    public:
        explicit Visit(Registration& registration) noexcept;
        ~Visit();
        Visit(const Visit&) = delete;
        Visit& operator=(const Visit&) = delete;

    private:
        friend class Registration;
        Registration& m_registration;
        const Visit* const m_outer;
    };

    // True once the observer must not be called. A removal that comes after the answer false, asked inside a visit,
    // waits for the visit's end.
    bool IsRemoved() const noexcept { return m_removed.load(std::memory_order_seq_cst); }

    // From now on the observer is not called. Returns when no other thread is inside it. One wait is given up: when it
    // would be for a thread that waits, perhaps through further ones, for a call that this thread is inside.
    void Remove() noexcept;

    // Tells the client's own observers that the observer has thrown; to be called while the exception is handled.
    void ReportUnexpected() const noexcept;

    const std::uint64_t order;  // ascending in the order of registration
    // A callback may close and let go of its own client, and throw after that.
    const RefPtr<const Client> client;

private:
    struct Wait;
    struct Waits;

    static bool IsInside(const Visit* innermost, const Registration& registration) noexcept;

    std::atomic<std::uint32_t> m_inside{0};
    std::atomic<bool> m_removed{false};
};

// The observers of one kind, in the order of registration. Any thread may call. Going through them needs no memory, so
// that want of it cannot keep an event from an observer.
template <class Observer>
class ObserverList {
public:
    class Entry final : public Registration {
    public:
        Entry(Observer& called, const Client& owner, std::uint64_t place) noexcept
            : Registration(owner, place), observer(called) {}

        // Calls the observer with each `call(observer)` in turn, unless it was removed. One that throws in the first
        // still gets the others.
        template <class... Functions>
        void Call(const Functions&... calls) noexcept {
            const Visit visit(*this);
            (CallOne(calls), ...);
        }

        Observer& observer;

    private:
        template <class Function>
        void CallOne(const Function& call) noexcept {
            if (IsRemoved()) return;
            try {
                call(observer);
            } catch (...) {
                // What a client's observer throws there is nobody left to tell of.
                if constexpr (std::is_same_v<Observer, EventObserver>) ReportUnexpected();
            }
        }
    };

    // InvalidArgument for null, AlreadyExists when the client registered it. Throws std::bad_alloc with nothing
    // changed.
    Result Add(Observer* observer, const Client& client);
    // ObjectNotFound when the client has not registered it; otherwise returns as Registration::Remove does.
    Result Remove(Observer* observer, const Client& client) noexcept;
    void RemoveAll(const Client& client) noexcept;

    bool IsEmpty() const noexcept { return m_count.load(std::memory_order_acquire) == 0; }

    // The order of the observer that came last so far.
    std::uint64_t Last() const noexcept { return m_last.load(std::memory_order_acquire); }
    // Calls visit(entry) for each observer that came no later than `last` and is still there.
    template <class Visit>
    void ForEach(std::uint64_t last, const Visit& visit) const {
        std::array<RefPtr<Entry>, 8> some;
        for (std::uint64_t seen = 0;;) {
            const std::size_t count = Next(some, seen, last);
            for (std::size_t i = 0; i < count; ++i)
                visit(*some[i]);
            if (count < some.size()) return;
            seen = some.back()->order;
        }
    }

private:
    using Owner = std::pair<const Client*, const Observer*>;

    std::size_t Next(std::array<RefPtr<Entry>, 8>& some, std::uint64_t after, std::uint64_t last) const noexcept;
    RefPtr<Entry> TakeOut(typename std::map<Owner, std::uint64_t>::iterator place) noexcept;

    mutable std::mutex m_mutex;
    std::map<std::uint64_t, RefPtr<Entry>> m_entries;  // by order
    std::map<Owner, std::uint64_t> m_orders;
    std::atomic<std::uint64_t> m_last{0};
    std::atomic<std::size_t> m_count{0};
};

extern template class ObserverList<EventObserver>;
extern template class ObserverList<ClientObserver>;

using Observation = ObserverList<EventObserver>;

// One edit as the observers of its beginning hear of it.
class Announcement {
public:
    explicit Announcement(const Observation& observation) noexcept
        : m_observation(observation), m_last(observation.Last()) {}

    void Before(const Event& event, bool undo) const noexcept;
    void After(const Event& event, bool undo) const noexcept;

    // Calls every observer with each `call(observer)` in turn.
    template <class... Functions>
    void Each(const Functions&... calls) const noexcept {
        if (m_observation.IsEmpty()) return;
        m_observation.ForEach(m_last, [&](Observation::Entry& entry) { entry.Call(calls...); });
    }

private:
    void Tell(const Event& event, void (*call)(EventObserver&, const Event&, bool),
              void (EventObserver::*change)(const Index&, EEventsChange, bool), bool undo) const noexcept;

    const Observation& m_observation;
    const std::uint64_t m_last;
};

// The event that tells of the inverse edit.
Event Inverse(const Event& event);

}  // namespace Orin::DesignDb
