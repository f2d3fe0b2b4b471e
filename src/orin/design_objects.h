// The objects of a design: blocks, components, groups, nets, buses, pins, and places in the hierarchy.
//
// Queries may be made from any thread. An attribute that is not there gives AttributeNotFound, to read as to remove.
// Operations that edit are called through write handles; without the lock they fail with NotLocked, on a snapshot whose
// transaction another client holds with AccessDenied, and change nothing. To set an attribute without a name gives
// InvalidArgument.
#pragma once

#include "orin/enums.h"
#include "orin/handles.h"
#include "orin/records.h"

namespace Orin {

class IBlockViewQuill;
class ICompViewQuill;
class IPath;
class ISnapshot;
class INet;
class IBus;
class IPin;
class IComp;
class IGroup;

// A unit of design content: a schematic block with its sheets, or the block of a library.
class ORINPI_EXPORT IBlock : public IObject {
public:
    virtual Result GetAttribute(const String& name, String& value) const = 0;
    virtual Result SetAttribute(const String& name, const String& value) = 0;
    virtual Result RemoveAttribute(const String& name) = 0;
    virtual Result GetAttributes(ListAttribute& attributes) const = 0;
    // A component as defined in this block; ObjectNotFound when it belongs to another block.
    virtual Result GetComp(ContainerT<const IComp>& comp, const Index& index) const = 0;
    // A group owned by this block; ObjectNotFound when another block owns it.
    virtual Result GetGroup(ContainerT<const IGroup>& group, const Index& index) const = 0;
    virtual Result GetIterNets(IteratorT<const INet>& nets) const = 0;
    // The groups that the block owns, in the order in which they were added, with one type or one of a set of types;
    // an empty set takes all. `groups` is replaced.
    virtual Result GetListOwnedGroups(ListT<GroupInfo>& groups, EGroupType type) const = 0;
    virtual Result GetListOwnedGroups(ListT<GroupInfo>& groups, const GroupTypes& types) const = 0;
    virtual Result GetParentSnapshot(ContainerT<const ISnapshot>& snapshot) const = 0;
    virtual Result GetType(BlockTypes& types) const = 0;

    // ---- Beyond the walk of the library: what tools ask for. ----

    virtual Result GetLibraryName(String& name) const = 0;
    virtual Result GetIterComps(IteratorT<const IComp>& comps, const CompTypes& types) const = 0;
    virtual Result GetIterBuses(IteratorT<const IBus>& buses) const = 0;

private:
    friend class IBlockViewQuill;
    virtual Result OpenView(ContainerT<const IBlockViewQuill>& view, const IGroup& group) const = 0;
};

// A component: as defined in its block (got by its index), or as it stands at one place of the hierarchy (got through a
// path). At a place it has attributes of its own, which stand before those of the definition; everything else is the
// definition's. Attributes are told apart by type and name together.
class ORINPI_EXPORT IComp : public IObject {
public:
    virtual Result GetAttribute(const String& name, String& value, EAttributeType type) const = 0;
    // At a place of the hierarchy: sets the place's own attribute.
    virtual Result SetAttribute(const String& name, const String& value, EAttributeType type) = 0;
    // At a place of the hierarchy: removes the place's own attribute, so that the definition's shows again.
    virtual Result RemoveAttribute(const String& name, EAttributeType type) = 0;
    // All types, sorted by type, then name.
    virtual Result GetAttributes(ListAttribute& attributes) const = 0;
    // The block that a hierarchical component stands for; NoValue when it stands for none.
    virtual Result GetChildBlock(ContainerT<const IBlock>& block) const = 0;
    // The symbol; NoValue when none is known. Its name is cell and variant with a full stop between.
    virtual Result GetDefinition(ContainerT<const IComp>& definition) const = 0;
    // The index of this component within its block, which is also what hierarchical names are made of.
    virtual Result GetInstanceIndex(Index& index) const = 0;
    virtual Result GetIterPins(IteratorT<const IPin>& pins) const = 0;
    virtual Result GetLabel(String& label) const = 0;
    // The groups of which it is a member, in the order in which it became one; an empty set takes all types.
    virtual Result GetListGroups(ListT<GroupInfo>& groups, const GroupTypes& types) const = 0;
    virtual Result GetParentBlock(ContainerT<const IBlock>& block) const = 0;
    // The library partition of the symbol; NoValue when none is known.
    virtual Result GetPartitionName(String& name) const = 0;
    // The place of the hierarchy at which this component stands; NoValue for a component got by its index alone.
    virtual Result GetPath(ContainerT<const IPath>& path) const = 0;
    virtual Result GetType(CompTypes& types) const = 0;

private:
    friend class ICompViewQuill;
    virtual Result OpenView(ContainerT<const ICompViewQuill>& view) const = 0;
};

// An ordered set of objects of one block. A schematic sheet is a group.
class ORINPI_EXPORT IGroup : public IObject {
public:
    virtual Result GetAttribute(const String& name, String& value) const = 0;
    virtual Result SetAttribute(const String& name, const String& value) = 0;
    virtual Result RemoveAttribute(const String& name) = 0;
    virtual Result GetAttributes(ListAttribute& attributes) const = 0;
    // The members in their order, a list of the caller's own. `objects` is replaced.
    virtual Result GetListObjects(ListT<Index>& objects) const = 0;
    // The block, or the group, that owns this one.
    virtual Result GetOwner(Index& owner) const = 0;
    virtual Result GetType(EGroupType& type) const = 0;
    virtual Result SetName(const String& name) = 0;
};

// A net of a block: what connects pins.
class ORINPI_EXPORT INet : public IObject {
public:
    virtual Result GetAttributes(ListAttribute& attributes) const = 0;
    virtual Result GetIterBusesConnected(IteratorT<const IBus>& buses) const = 0;
    virtual Result GetLabel(String& label) const = 0;
    virtual Result GetListGroups(ListT<GroupInfo>& groups, const GroupTypes& types) const = 0;
    virtual Result GetParentBlock(ContainerT<const IBlock>& block) const = 0;

