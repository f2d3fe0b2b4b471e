// A plain database callback, frozen to be replayed later.
#pragma once

#include <cstdint>
#include <string>

#include "events/notification.h"
#include "orin/observers.h"

namespace NQuillUtils::NEvents {

// One callback with copies of its arguments. It borrows the observer, which need not live any more when the record is
// asked IsValid or destroyed. Copies call the same observer.
//
// The swap and attribute callbacks, and those of a client's backups, save points and constraints, have no record.
class QUILLUTILS_EXPORT ORINNOTIFICATIONDATA : public INotification {
public:
    // The callback of that name. The event observer's come first, OnErrorAdd is the first of the client observer's.
    // Any value is taken; one outside the list calls nothing.
    enum class Type : std::uint32_t {
        OnBeforeAdd = 0,
        OnBeforeDelete = 1,
        OnBeforeDeleteAll = 2,
        OnBeforeChange = 3,
        OnBeforeQuillDataChange = 4,
        OnBeforeConnectivityChange = 5,
        OnBeforeImport = 6,
        OnAfterAdd = 7,
        OnAfterDelete = 8,
        OnAfterDeleteAll = 9,
        OnAfterChange = 10,
        OnAfterQuillDataChange = 11,
        OnAfterConnectivityChange = 12,
        OnAfterImport = 13,
        OnLock = 14,
        OnUnLock = 15,
        OnMultiLock = 16,
        OnMultiUnLock = 17,
        OnBeforeTransaction = 18,  // the form without a transaction type
        OnBeforeRollbackTransaction = 19,
        OnAfterTransaction = 20,
        OnErrorAdd = 21,
        OnErrorDelete = 22,
        OnErrorDeleteAll = 23,
        OnErrorChange = 24,
        OnErrorQuillDataChange = 25,
        OnErrorConnectivityChange = 26,
        OnErrorSwap = 27,
        OnErrorImport = 28,
        OnErrorTransaction = 29,
        OnErrorUnexpected = 30,
        OnWorkingModeChange = 31,
    };

    // The arguments in the order of the callback; `code` is its event kind or, of OnWorkingModeChange, the mode. What a
    // callback does not take stays empty. A null client text counts as "". A null observer is allowed: nothing is
    // called.
    ORINNOTIFICATIONDATA(Type type, Orin::EventObserver* observer, const Orin::Index& object, int code, bool flag);
    ORINNOTIFICATIONDATA(Type type, Orin::EventObserver* observer, const Orin::Index& parent, const Orin::Index& object,
                         int code, bool flag);
    ORINNOTIFICATIONDATA(Type type, Orin::EventObserver* observer, const Orin::Index& object,
                         const Orin::String& firstText, const Orin::String& secondText);
    ORINNOTIFICATIONDATA(Type type, Orin::EventObserver* observer, const Orin::ListT<Orin::Index>& objects,
                         const Orin::String& firstText, const Orin::String& secondText);
    // Of the transaction's number 32 bits are kept.
    ORINNOTIFICATIONDATA(Type type, Orin::EventObserver* observer, unsigned long transaction);

    ORINNOTIFICATIONDATA(Type type, Orin::ClientObserver* observer, const char* firstText, const char* secondText,
                         int code);
    ORINNOTIFICATIONDATA(Type type, Orin::ClientObserver* observer, const char* firstText, const char* secondText,
                         const Orin::Index& object, int code);
    ORINNOTIFICATIONDATA(Type type, Orin::ClientObserver* observer, const char* firstText, const char* secondText,
                         const Orin::Index& parent, const Orin::Index& object, int code);
    ORINNOTIFICATIONDATA(Type type, Orin::ClientObserver* observer, const char* firstText, const char* secondText,
                         const Orin::Index& first, const Orin::Index& second, const Orin::Index& third, int code);
    ORINNOTIFICATIONDATA(Type type, Orin::ClientObserver* observer);

    ORINNOTIFICATIONDATA(const ORINNOTIFICATIONDATA&);
    ORINNOTIFICATIONDATA& operator=(const ORINNOTIFICATIONDATA&);
    ~ORINNOTIFICATIONDATA() override;

    // A transaction cannot be vetoed any more: the flag that OnBeforeTransaction is given starts false and is dropped.
    void Call() override;
    bool IsValid(const IInvalidClientProvider* provider) const override;

private:
    struct Replay;

    Type m_type;
    int m_code = 0;
    Orin::Index m_first;
    Orin::Index m_second;  // the object that the callback is about
    Orin::Index m_third;
    Orin::ListT<Orin::Index> m_objects;
    Orin::String m_secondText;
    Orin::String m_firstText;
    bool m_flag = false;
    std::uint32_t m_transaction = 0;
    Orin::EventObserver* m_eventObserver = nullptr;
    std::string m_firstClientText;
    std::string m_secondClientText;
    Orin::ClientObserver* m_clientObserver = nullptr;
};

}  // namespace NQuillUtils::NEvents
