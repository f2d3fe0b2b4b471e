// Visits everything that is drawn on a symbol.
#pragma once

#include "orin/design_objects.h"
#include "orin/handles.h"
#include "orin/records.h"
#include "quillutils_export.h"

namespace Quill::Utils {

// Walks a symbol and hands each record to the `visit` of its type. The records are copies, made for the visit. Holds
// nothing between walks; one walk at a time of one object.
class QUILLUTILS_EXPORT SymbolOrinQuillDataVisitor {
public:
    virtual ~SymbolOrinQuillDataVisitor();

    // The order of these declarations is the order of the virtual table, on which derived classes of other modules
    // rely.
    virtual void visit(const Orin::LabelDataQuill& data) = 0;  // of a pin
    virtual void visit(const Orin::AttrDataQuill& data) = 0;   // of the symbol or a pin
    virtual void visit(const Orin::TextDataQuill& data) = 0;
    virtual void visit(const Orin::CircleDataQuill& data) = 0;
    virtual void visit(const Orin::ArcDataQuill& data) = 0;
    virtual void visit(const Orin::RectDataQuill& data) = 0;
    virtual void visit(const Orin::LineDataQuill& data) = 0;
    virtual void visit(const Orin::PinDataQuill& data) = 0;

    // Visits the symbol `comp` in this order:
    //     its attributes
    //     each pin: its data, label and attributes
    //     lines, rectangles, arcs, circles, texts
    // What is not there is passed over: a record that the symbol does not show (a read that fails with 200, 202, 204,
    // 205 or 206). Every other failure, and any failure to list what is to be visited, is thrown as the failed
    // Orin::Result, in the middle of the walk; what was visited stays visited. An empty handle is such a failure. What
    // a visit throws passes through.
    void process(Orin::ContainerT<const Orin::IComp> comp);

protected:
    SymbolOrinQuillDataVisitor() = default;
    SymbolOrinQuillDataVisitor(const SymbolOrinQuillDataVisitor&) = default;
    SymbolOrinQuillDataVisitor& operator=(const SymbolOrinQuillDataVisitor&) = default;
};

}  // namespace Quill::Utils
