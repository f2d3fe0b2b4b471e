#include "interchange/detail/data_writer.h"

namespace Quill::Interchange {

namespace {

void WritePoint(JsonText& json, const Orin::Point& point) {
    json.BeginArray();
    json.Value(point.x);
    json.Value(point.y);
    json.EndArray();
}

void WriteSegments(JsonText& json, const Orin::ListSegmentsQuill& segments) {
    if (!segments.joints.IsEmpty()) {
        json.Key("joints");
        json.BeginArray();
        for (const Orin::ListSegmentsQuillJoint& joint : segments.joints) {
            json.BeginArray();
            json.Value(joint.id);
            json.Value(joint.position.x);
            json.Value(joint.position.y);
            if (!joint.attached.IsEmpty()) json.Value(joint.attached);
            json.EndArray();
        }
        json.EndArray();
    }
    if (segments.segments.IsEmpty()) return;
    json.Key("segments");
    json.BeginArray();
    for (const Orin::ListSegmentsQuillSegment& segment : segments.segments) {
        json.BeginArray();
        json.Value(segment.id);
        json.Value(segment.from);
        json.Value(segment.to);
        json.EndArray();
    }
    json.EndArray();
}

}  // namespace

void WriteOptionalPoint(JsonText& json, std::string_view key, const Orin::Point& point) {
    if (point == Orin::Point()) return;
    json.Key(key);
    WritePoint(json, point);
}

void WriteStyle(JsonText& json, const Orin::LineStyle& style) {
    if (style == Orin::LineStyle()) return;
    json.Key("style");
    json.BeginObject();
    json.OptionalMember("width", style.width);
    WriteOptionalWord(json, "pattern", style.pattern, Orin::ELinePattern::Solid);
    WriteOptionalWord(json, "fill", style.fill, Orin::EFill::None);
    json.EndObject();
}

void WriteStyle(JsonText& json, const Orin::TextStyle& style) {
    if (style == Orin::TextStyle()) return;
    json.Key("style");
    json.BeginObject();
    json.OptionalMember("font", style.font);
    json.OptionalMember("height", style.height);
    WriteOptionalWord(json, "orientation", style.orientation, Orin::EOrientation::Degrees0);
    WriteOptionalWord(json, "horizontal", style.horizontal, Orin::EHorizontalAlign::Left);
    WriteOptionalWord(json, "vertical", style.vertical, Orin::EVerticalAlign::Bottom);
    if (!style.visible) json.Member("visible", false);
    json.EndObject();
}

void WriteData(JsonText& json, const Orin::CompDataQuill& data) {
    json.OptionalMember("id", data.objectId);
    WriteOptionalPoint(json, "at", data.position);
    WriteOptionalWord(json, "orientation", data.orientation, Orin::EOrientation::Degrees0);
    json.OptionalMember("mirrored", data.mirrored);
}

void WriteData(JsonText& json, const Orin::PinDataQuill& data) {
    json.OptionalMember("id", data.objectId);
    WriteOptionalPoint(json, "at", data.position);
    WriteOptionalPoint(json, "inner", data.inner);
    json.OptionalMember("inverted", data.inverted);
}

void WriteData(JsonText& json, const Orin::BusDataQuill& data) {
    json.OptionalMember("id", data.objectId);
    WriteSegments(json, data.segments);
    if (!data.signals.IsEmpty()) {
        json.Key("signals");
        json.BeginArray();
        for (const Orin::BusDataQuill::Signal& signal : data.signals) {
            json.BeginArray();
            json.Value(signal.position);
            json.Value(signal.net);
            json.EndArray();
        }
        json.EndArray();
    }
    WriteStyle(json, data.style);
}

void WriteData(JsonText& json, const Orin::GroupDataQuill& data) {
    json.OptionalMember("id", data.objectId);
    WriteOptionalPoint(json, "first", data.first);
    WriteOptionalPoint(json, "second", data.second);
}

void WriteData(JsonText& json, const Orin::LabelDataQuill& data) {
    json.OptionalMember("id", data.objectId);
    WriteOptionalPoint(json, "at", data.position);
    WriteStyle(json, data.style);
}

void WriteData(JsonText& json, const Orin::NetDataQuill& data) {
    json.OptionalMember("id", data.objectId);
    WriteSegments(json, data.segments);
    WriteStyle(json, data.style);
}

void WriteData(JsonText& json, const Orin::LineDataQuill& data) {
    json.OptionalMember("id", data.objectId);
    if (!data.points.IsEmpty()) {
        json.Key("points");
        json.BeginArray();
        for (const Orin::Point& point : data.points)
            WritePoint(json, point);
        json.EndArray();
    }
    WriteStyle(json, data.style);
}

void WriteData(JsonText& json, const Orin::RectDataQuill& data) {
    json.OptionalMember("id", data.objectId);
    WriteOptionalPoint(json, "first", data.first);
    WriteOptionalPoint(json, "second", data.second);
    WriteStyle(json, data.style);
}

void WriteData(JsonText& json, const Orin::ArcDataQuill& data) {
    json.OptionalMember("id", data.objectId);
    WriteOptionalPoint(json, "start", data.start);
    WriteOptionalPoint(json, "middle", data.middle);
    WriteOptionalPoint(json, "end", data.end);
    WriteStyle(json, data.style);
}

void WriteData(JsonText& json, const Orin::CircleDataQuill& data) {
    json.OptionalMember("id", data.objectId);
    WriteOptionalPoint(json, "centre", data.centre);
    json.OptionalMember("radius", data.radius);
    WriteStyle(json, data.style);
}

void WriteData(JsonText& json, const Orin::TextDataQuill& data) {
    json.OptionalMember("id", data.objectId);
    json.OptionalMember("text", data.text);
    WriteOptionalPoint(json, "at", data.position);
    WriteStyle(json, data.style);
}

}  // namespace Quill::Interchange
