#include "events/orin_notification_data.h"

#include <type_traits>

#include "events/detail/invalid_observers.h"

namespace NQuillUtils::NEvents {

using Orin::ClientObserver;
using Orin::EventObserver;

INotification::~INotification() = default;

namespace {

constexpr auto LastEventType = ORINNOTIFICATIONDATA::Type::OnAfterTransaction;
constexpr auto LastType = ORINNOTIFICATIONDATA::Type::OnWorkingModeChange;

// The stored event code as whichever enumeration the callback takes.
struct Code {
    int value;
    template <class E, class = std::enable_if_t<std::is_enum_v<E>>>
    operator E() const {
        return static_cast<E>(value);
    }
};

std::string TextOrEmpty(const char* text) {
    return text ? text : "";
}

}  // namespace

// How each callback is made from a record: one function for each list of arguments, one row for each type.
struct ORINNOTIFICATIONDATA::Replay {
    using Data = const ORINNOTIFICATIONDATA;
    using Function = void (*)(Data&);

    template <auto Callback>
    static void Object(Data& d) {
        (d.m_eventObserver->*Callback)(d.m_second, Code{d.m_code}, d.m_flag);
    }
    template <auto Callback>
    static void Pair(Data& d) {
        (d.m_eventObserver->*Callback)(d.m_first, d.m_second, Code{d.m_code}, d.m_flag);
    }
    template <auto Callback>
    static void Lock(Data& d) {
        (d.m_eventObserver->*Callback)(d.m_second, d.m_firstText, d.m_secondText);
    }
    template <auto Callback>
    static void MultiLock(Data& d) {
        (d.m_eventObserver->*Callback)(d.m_objects, d.m_firstText, d.m_secondText);
    }
    static void Transaction(Data& d) {
        bool veto = false;
        d.m_eventObserver->OnBeforeTransaction(d.m_transaction, veto);
    }
    template <auto Callback>
    static void Bare(Data& d) {
        (d.m_eventObserver->*Callback)();
    }

    // The client's texts are handed over as texts of the database, which live for the call.
    static Orin::String First(Data& d) { return Orin::String(d.m_firstClientText.c_str()); }
    static Orin::String Second(Data& d) { return Orin::String(d.m_secondClientText.c_str()); }

    template <auto Callback>
    static void ObjectError(Data& d) {
        (d.m_clientObserver->*Callback)(First(d), Second(d), d.m_second, Code{d.m_code});
    }
    template <auto Callback>
    static void PairError(Data& d) {
        (d.m_clientObserver->*Callback)(First(d), Second(d), d.m_first, d.m_second, Code{d.m_code});
    }
    static void SwapError(Data& d) {
        d.m_clientObserver->OnErrorSwap(First(d), Second(d), d.m_first, d.m_second, d.m_third, Code{d.m_code});
    }
    template <auto Callback>
    static void BareError(Data& d) {
        (d.m_clientObserver->*Callback)(First(d), Second(d));
    }
    static void WorkingMode(Data& d) { d.m_clientObserver->OnWorkingModeChange(Code{d.m_code}); }

