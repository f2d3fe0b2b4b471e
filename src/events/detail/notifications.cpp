#include "events/detail/notifications.h"

#include "designdata/object_index.h"
#include "text/number.h"

namespace NQuillUtils::NEvents {

using Orin::ContainerT;

ContainerT<const Orin::IBlock> RequireBlock(const IUIDManager& objects, const Index& block) {
    ContainerT<const Orin::IBlock> found;
    if (Orin::Result result = objects.GetBlock(found, block); !result) throw result;
    return found;
}

namespace {

using Quill::Utils::IndexOf;

std::string TextOf(const Orin::String& text) {
    return std::string(text.View());
}

template <class Object>
Index BlockOf(const ContainerT<const Object>& object) {
    ContainerT<const Orin::IBlock> block;
    if (object) object->GetParentBlock(block);
    return IndexOf(block);
}

template <class Object>
std::string LabelOf(const ContainerT<const Object>& object) {
    Orin::String label;
    if (object) object->GetLabel(label);
    return TextOf(label);
}

template <class Object>
std::string NameOf(const ContainerT<const Object>& object) {
    Orin::String name;
    if (object) object->GetName(name);
    return TextOf(name);
}

ContainerT<const Orin::INet> NetOf(const ContainerT<const Orin::INetQuill>& item) {
    ContainerT<const Orin::INet> net;
    if (item) item->GetNet(net);
    return net;
}

template <class Object>
LabelledObject Labelled(const Index& index, const ContainerT<const Object>& object) {
    return {index, BlockOf(object), LabelOf(object)};
}

}  // namespace

template <>
LabelledObject ReadObject<Orin::INet>(const IUIDManager& objects, const Index& object) {
    ContainerT<const Orin::INet> net;
    objects.GetNet(net, object);
    return Labelled(object, net);
}

template <>
LabelledObject ReadObject<Orin::IBus>(const IUIDManager& objects, const Index& object) {
    ContainerT<const Orin::IBus> bus;
    objects.GetBus(bus, object);
    return Labelled(object, bus);
}

LabelledObject ReadLabelled(const IUIDManager& objects, const Index& object) {
    if (object.GetType() == Orin::EObjectType::Net) return ReadObject<Orin::INet>(objects, object);
    if (object.GetType() == Orin::EObjectType::Bus) return ReadObject<Orin::IBus>(objects, object);
    ContainerT<const Orin::IComp> comp;
    objects.GetComp(comp, object);
    return Labelled(object, comp);
}

LabelledObject ReadNetQuill(const IUIDManager& objects, const Index& item) {
    ContainerT<const Orin::INetQuill> piece;
    objects.GetQuillNet(piece, item);
    return Labelled(item, NetOf(piece));
}

void callOnAddNet(EventObserverEx& observer, const LabelledObject& net) {
    observer.OnAddNet(net.object, net.block, net.label);
}
void callOnAddBus(EventObserverEx& observer, const LabelledObject& bus) {
    observer.OnAddBus(bus.object, bus.block, bus.label);
}
void callOnAddNetQuill(EventObserverEx& observer, const LabelledObject& item) {
    observer.OnAddNetQuill(item.object, item.block, item.label);
}
void callOnDeleteNet(EventObserverEx& observer, const LabelledObject& net) {
    observer.OnDeleteNet(net.object, net.block, net.label);
}
void callOnDeleteBus(EventObserverEx& observer, const LabelledObject& bus) {
    observer.OnDeleteBus(bus.object, bus.block, bus.label);
}
void callOnDeleteNetQuill(EventObserverEx& observer, const LabelledObject& item) {
    observer.OnDeleteNetQuill(item.object, item.block, item.label);
}

NotificationOnDeleteBlock::NotificationOnDeleteBlock(EventObserverEx* observer, const IUIDManager& objects,
                                                     const Index& block)
    : ObserverNotification(observer), m_block(block), m_name(NameOf(RequireBlock(objects, block))) {}

void NotificationOnDeleteBlock::Call() {
    m_observer->OnDeleteBlock(m_block, m_name);
}

NotificationOnDeleteBlockComp::NotificationOnDeleteBlockComp(EventObserverEx* observer, const IUIDManager& objects,
                                                             const Index& comp)
    : ObserverNotification(observer), m_comp(comp) {
    ContainerT<const Orin::IComp> found;
    if (!objects.GetComp(found, comp)) return;
    m_parentBlock = BlockOf(found);
    ContainerT<const Orin::IBlock> child;
    found->GetChildBlock(child);
    m_childBlock = IndexOf(child);
    Index instance;
    found->GetInstanceIndex(instance);
    m_instance = instance.Low();
}

void NotificationOnDeleteBlockComp::Call() {
    m_observer->OnDeleteBlockComp(m_comp, m_parentBlock, m_childBlock, m_instance);
}

NotificationOnDeleteGroup::NotificationOnDeleteGroup(EventObserverEx* observer, const IUIDManager& objects,
                                                     const Index& group)
    : ObserverNotification(observer), m_group(group) {
    ContainerT<const Orin::IGroup> found;
    if (!objects.GetGroup(found, group)) return;
    found->GetOwner(m_owner);
    m_name = NameOf(found);
    Orin::EGroupType type{};
    if (found->GetType(type)) m_type = Quill::Text::Render(static_cast<int>(type));
}

void NotificationOnDeleteGroup::Call() {
    m_observer->OnDeleteGroup(m_group, m_owner, m_name, m_type);
}

NotificationOnLabelChange::NotificationOnLabelChange(EventObserverEx* observer, const IUIDManager& objects,
                                                     const Index& object, Moment moment)
    : ObserverNotification(observer), m_object(ReadLabelled(objects, object)), m_moment(moment) {}

void NotificationOnLabelChange::Call() {
    if (m_moment == Moment::Before)
        m_observer->OnBeforeLabelChange(m_object.object, m_object.block, m_object.label);
    else
        m_observer->OnAfterLabelChange(m_object.object, m_object.block, m_object.label);
}

NotificationOnNetQuillSetData::NotificationOnNetQuillSetData(EventObserverEx* observer, const IUIDManager& objects,
                                                             const Index& item, Moment moment)
    : ObserverNotification(observer), m_item(item), m_moment(moment) {
    ContainerT<const Orin::INetQuill> piece;
    if (!objects.GetQuillNet(piece, item)) return;
    const ContainerT<const Orin::INet> net = NetOf(piece);
    m_net = IndexOf(net);
    m_block = BlockOf(net);
    piece->GetData(m_data);
}

void NotificationOnNetQuillSetData::Call() {
    if (m_moment == Moment::Before)
        m_observer->OnBeforeNetQuillSetData(m_item, m_net, m_block, m_data);
    else
        m_observer->OnAfterNetQuillSetData(m_item, m_net, m_block, m_data);
}

namespace Notification::Vellum {

OnBlockNameChange::OnBlockNameChange(EventObserverEx* observer, const Index& block, const Orin::String& before,
                                     const Orin::String& after)
    : ObserverNotification(observer), m_block(block), m_before(TextOf(before)), m_after(TextOf(after)) {}

void OnBlockNameChange::Call() {
    m_observer->OnBlockNameChange(m_block, m_before, m_after);
}

OnReadOnlyFlagChange::OnReadOnlyFlagChange(EventObserverEx* observer, const Index& block)
    : ObserverNotification(observer), m_block(block) {}

void OnReadOnlyFlagChange::Call() {
    m_observer->OnReadOnlyFlagChange(m_block);
}

}  // namespace Notification::Vellum

namespace Notification::Navigator {

BusEvent::BusEvent(EventObserverNavigator* observer, const IUIDManager& objects, const Index& bus)
    : ObserverNotification(observer), m_bus(bus) {
    ContainerT<const Orin::IBus> found;
    if (!objects.GetBus(found, bus)) return;
    m_block = BlockOf(found);
    Orin::ListT<Orin::GroupInfo> groups;
    found->GetListGroups(groups, Orin::GroupTypes());
    for (const Orin::GroupInfo& group : groups)
        m_groups.Append(group.index);
}

void OnBeforeRipBus::Call() {
    m_observer->OnBeforeRipBus(m_bus, m_block, m_groups);
}

void OnAfterRipBus::Call() {
    m_observer->OnAfterRipBus(m_bus, m_block, m_groups);
}

void OnDeleteBus::Call() {
    m_observer->OnDeleteBus(m_bus, m_block, m_groups);
}

OnDeleteBlock::OnDeleteBlock(EventObserverNavigator* observer, const Index& object)
    : ObserverNotification(observer), m_object(object) {}

void OnDeleteBlock::Call() {
    m_observer->OnDeleteBlock(m_object);
}

OnDesignRootChange::OnDesignRootChange(EventObserverNavigator* observer, const Index& block, const Orin::String& before,
                                       const Orin::String& after)
    : ObserverNotification(observer), m_block(block), m_before(TextOf(before)), m_after(TextOf(after)) {}

void OnDesignRootChange::Call() {
    m_observer->OnDesignRootChange(m_block, m_before, m_after);
}

}  // namespace Notification::Navigator

}  // namespace NQuillUtils::NEvents
