// Plain records that the database fills: what is listed, and how objects are drawn.
#pragma once

#include <cstdint>

#include "orin/enums.h"
#include "orin/index.h"
#include "orin/list.h"
#include "orin/string.h"

namespace Orin {

struct Attribute {
    String name;
    String value;
    EAttributeType type = EAttributeType::User;  // of a component's attribute; User for every other object

    bool operator==(const Attribute&) const = default;
};

using ListAttribute = ListT<Attribute>;

struct GroupInfo {
    Index index;
    String name;
    EGroupType type = EGroupType::Unknown;

    bool operator==(const GroupInfo&) const = default;
};

struct BlockInfo {
    Index index;
    String name;
    String libraryName;

    bool operator==(const BlockInfo&) const = default;
};

struct SnapshotInfo {
    String projectName;
    String snapshotName;
    GIndex index;  // equal for two handles exactly when they name the same snapshot

    bool operator==(const SnapshotInfo&) const = default;
};

struct ProjectData {
    String name;
    String location;
};

struct ProjectBackupData {
    String projectName;
    String target;
    String comment;
};

struct SnapshotPairInfo {
    String source;
    String target;
};

// ---- How objects are drawn. Lengths and coordinates are nanometres; x grows to the right, y downwards. ----

// The id of an item within its sheet or symbol; 0 and 0xFFFFFFFF mean that none was given.
using ItemId = std::uint32_t;

struct Point {
    std::int64_t x = 0;
    std::int64_t y = 0;

    bool operator==(const Point&) const = default;
};

// Quarter turns, counter-clockwise as seen on the sheet.
enum class EOrientation : std::uint8_t { Degrees0, Degrees90, Degrees180, Degrees270 };

enum class EHorizontalAlign : std::uint8_t { Left, Centre, Right };
enum class EVerticalAlign : std::uint8_t { Bottom, Centre, Top };
enum class ELinePattern : std::uint8_t { Solid, Dash, Dot, DashDot };
enum class EFill : std::uint8_t { None, Outline, Background };

struct LineStyle {
    std::int64_t width = 0;  // 0 is the editor's default
    ELinePattern pattern = ELinePattern::Solid;
    EFill fill = EFill::None;

    bool operator==(const LineStyle&) const = default;
};

struct TextStyle {
    String font;              // a font string; empty is the editor's default
    std::int64_t height = 0;  // 0 is the editor's default
    EOrientation orientation = EOrientation::Degrees0;
    EHorizontalAlign horizontal = EHorizontalAlign::Left;
    EVerticalAlign vertical = EVerticalAlign::Bottom;
    bool visible = true;

    bool operator==(const TextStyle&) const = default;
};

struct CompDataQuill {
    ItemId objectId = 0;
    Point position;
    EOrientation orientation = EOrientation::Degrees0;
    bool mirrored = false;  // about the vertical axis, before it is turned

    bool operator==(const CompDataQuill&) const = default;
};

struct PinDataQuill {
    ItemId objectId = 0;
    Point position;  // where nets connect
    Point inner;     // where the pin meets the body
    bool inverted = false;

    bool operator==(const PinDataQuill&) const = default;
};

struct ListSegmentsQuillJoint {
    ItemId id = 0;
    Point position;
    Index attached;  // the pin, ripper or bus that the joint touches; empty for a free joint

    bool operator==(const ListSegmentsQuillJoint&) const = default;
};

struct ListSegmentsQuillSegment {
    ItemId id = 0;
    ItemId from = 0;  // joint ids
    ItemId to = 0;

    bool operator==(const ListSegmentsQuillSegment&) const = default;
};

struct ListSegmentsQuill {
    ListT<ListSegmentsQuillJoint> joints;
    ListT<ListSegmentsQuillSegment> segments;

    bool operator==(const ListSegmentsQuill&) const = default;
};

struct NetDataQuill {
    ItemId objectId = 0;
    ListSegmentsQuill segments;
    LineStyle style;

    bool operator==(const NetDataQuill&) const = default;
};

struct BusDataQuill {
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

struct LabelDataQuill {
    ItemId objectId = 0;
    Point position;
    TextStyle style;

    bool operator==(const LabelDataQuill&) const = default;
};

struct AttrDataQuill {
    ItemId objectId = 0;
    ItemId attributeId = 0;
    Point position;
    TextStyle style;
    bool showName = false;  // the name in front of the value

    bool operator==(const AttrDataQuill&) const = default;
};

struct GroupDataQuill {
    ItemId objectId = 0;
    Point first;  // two opposite corners
    Point second;

    bool operator==(const GroupDataQuill&) const = default;
};

struct TextDataQuill {
    ItemId objectId = 0;
    String text;
    Point position;
    TextStyle style;

    bool operator==(const TextDataQuill&) const = default;
};

struct LineDataQuill {
    ItemId objectId = 0;
    ListT<Point> points;
    LineStyle style;

    bool operator==(const LineDataQuill&) const = default;
};

struct RectDataQuill {
    ItemId objectId = 0;
    Point first;  // two opposite corners
    Point second;
    LineStyle style;

    bool operator==(const RectDataQuill&) const = default;
};

struct ArcDataQuill {
    ItemId objectId = 0;
    Point start;
    Point middle;  // any point of the arc between its ends
    Point end;
    LineStyle style;

    bool operator==(const ArcDataQuill&) const = default;
};

struct CircleDataQuill {
    ItemId objectId = 0;
    Point centre;
    std::int64_t radius = 0;
    LineStyle style;

    bool operator==(const CircleDataQuill&) const = default;
};

}  // namespace Orin
