#include "interchange/detail/kicad/drawing.h"

#include "interchange/detail/kicad/geometry.h"

namespace Quill::Interchange::Kicad {

namespace {

using Orin::EObjectType;
using Orin::Point;

constexpr int StepsOfCurve = 16;

// A cubic curve as a line through points at equal steps of its parameter.
std::vector<Point> Flattened(const std::vector<Point>& control) {
    if (control.size() != 4) return control;
    std::vector<Point> points;
    for (int step = 0; step <= StepsOfCurve; ++step) {
        const double t = static_cast<double>(step) / StepsOfCurve;
        const double s = 1 - t;
        const double weights[] = {s * s * s, 3 * s * s * t, 3 * s * t * t, t * t * t};
        double x = 0;
        double y = 0;
        for (std::size_t i = 0; i < control.size(); ++i) {
            x += weights[i] * static_cast<double>(control[i].x);
            y += weights[i] * static_cast<double>(control[i].y);
        }
        points.push_back({static_cast<std::int64_t>(x), static_cast<std::int64_t>(y)});
    }
    return points;
}

// Where the text of a box begins, as its alignment says.
Point TextPlace(const Point& first, const Point& second, const TextLook& look) {
    Point at{(first.x + second.x) / 2, (first.y + second.y) / 2};
    if (look.horizontal == Orin::EHorizontalAlign::Left) at.x = std::min(first.x, second.x);
    if (look.horizontal == Orin::EHorizontalAlign::Right) at.x = std::max(first.x, second.x);
    if (look.vertical == Orin::EVerticalAlign::Top) at.y = std::min(first.y, second.y);
    if (look.vertical == Orin::EVerticalAlign::Bottom) at.y = std::max(first.y, second.y);
    return at;
}

// The middle one stays.
template <class Align>
constexpr Align Opposite(Align align) noexcept {
    return static_cast<Align>(2 - static_cast<int>(align));
}

}  // namespace

Orin::TextStyle StyleOf(const TextLook& look, int angle) {
    Orin::TextStyle style;
    style.font = Stored(look.face);
    style.height = look.height;
    style.orientation = angle % 180 == 0 ? Orin::EOrientation::Degrees0 : Orin::EOrientation::Degrees90;
    style.horizontal = look.horizontal;
    style.vertical = look.vertical;
    style.visible = !look.hidden;
    return style;
}

Orin::TextStyle StyleOf(const TextLook& look, int angle, int symbolAngle, Mirror mirror) {
    const bool upwards = angle % 180 != 0;
    const Point along = OnSheet(upwards ? Point{0, -1} : Point{1, 0}, {}, symbolAngle, mirror);
    const Point up = OnSheet(upwards ? Point{-1, 0} : Point{0, -1}, {}, symbolAngle, mirror);
    Orin::TextStyle style = StyleOf(look, along.x == 0 ? 90 : 0);
    if (along.x < 0 || along.y > 0) style.horizontal = Opposite(style.horizontal);
    if (up.y > 0 || up.x > 0) style.vertical = Opposite(style.vertical);
    return style;
}

void AddText(std::string_view text, const Point& at, Orin::TextStyle style, IndexCounter& indexes, ViewModel& view) {
    Orin::TextDataQuill data;
    data.text = Stored(text);
    data.position = at;
    data.style = std::move(style);
    view.texts.push_back({indexes.Next(EObjectType::Text), std::move(data)});
}

void Draw(const Graphic& graphic, Axis axis, IndexCounter& indexes, ViewModel& view) {
    std::vector<Point> points = graphic.kind == GraphicKind::Bezier ? Flattened(graphic.points) : graphic.points;
    if (axis == Axis::Up)
        for (Point& point : points)
            point = Flipped(point);
    switch (graphic.kind) {
        case GraphicKind::Line:
        case GraphicKind::Bezier: {
            Orin::LineDataQuill data;
            data.points = Orin::ListT<Point>(points);
            data.style = graphic.style;
            view.lines.push_back({indexes.Next(EObjectType::Line), std::move(data)});
            break;
        }
        case GraphicKind::TextBox:
            AddText(graphic.text, TextPlace(points[0], points[1], graphic.look), StyleOf(graphic.look, graphic.angle),
                    indexes, view);
            [[fallthrough]];
        case GraphicKind::Rectangle: {
            Orin::RectDataQuill data;
            data.first = points[0];
            data.second = points[1];
            data.style = graphic.style;
            view.rects.push_back({indexes.Next(EObjectType::Rect), data});
            break;
        }
        case GraphicKind::Arc: {
            Orin::ArcDataQuill data;
            data.start = points[0];
            data.middle = points[1];
            data.end = points[2];
            data.style = graphic.style;
            view.arcs.push_back({indexes.Next(EObjectType::Arc), data});
            break;
        }
        case GraphicKind::Circle: {
            Orin::CircleDataQuill data;
            data.centre = points[0];
            data.radius = graphic.radius;
            data.style = graphic.style;
            view.circles.push_back({indexes.Next(EObjectType::Circle), data});
            break;
        }
        case GraphicKind::Text:
            AddText(graphic.text, points[0], StyleOf(graphic.look, graphic.angle), indexes, view);
            break;
    }
}

}  // namespace Quill::Interchange::Kicad
