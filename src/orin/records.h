// Plain records that the database fills: what is listed, and how objects are drawn.
#pragma once

#include <cstdint>

#include "orin/enums.h"
#include "orin/index.h"
#include "orin/list.h"
#include "orin/string.h"

namespace Orin {

// An attribute of an object, as it is listed.
struct Attribute {
    String name;
    String value;
    EAttributeType type = EAttributeType::User;  // of a component's attribute; User for every other object

    bool operator==(const Attribute&) const = default;
};

// Attributes as an operation lists them; it says in which order.
using ListAttribute = ListT<Attribute>;

// What a list of groups tells of each.
struct GroupInfo {
    Index index;
    String name;
    EGroupType type = EGroupType::Unknown;

    bool operator==(const GroupInfo&) const = default;
};

// What a look-up of blocks tells of each.
struct BlockInfo {
    Index index;
    String name;
    String libraryName;

    bool operator==(const BlockInfo&) const = default;
};

// Which snapshot a handle names.
struct SnapshotInfo {
    String projectName;
    String snapshotName;
    GIndex index;  // equal for two handles exactly when they name the same snapshot

    bool operator==(const SnapshotInfo&) const = default;
};

// A project, as client observers are told of it.
struct ProjectData {
    String name;
    String location;
};

// A backup of a project, as client observers are told of it.
struct ProjectBackupData {
    String projectName;
    String target;
    String comment;
};

// Two snapshots by their names, the one that is read and the one that it goes to.
struct SnapshotPairInfo {
    String source;
    String target;
};

// ---- How objects are drawn. Lengths and coordinates are nanometres; x grows to the right, y downwards. ----

// The id of an item within its sheet or symbol; 0 and 0xFFFFFFFF mean that none was given.
using ItemId = std::uint32_t;

// A place on a sheet or in a symbol.
struct Point {
    std::int64_t x = 0;
    std::int64_t y = 0;

    bool operator==(const Point&) const = default;
};

// Quarter turns, counter-clockwise as seen on the sheet.
enum class EOrientation : std::uint8_t { Degrees0, Degrees90, Degrees180, Degrees270 };

// Which point of a text stands at its position.
enum class EHorizontalAlign : std::uint8_t { Left, Centre, Right };
enum class EVerticalAlign : std::uint8_t { Bottom, Centre, Top };
// How a line is broken.
enum class ELinePattern : std::uint8_t { Solid, Dash, Dot, DashDot };
// With what a closed shape is filled: not at all, with the colour of its outline or of the sheet.
enum class EFill : std::uint8_t { None, Outline, Background };

// How a line or the outline of a shape is drawn.
struct LineStyle {
    std::int64_t width = 0;  // 0 is the editor's default
    ELinePattern pattern = ELinePattern::Solid;
    EFill fill = EFill::None;

    bool operator==(const LineStyle&) const = default;
};

// How a text is drawn.
struct TextStyle {
    String font;              // a font string; empty is the editor's default
    std::int64_t height = 0;  // 0 is the editor's default
    EOrientation orientation = EOrientation::Degrees0;
    EHorizontalAlign horizontal = EHorizontalAlign::Left;
    EVerticalAlign vertical = EVerticalAlign::Bottom;
    bool visible = true;

    bool operator==(const TextStyle&) const = default;
};

// A component as it is drawn.
struct CompDataQuill {
    ItemId objectId = 0;
    Point position;
    EOrientation orientation = EOrientation::Degrees0;
    bool mirrored = false;  // about the vertical axis, before it is turned

    bool operator==(const CompDataQuill&) const = default;
};

// A pin as it is drawn.
struct PinDataQuill {
    ItemId objectId = 0;
    Point position;  // where nets connect
    Point inner;     // where the pin meets the body
    bool inverted = false;

    bool operator==(const PinDataQuill&) const = default;
};

// Where segments of a net or bus meet or end.
struct ListSegmentsQuillJoint {
    ItemId id = 0;
    Point position;
    Index attached;  // the pin, ripper or bus that the joint touches; empty for a free joint

    bool operator==(const ListSegmentsQuillJoint&) const = default;
};

// A straight piece between two joints of its list.
struct ListSegmentsQuillSegment {
    ItemId id = 0;
    ItemId from = 0;  // joint ids
    ItemId to = 0;

    bool operator==(const ListSegmentsQuillSegment&) const = default;
};

// The lines of a net or bus.
struct ListSegmentsQuill {
    ListT<ListSegmentsQuillJoint> joints;
    ListT<ListSegmentsQuillSegment> segments;

    bool operator==(const ListSegmentsQuill&) const = default;
};

// One connected piece of a net as it is drawn.
struct NetDataQuill {
    ItemId objectId = 0;
    ListSegmentsQuill segments;
    LineStyle style;

    bool operator==(const NetDataQuill&) const = default;
};

// A bus as it is drawn, with the nets in it by their positions.
struct BusDataQuill {
    // A net in the bus, and its position there.
    struct Signal {
        std::int32_t position = 0;
        Index net;

        bool operator==(const Signal&) const = default;
    };

    ItemId objectId = 0;
    ListSegmentsQuill segments;
    ListT<Signal> signals;
    LineStyle style;

    bool operator==(const BusDataQuill&) const = default;
};

// The label of an object as it is drawn.
struct LabelDataQuill {
    ItemId objectId = 0;
    Point position;
    TextStyle style;

    bool operator==(const LabelDataQuill&) const = default;
};

// An attribute of an object as it is drawn.
struct AttrDataQuill {
    ItemId objectId = 0;
    ItemId attributeId = 0;
    Point position;
    TextStyle style;
    bool showName = false;  // the name in front of the value

    bool operator==(const AttrDataQuill&) const = default;
};

// The frame of a group of objects.
struct GroupDataQuill {
    ItemId objectId = 0;
    Point first;  // two opposite corners
    Point second;

    bool operator==(const GroupDataQuill&) const = default;
};

// A text that stands for itself.
struct TextDataQuill {
    ItemId objectId = 0;
    String text;
    Point position;
    TextStyle style;

    bool operator==(const TextDataQuill&) const = default;
};

// A line through several points.
struct LineDataQuill {
    ItemId objectId = 0;
    ListT<Point> points;
    LineStyle style;

    bool operator==(const LineDataQuill&) const = default;
};

// A rectangle.
struct RectDataQuill {
    ItemId objectId = 0;
    Point first;  // two opposite corners
    Point second;
    LineStyle style;

    bool operator==(const RectDataQuill&) const = default;
};

// An arc of a circle.
struct ArcDataQuill {
    ItemId objectId = 0;
    Point start;
    Point middle;  // any point of the arc between its ends
    Point end;
    LineStyle style;

    bool operator==(const ArcDataQuill&) const = default;
};

// A full circle.
struct CircleDataQuill {
    ItemId objectId = 0;
    Point centre;
    std::int64_t radius = 0;
    LineStyle style;

    bool operator==(const CircleDataQuill&) const = default;
};

}  // namespace Orin