    // ---- Beyond the walk of the library: what tools ask for. ----

    virtual Result GetAttribute(const String& name, String& value) const = 0;
    // The pins that the net connects.
    virtual Result GetIterPinsConnected(IteratorT<const IPin>& pins) const = 0;
};

// A bus of a block: a bundle of nets, drawn as one line.
class ORINPI_EXPORT IBus : public IObject {
public:
    virtual Result GetAttribute(const String& name, String& value) const = 0;
    virtual Result SetAttribute(const String& name, const String& value) = 0;
    virtual Result GetAttributes(ListAttribute& attributes) const = 0;
    virtual Result GetIterNetsConnected(IteratorT<const INet>& nets) const = 0;
    virtual Result GetLabel(String& label) const = 0;
    virtual Result GetListGroups(ListT<GroupInfo>& groups, EGroupType type) const = 0;
    virtual Result GetListGroups(ListT<GroupInfo>& groups, const GroupTypes& types) const = 0;
    virtual Result GetParentBlock(ContainerT<const IBlock>& block) const = 0;
};

// A pin of a component: where a net connects.
class ORINPI_EXPORT IPin : public IObject {
public:
    virtual Result GetAttributes(ListAttribute& attributes) const = 0;

    // ---- Beyond the walk of the library: what tools ask for. ----

    virtual Result GetAttribute(const String& name, String& value) const = 0;
    virtual Result GetLabel(String& label) const = 0;
    virtual Result GetParentComp(ContainerT<const IComp>& comp) const = 0;
    // The net that the pin is connected to; NoValue when there is none.
    virtual Result GetNet(ContainerT<const INet>& net) const = 0;
};

// A place in the hierarchy: the root block of a configuration, or a child block as reached through the hierarchical
// components on the way down.
class ORINPI_EXPORT IPath : public IObject {
public:
    // The block that stands at this place.
    virtual Result GetBlock(ContainerT<const IBlock>& block) const = 0;
    // The place below the hierarchical component `comp` of this place's block. NotInHierarchy when the component is not
    // of this block, has no child block, or its child block stands on this path already.
    virtual Result GetChildPath(ContainerT<const IPath>& child, const Index& comp) const = 0;
    // The component of this place's block as it stands here.
    virtual Result GetCompInPath(ContainerT<const IComp>& occurrence, const Index& comp) const = 0;
    // The hierarchical components on the way down, root first; empty at the root. `indexes` is replaced.
    virtual Result GetListHierarchyIndexes(ListT<Index>& indexes) const = 0;
    // The hierarchical component that this place lies below, as it stands in its own place; NoValue at the root.
    virtual Result GetParentComp(ContainerT<const IComp>& comp) const = 0;
};

// A named configuration of the design: which block is the root.
class ORINPI_EXPORT IConfig : public IObject {
public:
    virtual Result GetRoot(ContainerT<const IPath>& root) const = 0;
};

}  // namespace Orin
