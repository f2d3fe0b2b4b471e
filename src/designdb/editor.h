// Creates, changes and deletes the content of a design.
#pragma once

#include <functional>
#include <memory>

#include "orin/orin.h"

namespace Orin::DesignDb {

// What a new object starts with. Every text may be empty. `index` asks for an index value of the caller's choice, of
// any top byte; empty lets the database choose. A value that a living object of the snapshot bears gives AlreadyExists.

struct BlockSpec {
    String name;
    BlockTypes types = {};
    String libraryName = {};
    Index index = {};
};

struct CompSpec {
    String label;
    String name = {};
    CompTypes types = {};
    String partition = {};
    Index definition = {};  // a component, as a rule a symbol of a library block, whose name is "cell.variant"
    Index childBlock = {};
    Index instanceIndex = {};  // empty: the component's own index
    Index index = {};
};

struct PinSpec {
    String label;
    Index index = {};
};

struct NetSpec {
    String label;
    Index index = {};
};

struct BusSpec {
    String label;
    Index index = {};
};

struct GroupSpec {
    String name;
    EGroupType type = EGroupType::Sheet;
    Index index = {};
};

struct ConfigSpec {
    String name;
    Index rootBlock;
    Index index = {};
};

// Edits one snapshot for the client whose handle it was opened with. Objects are named by their indexes.
//
// An edit stands alone or belongs to the client's transaction, needs no lock of the client's own, and either happens as
// a whole or changes nothing:
//   ObjectNotFound   an index that names no living object of the kind that the operation works on; or the snapshot was
//                    removed
//   AccessDenied     another client holds the object or what contains it, or a transaction on the snapshot; or another
//                    thread, of whatever client, is deleting
//   InvalidArgument  the objects do not go together (a pin of another block's component, a group as its own owner)
//   NotConnected     the client was closed, or the editor never opened
//   OutOfMemory
// Setting what is already there is an edit like any other. An Editor is used by one thread at a time; any number of
// editors may work on one snapshot from any threads.
class ORINPI_EXPORT Editor {
public:
    Editor() noexcept;
    // InvalidArgument, with the editor unchanged, when the handle is empty or of another database.
    static Result Open(Editor& editor, const ContainerT<const ISnapshot>& snapshot);
    Editor(Editor&&) noexcept;
    Editor& operator=(Editor&&) noexcept;
    ~Editor();

    // ---- Locks and client observers ----

    // Write access to several blocks, components, groups and buses and their contents, to all of them or to none; an
    // empty index means the design as a whole. `hold` is filled on success, and gives all up with its last copy. Event
    // observers hear OnMultiLock and OnMultiUnLock. AccessDenied when another client holds one of the objects, what
    // contains it or something inside it; InvalidArgument for objects of other kinds and for none at all.
    Result Lock(const ListT<Index>& objects, RefPtr<LockToken>& hold);

    // As Database::Notify, with this client's observers only: how a tool reports errors of this client's edits.
    Result Notify(const std::function<void(ClientObserver&)>& call) const;

    // ---- Save points ----
    //
    // A save point is a snapshot of the project that holds another one as it was at one moment. It shares what has not
    // changed since, so that making one of a million objects takes milliseconds, and what a design changes costs a copy
    // of its surroundings once. It is opened by its name and read like any snapshot. Its objects cannot be edited
    // (AccessDenied), but the design's attributes can: there they belong to the save point, as its comment does, and do
    // not come back with a restore.

    // Keeps this snapshot as it is now under a name. InvalidArgument for an empty name, AlreadyExists when a snapshot
    // bears it, TransactionActive while this client has a transaction open and AccessDenied while another has.
    Result MakeSavePoint(const String& name);

    // Makes this snapshot what a save point of it holds, at once and as a whole. Observers hear of it as of edits that
    // lead from what was to what is, with the undo flag: first of all of them before, then of all of them after.
    // Nobody can edit meanwhile. The client observers of the project are told by OnRestore with this snapshot's name.
    // Belongs to the client's transaction if one is open; rolling that back brings back what was. Handles go on naming
    // their objects, those of objects that come back too.
    // ObjectNotFound for a name that no snapshot bears; InvalidArgument for a snapshot that is no save point of this
    // one; AccessDenied when another client holds a lock or a transaction on this snapshot, or this one is itself a
    // save point.
    Result RestoreSavePoint(const String& name);

    // ---- Blocks ----

    Result AddBlock(const BlockSpec& spec, Index& block);
    // With everything in it: groups, components and their pins, nets, buses. What refers to the block from elsewhere
    // (components that stand for it, configurations) then refers to nothing.
    Result DeleteBlock(const Index& block);
    Result SetBlockTypes(const Index& block, const BlockTypes& types);
    Result SetLibraryName(const Index& block, const String& name);

    // ---- Components and pins ----

    Result AddComp(const Index& block, const CompSpec& spec, Index& comp);
    // With its pins, its view and its place in groups, nets and buses.
    Result DeleteComp(const Index& comp);
    Result SetCompTypes(const Index& comp, const CompTypes& types);
    Result SetPartition(const Index& comp, const String& partition);
    Result SetDefinition(const Index& comp, const Index& definition);  // an empty index takes it away
    Result SetChildBlock(const Index& comp, const Index& block);       // an empty index takes it away
    Result SetInstanceIndex(const Index& comp, const Index& instance);

