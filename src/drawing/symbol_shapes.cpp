#include "drawing/symbol_shapes.h"

#include <cstdlib>
#include <set>

#include "designdata/result_rule.h"

namespace Quill::Drawing {

namespace {

using Orin::ContainerT;
using Orin::EFill;
using Orin::EHorizontalAlign;
using Orin::EVerticalAlign;
using Orin::IteratorT;
using Orin::Point;
using Utils::Present;
using Utils::Require;

constexpr std::int64_t NumberHeight = 1'000'000;
constexpr std::int64_t NameGap = 600'000;
constexpr std::int64_t BubbleRadius = 500'000;
// An edge of a box within this distance is where a pin meets it.
constexpr std::int64_t Touching = 100'000;

template <class Record, class Iterator, class Add>
void ForEachRecord(Iterator& item, const Add& add) {
    for (; item; ++item) {
        Record data;
        if (Present(item->GetData(data))) add(data);
    }
}

EFill FillOf(const Shape& shape) {
    struct Visitor {
        EFill operator()(const Writing&) const { return EFill::None; }
        EFill operator()(const Segments&) const { return EFill::None; }
        EFill operator()(const Lines& lines) const { return lines.style.fill; }
        EFill operator()(const Rect& rect) const { return rect.style.fill; }
        EFill operator()(const Arc& arc) const { return arc.style.fill; }
        EFill operator()(const Circle& circle) const { return circle.style.fill; }
    };
    return std::visit(Visitor(), shape);
}

// View is that of a sheet or of a symbol.
template <class View>
std::vector<Shape> Read(const View& view, Ink ink) {
    std::vector<Shape> shapes;
    IteratorT<const Orin::ILineQuill> lines;
    Require(view.GetIterLines(lines));
    ForEachRecord<Orin::LineDataQuill>(lines, [&](const Orin::LineDataQuill& data) {
        Lines made{{}, data.style, false};
        for (const Point& point : data.points)
            made.points.push_back(Bounded(point));
        shapes.emplace_back(std::move(made));
    });
    IteratorT<const Orin::IRectQuill> rectangles;
    Require(view.GetIterRectangles(rectangles));
    ForEachRecord<Orin::RectDataQuill>(rectangles, [&](const Orin::RectDataQuill& data) {
        shapes.emplace_back(Rect{Bounded(data.first), Bounded(data.second), data.style});
    });
    IteratorT<const Orin::IArcQuill> arcs;
    Require(view.GetIterArcs(arcs));
    ForEachRecord<Orin::ArcDataQuill>(arcs, [&](const Orin::ArcDataQuill& data) {
        shapes.emplace_back(Arc{Bounded(data.start), Bounded(data.middle), Bounded(data.end), data.style});
    });
    IteratorT<const Orin::ICircleQuill> circles;
    Require(view.GetIterCircles(circles));
    ForEachRecord<Orin::CircleDataQuill>(circles, [&](const Orin::CircleDataQuill& data) {
        shapes.emplace_back(
            Circle{Bounded(data.centre), std::clamp<std::int64_t>(data.radius, 0, MostCoordinate), data.style});
    });
    // A filled shape of one object must not hide the lines of another.
    std::stable_partition(shapes.begin(), shapes.end(),
                          [](const Shape& shape) { return FillOf(shape) == EFill::Background; });
    IteratorT<const Orin::ITextQuill> texts;
    Require(view.GetIterTexts(texts));
    ForEachRecord<Orin::TextDataQuill>(texts, [&](const Orin::TextDataQuill& data) {
        if (!data.style.visible) return;
        // The label of a bus may stand as a text as well.
        const std::string_view text = data.text.View();
        const bool isLabel = text.find_first_of(" \n") == text.npos && text.find(',') != text.npos;
        shapes.emplace_back(TextOf(ink, isLabel ? Shortened(text) : std::string(text), data.position, data.style));
    });
    return shapes;
}

std::string AttributeOf(const Orin::IPin& pin, const char* name) {
    Orin::String value;
    return Present(pin.GetAttribute(name, value)) ? std::string(value.View()) : std::string();
}

// A pin of a symbol, with what is written at it.
struct Pin {
    Point outer;
    Point inner;
    bool inverted = false;
    std::string name;
    std::string number;

