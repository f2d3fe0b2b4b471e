#include "interchange/detail/kicad/read_parts.h"

#include <algorithm>
#include <cmath>

namespace Quill::Interchange::Kicad {

namespace {

using Orin::EFill;
using Orin::EHorizontalAlign;
using Orin::ELinePattern;
using Orin::EVerticalAlign;
using Orin::Point;

template <class Value, std::size_t Count>
using NamedValues = std::array<std::pair<std::string_view, Value>, Count>;

constexpr NamedValues<ELinePattern, 6> Patterns{{{"default", ELinePattern::Solid},
                                                 {"solid", ELinePattern::Solid},
                                                 {"dash", ELinePattern::Dash},
                                                 {"dot", ELinePattern::Dot},
                                                 {"dash_dot", ELinePattern::DashDot},
                                                 {"dash_dot_dot", ELinePattern::DashDot}}};
// Every other way of filling shows something behind the items, as the background does.
constexpr NamedValues<EFill, 2> Fills{{{"none", EFill::None}, {"outline", EFill::Outline}}};

constexpr NamedValues<GraphicKind, 8> Graphics{{{"polyline", GraphicKind::Line},
                                                {"bezier", GraphicKind::Bezier},
                                                {"rectangle", GraphicKind::Rectangle},
                                                {"arc", GraphicKind::Arc},
                                                {"circle", GraphicKind::Circle},
                                                {"text", GraphicKind::Text},
                                                {"text_box", GraphicKind::TextBox},
                                                {"table_cell", GraphicKind::TextBox}}};

constexpr double FullTurn = 360;

int ReadAngle(TokenReader& reader) {
    double angle = reader.ReadDouble();
    if (!(std::abs(angle) <= 10 * FullTurn)) reader.Fail(reader.WordStart(), "no angle");
    // Texts of symbols have tenths of a degree, which are told by their size.
    if (std::abs(angle) > FullTurn) angle /= 10;
    const auto quarters = static_cast<int>(std::lround(angle / 90));
    return ((quarters % 4) + 4) % 4 * 90;
}

bool IsYes(std::string_view word) noexcept {
    return word != "no" && word != "false";
}

void ReadFont(TokenReader& reader, TextLook& look) {
    while (reader.NextList()) {
        if (reader.Head() == "size") look.height = reader.ReadLength();
        if (reader.Head() == "face") look.face = reader.ReadWord();
        reader.Leave();
    }
}

void ReadJustify(TokenReader& reader, TextLook& look) {
    while (reader.TryReadWord()) {
        const std::string_view word = reader.Word();
        if (word == "left") look.horizontal = EHorizontalAlign::Left;
        if (word == "right") look.horizontal = EHorizontalAlign::Right;
        if (word == "top") look.vertical = EVerticalAlign::Top;
        if (word == "bottom") look.vertical = EVerticalAlign::Bottom;
    }
    reader.Leave();
}

// The corner opposite to the first, or the size that leads to it.
void AddCorner(std::vector<Point>& points, const Point& first, const Point& size) {
    points = {first, {first.x + size.x, first.y + size.y}};
}

}  // namespace

std::string_view ReadValue(TokenReader& reader) {
    const std::string_view value = reader.ReadWord();
    reader.Leave();
    return value;
}

bool ReadFlag(TokenReader& reader) {
    const bool on = !reader.TryReadWord() || IsYes(reader.Word());
    reader.Leave();
    return on;
}

Placement ReadPlacement(TokenReader& reader) {
    Placement placement{reader.ReadPoint()};
    if (!reader.AtListEnd()) placement.angle = ReadAngle(reader);
    reader.Leave();
    return placement;
}

Point ReadPointList(TokenReader& reader) {
    const Point point = reader.ReadPoint();
    reader.Leave();
    return point;
}

std::vector<Point> ReadPoints(TokenReader& reader) {
    std::vector<Point> points;
    while (reader.NextList())
        if (reader.Head() == "xy") {
            points.push_back(ReadPointList(reader));
        } else {
            reader.Leave();
        }
    return points;
}

TextLook ReadEffects(TokenReader& reader) {
    TextLook look;
    while (true) {
        const TokenReader::Step step = reader.Next();
        if (step == TokenReader::Step::End) return look;
        if (step == TokenReader::Step::Word) {
            if (reader.Word() == "hide") look.hidden = true;
        } else if (reader.Head() == "font") {
            ReadFont(reader, look);
        } else if (reader.Head() == "justify") {
            ReadJustify(reader, look);
        } else if (reader.Head() == "hide") {
            look.hidden = ReadFlag(reader);
        } else {
            reader.Leave();
        }
    }
}

Field ReadField(TokenReader& reader) {
    Field field;
    field.name = reader.ReadWord();
    field.value = reader.ReadWord();
    field.valueStart = reader.WordStart();
    // A mark may stand in front of the name.
    if (reader.TryReadWord()) {
        field.name = field.value;
        field.value = reader.Word();
        field.valueStart = reader.WordStart();
    }
    bool hidden = false;
    while (reader.NextList()) {
        const std::string_view key = reader.Head();
        if (key == "at") {
            const Placement placement = ReadPlacement(reader);
            field.at = placement.at;
            field.angle = placement.angle;
        } else if (key == "effects") {
            field.look = ReadEffects(reader);
        } else if (key == "show_name") {
            field.showName = ReadFlag(reader);
        } else if (key == "hide") {
            hidden = ReadFlag(reader);
        } else {
            if (key == "id") field.number = reader.ReadInteger();
            reader.Leave();
        }
    }
    field.look.hidden = field.look.hidden || hidden;
    return field;
}

void OrderFields(std::vector<Field>& fields) {
    const bool numbered = std::all_of(fields.begin(), fields.end(), [](const Field& field) { return field.number; });
    if (numbered)
        std::stable_sort(fields.begin(), fields.end(),
                         [](const Field& a, const Field& b) { return *a.number < *b.number; });
}

void ReadStroke(TokenReader& reader, Orin::LineStyle& style) {
    while (reader.NextList()) {
        if (reader.Head() == "width") style.width = reader.ReadLength();
        if (reader.Head() == "type") style.pattern = Named(Patterns, reader.ReadWord()).value_or(ELinePattern::Solid);
        reader.Leave();
    }
}

void ReadFill(TokenReader& reader, Orin::LineStyle& style) {
    while (reader.NextList()) {
        if (reader.Head() == "type") style.fill = Named(Fills, reader.ReadWord()).value_or(EFill::Background);
        reader.Leave();
    }
}

void ReadPaths(TokenReader& reader, std::string_view project, std::vector<Instance>& instances) {
    while (reader.NextList()) {
        if (reader.Head() != "path") {
            reader.Leave();
            continue;
        }
        Instance instance;
        instance.project = project;
        instance.path = reader.ReadWord();
        while (reader.NextList()) {
            if (reader.Head() == "reference" || reader.Head() == "page") instance.text = reader.ReadWord();
            if (reader.Head() == "unit") instance.unit = reader.ReadInteger();
            reader.Leave();
        }
        instances.push_back(instance);
    }
}

std::vector<Instance> ReadInstances(TokenReader& reader) {
    std::vector<Instance> instances;
    while (reader.NextList()) {
        if (reader.Head() == "project") {
            const std::string_view project = reader.ReadWord();
            ReadPaths(reader, project, instances);
        } else {
            reader.Leave();
        }
    }
    return instances;
}

std::optional<Graphic> ReadGraphic(TokenReader& reader) {
    const std::optional<GraphicKind> kind = Named(Graphics, reader.Head());
    if (!kind) return std::nullopt;
    Graphic graphic;
    graphic.kind = *kind;
    const bool isText = *kind == GraphicKind::Text || *kind == GraphicKind::TextBox;
    if (isText) graphic.text = reader.ReadWord();
    // The points of the kinds that name them one by one: start or centre, middle, end.
    Point start;
    std::optional<Point> middle;
    std::optional<Point> end;
    std::optional<Point> size;
    while (reader.NextList()) {
        const std::string_view key = reader.Head();
        if (key == "pts") {
            graphic.points = ReadPoints(reader);
        } else if (key == "at") {
            const Placement placement = ReadPlacement(reader);
            start = placement.at;
            graphic.angle = placement.angle;
        } else if (key == "start" || key == "center") {
            start = ReadPointList(reader);
        } else if (key == "mid") {
            middle = ReadPointList(reader);
        } else if (key == "end") {
            end = ReadPointList(reader);
        } else if (key == "size") {
            size = ReadPointList(reader);
        } else if (key == "radius") {
            // A rectangle's is that of its corners, which designs draw sharp.
            if (*kind == GraphicKind::Circle) graphic.radius = reader.ReadLength();
            reader.Leave();
        } else if (key == "stroke") {
            ReadStroke(reader, graphic.style);
        } else if (key == "fill") {
            ReadFill(reader, graphic.style);
        } else if (key == "effects") {
            graphic.look = ReadEffects(reader);
        } else {
            reader.Leave();
        }
    }
    switch (*kind) {
        case GraphicKind::Line:
        case GraphicKind::Bezier:
            break;
        case GraphicKind::Arc:
            graphic.points = {start, middle.value_or(start), end.value_or(start)};
            break;
        case GraphicKind::Circle:
        case GraphicKind::Text:
            graphic.points = {start};
            break;
        case GraphicKind::Rectangle:
        case GraphicKind::TextBox:
            if (size) {
                AddCorner(graphic.points, start, *size);
            } else {
                graphic.points = {start, end.value_or(start)};
            }
            break;
    }
    return graphic;
}

}  // namespace Quill::Interchange::Kicad
