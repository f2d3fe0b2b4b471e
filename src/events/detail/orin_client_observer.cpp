#include "events/detail/orin_client_observer.h"

#include "events/detail/queue_item.h"

namespace NQuillUtils::NEvents {

using Orin::ClientObserver;
using Orin::Index;
using Orin::String;

template <ORINNOTIFICATIONDATA::Type type, auto Callback, class... Arguments>
void CORINClientObserver::Deliver(const String& project, const String& error, const Arguments&... arguments) {
    if (ThisThread() == m_owner) {
        const Delivery delivery(*this);
        (m_observer.Get()->*Callback)(project, error, arguments...);
    } else if constexpr (sizeof...(arguments) == 0) {
        QueueRecord(m_mutex, type, m_observer.Get(), static_cast<const char*>(project), static_cast<const char*>(error),
                    0);
    } else {
        QueueRecord(m_mutex, type, m_observer.Get(), static_cast<const char*>(project), static_cast<const char*>(error),
                    arguments...);
    }
}

void CORINClientObserver::OnErrorAdd(const String& project, const String& error, const Index& parent,
                                     const Index& object, Orin::EEventsAdd kind) {
    Deliver<Type::OnErrorAdd, &ClientObserver::OnErrorAdd>(project, error, parent, object, kind);
}

void CORINClientObserver::OnErrorDelete(const String& project, const String& error, const Index& parent,
                                        const Index& object, Orin::EEventsDelete kind) {
    Deliver<Type::OnErrorDelete, &ClientObserver::OnErrorDelete>(project, error, parent, object, kind);
}

void CORINClientObserver::OnErrorDeleteAll(const String& project, const String& error, const Index& object,
                                           Orin::EEventsDeleteAll kind) {
    Deliver<Type::OnErrorDeleteAll, &ClientObserver::OnErrorDeleteAll>(project, error, object, kind);
}

void CORINClientObserver::OnErrorChange(const String& project, const String& error, const Index& object,
                                        Orin::EEventsChange kind) {
    Deliver<Type::OnErrorChange, &ClientObserver::OnErrorChange>(project, error, object, kind);
}

void CORINClientObserver::OnErrorQuillDataChange(const String& project, const String& error, const Index& parent,
                                                 const Index& object, Orin::EEventsQuillDataChange kind) {
    Deliver<Type::OnErrorQuillDataChange, &ClientObserver::OnErrorQuillDataChange>(project, error, parent, object,
                                                                                   kind);
}

void CORINClientObserver::OnErrorConnectivityChange(const String& project, const String& error, const Index& parent,
                                                    const Index& object, Orin::EEventsConnectivityChange kind) {
    Deliver<Type::OnErrorConnectivityChange, &ClientObserver::OnErrorConnectivityChange>(project, error, parent, object,
                                                                                         kind);
}

void CORINClientObserver::OnErrorSwap(const String& project, const String& error, const Index& parent,
                                      const Index& first, const Index& second, Orin::EEventsSwap kind) {
    Deliver<Type::OnErrorSwap, &ClientObserver::OnErrorSwap>(project, error, parent, first, second, kind);
}

void CORINClientObserver::OnErrorImport(const String& project, const String& error, const Index& object,
                                        Orin::EEventsImport kind) {
    Deliver<Type::OnErrorImport, &ClientObserver::OnErrorImport>(project, error, object, kind);
}

void CORINClientObserver::OnErrorTransaction(const String& project, const String& error) {
    Deliver<Type::OnErrorTransaction, &ClientObserver::OnErrorTransaction>(project, error);
}

void CORINClientObserver::OnErrorUnexpected(const String& project, const String& error) {
    Deliver<Type::OnErrorUnexpected, &ClientObserver::OnErrorUnexpected>(project, error);
}

void CORINClientObserver::OnWorkingModeChange(Orin::EClientWorkingMode mode) {
    if (ThisThread() == m_owner) {
        const Delivery delivery(*this);
        m_observer->OnWorkingModeChange(mode);
    } else {
        QueueRecord(m_mutex, Type::OnWorkingModeChange, m_observer.Get(), "", "", mode);
    }
}

}  // namespace NQuillUtils::NEvents