    std::int64_t Length() const { return std::abs(outer.x - inner.x) + std::abs(outer.y - inner.y); }
};

std::vector<Pin> ReadPins(const Orin::ICompViewQuill& view, const Orin::IComp& definition) {
    std::vector<Pin> pins;
    IteratorT<const Orin::IPin> pin;
    Require(definition.GetIterPins(pin));
    for (; pin; ++pin) {
        Orin::PinDataQuill data;
        if (!Present(view.GetPinData(*pin, data))) continue;
        Pin& read = pins.emplace_back();
        read.outer = Bounded(data.position);
        read.inner = Bounded(data.inner);
        read.inverted = data.inverted;
        Orin::String label;
        if (Present(pin->GetLabel(label))) read.name = label.View();
        // Where the label is the number, the name is an attribute. Pins without length stand for those of a block,
        // whose names are their numbers.
        read.number = AttributeOf(*pin, "Pin Number");
        if (read.number == read.name && read.Length() > 0) read.name = AttributeOf(*pin, "Pin Name");
    }
    return pins;
}

// The direction from the pin's end into the body: along an axis, of length 1. A pin without length points from the
// nearest edge of the body inwards.
Point Inwards(const Pin& pin, const Box& body) {
    const std::int64_t x = pin.inner.x - pin.outer.x;
    const std::int64_t y = pin.inner.y - pin.outer.y;
    if (x != 0 || y != 0) return std::abs(x) >= std::abs(y) ? Point{x > 0 ? 1 : -1, 0} : Point{0, y > 0 ? 1 : -1};
    if (body.IsEmpty()) return {1, 0};
    struct Side {
        std::int64_t distance;
        Point inwards;
    };
    const Side sides[] = {{std::abs(pin.outer.x - body.least.x), {1, 0}},
                          {std::abs(body.most.x - pin.outer.x), {-1, 0}},
                          {std::abs(pin.outer.y - body.least.y), {0, 1}},
                          {std::abs(body.most.y - pin.outer.y), {0, -1}}};
    return std::min_element(std::begin(sides), std::end(sides),
                            [](const Side& a, const Side& b) { return a.distance < b.distance; })
        ->inwards;
}

// How much room a box of the symbol offers behind the pin's inner end; 0 when the pin meets no box.
std::int64_t RoomFor(const Pin& pin, const Point& inwards, const std::vector<Shape>& shapes) {
    std::int64_t room = 0;
    for (const Shape& shape : shapes) {
        if (!std::holds_alternative<Rect>(shape)) continue;
        const Box box = ExtentOf(shape);
        const Box reach = box.Grown(Touching);
        const Point& at = pin.inner;
        if (at.x < reach.least.x || at.x > reach.most.x || at.y < reach.least.y || at.y > reach.most.y) continue;
        const std::int64_t ahead = inwards.x > 0   ? box.most.x - at.x
                                   : inwards.x < 0 ? at.x - box.least.x
                                   : inwards.y > 0 ? box.most.y - at.y
                                                   : at.y - box.least.y;
        room = std::max(room, ahead);
    }
    return room;
}

Writing Beside(Ink ink, std::string text, const Point& at, std::int64_t height, const Point& away) {
    Writing made{ink, std::move(text), at, height, away.x == 0, EHorizontalAlign::Left, EVerticalAlign::Centre};
    if (away.x < 0 || away.y > 0) made.horizontal = EHorizontalAlign::Right;
    return made;
}

Point Moved(const Point& from, const Point& direction, std::int64_t length) {
    return {from.x + direction.x * length, from.y + direction.y * length};
}

// Whether the name is made of signs alone.
bool IsSign(const std::string& name) {
    return std::none_of(name.begin(), name.end(), [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || (c & 0x80) != 0;
    });
}

// A part with one pin needs no name for it, one with two no numbers, in the place of names neither.
void DrawPin(const Pin& pin, const Box& body, std::size_t pins, std::vector<Shape>& shapes) {
    const Point inwards = Inwards(pin, body);
    const std::int64_t room = RoomFor(pin, inwards, shapes);
    Point inner = pin.inner;
    const std::int64_t length = pin.Length();
    if (pin.inverted && length > 2 * BubbleRadius) {
        shapes.emplace_back(Circle{Moved(inner, inwards, -BubbleRadius), BubbleRadius, {}});
        inner = Moved(inner, inwards, -2 * BubbleRadius);
    }
    if (length > 0) shapes.emplace_back(Lines{{pin.outer, inner}, {}, false});

    // Names stand in the box behind the pin. A symbol that is no box says by its shape what its pins are, but for the
    // signs of an amplifier's inputs. Names for which there is no room are no help.
    const std::int64_t width = WidthOf(pin.name, DefaultTextHeight);
    const bool fits = length == 0 || width + NameGap <= room;
    const bool tells = room > 0 ? fits && (pins > 1 || length == 0) : pins > 2 && IsSign(pin.name);
    const bool isNumber = pin.name == pin.number && length > 0;
    if (tells && !isNumber && !pin.name.empty() && pin.name != "~")
        shapes.emplace_back(
            Beside(Ink::Attribute, pin.name, Moved(pin.inner, inwards, NameGap), DefaultTextHeight, inwards));
    if (pins < 3 || pin.number.empty() || length == 0) return;
    const std::int64_t usual = WidthOf(pin.number, NumberHeight);
    const std::int64_t height = usual <= length ? NumberHeight : NumberHeight * (length / 1000) / (usual / 1000 + 1);
    Writing number{Ink::Attribute,
                   pin.number,
                   {(pin.outer.x + pin.inner.x) / 2, (pin.outer.y + pin.inner.y) / 2},
                   height,
                   inwards.x == 0,
                   EHorizontalAlign::Centre,
                   EVerticalAlign::Bottom};
    shapes.emplace_back(std::move(number));
}

}  // namespace

std::vector<Shape> FreeShapes(const Orin::IBlockViewQuill& view) {
    return Read(view, Ink::Note);
}

const SymbolShapes& SymbolCatalogue::Of(const Orin::IComp& definition) {
    Orin::Index index;
    Require(definition.GetIndex(index));
    const auto known = m_symbols.find(index);
    if (known != m_symbols.end()) return known->second;

    ContainerT<const Orin::ICompViewQuill> view;
    Require(Orin::ICompViewQuill::Init(view, definition));
    SymbolShapes symbol;
    symbol.shapes = Read(*view, Ink::Body);
    for (const Shape& shape : symbol.shapes)
        if (!std::holds_alternative<Writing>(shape)) symbol.body.Add(ExtentOf(shape));
    const std::vector<Pin> pins = ReadPins(*view, definition);
    symbol.hasPins = !pins.empty();
    if (symbol.hasPins) symbol.outward = Inwards(pins.front(), symbol.body);
    // Symbols put pins of one purpose on top of each other; only the first is to be seen.
    const auto before = [](const Point& a, const Point& b) { return a.x != b.x ? a.x < b.x : a.y < b.y; };
    std::set<Point, decltype(before)> taken(before);
    for (const Pin& pin : pins)
        if (taken.insert(pin.outer).second) DrawPin(pin, symbol.body, pins.size(), symbol.shapes);
    return m_symbols.emplace(index, std::move(symbol)).first->second;
}

}  // namespace Quill::Drawing
