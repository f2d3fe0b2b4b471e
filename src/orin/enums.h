// The enumerations of the database interface. Numbers are fixed where designs, observers or tools know them.
#pragma once

#include "orin/bit_container.h"

namespace Orin {

// What a block is for; a block may bear several.
enum class EBlockType : int {
    Symbol = 0,     // the content of a library symbol
    Schematic = 1,  // schematic content (bit value 0x2)
    Board = 2,
    Hardware = 3,  // described by text, without sheets
    Drawn = 8,     // drawn in the schematic editor (bit value 0x100)
};

// What a component is; a component may bear several.
enum class ECompType : int {
    Part = 0,
    Symbol = 1,        // a definition in a library block
    Hierarchical = 2,  // stands for a child block (bit value 0x4)
    Ripper = 3,        // takes signals out of a bus
    Border = 4,        // frame of a sheet (bit value 0x10)
    Connector = 5,     // joins nets across sheets or to the parent block
    Power = 6,         // names a global net
    Titled = 15,       // carries sheet data such as the print order (bit value 0x8000)
};

// What a group of objects of a block is.
enum class EGroupType : int {
    Unknown = 0,
    Sheet = 2,
    Cluster = 7,         // objects that the user grouped; drawn as one
    GeneratedSheet = 8,  // a sheet that a tool keeps up to date
};

// How names are compared when blocks are looked for.
enum class ESearchParams : int {
    IgnoreCase = 0,  // letters of either case match
    Beginning = 1,   // the given name is the beginning of the block's
};

// The families of a component's attributes; the same name may stand in each.
enum class EAttributeType : int {
    User = 0,    // what the user sees and edits, such as the reference designator
    System = 1,  // marks and stamps that tools keep
    Link = 2,    // references to other objects
};

// What a transaction is for; observers are told.
enum class ETransactionType : int {
    Edit = 0,
    Import = 1,
};

// How a client is connected to its project.
enum class EClientWorkingMode : int {
    Connected = 0,
    ReadOnly = 1,
    Offline = 2,
};

// Kinds that callbacks carry on behalf of other tools; this database itself gives none of them.
enum class EDockingSide : int { Source = 0, Target = 1 };
enum class EConstraintType : int { Unknown = 0 };
enum class EDefConstraintType : int { Unknown = 0 };
enum class EEventsDefConstraintChange : int { Unknown = 0 };

// Sets of the kinds above.
using BlockTypes = BitContainerT<EBlockType, 1>;
using CompTypes = BitContainerT<ECompType, 1>;
using GroupTypes = BitContainerT<EGroupType, 1>;
using SearchParams = BitContainerT<ESearchParams, 1>;

// Event kinds, an enumeration for each family of callbacks. A number has a meaning of its own in each family.

enum class EEventsAdd : int {
    Bus = 2,
    Block = 8,
    Pin = 30,
    Config = 31,
    GraphicItem = 32,
    Group = 46,
    NetQuill = 49,
    Comp = 53,
    Net = 57,
};

enum class EEventsDelete : int {
    Block = 3,
    Bus = 4,
    Pin = 30,
    Config = 31,
    GraphicItem = 32,
    Comp = 41,
    NetQuill = 44,
    Group = 45,
    Net = 47,
};

enum class EEventsDeleteAll : int {
    Attributes = 1,
    Members = 2,
};

enum class EEventsChange : int {
    RipBus = 3,
    SetAttribute = 6,
    RemoveAttribute = 7,
    NetQuillData = 13,
    Type = 20,
    Partition = 21,
    Definition = 22,
    Label = 23,
    ChildBlock = 24,
    InstanceIndex = 25,
    Owner = 26,
    Name = 27,
    Root = 28,
    LibraryName = 29,
    ViewTime = 30,
};

// The first index is the view's block or component, the second the drawn object.
enum class EEventsQuillDataChange : int {
    Data = 1,
    Label = 2,
    Attribute = 3,
};

// The first index is the net, bus or group, the second the object that joins or leaves.
enum class EEventsConnectivityChange : int {
    Connect = 1,
    Disconnect = 2,
    JoinGroup = 3,
    LeaveGroup = 4,
    Reorder = 5,
};

// Two objects that exchanged their places.
enum class EEventsSwap : int { Pins = 1 };
// What was taken in from elsewhere.
enum class EEventsImport : int { Block = 1 };

}  // namespace Orin
