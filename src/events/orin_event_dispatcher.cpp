#include "events/orin_event_dispatcher.h"

#include <algorithm>
#include <iterator>
#include <list>
#include <map>
#include <memory>
#include <unordered_map>
#include <utility>

#ifdef __GLIBCXX__
#include <cxxabi.h>
#endif

#include "events/detail/client_remover.h"
#include "events/detail/notification_queue.h"
#include "events/detail/orin_client_observer.h"
#include "events/detail/orin_event_observer.h"
#include "events/detail/orin_event_observer_ex.h"
#include "events/detail/this_thread.h"
#include "platform/interface_manager.h"

namespace NQuillUtils::NEvents {

namespace {

using Snapshot = Orin::ContainerT<const Orin::ISnapshot>;

bool IsSameSnapshot(const Snapshot& a, const Snapshot& b) {
    Orin::SnapshotInfo infoA;
    Orin::SnapshotInfo infoB;
    // The handle that the observer was registered with needs no asking: the observer goes whatever the database tells.
    return a.Get() == b.Get() || (a->GetInfo(infoA) && b->GetInfo(infoB) && infoA.index == infoB.index);
}

// Deletes the wrapper now, or leaves that to the callback of it that is still running.
template <class Wrapper>
void LetGo(std::unique_ptr<Wrapper> wrapper) {
    Wrapper* const released = wrapper.release();
    if (released->Use().Release()) delete released;
}

// Whether the database may still call an observer that it was asked to take out.
bool IsStillAttached(const Orin::Result& removed) {
    constexpr Orin::EErrorCode Gone[] = {Orin::EErrorCode::ObjectNotFound, Orin::EErrorCode::NotConnected};
    return !removed && std::none_of(std::begin(Gone), std::end(Gone), [&](Orin::EErrorCode code) {
        return removed.GetErrorCode() == static_cast<int>(code);
    });
}

}  // namespace

class CORINEventDispatcher::CImpl : public Orin::ClientObserver, public InvalidClientProvider {
public:
    CImpl()
        : m_owner(ThisThread()),
          m_eventMutex(std::make_unique<OrinUtils::Mutex>()),
          m_clientMutex(std::make_unique<OrinUtils::Mutex>()) {}

    // The client wrappers stay: connections that outlive the dispatcher go on calling them. So do those that the
    // database did not give back.
    ~CImpl() override {
        m_clients.splice(m_clients.end(), m_refusedClients);
        for (ClientRegistration& registration : m_clients)
            static_cast<void>(registration.wrapper.release());
        for (EventRegistration& registration : m_refusedEvents)
            static_cast<void>(registration.wrapper.release());
    }

    template <class Wrapper, class Observer>
    void AddEvent(const Snapshot* snapshot, Observer* observer, const char* label, int number) {
        if (snapshot == nullptr || observer == nullptr || !snapshot->IsValid()) return;
        if (m_eventByObserver.count(observer) != 0) return;
        // Everything that can fail comes before the database learns of the wrapper.
        std::list<EventRegistration> added;
        if constexpr (std::is_same_v<Wrapper, CORINEventObserver>)
            added.push_back({*snapshot, std::make_unique<Wrapper>(observer, m_eventMutex.get(), m_owner, label, number,
                                                                  AlwaysDirect)});
        else
            added.push_back({*snapshot, std::make_unique<Wrapper>(*snapshot, observer, m_eventMutex.get(), m_owner,
                                                                  label, number, AlwaysDirect)});
        m_eventByObserver.emplace(observer, added.begin());
        m_events.splice(m_events.end(), added);
        (*snapshot)->AddEventObserver(m_events.back().wrapper.get());
    }

    void RemoveEvent(const Snapshot* snapshot, Orin::EventObserver* observer) {
        if (snapshot == nullptr || !*snapshot) return;
        const auto found = m_eventByObserver.find(observer);
        if (found == m_eventByObserver.end()) return;
        const auto registration = found->second;
        if (!IsSameSnapshot(registration->snapshot, *snapshot)) return;
        NotificationQueue::Item remover(
            std::make_unique<ClientRemover<Orin::EventObserver>>(&m_invalidEvents, observer));
        m_invalidEvents.Append(observer);
        // From the handle that it was registered with: the given one may be another client's. Other threads have left
        // the wrapper when this returns, so what they queued stands before the remover.
        const Orin::Result removed = registration->snapshot->RemoveEventObserver(registration->wrapper.get());
        NotificationQueue::Instance().Push(remover);
        m_eventByObserver.erase(found);
        if (IsStillAttached(removed)) {
            registration->wrapper->Forget();
            registration->snapshot.Release();
            m_refusedEvents.splice(m_refusedEvents.end(), m_events, registration);
            return;
        }
        std::unique_ptr<CORINEventObserver> wrapper = std::move(registration->wrapper);
        m_events.erase(registration);
        LetGo(std::move(wrapper));
    }

