// Graphical views: how the objects of a sheet and of a symbol are drawn.
//
// An object that is not drawn on the view gives ViewDataNotFound (204). Records are described in orin/records.h.
#pragma once

#include "orin/design_objects.h"
#include "orin/handles.h"
#include "orin/records.h"

namespace Orin {

// A net as drawn on one view: one of its connected pieces.
class ORINPI_EXPORT INetQuill : public IObject {
public:
    virtual Result GetData(NetDataQuill& data) const = 0;
    virtual Result GetNet(ContainerT<const INet>& net) const = 0;
};

// The graphics that stand for themselves on a sheet or in a symbol: a line through several points.
class ORINPI_EXPORT ILineQuill : public IObject {
public:
    virtual Result GetData(LineDataQuill& data) const = 0;
};

// A rectangle.
class ORINPI_EXPORT IRectQuill : public IObject {
public:
    virtual Result GetData(RectDataQuill& data) const = 0;
};

// An arc of a circle.
class ORINPI_EXPORT IArcQuill : public IObject {
public:
    virtual Result GetData(ArcDataQuill& data) const = 0;
};

// A full circle.
class ORINPI_EXPORT ICircleQuill : public IObject {
public:
    virtual Result GetData(CircleDataQuill& data) const = 0;
};

// A text.
class ORINPI_EXPORT ITextQuill : public IObject {
public:
    virtual Result GetData(TextDataQuill& data) const = 0;
};

// The schematic editor's view of a block on one of its sheets. In the attribute reads the first text is the
// attribute's name; the second is its value, which tells apart attributes drawn alike and may be empty.
class ORINPI_EXPORT IBlockViewQuill : public IObject {
public:
    // ObjectNotFound when the block does not own the group.
    static Result Init(ContainerT<const IBlockViewQuill>& view, const IBlock& block, const IGroup& group);

    // Since 1970, UTC; ViewDataNotFound when none was recorded.
    virtual Result GetModificationTime(int& seconds) const = 0;
    virtual Result GetAttr(const String& name, const String& value, AttrDataQuill& data) const = 0;  // of the block
    virtual Result GetCompData(const IComp& comp, CompDataQuill& data) const = 0;
    virtual Result GetCompLabel(const IComp& comp, LabelDataQuill& data) const = 0;
    virtual Result GetCompAttr(const IComp& comp, const String& name, const String& value,
                               AttrDataQuill& data) const = 0;
    virtual Result GetNetLabel(const INet& net, LabelDataQuill& data) const = 0;
    virtual Result GetNetAttr(const INet& net, const String& name, const String& value, AttrDataQuill& data) const = 0;
    virtual Result GetBusData(const IBus& bus, BusDataQuill& data) const = 0;
    virtual Result GetBusLabel(const IBus& bus, LabelDataQuill& data) const = 0;
    virtual Result GetBusAttr(const IBus& bus, const String& name, const String& value, AttrDataQuill& data) const = 0;
    virtual Result GetGroupData(const IGroup& group, GroupDataQuill& data) const = 0;
    virtual Result GetGroupLabel(const IGroup& group, LabelDataQuill& data) const = 0;
    virtual Result GetGroupAttr(const IGroup& group, const String& name, const String& value,
                                AttrDataQuill& data) const = 0;
    virtual Result GetPinAttr(const IPin& pin, const String& name, const String& value, AttrDataQuill& data) const = 0;
    virtual Result GetIterNetsQuill(const INet& net, IteratorT<const INetQuill>& pieces) const = 0;
    virtual Result GetIterLines(IteratorT<const ILineQuill>& lines) const = 0;
    virtual Result GetIterRectangles(IteratorT<const IRectQuill>& rectangles) const = 0;
    virtual Result GetIterArcs(IteratorT<const IArcQuill>& arcs) const = 0;
    virtual Result GetIterCircles(IteratorT<const ICircleQuill>& circles) const = 0;
    virtual Result GetIterTexts(IteratorT<const ITextQuill>& texts) const = 0;
};

// The graphical view of a symbol.
class ORINPI_EXPORT ICompViewQuill : public IObject {
public:
    // ObjectNotFound when the component was deleted; one that is drawn nowhere has an empty view.
    static Result Init(ContainerT<const ICompViewQuill>& view, const IComp& comp);

    virtual Result GetModificationTime(int& seconds) const = 0;  // as of a block's view
    virtual Result GetAttr(const String& name, const String& value, AttrDataQuill& data) const = 0;
    virtual Result GetPinData(const IPin& pin, PinDataQuill& data) const = 0;
    virtual Result GetPinLabel(const IPin& pin, LabelDataQuill& data) const = 0;
    virtual Result GetPinAttr(const IPin& pin, const String& name, const String& value, AttrDataQuill& data) const = 0;
    virtual Result GetIterLines(IteratorT<const ILineQuill>& lines) const = 0;
    virtual Result GetIterRectangles(IteratorT<const IRectQuill>& rectangles) const = 0;
    virtual Result GetIterArcs(IteratorT<const IArcQuill>& arcs) const = 0;
    virtual Result GetIterCircles(IteratorT<const ICircleQuill>& circles) const = 0;
    virtual Result GetIterTexts(IteratorT<const ITextQuill>& texts) const = 0;
};

}  // namespace Orin
