// What a transaction touched.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "designdb/detail/graph.h"

namespace Orin::DesignDb {

// Names the parts of a design that a transaction changed; what they are now is asked of the graph. Parts may be named
// several times, in any order. Contents that follow from the owner named in a record (the components of a block, the
// pieces of a net) are not named beside it.
struct Touches {
    enum class Extent : std::uint8_t {
        Fields,    // the record's own fields were changed, or it was taken out
        Added,     // it was put in, under a slot that never held one; all about it is new
        Replaced,  // all about it may be different
    };
    struct Record {
        Location at;
        Extent extent;
    };
    struct OneAttribute {
        Location of;  // of kind Snapshot: the design as a whole
        Slot place;   // 0: at no place
        EAttributeType type;
        String name;
    };

    void Add(EObjectType kind, Slot slot, Extent extent) { records.push_back({{kind, slot}, extent}); }

    std::vector<Record> records;
    std::vector<OneAttribute> attributes;
    std::vector<std::pair<Slot, Slot>> occurrences;       // component and place: all attributes there
    std::vector<std::pair<Slot, std::uint64_t>> members;  // group and the index of what joined, left or moved
    std::vector<Location> memberships;                    // objects whose list of groups was changed
    std::vector<std::pair<Slot, Slot>> connections;       // bus and net
    bool designAttributes = false;
};

}  // namespace Orin::DesignDb