    void AddClient(Orin::OrinPI* connection, Orin::ClientObserver* observer) {
        if (connection == nullptr || observer == nullptr) return;
        std::list<ClientRegistration> added;
        added.push_back({connection, std::make_unique<CORINClientObserver>(observer, m_owner, m_clientMutex.get())});
        m_clientByObserver.emplace(std::pair(connection, observer), added.begin());
        m_clients.splice(m_clients.end(), added);
        connection->AddClientObserver(m_clients.back().wrapper.get());
    }

    void RemoveClient(Orin::OrinPI* connection, Orin::ClientObserver* observer) {
        const auto found = m_clientByObserver.find(std::pair(connection, observer));
        if (found == m_clientByObserver.end()) return;
        // Of several equal keys the first in the map is the earliest.
        const auto first = m_clientByObserver.lower_bound(found->first);
        const auto registration = first->second;
        NotificationQueue::Item remover(
            std::make_unique<ClientRemover<Orin::ClientObserver>>(&m_invalidClients, observer));
        m_invalidClients.Append(observer);
        const Orin::Result removed = connection->RemoveClientObserver(registration->wrapper.get());
        NotificationQueue::Instance().Push(remover);
        m_clientByObserver.erase(first);
        if (IsStillAttached(removed)) {
            registration->wrapper->Forget();
            m_refusedClients.splice(m_refusedClients.end(), m_clients, registration);
            return;
        }
        std::unique_ptr<CORINClientObserver> wrapper = std::move(registration->wrapper);
        m_clients.erase(registration);
        LetGo(std::move(wrapper));
    }

    // What is taken is kept here and not in a local list: a call that dispatches again goes on with the older items
    // first, so that no remover overtakes the items of its observer.
    void Dispatch() {
        NotificationQueue::Instance().TakeAll(m_taken);
        while (!m_taken.empty()) {
            INotification* const item = m_taken.front();
            m_taken.pop_front();
            try {
                if (item->IsValid(this)) item->Call();
                delete item;
#ifdef __GLIBCXX__
            } catch (const abi::__forced_unwind&) {
                throw;  // the thread is being cancelled
#endif
            } catch (...) {
                // The item is abandoned as it is: nothing is known of its state, and the rest must be delivered.
            }
        }
    }

    void OnErrorAdd(const Orin::String&, const Orin::String&, const Index&, const Index&, Orin::EEventsAdd) override {}
    void OnErrorDelete(const Orin::String&, const Orin::String&, const Index&, const Index&,
                       Orin::EEventsDelete) override {}
    void OnErrorDeleteAll(const Orin::String&, const Orin::String&, const Index&, Orin::EEventsDeleteAll) override {}
    void OnErrorChange(const Orin::String&, const Orin::String&, const Index&, Orin::EEventsChange) override {}
    void OnErrorQuillDataChange(const Orin::String&, const Orin::String&, const Index&, const Index&,
                                Orin::EEventsQuillDataChange) override {}
    void OnErrorConnectivityChange(const Orin::String&, const Orin::String&, const Index&, const Index&,
                                   Orin::EEventsConnectivityChange) override {}
    void OnErrorTransaction(const Orin::String&, const Orin::String&) override {}

private:
    static constexpr bool AlwaysDirect = false;

    struct EventRegistration {
        Snapshot snapshot;
        std::unique_ptr<CORINEventObserver> wrapper;
    };
    struct ClientRegistration {
        Orin::OrinPI* connection;
        std::unique_ptr<CORINClientObserver> wrapper;
    };

