// The steps that the walks over a sheet and over a symbol are made of.
#pragma once

#include "designdata/result_rule.h"
#include "orin/views.h"

namespace Quill::Utils::detail {

// Reads one record by `read(record)` and visits it, unless it is absent.
template <class Record, class Visitor, class Read>
void VisitRecord(Visitor& visitor, const Read& read) {
    Record data;
    if (Present(read(data))) visitor.visit(data);
}

// Every attribute of `object`, as far as it is drawn; `read(name, value, record)` asks the view.
template <class Visitor, class Object, class Read>
void VisitAttributes(Visitor& visitor, const Object& object, const Read& read) {
    Orin::ListAttribute attributes;
    Require(object.GetAttributes(attributes));
    for (const Orin::Attribute& attribute : attributes)
        VisitRecord<Orin::AttrDataQuill>(
            visitor, [&](Orin::AttrDataQuill& data) { return read(attribute.name, attribute.value, data); });
}

template <class Record, class Visitor, class Iterator>
void VisitItems(Visitor& visitor, Iterator& item) {
    for (; item; ++item)
        VisitRecord<Record>(visitor, [&](Record& data) { return item->GetData(data); });
}

template <class Visitor, class View, class Object>
void VisitPinAttributes(Visitor& visitor, const View& view, const Object& pin) {
    VisitAttributes(visitor, pin, [&](const Orin::String& name, const Orin::String& value, Orin::AttrDataQuill& data) {
        return view.GetPinAttr(pin, name, value, data);
    });
}

// The graphics that belong to no object of the design, kind by kind.
template <class Visitor, class View>
void VisitFreeGraphics(Visitor& visitor, const View& view) {
    Orin::IteratorT<const Orin::ILineQuill> line;
    Require(view.GetIterLines(line));
    VisitItems<Orin::LineDataQuill>(visitor, line);

    Orin::IteratorT<const Orin::IRectQuill> rectangle;
    Require(view.GetIterRectangles(rectangle));
    VisitItems<Orin::RectDataQuill>(visitor, rectangle);

    Orin::IteratorT<const Orin::IArcQuill> arc;
    Require(view.GetIterArcs(arc));
    VisitItems<Orin::ArcDataQuill>(visitor, arc);

    Orin::IteratorT<const Orin::ICircleQuill> circle;
    Require(view.GetIterCircles(circle));
    VisitItems<Orin::CircleDataQuill>(visitor, circle);

    Orin::IteratorT<const Orin::ITextQuill> text;
    Require(view.GetIterTexts(text));
    VisitItems<Orin::TextDataQuill>(visitor, text);
}

}  // namespace Quill::Utils::detail
