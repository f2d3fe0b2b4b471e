// What the schematic editor keeps in the design beside the design itself, and the hierarchical names of instances.
#pragma once

#include <list>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "orin/design_objects.h"
#include "quillutils_export.h"

namespace Quill::Utils {

// Static operations only. Values are internal properties (properties/property_mangler.h) in one text encoding each;
// those of a component stand among its link attributes.
//
// Get... is true when the value exists, under its mangled key or the bare one of older designs; otherwise it is false
// and leaves the output as it was. Text that is no number reads as 0, and a last token without its partner is dropped.
// Store... writes the mangled key, and only when the stored text would change; it throws the failed Orin::Result of the
// write. Callers hold the lock that a write handle stands for.
class QUILLUTILS_EXPORT QuillInOrin {
public:
    using BusSignals = std::list<std::pair<int, Orin::Index>>;  // position in the bus, net

    // Of a top block: the design's name, and the block of the board.
    static bool GetDesignName(const Orin::IBlock& block, std::string& name);
    static void StoreDesignName(Orin::MutableContainerT<Orin::IBlock> block, const std::string& name);
    static bool GetBoardBlock(const Orin::IBlock& block, Orin::Index& board);
    static void StoreBoardBlock(Orin::MutableContainerT<Orin::IBlock> block, const Orin::Index& board);

    // Of a ripper: the bus that it taps.
    static bool GetRipperBus(const Orin::IComp& ripper, Orin::Index& bus);
    static void StoreRipperBus(Orin::MutableContainerT<Orin::IComp> ripper, const Orin::Index& bus);

    // Of a ripper: its signal map. What is read is merged into `map` and wins over what stands there.
    static bool GetRipperSignalMap(const Orin::IComp& ripper, std::map<int, int>& map);
    static void StoreRipperSignalMap(Orin::MutableContainerT<Orin::IComp> ripper, const std::map<int, int>& map);

    // Of a bus: its signals. What is read is appended.
    static bool GetBusSignals(const Orin::IBus& bus, BusSignals& signals);
    static void StoreBusSignals(Orin::MutableContainerT<Orin::IBus> bus, const BusSignals& signals);

    // Of a bus: the names of its signals. What is read replaces `names`. There is no quoting: a name with a "," comes
    // back as two, and an empty name not at all.
    static bool GetBusSignalNames(const Orin::IBus& bus, std::list<std::string>& names);
    static bool GetBusSignalNames(const Orin::IBus& bus, std::vector<std::string>& names);
    static void StoreBusSignalNames(Orin::MutableContainerT<Orin::IBus> bus, const std::list<std::string>& names);
    static void StoreBusSignalNames(Orin::MutableContainerT<Orin::IBus> bus, const std::vector<std::string>& names);

    // The name of the instance that the place `path` lies below: an element for each hierarchical component on the way
    // down, root first, with "\" between. An element is
    //     the component's label, when that begins with "$";
    //     "$5I7" of the instance index (low part 5, middle part 7), in a schematic block that is not drawn by the
    //     editor;
    //     "$1I42" of the sheet's id and the component's object id otherwise, and empty when the sheet's view does not
    //     show the component. A sheet without an id leaves its place empty: "$I42".
    // "" at the root, for an empty handle, and when a component's label or instance index cannot be read or its
    // definition stands on no sheet. Never throws for a failed query.
    static std::string GetHierarchicalName(const Orin::ContainerT<const Orin::IPath>& path);
};

}  // namespace Quill::Utils
