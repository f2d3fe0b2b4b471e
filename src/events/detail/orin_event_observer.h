// What the database calls in place of an application's event observer.
#pragma once

#include <memory>
#include <string>

#include "events/detail/borrowed_observer.h"
#include "events/detail/queue_item.h"
#include "events/detail/this_thread.h"
#include "events/detail/wrapper_use.h"

namespace NQuillUtils::NEvents {

// Whether an object is one that the schematic layer cares about; `allowMinor` takes pins, paths and the like for such.
constexpr bool IsRelevantIndex(const Orin::Index& index, bool allowMinor) noexcept {
    constexpr auto types = [](unsigned first, unsigned last) { return (~0ULL >> (63 - last + first)) << first; };
    constexpr std::uint64_t Irrelevant = types(21, 54) | types(62, 63);
    constexpr std::uint64_t Minor = types(8, 8) | types(11, 13);
    const std::uint32_t type = index.Top();
    if (type >= 64) return type != 71;
    return ((allowMinor ? Irrelevant : Irrelevant | Minor) >> type & 1) == 0;
}

// Drops callbacks about irrelevant objects; calls the observer at once on the owner thread, and queues a record on any
// other. The swap and attribute callbacks, and the form of OnBeforeTransaction with a type, never reach the observer.
// Borrows the observer and the mutex.
class CORINEventObserver : public Orin::EventObserver {
public:
    CORINEventObserver(Orin::EventObserver* observer, OrinUtils::Mutex* mutex, Quill::Platform::ThreadId owner,
                       const char* label, int number, bool alwaysDirect);

    Orin::EventObserver* Wrapped() const noexcept { return m_observer.Get(); }
    WrapperUse& Use() noexcept { return m_use; }

    void OnBeforeAdd(const Orin::Index& parent, const Orin::Index& object, Orin::EEventsAdd kind, bool undo) override;
    void OnBeforeDelete(const Orin::Index& parent, const Orin::Index& object, Orin::EEventsDelete kind,
                        bool undo) override;
    void OnBeforeDeleteAll(const Orin::Index& object, Orin::EEventsDeleteAll kind, bool undo) override;
    void OnBeforeChange(const Orin::Index& object, Orin::EEventsChange kind, bool undo) override;
    void OnBeforeQuillDataChange(const Orin::Index& parent, const Orin::Index& object,
                                 Orin::EEventsQuillDataChange kind, bool undo) override;
    void OnBeforeConnectivityChange(const Orin::Index& parent, const Orin::Index& object,
                                    Orin::EEventsConnectivityChange kind, bool undo) override;
    void OnBeforeImport(const Orin::Index& object, Orin::EEventsImport kind, bool undo) override;
    void OnAfterAdd(const Orin::Index& parent, const Orin::Index& object, Orin::EEventsAdd kind, bool undo) override;
    void OnAfterDelete(const Orin::Index& parent, const Orin::Index& object, Orin::EEventsDelete kind,
                       bool undo) override;
    void OnAfterDeleteAll(const Orin::Index& object, Orin::EEventsDeleteAll kind, bool undo) override;
    void OnAfterChange(const Orin::Index& object, Orin::EEventsChange kind, bool undo) override;
    void OnAfterQuillDataChange(const Orin::Index& parent, const Orin::Index& object, Orin::EEventsQuillDataChange kind,
                                bool undo) override;
    void OnAfterConnectivityChange(const Orin::Index& parent, const Orin::Index& object,
                                   Orin::EEventsConnectivityChange kind, bool undo) override;
    void OnAfterImport(const Orin::Index& object, Orin::EEventsImport kind, bool undo) override;
    void OnLock(const Orin::Index& object, const Orin::String& project, const Orin::String& client) override;
    void OnUnLock(const Orin::Index& object, const Orin::String& project, const Orin::String& client) override;
    void OnMultiLock(const Orin::ListT<Orin::Index>& objects, const Orin::String& project,
                     const Orin::String& client) override;
    void OnMultiUnLock(const Orin::ListT<Orin::Index>& objects, const Orin::String& project,
                       const Orin::String& client) override;
    using Orin::EventObserver::OnBeforeTransaction;
    void OnBeforeTransaction(unsigned transaction, bool& veto) override;
    void OnBeforeRollbackTransaction() override;
    void OnAfterTransaction() override;

    // Kept for the binary interface; does nothing.
    virtual void Reserved();

    // Calls the observer no more, although the database goes on calling this wrapper.
    virtual void Forget() noexcept { m_observer.Forget(); }

protected:
    bool DeliversDirectly() const noexcept { return ThisThread() == m_owner || m_alwaysDirect; }

    // Builds a notification from `arguments` and calls it at once or queues it. The wrapper may be gone afterwards.
    template <class Notification, class... Arguments>
    void Notify(const Arguments&... arguments) {
        if (DeliversDirectly()) {
            Notification notification(arguments...);
            const Delivery delivery(*this);
            notification.Call();
        } else {
            QueueItem(m_mutex, [&] { return std::make_unique<Notification>(arguments...); });
        }
    }

private:
    using Type = ORINNOTIFICATIONDATA::Type;

    template <Type type, auto Callback, class... Arguments>
    void Deliver(const Arguments&... arguments);

    BorrowedObserver<Orin::EventObserver> m_observer;
    OrinUtils::Mutex* m_mutex;
    Quill::Platform::ThreadId m_owner;
    std::string m_label;  // told apart in a debugger; nothing else depends on it, nor on the number
    [[maybe_unused]] int m_number;
    bool m_alwaysDirect;
    WrapperUse m_use;
};

}  // namespace NQuillUtils::NEvents
