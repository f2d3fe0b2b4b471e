// Attaches the application's observers to the design database and calls them on one thread.
//
// The database calls back on whatever thread made a change. An observer registered here is called at once when that is
// the dispatcher's owner thread; otherwise the callback is queued until the owner thread calls DispatchEvents.
#pragma once

#include "events/event_observers.h"
#include "orin/orin_pi.h"
#include "platform/interface.h"
#include "quillutils_export.h"

namespace NQuillUtils::NEvents {

// One for the process. All operations are for the owner thread: the one that first called Instance. Nothing is
// reported: an empty or dead snapshot, an unknown observer, a null pointer and what the database refuses are ignored.
// Observers, and the connections they are registered on, are borrowed until they are removed. A removed observer is
// not called any more, whatever is queued for it, and may be destroyed or registered anew; an observer may remove
// itself and others while it is being called.
class QUILLUTILS_EXPORT CORINEventDispatcher {
public:
    // An observer can be registered once only, whatever the snapshot: a second registration is ignored. `label` and
    // `number` are for diagnostics; a null label is "".
    virtual void AddEventObserver(Orin::ContainerT<const Orin::ISnapshot>* snapshot, Orin::EventObserver* observer,
                                  const char* label, int number);
    virtual void AddEventObserverEx(Orin::ContainerT<const Orin::ISnapshot>* snapshot, EventObserverEx* observer,
                                    const char* label, int number);
    virtual void AddEventObserverNavigator(Orin::ContainerT<const Orin::ISnapshot>* snapshot,
                                           EventObserverNavigator* observer, const char* label, int number);
    // Nothing happens when the observer is registered for another snapshot.
    virtual void RemoveEventObserver(Orin::ContainerT<const Orin::ISnapshot>* snapshot, Orin::EventObserver* observer);

    // The same observer may be registered several times; each removal takes out the earliest.
    virtual void AddClientObserver(Orin::OrinPI* connection, Orin::ClientObserver* observer);
    virtual void RemoveClientObserver(Orin::OrinPI* connection, Orin::ClientObserver* observer);

    // Makes the queued calls in the order of their arrival; calls queued meanwhile wait for the next time. An observer
    // that throws does not keep the rest from being called. An observer may dispatch: the order stays.
    void DispatchEvents();

    // A client observer that does nothing, for a connection whose errors are of no interest.
    Orin::ClientObserver* GetClientObserver();

    // Do nothing; kept for callers.
    void LockEvents();
    void UnlockEvents();

    // Made by the first call, whose thread becomes the owner, and not destroyed by the library. The first call is not
    // guarded against another one at the same time. Throws OrinUtils::UtilsException when there is no mutex to be had.
    static CORINEventDispatcher* Instance();

protected:
    CORINEventDispatcher();
    // Copies share one state; one of them at most may be destroyed, as the last thing that is done with any.
    CORINEventDispatcher(const CORINEventDispatcher&);
    CORINEventDispatcher& operator=(const CORINEventDispatcher&);
    // Leaves the observers attached to their snapshots: the snapshots go first, and what is queued is dispatched.
    virtual ~CORINEventDispatcher();

    static CORINEventDispatcher* m_pORINEventDispather;

private:
    class CImpl;
    CImpl* m_impl;
};

// The dispatcher as a service of the interface manager. Each operation is that of the dispatcher, which the first of
// them makes; the last two do nothing.
class QUILLUTILS_EXPORT IORINEventDispatcher : public Quill::Interface {
public:
    static constexpr const char* InterfaceName = "IORINEventDispatcher";

    const char* interfaceName() const noexcept override;
    ~IORINEventDispatcher() override;

    virtual void AddEventObserver(Orin::ContainerT<const Orin::ISnapshot>* snapshot, Orin::EventObserver* observer,
                                  const char* label, int number) = 0;
    virtual void AddEventObserverEx(Orin::ContainerT<const Orin::ISnapshot>* snapshot, EventObserverEx* observer,
                                    const char* label, int number) = 0;
    virtual void AddEventObserverNavigator(Orin::ContainerT<const Orin::ISnapshot>* snapshot,
                                           EventObserverNavigator* observer, const char* label, int number) = 0;
    virtual void RemoveEventObserver(Orin::ContainerT<const Orin::ISnapshot>* snapshot,
                                     Orin::EventObserver* observer) = 0;
    virtual void AddClientObserver(Orin::OrinPI* connection, Orin::ClientObserver* observer) = 0;
    virtual void RemoveClientObserver(Orin::OrinPI* connection, Orin::ClientObserver* observer) = 0;
    virtual void LockEvents() = 0;
    virtual void UnlockEvents() = 0;
};

// Registered under IORINEventDispatcher::InterfaceName from its construction to its destruction; the library makes one
// when it is loaded. Each internalCreate makes an object, which internalRelease deletes.
class QUILLUTILS_EXPORT CORINEventDispatcherFactory : public Quill::InterfaceFactory {
public:
    CORINEventDispatcherFactory();
    ~CORINEventDispatcherFactory() override;

    Quill::Interface* internalCreate() override;
    void internalRelease(Quill::Interface* object) override;
};

namespace EventsDetail {

// Makes the process's factory when it does not exist yet.
class QUILLUTILS_EXPORT EventDispatcherAnchor {
public:
    EventDispatcherAnchor();
};

// A static library gives up only the members that something refers to, and nothing refers to an object that registers
// itself. So everyone who can use the service, which takes this header, refers to it here.
static const EventDispatcherAnchor eventDispatcherAnchor;

}  // namespace EventsDetail

}  // namespace NQuillUtils::NEvents
