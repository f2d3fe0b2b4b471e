// The schematic events, with what they carry. Each reads its payload from the database when it is built, because the
// object may be gone when it is called. What cannot be read is empty; only a block that is not found is raised, as the
// database's Result.
#pragma once

#include <cstdint>
#include <string>

#include "events/detail/invalid_observers.h"
#include "events/event_observers.h"
#include "orin/uid_manager.h"

namespace NQuillUtils::NEvents {

using Orin::Index;
using Orin::IUIDManager;
using IndexList = Orin::ListT<Index>;

// The block of that index. Throws the failed Result.
Orin::ContainerT<const Orin::IBlock> RequireBlock(const IUIDManager& objects, const Index& block);

// Calls one observer, which it borrows; IsValid does not touch it.
template <class Observer>
class ObserverNotification : public INotification {
public:
    bool IsValid(const IInvalidClientProvider* provider) const override {
        return !IsListed<Orin::EventObserver>(*provider, m_observer);
    }

protected:
    explicit ObserverNotification(Observer* observer) noexcept : m_observer(observer) {}
    Observer* m_observer;
};

// An object with the block that owns it and its label.
struct LabelledObject {
    Index object;
    Index block;
    std::string label;
};

// Of a net, bus or component.
LabelledObject ReadLabelled(const IUIDManager& objects, const Index& object);
// A net view item, with the block and the label of its net.
LabelledObject ReadNetQuill(const IUIDManager& objects, const Index& item);

using CallWithLabel = void (*)(EventObserverEx&, const LabelledObject&);

void callOnAddNet(EventObserverEx& observer, const LabelledObject& net);
void callOnAddBus(EventObserverEx& observer, const LabelledObject& bus);
void callOnAddNetQuill(EventObserverEx& observer, const LabelledObject& item);
void callOnDeleteNet(EventObserverEx& observer, const LabelledObject& net);
void callOnDeleteBus(EventObserverEx& observer, const LabelledObject& bus);
void callOnDeleteNetQuill(EventObserverEx& observer, const LabelledObject& item);

// Object is Orin::INet or Orin::IBus: the kind of what came or goes, whatever the index says.
template <class Object>
LabelledObject ReadObject(const IUIDManager& objects, const Index& object);

template <class Object, CallWithLabel Operation>
class NotificationOnAddDelete : public ObserverNotification<EventObserverEx> {
public:
    NotificationOnAddDelete(EventObserverEx* observer, const IUIDManager& objects, const Index& object)
        : ObserverNotification(observer), m_object(ReadObject<Object>(objects, object)) {}
    void Call() override { Operation(*m_observer, m_object); }

private:
    LabelledObject m_object;
};

template <CallWithLabel Operation>
class NotificationOnAddDeleteNetQuill : public ObserverNotification<EventObserverEx> {
public:
    NotificationOnAddDeleteNetQuill(EventObserverEx* observer, const IUIDManager& objects, const Index& item)
        : ObserverNotification(observer), m_item(ReadNetQuill(objects, item)) {}
    void Call() override { Operation(*m_observer, m_item); }

private:
    LabelledObject m_item;
};

class NotificationOnDeleteBlock : public ObserverNotification<EventObserverEx> {
public:
    NotificationOnDeleteBlock(EventObserverEx* observer, const IUIDManager& objects, const Index& block);
    void Call() override;

private:
    Index m_block;
    std::string m_name;
};

class NotificationOnDeleteBlockComp : public ObserverNotification<EventObserverEx> {
public:
    NotificationOnDeleteBlockComp(EventObserverEx* observer, const IUIDManager& objects, const Index& comp);
    void Call() override;

private:
    Index m_comp;
    Index m_parentBlock;
    Index m_childBlock;
    std::uint32_t m_instance = 0;
};

class NotificationOnDeleteGroup : public ObserverNotification<EventObserverEx> {
public:
    NotificationOnDeleteGroup(EventObserverEx* observer, const IUIDManager& objects, const Index& group);
    void Call() override;

private:
    Index m_group;
    Index m_owner;
    std::string m_name;
    std::string m_type;
};

enum class Moment { Before, After };

class NotificationOnLabelChange : public ObserverNotification<EventObserverEx> {
public:
    NotificationOnLabelChange(EventObserverEx* observer, const IUIDManager& objects, const Index& object,
                              Moment moment);
    void Call() override;

private:
    LabelledObject m_object;
    Moment m_moment;
};

class NotificationOnNetQuillSetData : public ObserverNotification<EventObserverEx> {
public:
    NotificationOnNetQuillSetData(EventObserverEx* observer, const IUIDManager& objects, const Index& item,
                                  Moment moment);
    void Call() override;

private:
    Index m_item;
    Index m_net;
    Index m_block;
    Orin::NetDataQuill m_data;
    Moment m_moment;
};

namespace Notification::Vellum {

class OnBlockNameChange : public ObserverNotification<EventObserverEx> {
public:
    OnBlockNameChange(EventObserverEx* observer, const Index& block, const Orin::String& before,
                      const Orin::String& after);
    void Call() override;

private:
    Index m_block;
    std::string m_before;
    std::string m_after;
};

class OnReadOnlyFlagChange : public ObserverNotification<EventObserverEx> {
public:
    OnReadOnlyFlagChange(EventObserverEx* observer, const Index& block);
    void Call() override;

private:
    Index m_block;
};

}  // namespace Notification::Vellum

namespace Notification::Navigator {

class BusEvent : public ObserverNotification<EventObserverNavigator> {
public:
    BusEvent(EventObserverNavigator* observer, const IUIDManager& objects, const Index& bus);

protected:
    Index m_bus;
    Index m_block;
    IndexList m_groups;
};

class OnBeforeRipBus : public BusEvent {
public:
    using BusEvent::BusEvent;
    void Call() override;
};

class OnAfterRipBus : public BusEvent {
public:
    using BusEvent::BusEvent;
    void Call() override;
};

class OnDeleteBus : public BusEvent {
public:
    using BusEvent::BusEvent;
    void Call() override;
};

class OnDeleteBlock : public ObserverNotification<EventObserverNavigator> {
public:
    OnDeleteBlock(EventObserverNavigator* observer, const Index& object);
    void Call() override;

private:
    Index m_object;
};

class OnDesignRootChange : public ObserverNotification<EventObserverNavigator> {
public:
    OnDesignRootChange(EventObserverNavigator* observer, const Index& block, const Orin::String& before,
                       const Orin::String& after);
    void Call() override;

private:
    Index m_block;
    std::string m_before;
    std::string m_after;
};

}  // namespace Notification::Navigator

}  // namespace NQuillUtils::NEvents
