#include "events/detail/orin_event_observer.h"

namespace NQuillUtils::NEvents {

using Orin::EventObserver;
using Orin::Index;

namespace {

// Deletions of these objects are told although their type is not relevant.
constexpr std::uint32_t DeletedAlwaysTold = 0x31;

constexpr bool AreRelevant(const Index& parent, const Index& object, bool allowMinor) noexcept {
    return IsRelevantIndex(parent, allowMinor) && IsRelevantIndex(object, allowMinor);
}

}  // namespace

CORINEventObserver::CORINEventObserver(EventObserver* observer, OrinUtils::Mutex* mutex,
                                       Quill::Platform::ThreadId owner, const char* label, int number,
                                       bool alwaysDirect)
    : m_observer(observer),
      m_mutex(mutex),
      m_owner(owner),
      m_label(label ? label : ""),
      m_number(number),
      m_alwaysDirect(alwaysDirect) {}

template <ORINNOTIFICATIONDATA::Type type, auto Callback, class... Arguments>
void CORINEventObserver::Deliver(const Arguments&... arguments) {
    if (DeliversDirectly()) {
        const Delivery delivery(*this);
        (m_observer.Get()->*Callback)(arguments...);
    } else {
        // Copies, so that the arguments of a direct call can stay in registers.
        QueueRecord(m_mutex, type, m_observer.Get(), Arguments(arguments)...);
    }
}

void CORINEventObserver::OnBeforeAdd(const Index& parent, const Index& object, Orin::EEventsAdd kind, bool undo) {
    if (!AreRelevant(parent, object, false)) return;
    Deliver<Type::OnBeforeAdd, &EventObserver::OnBeforeAdd>(parent, object, kind, undo);
}

void CORINEventObserver::OnBeforeDelete(const Index& parent, const Index& object, Orin::EEventsDelete kind, bool undo) {
    if (!AreRelevant(parent, object, true) && object.Top() != DeletedAlwaysTold) return;
    Deliver<Type::OnBeforeDelete, &EventObserver::OnBeforeDelete>(parent, object, kind, undo);
}

void CORINEventObserver::OnBeforeDeleteAll(const Index& object, Orin::EEventsDeleteAll kind, bool undo) {
    if (!IsRelevantIndex(object, false)) return;
    Deliver<Type::OnBeforeDeleteAll, &EventObserver::OnBeforeDeleteAll>(object, kind, undo);
}

void CORINEventObserver::OnBeforeChange(const Index& object, Orin::EEventsChange kind, bool undo) {
    if (!IsRelevantIndex(object, true)) return;
    const bool renamesBlock = kind == Orin::EEventsChange::Name && object.GetType() == Orin::EObjectType::Block;
    if (!renamesBlock) {
        Deliver<Type::OnBeforeChange, &EventObserver::OnBeforeChange>(object, kind, undo);
        return;
    }
    // The observer is told a second time from the queue, on whatever thread this is: it then sees the block with its
    // new name. Unless the first call has taken it out: nothing would keep this record from an observer that is gone.
    if (DeliversDirectly()) {
        const Delivery delivery(*this);
        m_observer->OnBeforeChange(object, kind, undo);
        if (!m_use.Released()) QueueRecord(m_mutex, Type::OnBeforeChange, m_observer.Get(), object, kind, undo);
    } else {
        QueueRecord(m_mutex, Type::OnBeforeChange, m_observer.Get(), object, kind, undo);
        QueueRecord(m_mutex, Type::OnBeforeChange, m_observer.Get(), object, kind, undo);
    }
}

void CORINEventObserver::OnBeforeQuillDataChange(const Index& parent, const Index& object,
                                                 Orin::EEventsQuillDataChange kind, bool undo) {
    if (!AreRelevant(parent, object, false)) return;
    Deliver<Type::OnBeforeQuillDataChange, &EventObserver::OnBeforeQuillDataChange>(parent, object, kind, undo);
}

void CORINEventObserver::OnBeforeConnectivityChange(const Index& parent, const Index& object,
                                                    Orin::EEventsConnectivityChange kind, bool undo) {
    if (!AreRelevant(parent, object, false)) return;
    Deliver<Type::OnBeforeConnectivityChange, &EventObserver::OnBeforeConnectivityChange>(parent, object, kind, undo);
}

void CORINEventObserver::OnBeforeImport(const Index& object, Orin::EEventsImport kind, bool undo) {
    if (!IsRelevantIndex(object, false)) return;
    Deliver<Type::OnBeforeImport, &EventObserver::OnBeforeImport>(object, kind, undo);
}

void CORINEventObserver::OnAfterAdd(const Index& parent, const Index& object, Orin::EEventsAdd kind, bool undo) {
    if (!AreRelevant(parent, object, false)) return;
    Deliver<Type::OnAfterAdd, &EventObserver::OnAfterAdd>(parent, object, kind, undo);
}

void CORINEventObserver::OnAfterDelete(const Index& parent, const Index& object, Orin::EEventsDelete kind, bool undo) {
    if (!AreRelevant(parent, object, true)) return;
    Deliver<Type::OnAfterDelete, &EventObserver::OnAfterDelete>(parent, object, kind, undo);
}

void CORINEventObserver::OnAfterDeleteAll(const Index& object, Orin::EEventsDeleteAll kind, bool undo) {
    if (!IsRelevantIndex(object, false)) return;
    Deliver<Type::OnAfterDeleteAll, &EventObserver::OnAfterDeleteAll>(object, kind, undo);
}

void CORINEventObserver::OnAfterChange(const Index& object, Orin::EEventsChange kind, bool undo) {
    if (!IsRelevantIndex(object, true)) return;
    Deliver<Type::OnAfterChange, &EventObserver::OnAfterChange>(object, kind, undo);
}

void CORINEventObserver::OnAfterQuillDataChange(const Index& parent, const Index& object,
                                                Orin::EEventsQuillDataChange kind, bool undo) {
    if (!AreRelevant(parent, object, false)) return;
    Deliver<Type::OnAfterQuillDataChange, &EventObserver::OnAfterQuillDataChange>(parent, object, kind, undo);
}

void CORINEventObserver::OnAfterConnectivityChange(const Index& parent, const Index& object,
                                                   Orin::EEventsConnectivityChange kind, bool undo) {
    if (!AreRelevant(parent, object, false)) return;
    Deliver<Type::OnAfterConnectivityChange, &EventObserver::OnAfterConnectivityChange>(parent, object, kind, undo);
}

void CORINEventObserver::OnAfterImport(const Index& object, Orin::EEventsImport kind, bool undo) {
    if (!IsRelevantIndex(object, false)) return;
    Deliver<Type::OnAfterImport, &EventObserver::OnAfterImport>(object, kind, undo);
}

// Locks are told of every object, unlocks of relevant ones: applications rely on the difference.
void CORINEventObserver::OnLock(const Index& object, const Orin::String& project, const Orin::String& client) {
    Deliver<Type::OnLock, &EventObserver::OnLock>(object, project, client);
}

void CORINEventObserver::OnUnLock(const Index& object, const Orin::String& project, const Orin::String& client) {
    if (!IsRelevantIndex(object, true)) return;
    Deliver<Type::OnUnLock, &EventObserver::OnUnLock>(object, project, client);
}

void CORINEventObserver::OnMultiLock(const Orin::ListT<Index>& objects, const Orin::String& project,
                                     const Orin::String& client) {
    Deliver<Type::OnMultiLock, &EventObserver::OnMultiLock>(objects, project, client);
}

void CORINEventObserver::OnMultiUnLock(const Orin::ListT<Index>& objects, const Orin::String& project,
                                       const Orin::String& client) {
    Deliver<Type::OnMultiUnLock, &EventObserver::OnMultiUnLock>(objects, project, client);
}

void CORINEventObserver::OnBeforeTransaction(unsigned transaction, bool& veto) {
    if (DeliversDirectly()) {
        const Delivery delivery(*this);
        m_observer->OnBeforeTransaction(transaction, veto);
    } else {
        QueueRecord(m_mutex, Type::OnBeforeTransaction, m_observer.Get(), static_cast<unsigned long>(transaction));
    }
}

void CORINEventObserver::OnBeforeRollbackTransaction() {
    if (DeliversDirectly()) {
        const Delivery delivery(*this);
        m_observer->OnBeforeRollbackTransaction();
    } else {
        QueueRecord(m_mutex, Type::OnBeforeRollbackTransaction, m_observer.Get(), 0UL);
    }
}

void CORINEventObserver::OnAfterTransaction() {
    if (DeliversDirectly()) {
        const Delivery delivery(*this);
        m_observer->OnAfterTransaction();
    } else {
        QueueRecord(m_mutex, Type::OnAfterTransaction, m_observer.Get(), 0UL);
    }
}

void CORINEventObserver::Reserved() {}

}  // namespace NQuillUtils::NEvents
