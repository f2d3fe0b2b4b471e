#include "drawing/picture.h"

#include <cstdlib>

#include "drawing/detail/arc_geometry.h"
#include "text/utf8.h"

namespace Quill::Drawing {

namespace {

using Orin::EHorizontalAlign;
using Orin::EVerticalAlign;
using Orin::Point;

// Letters are about as wide as a capital is high.
constexpr std::int64_t WidthPercent = 95;

constexpr std::size_t MostCharacters = 40;  // of a label

template <class Align>
constexpr Align Opposite(Align align) noexcept {
    return static_cast<Align>(2 - static_cast<int>(align));  // the middle one stays
}
static_assert(Opposite(EHorizontalAlign::Left) == EHorizontalAlign::Right &&
              Opposite(EVerticalAlign::Bottom) == EVerticalAlign::Top &&
              Opposite(EVerticalAlign::Centre) == EVerticalAlign::Centre);

// Where a text of this length begins, which is aligned to 0.
constexpr std::int64_t Start(int align, std::int64_t length) noexcept {
    return -length * align / 2;
}

Box TextExtent(const Writing& text) {
    const std::int64_t width = WidthOf(text.text, text.height);
    const auto further = std::count(text.text.begin(), text.text.end(), '\n');
    const std::int64_t height = text.height + text.height * LinePercent / 100 * further;
    const std::int64_t left = Start(static_cast<int>(text.horizontal), width);
    const std::int64_t bottom = -Start(static_cast<int>(text.vertical), height);
    Box box;
    for (const Point corner : {Point{left, bottom}, Point{left + width, bottom - height}})
        box.Add(Bounded(text.upwards ? Point{text.at.x + corner.y, text.at.y - corner.x}
                                     : Point{text.at.x + corner.x, text.at.y + corner.y}));
    return box;
}

template <class Points>
Box PointsExtent(const Points& points) {
    Box box;
    for (const Point& point : points)
        box.Add(point);
    return box;
}

// Turns a text that may have come to stand upside down or mirrored so that it can be read where it is: it keeps the
// side of its place on which it stands.
Writing Placed(Writing text, const Placement& placement) {
    const Point along = placement.Turned(text.upwards ? Point{0, -1} : Point{1, 0});
    const Point up = placement.Turned(text.upwards ? Point{-1, 0} : Point{0, -1});
    text.at = placement.Placed(text.at);
    text.upwards = along.x == 0;
    if (along.x < 0 || along.y > 0) text.horizontal = Opposite(text.horizontal);
    if (up.y > 0 || up.x > 0) text.vertical = Opposite(text.vertical);
    return text;
}

}  // namespace

void Box::Add(const Point& point) noexcept {
    least = {std::min(least.x, point.x), std::min(least.y, point.y)};
    most = {std::max(most.x, point.x), std::max(most.y, point.y)};
}

void Box::Add(const Box& box) noexcept {
    if (box.IsEmpty()) return;
    Add(box.least);
    Add(box.most);
}

Box Box::Grown(std::int64_t margin) const noexcept {
    if (IsEmpty()) return *this;
    return {{least.x - margin, least.y - margin}, {most.x + margin, most.y + margin}};
}

std::int64_t WidthOf(std::string_view text, std::int64_t height) {
    std::int64_t longest = 0;
    std::int64_t length = 0;
    for (const char c : text) {
        if (c == '\n') {
            length = 0;
        } else if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) {
            longest = std::max(longest, ++length);
        }
    }
    return std::min(longest * height / 100 * WidthPercent, MostCoordinate);
}

std::string Shortened(std::string_view label) {
    std::size_t length = 0;
    for (std::size_t count = 0; length < label.size() && count < MostCharacters; ++count)
        length += std::max<std::size_t>(Text::Utf8Length(label.substr(length)), 1);
    return length == label.size() ? std::string(label) : std::string(label.substr(0, length)) + "\xE2\x80\xA6";
}

Box ExtentOf(const Shape& shape) {
    struct Visitor {
        Box operator()(const Lines& lines) const { return PointsExtent(lines.points); }
        Box operator()(const Segments& segments) const {
            Box box;
            for (const auto& piece : segments.pieces)
                box.Add(PointsExtent(piece));
            return box;
        }
        Box operator()(const Rect& rect) const { return PointsExtent(std::array{rect.first, rect.second}); }
        Box operator()(const Arc& arc) const {
            Box box = PointsExtent(std::array{arc.start, arc.middle, arc.end});
            for (const Point& point : detail::FarPoints(arc))
                box.Add(point);
            return box;
        }
        Box operator()(const Circle& circle) const {
            Box box;
            box.Add(circle.centre);
            return box.Grown(circle.radius);
        }
        Box operator()(const Writing& text) const { return TextExtent(text); }
    };
    return std::visit(Visitor(), shape);
}

Box ExtentOf(const std::vector<Shape>& shapes) {
    Box box;
    for (const Shape& shape : shapes)
        box.Add(ExtentOf(shape));
    return box;
}

Point Placement::Turned(const Point& direction) const noexcept {
    Point turned = direction;
    if (mirrored) turned.x = -turned.x;
    for (int turn = 0; turn < static_cast<int>(orientation); ++turn)
        turned = {turned.y, -turned.x};
    return turned;
}

Point Placement::Placed(const Point& point) const noexcept {
    const Point turned = Turned(point);
    return Bounded(Point{at.x + turned.x, at.y + turned.y});
}

Shape Placement::Placed(const Shape& shape) const {
    struct Visitor {
        const Placement& placement;
        Shape operator()(Lines lines) const {
            for (Point& point : lines.points)
                point = placement.Placed(point);
            return lines;
        }
        Shape operator()(Segments segments) const {
            for (auto& [from, to] : segments.pieces) {
                from = placement.Placed(from);
                to = placement.Placed(to);
            }
            return segments;
        }
        Shape operator()(const Rect& rect) const {
            return Rect{placement.Placed(rect.first), placement.Placed(rect.second), rect.style};
        }
        Shape operator()(const Arc& arc) const {
            return Arc{placement.Placed(arc.start), placement.Placed(arc.middle), placement.Placed(arc.end), arc.style};
        }
        Shape operator()(const Circle& circle) const {
            return Circle{placement.Placed(circle.centre), circle.radius, circle.style};
        }
        Shape operator()(const Writing& text) const { return Drawing::Placed(text, placement); }
    };
    return std::visit(Visitor{*this}, shape);
}

Writing TextOf(Ink ink, std::string_view text, const Point& at, const Orin::TextStyle& style) {
    Writing made{ink, std::string(text), {}, DefaultTextHeight, false, style.horizontal, style.vertical};
    if (style.height > 0) made.height = std::min(style.height, MostTextHeight);
    return Placed(std::move(made), {Bounded(at), style.orientation, false});
}

}  // namespace Quill::Drawing