    Result AddPin(const Index& comp, const PinSpec& spec, Index& pin);
    Result DeletePin(const Index& pin);

    // ---- Nets and buses ----

    Result AddNet(const Index& block, const NetSpec& spec, Index& net);
    Result DeleteNet(const Index& net);
    // A pin is on one net at most: connecting takes it off the one before. Both are of one block.
    Result ConnectPin(const Index& net, const Index& pin);
    Result DisconnectPin(const Index& pin);  // NoValue when it is on no net

    Result AddBus(const Index& block, const BusSpec& spec, Index& bus);
    Result DeleteBus(const Index& bus);
    Result ConnectNet(const Index& bus, const Index& net);     // AlreadyExists when it is connected
    Result DisconnectNet(const Index& bus, const Index& net);  // NoValue when it is not connected
    // Makes a ripper component tap the bus, in place of the bus that it tapped before; an empty bus frees it.
    Result RipBus(const Index& ripper, const Index& bus);
    Result GetRippedBus(const Index& ripper, Index& bus) const;  // NoValue when it taps none

    // ---- Groups ----

    // `owner` is a block, or a group of the block to which the new one then belongs.
    Result AddGroup(const Index& owner, const GroupSpec& spec, Index& group);
    // With the groups that it owns and its view; the members stay in the block.
    Result DeleteGroup(const Index& group);
    Result SetGroupType(const Index& group, EGroupType type);
    // Enters a component, net, bus or group of the group's block, as the last member or before the one at `position`.
    // AlreadyExists when it is a member.
    Result AddMember(const Index& group, const Index& object);
    Result AddMember(const Index& group, const Index& object, unsigned position);
    Result RemoveMember(const Index& group, const Index& object);                   // NoValue when it is no member
    Result MoveMember(const Index& group, const Index& object, unsigned position);  // counted without the member

    // ---- Configurations ----

    // Names are unique: AlreadyExists.
    Result AddConfig(const ConfigSpec& spec, Index& config);
    Result DeleteConfig(const Index& config);
    Result SetRoot(const Index& config, const Index& block);

    // ---- Names, labels, attributes ----

    Result SetName(const Index& object, const String& name);    // of a block, component, group or configuration
    Result SetLabel(const Index& object, const String& label);  // of a component, pin, net or bus
    // Of any object; an empty index means the design as a whole. `type` matters for components only.
    Result SetAttribute(const Index& object, const String& name, const String& value,
                        EAttributeType type = EAttributeType::User);
    Result RemoveAttribute(const Index& object, const String& name, EAttributeType type = EAttributeType::User);
    // Of a component as it stands at one place of the hierarchy.
    Result SetAttributeInPath(const Index& path, const Index& comp, const String& name, const String& value,
                              EAttributeType type = EAttributeType::User);
    Result RemoveAttributeInPath(const Index& path, const Index& comp, const String& name,
                                 EAttributeType type = EAttributeType::User);

    // ---- How objects are drawn ----

    // `view` is a group (the view of its block on that sheet) or a component (the view of the symbol). Setting a record
    // draws the object there; it need not be a member. Time is in seconds since 1970.
    Result SetModificationTime(const Index& view, int seconds);
    Result SetCompData(const Index& view, const Index& comp, const CompDataQuill& data);
    Result SetPinData(const Index& view, const Index& pin, const PinDataQuill& data);
    Result SetBusData(const Index& view, const Index& bus, const BusDataQuill& data);
    Result SetGroupData(const Index& view, const Index& group, const GroupDataQuill& data);
    Result SetLabelData(const Index& view, const Index& object, const LabelDataQuill& data);
    // A drawn attribute of any drawn object, or of the view's own block or symbol. `value` may be empty; it tells apart
    // several drawn attributes of one name.
    Result SetAttrData(const Index& view, const Index& object, const String& name, const String& value,
                       const AttrDataQuill& data);
    // Takes away everything that the view shows of the object, but its net pieces.
    Result Undraw(const Index& view, const Index& object);

    Result AddNetQuill(const Index& view, const Index& net, const NetDataQuill& data, Index& piece,
                       const Index& index = {});
    Result SetNetQuillData(const Index& piece, const NetDataQuill& data);

    Result AddLine(const Index& view, const LineDataQuill& data, Index& item, const Index& index = {});
    Result AddRect(const Index& view, const RectDataQuill& data, Index& item, const Index& index = {});
    Result AddArc(const Index& view, const ArcDataQuill& data, Index& item, const Index& index = {});
    Result AddCircle(const Index& view, const CircleDataQuill& data, Index& item, const Index& index = {});
    Result AddText(const Index& view, const TextDataQuill& data, Index& item, const Index& index = {});
    Result SetLine(const Index& item, const LineDataQuill& data);
    Result SetRect(const Index& item, const RectDataQuill& data);
    Result SetArc(const Index& item, const ArcDataQuill& data);
    Result SetCircle(const Index& item, const CircleDataQuill& data);
    Result SetText(const Index& item, const TextDataQuill& data);
    // A net piece or a line, rectangle, arc, circle or text.
    Result DeleteItem(const Index& item);

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

}  // namespace Orin::DesignDb