    // By type, in its order.
    static constexpr Function Table[] = {
        &Pair<&EventObserver::OnBeforeAdd>,
        &Pair<&EventObserver::OnBeforeDelete>,
        &Object<&EventObserver::OnBeforeDeleteAll>,
        &Object<&EventObserver::OnBeforeChange>,
        &Pair<&EventObserver::OnBeforeQuillDataChange>,
        &Pair<&EventObserver::OnBeforeConnectivityChange>,
        &Object<&EventObserver::OnBeforeImport>,
        &Pair<&EventObserver::OnAfterAdd>,
        &Pair<&EventObserver::OnAfterDelete>,
        &Object<&EventObserver::OnAfterDeleteAll>,
        &Object<&EventObserver::OnAfterChange>,
        &Pair<&EventObserver::OnAfterQuillDataChange>,
        &Pair<&EventObserver::OnAfterConnectivityChange>,
        &Object<&EventObserver::OnAfterImport>,
        &Lock<&EventObserver::OnLock>,
        &Lock<&EventObserver::OnUnLock>,
        &MultiLock<&EventObserver::OnMultiLock>,
        &MultiLock<&EventObserver::OnMultiUnLock>,
        &Transaction,
        &Bare<&EventObserver::OnBeforeRollbackTransaction>,
        &Bare<&EventObserver::OnAfterTransaction>,
        &PairError<&ClientObserver::OnErrorAdd>,
        &PairError<&ClientObserver::OnErrorDelete>,
        &ObjectError<&ClientObserver::OnErrorDeleteAll>,
        &ObjectError<&ClientObserver::OnErrorChange>,
        &PairError<&ClientObserver::OnErrorQuillDataChange>,
        &PairError<&ClientObserver::OnErrorConnectivityChange>,
        &SwapError,
        &ObjectError<&ClientObserver::OnErrorImport>,
        &BareError<&ClientObserver::OnErrorTransaction>,
        &BareError<&ClientObserver::OnErrorUnexpected>,
        &WorkingMode,
    };
    static_assert(std::size(Table) == static_cast<std::size_t>(LastType) + 1);
};

ORINNOTIFICATIONDATA::ORINNOTIFICATIONDATA(Type type, EventObserver* observer, const Orin::Index& object, int code,
                                           bool flag)
    : m_type(type), m_code(code), m_second(object), m_flag(flag), m_eventObserver(observer) {}

ORINNOTIFICATIONDATA::ORINNOTIFICATIONDATA(Type type, EventObserver* observer, const Orin::Index& parent,
                                           const Orin::Index& object, int code, bool flag)
    : m_type(type), m_code(code), m_first(parent), m_second(object), m_flag(flag), m_eventObserver(observer) {}

ORINNOTIFICATIONDATA::ORINNOTIFICATIONDATA(Type type, EventObserver* observer, const Orin::Index& object,
                                           const Orin::String& firstText, const Orin::String& secondText)
    : m_type(type), m_second(object), m_secondText(secondText), m_firstText(firstText), m_eventObserver(observer) {}

ORINNOTIFICATIONDATA::ORINNOTIFICATIONDATA(Type type, EventObserver* observer, const Orin::ListT<Orin::Index>& objects,
                                           const Orin::String& firstText, const Orin::String& secondText)
    : m_type(type), m_objects(objects), m_secondText(secondText), m_firstText(firstText), m_eventObserver(observer) {}

ORINNOTIFICATIONDATA::ORINNOTIFICATIONDATA(Type type, EventObserver* observer, unsigned long transaction)
    : m_type(type), m_transaction(static_cast<std::uint32_t>(transaction)), m_eventObserver(observer) {}

ORINNOTIFICATIONDATA::ORINNOTIFICATIONDATA(Type type, ClientObserver* observer, const char* firstText,
                                           const char* secondText, int code)
    : ORINNOTIFICATIONDATA(type, observer, firstText, secondText, Orin::Index(), code) {}

ORINNOTIFICATIONDATA::ORINNOTIFICATIONDATA(Type type, ClientObserver* observer, const char* firstText,
                                           const char* secondText, const Orin::Index& object, int code)
    : ORINNOTIFICATIONDATA(type, observer, firstText, secondText, Orin::Index(), object, code) {}

ORINNOTIFICATIONDATA::ORINNOTIFICATIONDATA(Type type, ClientObserver* observer, const char* firstText,
                                           const char* secondText, const Orin::Index& parent, const Orin::Index& object,
                                           int code)
    : ORINNOTIFICATIONDATA(type, observer, firstText, secondText, parent, object, Orin::Index(), code) {}

ORINNOTIFICATIONDATA::ORINNOTIFICATIONDATA(Type type, ClientObserver* observer, const char* firstText,
                                           const char* secondText, const Orin::Index& first, const Orin::Index& second,
                                           const Orin::Index& third, int code)
    : m_type(type),
      m_code(code),
      m_first(first),
      m_second(second),
      m_third(third),
      m_firstClientText(TextOrEmpty(firstText)),
      m_secondClientText(TextOrEmpty(secondText)),
      m_clientObserver(observer) {}

ORINNOTIFICATIONDATA::ORINNOTIFICATIONDATA(Type type, ClientObserver* observer)
    : m_type(type), m_clientObserver(observer) {}

ORINNOTIFICATIONDATA::ORINNOTIFICATIONDATA(const ORINNOTIFICATIONDATA&) = default;
ORINNOTIFICATIONDATA& ORINNOTIFICATIONDATA::operator=(const ORINNOTIFICATIONDATA&) = default;
ORINNOTIFICATIONDATA::~ORINNOTIFICATIONDATA() = default;

void ORINNOTIFICATIONDATA::Call() {
    if (m_type > LastType) return;
    if (m_type <= LastEventType ? m_eventObserver == nullptr : m_clientObserver == nullptr) return;
    Replay::Table[static_cast<std::size_t>(m_type)](*this);
}

bool ORINNOTIFICATIONDATA::IsValid(const IInvalidClientProvider* provider) const {
    if (m_type > LastEventType && m_type <= LastType) return !IsListed(*provider, m_clientObserver);
    return !IsListed(*provider, m_eventObserver);
}

}  // namespace NQuillUtils::NEvents
