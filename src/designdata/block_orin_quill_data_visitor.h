// Visits everything that is drawn on one sheet of a block.
#pragma once

#include "orin/design_objects.h"
#include "orin/handles.h"
#include "orin/records.h"
#include "quillutils_export.h"

namespace Quill::Utils {

// Walks a sheet and hands each record to the `visit` of its type. The records are copies, made for the visit. Holds
// nothing between walks; one walk at a time of one object.
class QUILLUTILS_EXPORT BlockOrinQuillDataVisitor {
public:
    virtual ~BlockOrinQuillDataVisitor();

    // The order of these declarations is the order of the virtual table, on which derived classes of other modules
    // rely.
    virtual void visit(const Orin::GroupDataQuill& data) = 0;
    virtual void visit(const Orin::LabelDataQuill& data) = 0;  // of a component, net, bus or group
    virtual void visit(const Orin::AttrDataQuill& data) = 0;   // of a component, pin, net, bus, group or the block
    virtual void visit(const Orin::TextDataQuill& data) = 0;
    virtual void visit(const Orin::CircleDataQuill& data) = 0;
    virtual void visit(const Orin::ArcDataQuill& data) = 0;
    virtual void visit(const Orin::RectDataQuill& data) = 0;
    virtual void visit(const Orin::LineDataQuill& data) = 0;
    virtual void visit(const Orin::BusDataQuill& data) = 0;
    virtual void visit(const Orin::NetDataQuill& data) = 0;  // one for each connected piece of the net on this sheet
    virtual void visit(const Orin::CompDataQuill& data) = 0;

    // Visits the sheet `group` of `block` in this order:
    //     each member of the sheet, in the sheet's order. A component: its data, label and attributes, then its pins'
    //         attributes. A net: its pieces, label and attributes. A bus, and a group of objects (type 7; groups of
    //         other types are passed over): its data, label and attributes. Members of other kinds are passed over.
    //     the attributes of the block
    //     lines, rectangles, arcs, circles, texts
    // What is not there is passed over: a member that does not exist, a record that the sheet does not show (a read
    // that fails with 200, 202, 204, 205 or 206). Every other failure, and any failure to list what is to be visited,
    // is thrown as the failed Orin::Result, in the middle of the walk; what was visited stays visited. An empty handle
    // is such a failure. What a visit throws passes through.
    void process(Orin::ContainerT<const Orin::IBlock> block, Orin::ContainerT<const Orin::IGroup> group);

protected:
    BlockOrinQuillDataVisitor() = default;
    BlockOrinQuillDataVisitor(const BlockOrinQuillDataVisitor&) = default;
    BlockOrinQuillDataVisitor& operator=(const BlockOrinQuillDataVisitor&) = default;
};

}  // namespace Quill::Utils