    Quill::Platform::ThreadId m_owner;
    std::unique_ptr<OrinUtils::Mutex> m_eventMutex;
    std::unique_ptr<OrinUtils::Mutex> m_clientMutex;
    std::list<EventRegistration> m_events;
    std::list<ClientRegistration> m_clients;
    // Those whose wrappers the database did not give back, and which it may call as long as it lives.
    std::list<EventRegistration> m_refusedEvents;
    std::list<ClientRegistration> m_refusedClients;
    // Where each registration stands, so that many observers cost no search.
    std::unordered_map<Orin::EventObserver*, std::list<EventRegistration>::iterator> m_eventByObserver;
    std::multimap<std::pair<Orin::OrinPI*, Orin::ClientObserver*>, std::list<ClientRegistration>::iterator>
        m_clientByObserver;
    std::list<INotification*> m_taken;
};

CORINEventDispatcher* CORINEventDispatcher::m_pORINEventDispather = nullptr;

CORINEventDispatcher::CORINEventDispatcher() : m_impl(new CImpl) {}
CORINEventDispatcher::CORINEventDispatcher(const CORINEventDispatcher&) = default;
CORINEventDispatcher& CORINEventDispatcher::operator=(const CORINEventDispatcher&) = default;

CORINEventDispatcher::~CORINEventDispatcher() {
    if (m_pORINEventDispather == this) m_pORINEventDispather = nullptr;
    delete m_impl;
}

CORINEventDispatcher* CORINEventDispatcher::Instance() {
    if (m_pORINEventDispather == nullptr) m_pORINEventDispather = new CORINEventDispatcher;
    return m_pORINEventDispather;
}

void CORINEventDispatcher::AddEventObserver(Snapshot* snapshot, Orin::EventObserver* observer, const char* label,
                                            int number) {
    m_impl->AddEvent<CORINEventObserver>(snapshot, observer, label, number);
}

void CORINEventDispatcher::AddEventObserverEx(Snapshot* snapshot, EventObserverEx* observer, const char* label,
                                              int number) {
    m_impl->AddEvent<CORINEventObserverEx>(snapshot, observer, label, number);
}

void CORINEventDispatcher::AddEventObserverNavigator(Snapshot* snapshot, EventObserverNavigator* observer,
                                                     const char* label, int number) {
    m_impl->AddEvent<CORINEventObserverNavigator>(snapshot, observer, label, number);
}

void CORINEventDispatcher::RemoveEventObserver(Snapshot* snapshot, Orin::EventObserver* observer) {
    m_impl->RemoveEvent(snapshot, observer);
}

void CORINEventDispatcher::AddClientObserver(Orin::OrinPI* connection, Orin::ClientObserver* observer) {
    m_impl->AddClient(connection, observer);
}

void CORINEventDispatcher::RemoveClientObserver(Orin::OrinPI* connection, Orin::ClientObserver* observer) {
    m_impl->RemoveClient(connection, observer);
}

void CORINEventDispatcher::DispatchEvents() {
    m_impl->Dispatch();
}

Orin::ClientObserver* CORINEventDispatcher::GetClientObserver() {
    return m_impl;
}

void CORINEventDispatcher::LockEvents() {}
void CORINEventDispatcher::UnlockEvents() {}

const char* IORINEventDispatcher::interfaceName() const noexcept {
    return InterfaceName;
}
IORINEventDispatcher::~IORINEventDispatcher() = default;

namespace {

class Impl_IORINEventDispatcher : public IORINEventDispatcher {
public:
    void AddEventObserver(Snapshot* snapshot, Orin::EventObserver* observer, const char* label, int number) override {
        if (auto* d = CORINEventDispatcher::Instance()) d->AddEventObserver(snapshot, observer, label, number);
    }
    void AddEventObserverEx(Snapshot* snapshot, EventObserverEx* observer, const char* label, int number) override {
        if (auto* d = CORINEventDispatcher::Instance()) d->AddEventObserverEx(snapshot, observer, label, number);
    }
    void AddEventObserverNavigator(Snapshot* snapshot, EventObserverNavigator* observer, const char* label,
                                   int number) override {
        if (auto* d = CORINEventDispatcher::Instance()) d->AddEventObserverNavigator(snapshot, observer, label, number);
    }
    void RemoveEventObserver(Snapshot* snapshot, Orin::EventObserver* observer) override {
        if (auto* d = CORINEventDispatcher::Instance()) d->RemoveEventObserver(snapshot, observer);
    }
    void AddClientObserver(Orin::OrinPI* connection, Orin::ClientObserver* observer) override {
        if (auto* d = CORINEventDispatcher::Instance()) d->AddClientObserver(connection, observer);
    }
    void RemoveClientObserver(Orin::OrinPI* connection, Orin::ClientObserver* observer) override {
        if (auto* d = CORINEventDispatcher::Instance()) d->RemoveClientObserver(connection, observer);
    }
    void LockEvents() override {}
    void UnlockEvents() override {}
};

}  // namespace

CORINEventDispatcherFactory::CORINEventDispatcherFactory() {
    Quill::InterfaceManager::instance().registerInterface(IORINEventDispatcher::InterfaceName, this);
}

CORINEventDispatcherFactory::~CORINEventDispatcherFactory() {
    // A factory that an application has put in this one's place stays registered.
    Quill::InterfaceManager::instance().unRegisterInterface(IORINEventDispatcher::InterfaceName, this);
}

Quill::Interface* CORINEventDispatcherFactory::internalCreate() {
    return new Impl_IORINEventDispatcher;
}

void CORINEventDispatcherFactory::internalRelease(Quill::Interface* object) {
    delete object;
}

EventsDetail::EventDispatcherAnchor::EventDispatcherAnchor() {
    static CORINEventDispatcherFactory factory;
}

}  // namespace NQuillUtils::NEvents
