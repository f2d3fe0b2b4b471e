// What the database calls in place of an application's client observer.
#pragma once

#include "attributes/utils_exception.h"
#include "events/detail/borrowed_observer.h"
#include "events/detail/this_thread.h"
#include "events/detail/wrapper_use.h"
#include "events/orin_notification_data.h"

namespace NQuillUtils::NEvents {

// Calls the observer at once on the owner thread, and queues a record on any other. The attribute errors and what
// concerns backups, save points and constraints never reach the observer. Borrows the observer and the mutex.
class CORINClientObserver : public Orin::ClientObserver {
public:
    CORINClientObserver(Orin::ClientObserver* observer, Quill::Platform::ThreadId owner,
                        OrinUtils::Mutex* mutex) noexcept
        : m_owner(owner), m_observer(observer), m_mutex(mutex) {}

    WrapperUse& Use() noexcept { return m_use; }
    // Calls the observer no more, although the database goes on calling this wrapper.
    void Forget() noexcept { m_observer.Forget(); }

    void OnErrorAdd(const Orin::String& project, const Orin::String& error, const Orin::Index& parent,
                    const Orin::Index& object, Orin::EEventsAdd kind) override;
    void OnErrorDelete(const Orin::String& project, const Orin::String& error, const Orin::Index& parent,
                       const Orin::Index& object, Orin::EEventsDelete kind) override;
    void OnErrorDeleteAll(const Orin::String& project, const Orin::String& error, const Orin::Index& object,
                          Orin::EEventsDeleteAll kind) override;
    void OnErrorChange(const Orin::String& project, const Orin::String& error, const Orin::Index& object,
                       Orin::EEventsChange kind) override;
    void OnErrorQuillDataChange(const Orin::String& project, const Orin::String& error, const Orin::Index& parent,
                                const Orin::Index& object, Orin::EEventsQuillDataChange kind) override;
    void OnErrorConnectivityChange(const Orin::String& project, const Orin::String& error, const Orin::Index& parent,
                                   const Orin::Index& object, Orin::EEventsConnectivityChange kind) override;
    void OnErrorSwap(const Orin::String& project, const Orin::String& error, const Orin::Index& parent,
                     const Orin::Index& first, const Orin::Index& second, Orin::EEventsSwap kind) override;
    void OnErrorImport(const Orin::String& project, const Orin::String& error, const Orin::Index& object,
                       Orin::EEventsImport kind) override;
    void OnErrorTransaction(const Orin::String& project, const Orin::String& error) override;
    void OnErrorUnexpected(const Orin::String& project, const Orin::String& error) override;
    void OnWorkingModeChange(Orin::EClientWorkingMode mode) override;

private:
    using Type = ORINNOTIFICATIONDATA::Type;

    // With the event kind, or 0, behind the callback's other arguments for the record.
    template <Type type, auto Callback, class... Arguments>
    void Deliver(const Orin::String& project, const Orin::String& error, const Arguments&... arguments);

    Quill::Platform::ThreadId m_owner;
    BorrowedObserver<Orin::ClientObserver> m_observer;
    OrinUtils::Mutex* m_mutex;
    WrapperUse m_use;
};

}  // namespace NQuillUtils::NEvents
