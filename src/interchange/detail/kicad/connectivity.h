// The nets and buses that the geometry of schematic sheets makes.
#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "orin/records.h"

namespace Quill::Interchange::Kicad {

// Coordinates are nanometres; beyond +-LargestCoordinate they count as that limit.
inline constexpr std::int64_t LargestCoordinate = std::int64_t{1} << 60;

// The ids of items are the caller's; results name items by them.
using ItemId = std::uint32_t;
inline constexpr ItemId NoItem = std::numeric_limits<ItemId>::max();

struct WireSegment {
    ItemId id = NoItem;
    Orin::Point from;
    Orin::Point to;
    bool bus = false;
};

struct Junction {
    ItemId id = NoItem;
    Orin::Point at;
};

struct BusEntry {
    ItemId id = NoItem;
    Orin::Point from;
    Orin::Point to;
};

struct NetPin {
    ItemId id = NoItem;
    Orin::Point at;
};

// Which label names a net: the first rank here, of equal ranks the text that sorts first.
enum class LabelRank : std::uint8_t {
    Global,
    Power,  // the value of a power symbol, at its pin
    Local,
    Hierarchical,
    SheetPin,  // names a bus that would have no members otherwise, and no net
};

struct NetLabel {
    ItemId id = NoItem;
    Orin::Point at;
    std::string text;  // translated (label_text.h)
    LabelRank rank = LabelRank::Local;
    bool bus = false;  // whether the text names a bus
};

struct SheetGeometry {
    std::vector<WireSegment> segments;
    std::vector<Junction> junctions;
    std::vector<BusEntry> entries;
    std::vector<NetLabel> labels;  // those of sheet pins too
    std::vector<NetPin> pins;      // of symbols, power symbols included
};

// A net or bus: what hangs together. Ids are in the order of the input.
struct ConnectedItems {
    std::string name;                       // empty when no label names it
    LabelRank rank = LabelRank::SheetPin;   // of the label that names it
    std::vector<std::string> alternatives;  // the other texts that could have, best first, each once
    std::vector<ItemId> segments;
    std::vector<ItemId> junctions;
    std::vector<ItemId> entries;  // of a bus: those with both ends on buses
    std::vector<ItemId> labels;
    std::vector<ItemId> pins;  // of a net
};

struct BusConnection {
    std::uint32_t bus = 0;  // places in the lists of Connectivity
    std::uint32_t net = 0;
    ItemId entry = NoItem;  // NoItem: the net bears the name of a member of the bus
};

struct Connectivity {
    std::vector<ConnectedItems> nets;
    std::vector<ConnectedItems> buses;
    std::vector<BusConnection> connections;  // by bus, then net, then entry
};

// Files that were made to exhaust memory can ask for a connection of every net with every bus. Beyond this number no
// more connections by name are made; those by entries are never left out.
inline constexpr std::size_t MostConnectionsByName = 1'000'000;

// The nets and buses of one block, whose sheets these are.
//
// On a sheet connects what has its end or place at the same point: wire ends, symbol pins, sheet pins, labels, and the
// ends of bus entries. The middle of a wire connects with
//   - a junction there, which joins all wires through that point, and what else is there;
//   - a label or sheet pin there. Where several wires pass and none ends, it takes the one drawn first
//     (wires that lie on one another count as one);
//   - another wire that lies on it for some length.
// So wires that cross, a wire that ends on the middle of another, and a symbol pin there do not connect by themselves.
//
// All this holds for bus wires among themselves too, and wires and bus wires never connect. A label takes to wires of
// its own kind, and to the other kind where there is none of its own. An end of a bus entry that stands on a bus,
// wherever, connects the entry's net with that bus and with nothing else at that point; an entry with both ends on
// buses joins those.
//
// On all sheets of the block, global labels and power symbols of equal text are one net or one bus, and so are local
// and hierarchical labels of equal text. A pin that nothing touches makes no net.
//
// Nets and buses come in the order of their first item: wires, then entries, labels, pins, sheet by sheet.
//
// With n items the time is O(n log n) for each direction in which wires run; how many wires cross does not matter.
Connectivity Connect(const std::vector<SheetGeometry>& sheets);

}  // namespace Quill::Interchange::Kicad
