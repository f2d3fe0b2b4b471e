// A picture of a sheet: shapes that know what they stand for, in the units of the design.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "orin/records.h"

namespace Quill::Drawing {

// Coordinates and lengths are nanometres, x to the right, y downwards. Those of pictures lie within this limit (ten
// kilometres), so that sums of some of them never overflow; what a design says beyond it is drawn at the limit.
inline constexpr std::int64_t MostCoordinate = 10'000'000'000'000;
inline constexpr std::int64_t MostTextHeight = 10'000'000'000;

inline constexpr std::int64_t Millimetre = 1'000'000;
inline constexpr std::int64_t DefaultTextHeight = 1'270'000;
// From one line of a text to the next, of its height.
inline constexpr std::int64_t LinePercent = 160;

constexpr std::int64_t Bounded(std::int64_t length) noexcept {
    return std::clamp(length, -MostCoordinate, MostCoordinate);
}
constexpr Orin::Point Bounded(const Orin::Point& point) noexcept {
    return {Bounded(point.x), Bounded(point.y)};
}

// What a shape stands for; it settles colours and the widths of lines (svg_writer.h).
enum class Ink : std::uint8_t {
    Frame,
    Note,  // lines and texts that belong to no object
    Cluster,
    Body,
    Hierarchy,
    Connector,
    Power,
    Attribute,
    Bus,
    Net,
    Count,
};

struct Lines {
    std::vector<Orin::Point> points;
    Orin::LineStyle style = {};
    bool closed = false;
};

// Straight pieces that need not hang together.
struct Segments {
    std::vector<std::array<Orin::Point, 2>> pieces;
    Orin::LineStyle style = {};
};

struct Rect {
    Orin::Point first;  // two opposite corners
    Orin::Point second;
    Orin::LineStyle style = {};
};

struct Arc {
    Orin::Point start;
    Orin::Point middle;  // any point of the arc between its ends
    Orin::Point end;
    Orin::LineStyle style = {};
};

struct Circle {
    Orin::Point centre;
    std::int64_t radius = 0;
    Orin::LineStyle style = {};
};

// Texts read from left to right, or upwards: whatever way something is turned, its texts can be read.
struct Writing {
    Ink ink = Ink::Note;
    std::string text;  // lines end with line feeds
    Orin::Point at;
    std::int64_t height = DefaultTextHeight;  // of a capital letter
    bool upwards = false;
    Orin::EHorizontalAlign horizontal = Orin::EHorizontalAlign::Left;
    Orin::EVerticalAlign vertical = Orin::EVerticalAlign::Bottom;
};

using Shape = std::variant<Lines, Segments, Rect, Arc, Circle, Writing>;

// A rectangle with corners in order. One that holds nothing has them in the wrong order.
struct Box {
    Orin::Point least{MostCoordinate, MostCoordinate};
    Orin::Point most{-MostCoordinate, -MostCoordinate};

    constexpr bool IsEmpty() const noexcept { return least.x > most.x; }
    constexpr std::int64_t Width() const noexcept { return most.x - least.x; }
    constexpr std::int64_t Height() const noexcept { return most.y - least.y; }
    void Add(const Orin::Point& point) noexcept;
    void Add(const Box& box) noexcept;
    Box Grown(std::int64_t margin) const noexcept;  // an empty one stays empty
};

// About how far the shape reaches. Widths of texts are estimated, since nobody knows the reader's fonts.
Box ExtentOf(const Shape& shape);
Box ExtentOf(const std::vector<Shape>& shapes);

// The estimated length of the longest of the text's lines.
std::int64_t WidthOf(std::string_view text, std::int64_t height);

// A label as it fits a picture: of a long one, such as that of a bus of many nets, the beginning and an ellipsis.
std::string Shortened(std::string_view label);

// Something that can be pointed at: a component, a net, a connector.
struct Item {
    Ink ink = Ink::Note;
    std::string title;   // what a reader is told about it; may be empty
    std::string anchor;  // its id in the document; may be empty
    std::string href;    // where it leads; empty where nowhere
    std::vector<Shape> shapes;
};

struct Picture {
    std::string title;
    Box extent;
    std::vector<Item> items;  // later ones above earlier ones
};

// ---- Turning ----

// How a symbol stands on a sheet: mirrored about the vertical axis first, then turned, then moved.
struct Placement {
    Orin::Point at = {};
    Orin::EOrientation orientation = Orin::EOrientation::Degrees0;
    bool mirrored = false;

    Orin::Point Turned(const Orin::Point& direction) const noexcept;
    Orin::Point Placed(const Orin::Point& point) const noexcept;
    Shape Placed(const Shape& shape) const;
};

// A text as a design draws it.
Writing TextOf(Ink ink, std::string_view text, const Orin::Point& at, const Orin::TextStyle& style);

}  // namespace Quill::Drawing
