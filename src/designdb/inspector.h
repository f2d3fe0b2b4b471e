// Tells what tools need to know of a design and the handles of orin/ do not say: what an object bears itself, in which
// order things were added, and on which views it is drawn.
#pragma once

#include <memory>
#include <optional>
#include <variant>

#include "orin/orin.h"

namespace Orin::DesignDb {

// Attributes that a component has at one place of the hierarchy.
struct OccurrenceInfo {
    Index config;        // the configuration whose root the place lies below
    ListT<Index> comps;  // the hierarchical components on the way down, root first
    ListAttribute attributes;
};

// An attribute that a view shows, and how. The value tells several of one name apart.
struct DrawnAttributeInfo {
    String name;
    String value;
    AttrDataQuill data;
};

// What one view shows of one object.
struct DrawingInfo {
    Index view;  // the group or component whose view it is
    std::variant<std::monostate, CompDataQuill, PinDataQuill, BusDataQuill, GroupDataQuill> body;
    std::optional<LabelDataQuill> label;
    ListT<DrawnAttributeInfo> attributes;  // sorted by name, then value
};

// One drawn piece of a net.
struct NetPieceInfo {
    Index index;
    Index view;  // the group on whose view it is drawn
    NetDataQuill data;
};

// Reads one snapshot for the client whose handle it was opened with. Objects are named by their indexes. Each operation
// sees one state of the design; between two of them other clients may edit. ObjectNotFound, with the output untouched,
// for an index that names no living object of the kind asked for, NotConnected when it never opened, OutOfMemory.
// Lists are replaced. Any thread may call.
class ORINPI_EXPORT Inspector {
public:
    Inspector() noexcept;
    // InvalidArgument, with the inspector unchanged, when the handle is empty or of another database.
    static Result Open(Inspector& inspector, const ContainerT<const ISnapshot>& snapshot);
    Inspector(Inspector&&) noexcept;
    Inspector& operator=(Inspector&&) noexcept;
    ~Inspector();

    // The object's own attributes, of a component those of its definition at no place; an empty index means the design
    // as a whole. Sorted by type, then name.
    Result GetAttributes(const Index& object, ListAttribute& attributes) const;
    // The attributes that a component has at places of the hierarchy which exist, in the order in which the places were
    // first asked for.
    Result GetOccurrences(const Index& comp, ListT<OccurrenceInfo>& occurrences) const;
    // The groups of which a component, net, bus or group is a member, in the order in which it became one.
    Result GetMemberships(const Index& object, ListT<GroupInfo>& groups) const;
    // Of a block, component, pin, net, bus or group: what each view shows of it, views in the order in which they were
    // first drawn on.
    Result GetDrawings(const Index& object, ListT<DrawingInfo>& drawings) const;
    // The pieces of a net on all views: view by view, those of one view in the order in which they were added.
    Result GetPieces(const Index& net, ListT<NetPieceInfo>& pieces) const;
    // All groups of a block, those that groups own too, in the order in which they were added.
    Result GetGroups(const Index& block, ListT<GroupInfo>& groups) const;
    // The pins of all components of a block in the order in which they were added, which is how nets list them.
    Result GetPins(const Index& block, ListT<Index>& pins) const;
    // The bus that a ripper taps; NoValue when it taps none.
    Result GetRippedBus(const Index& ripper, Index& bus) const;

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

}  // namespace Orin::DesignDb
