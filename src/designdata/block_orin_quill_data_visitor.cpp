#include "designdata/block_orin_quill_data_visitor.h"

#include "designdata/detail/record_walk.h"
#include "orin/snapshot.h"
#include "orin/uid_manager.h"
#include "orin/views.h"

namespace Quill::Utils {

using namespace Orin;

namespace {

using Visitor = BlockOrinQuillDataVisitor;

// The operations by which a sheet's view tells how objects of class T are drawn.
template <class T>
using ReadLabel = Result (IBlockViewQuill::*)(const T&, LabelDataQuill&) const;
template <class T>
using ReadAttr = Result (IBlockViewQuill::*)(const T&, const String&, const String&, AttrDataQuill&) const;

// What every kind of member has in common: its label, then its attributes.
template <class T>
void VisitLabelAndAttributes(Visitor& visitor, const IBlockViewQuill& view, const T& object, ReadLabel<T> label,
                             ReadAttr<T> attribute) {
    detail::VisitRecord<LabelDataQuill>(visitor, [&](LabelDataQuill& data) { return (view.*label)(object, data); });
    detail::VisitAttributes(visitor, object, [&](const String& name, const String& value, AttrDataQuill& data) {
        return (view.*attribute)(object, name, value, data);
    });
}

void VisitMember(Visitor& visitor, const IBlockViewQuill& view, const IComp& comp) {
    detail::VisitRecord<CompDataQuill>(visitor, [&](CompDataQuill& data) { return view.GetCompData(comp, data); });
    VisitLabelAndAttributes(visitor, view, comp, &IBlockViewQuill::GetCompLabel, &IBlockViewQuill::GetCompAttr);
    IteratorT<const IPin> pin;
    Require(comp.GetIterPins(pin));
    for (; pin; ++pin)
        detail::VisitPinAttributes(visitor, view, *pin);
}

void VisitMember(Visitor& visitor, const IBlockViewQuill& view, const INet& net) {
    IteratorT<const INetQuill> piece;
    Require(view.GetIterNetsQuill(net, piece));
    detail::VisitItems<NetDataQuill>(visitor, piece);
    VisitLabelAndAttributes(visitor, view, net, &IBlockViewQuill::GetNetLabel, &IBlockViewQuill::GetNetAttr);
}

void VisitMember(Visitor& visitor, const IBlockViewQuill& view, const IBus& bus) {
    detail::VisitRecord<BusDataQuill>(visitor, [&](BusDataQuill& data) { return view.GetBusData(bus, data); });
    VisitLabelAndAttributes(visitor, view, bus, &IBlockViewQuill::GetBusLabel, &IBlockViewQuill::GetBusAttr);
}

void VisitMember(Visitor& visitor, const IBlockViewQuill& view, const IGroup& group) {
    EGroupType type = EGroupType::Unknown;
    if (!Present(group.GetType(type)) || type != EGroupType::Cluster) return;
    detail::VisitRecord<GroupDataQuill>(visitor, [&](GroupDataQuill& data) { return view.GetGroupData(group, data); });
    VisitLabelAndAttributes(visitor, view, group, &IBlockViewQuill::GetGroupLabel, &IBlockViewQuill::GetGroupAttr);
}

template <class T>
void ResolveAndVisit(Visitor& visitor, const IBlockViewQuill& view, const IUIDManager& objects,
                     Result (IUIDManager::*resolve)(ContainerT<const T>&, const Index&) const, const Index& index) {
    ContainerT<const T> object;
    if (Present((objects.*resolve)(object, index))) VisitMember(visitor, view, *object);
}

}  // namespace

BlockOrinQuillDataVisitor::~BlockOrinQuillDataVisitor() = default;

void BlockOrinQuillDataVisitor::process(ContainerT<const IBlock> block, ContainerT<const IGroup> group) {
    if (!block) throw block.IsValid();
    if (!group) throw group.IsValid();
    ContainerT<const IBlockViewQuill> view;
    Require(IBlockViewQuill::Init(view, *block, *group));
    ListT<Index> members;
    Require(group->GetListObjects(members));
    ContainerT<const ISnapshot> snapshot;
    Require(block->GetParentSnapshot(snapshot));
    IUIDManager objects;
    Require(snapshot->GetUIDManager(objects));

    for (const Index& member : members) {
        switch (member.GetType()) {
            case EObjectType::Comp:
                ResolveAndVisit(*this, *view, objects, &IUIDManager::GetComp, member);
                break;
            case EObjectType::Net:
                ResolveAndVisit(*this, *view, objects, &IUIDManager::GetNet, member);
                break;
            case EObjectType::Bus:
                ResolveAndVisit(*this, *view, objects, &IUIDManager::GetBus, member);
                break;
            case EObjectType::Group:
                ResolveAndVisit(*this, *view, objects, &IUIDManager::GetGroup, member);
                break;
            default:
                break;
        }
    }

    detail::VisitAttributes(*this, *block, [&](const String& name, const String& value, AttrDataQuill& data) {
        return view->GetAttr(name, value, data);
    });
    detail::VisitFreeGraphics(*this, *view);
}

}  // namespace Quill::Utils
