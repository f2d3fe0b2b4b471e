// Objects out of their JSON.
#include <algorithm>
#include <set>

#include "interchange/detail/json_node.h"

namespace Quill::Interchange {

namespace {

using Orin::Index;
using Orin::DesignDb::DrawingInfo;
using Orin::DesignDb::DrawnAttributeInfo;
using Orin::DesignDb::NetPieceInfo;

template <class E>
Orin::BitContainerT<E, 1> ReadTypes(const Node& node) {
    Orin::BitContainerT<E, 1> types;
    ReadEach(node, [&](const Node& word) {
        const E type = ReadWord<E>(word);
        if (static_cast<int>(type) < 0 || static_cast<int>(type) > 31)
            Fail(word.place, "is not a bit position from 0 to 31");
        types |= type;
    });
    return types;
}

// The values of a short list, told apart by their position.
template <class Read>
void ReadTuple(const Node& node, std::size_t smallest, std::size_t largest, Read&& read) {
    ExpectLength(node, smallest, largest);
    std::size_t position = 0;
    ReadEach(node, [&](const Node& element) { read(position++, element); });
}

void ReadStyle(const Members& members, Orin::LineStyle& style) {
    members.With("style", [&](const Node& node) {
        const Members own(node, {"width", "pattern", "fill"});
        own.Into("width", style.width);
        own.IntoWord("pattern", style.pattern);
        own.IntoWord("fill", style.fill);
    });
}

void ReadStyle(const Members& members, Orin::TextStyle& style) {
    members.With("style", [&](const Node& node) {
        const Members own(node, {"font", "height", "orientation", "horizontal", "vertical", "visible"});
        own.Into("font", style.font);
        own.Into("height", style.height);
        own.IntoWord("orientation", style.orientation);
        own.IntoWord("horizontal", style.horizontal);
        own.IntoWord("vertical", style.vertical);
        own.Into("visible", style.visible);
    });
}

void ReadSegments(const Members& members, Orin::ListSegmentsQuill& segments) {
    members.With("joints", [&](const Node& list) {
        ReadEach(list, [&](const Node& node) {
            Orin::ListSegmentsQuillJoint joint;
            ReadTuple(node, 3, 4, [&](std::size_t position, const Node& part) {
                if (position == 0) joint.id = ReadNumber<Orin::ItemId>(part);
                if (position == 1) joint.position.x = ReadNumber<std::int64_t>(part);
                if (position == 2) joint.position.y = ReadNumber<std::int64_t>(part);
                if (position == 3) joint.attached = ReadIndex(part, true);
            });
            segments.joints.Append(joint);
        });
    });
    members.With("segments", [&](const Node& list) {
        ReadEach(list, [&](const Node& node) {
            Orin::ListSegmentsQuillSegment segment;
            Orin::ItemId* const parts[] = {&segment.id, &segment.from, &segment.to};
            ReadTuple(node, 3, 3, [&](std::size_t position, const Node& part) {
                *parts[position] = ReadNumber<Orin::ItemId>(part);
            });
            segments.segments.Append(segment);
        });
    });
}

// ---- Bodies. ----

using Body = decltype(DrawingInfo::body);
using ReadBody = Body (*)(const Node& node);

Body ReadCompBody(const Node& node) {
    const Members members(node, {"id", "at", "orientation", "mirrored"});
    Orin::CompDataQuill data;
    members.Into("id", data.objectId);
    members.Into("at", data.position);
    members.IntoWord("orientation", data.orientation);
    members.Into("mirrored", data.mirrored);
    return data;
}

Body ReadPinBody(const Node& node) {
    const Members members(node, {"id", "at", "inner", "inverted"});
    Orin::PinDataQuill data;
    members.Into("id", data.objectId);
    members.Into("at", data.position);
    members.Into("inner", data.inner);
    members.Into("inverted", data.inverted);
    return data;
}

Body ReadBusBody(const Node& node) {
    const Members members(node, {"id", "joints", "segments", "signals", "style"});
    Orin::BusDataQuill data;
    members.Into("id", data.objectId);
    ReadSegments(members, data.segments);
    members.With("signals", [&](const Node& list) {
        ReadEach(list, [&](const Node& pair) {
            Orin::BusDataQuill::Signal signal;
            ReadTuple(pair, 2, 2, [&](std::size_t position, const Node& part) {
                if (position == 0) signal.position = ReadNumber<std::int32_t>(part);
                if (position == 1) signal.net = ReadIndex(part, true);
            });
            data.signals.Append(signal);
        });
    });
    ReadStyle(members, data.style);
    return data;
}

Body ReadGroupBody(const Node& node) {
    const Members members(node, {"id", "first", "second"});
    Orin::GroupDataQuill data;
    members.Into("id", data.objectId);
    members.Into("first", data.first);
    members.Into("second", data.second);
    return data;
}

Body RefuseBody(const Node& node) {
    Fail(node.place, "cannot be: blocks have no body, and nets have pieces");
}

Orin::LabelDataQuill ReadLabel(const Node& node) {
    const Members members(node, {"id", "at", "style"});
    Orin::LabelDataQuill data;
    members.Into("id", data.objectId);
    members.Into("at", data.position);
    ReadStyle(members, data.style);
    return data;
}

DrawnAttributeInfo ReadDrawnAttribute(const Node& node) {
    const Members members(node, {"name", "value", "id", "attributeId", "at", "style", "showName"});
    DrawnAttributeInfo info;
    members.Require("name", [&](const Node& name) {
        info.name = ReadText(name);
        if (info.name.IsEmpty()) Fail(name.place, "is empty");
    });
    members.Into("value", info.value);
    members.Into("id", info.data.objectId);
    members.Into("attributeId", info.data.attributeId);
    members.Into("at", info.data.position);
    ReadStyle(members, info.data.style);
    members.Into("showName", info.data.showName);
    return info;
}

DrawingInfo ReadDrawing(const Node& node, ReadBody readBody) {
    const Members members(node, {"on", "body", "label", "attributes"});
    DrawingInfo drawing;
    members.Require("on", [&](const Node& on) { drawing.view = ReadIndex(on); });
    members.With("body", [&](const Node& body) { drawing.body = readBody(body); });
    members.With("label", [&](const Node& label) { drawing.label = ReadLabel(label); });
    members.With("attributes", [&](const Node& list) {
        std::set<std::pair<std::string_view, std::string_view>> seen;
        ReadEach(list, [&](const Node& attribute) {
            DrawnAttributeInfo info = ReadDrawnAttribute(attribute);
            // The views go on naming the texts that the list shares.
            if (!seen.emplace(info.name.View(), info.value.View()).second)
                Fail(attribute.place, "repeats name and value of another one");
            drawing.attributes.Append(std::move(info));
        });
    });
    if (drawing.body.index() == 0 && !drawing.label && drawing.attributes.IsEmpty()) Fail(node.place, "draws nothing");
    return drawing;
}

std::vector<DrawingInfo> ReadDrawings(const Node& node, ReadBody readBody) {
    std::vector<DrawingInfo> drawings;
    std::set<Index> views;
    ReadEach(node, [&](const Node& drawing) {
        drawings.push_back(ReadDrawing(drawing, readBody));
        if (!views.insert(drawings.back().view).second) Fail(drawing.place, "is a second drawing on one view");
    });
    return drawings;
}

// ---- Views. ----

void ReadData(const Members& members, Orin::LineDataQuill& data) {
    members.With("points", [&](const Node& list) {
        ReadEach(list, [&](const Node& point) { data.points.Append(ReadPoint(point)); });
    });
    ReadStyle(members, data.style);
}

void ReadData(const Members& members, Orin::RectDataQuill& data) {
    members.Into("first", data.first);
    members.Into("second", data.second);
    ReadStyle(members, data.style);
}

void ReadData(const Members& members, Orin::ArcDataQuill& data) {
    members.Into("start", data.start);
    members.Into("middle", data.middle);
    members.Into("end", data.end);
    ReadStyle(members, data.style);
}

void ReadData(const Members& members, Orin::CircleDataQuill& data) {
    members.Into("centre", data.centre);
    members.Into("radius", data.radius);
    ReadStyle(members, data.style);
}

void ReadData(const Members& members, Orin::TextDataQuill& data) {
    members.Into("text", data.text);
    members.Into("at", data.position);
    ReadStyle(members, data.style);
}

template <class Data>
void ReadItems(const Members& view, const char* name, std::vector<ItemModel<Data>>& items,
               std::initializer_list<std::string_view> known) {
    view.With(name, [&](const Node& list) {
        ReadEach(list, [&](const Node& node) {
            const Members members(node, known);
            ItemModel<Data> item;
            members.Require("index", [&](const Node& index) { item.index = ReadIndex(index); });
            members.Into("id", item.data.objectId);
            ReadData(members, item.data);
            items.push_back(std::move(item));
        });
    });
}

void ReadView(const Members& owner, std::unique_ptr<ViewModel>& view) {
    owner.With("view", [&](const Node& node) {
        const Members members(node, {"time", "lines", "rects", "arcs", "circles", "texts"});
        view = std::make_unique<ViewModel>();
        members.With("time", [&](const Node& time) { view->time = ReadNumber<std::int32_t>(time); });
        ReadItems(members, "lines", view->lines, {"index", "id", "points", "style"});
        ReadItems(members, "rects", view->rects, {"index", "id", "first", "second", "style"});
        ReadItems(members, "arcs", view->arcs, {"index", "id", "start", "middle", "end", "style"});
        ReadItems(members, "circles", view->circles, {"index", "id", "centre", "radius", "style"});
        ReadItems(members, "texts", view->texts, {"index", "id", "text", "at", "style"});
    });
}

// ---- What all objects have. ----

Attributes ReadAttributeList(const Node& node, bool families) {
    Attributes attributes;
    std::set<std::pair<Orin::EAttributeType, std::string_view>> seen;
    ReadEach(node, [&](const Node& tuple) {
        Orin::Attribute attribute;
        ReadTuple(tuple, 2, families ? 3 : 2, [&](std::size_t position, const Node& part) {
            if (position == 0) attribute.name = ReadText(part);
            if (position == 1) attribute.value = ReadText(part);
            if (position == 2) attribute.type = ReadWord<Orin::EAttributeType>(part);
        });
        if (attribute.name.IsEmpty()) Fail(tuple.place, "has an empty name");
        // The view names the text that the list shares.
        if (!seen.emplace(attribute.type, attribute.name.View()).second)
            Fail(tuple.place, "gives an attribute for the second time");
        attributes.push_back(std::move(attribute));
    });
    return attributes;
}

template <class Spec>
void ReadCommon(const Members& members, ObjectModel<Spec>& object, ReadBody readBody, bool families = false) {
    members.Require("index", [&](const Node& index) { object.spec.index = ReadIndex(index); });
    if constexpr (requires { object.spec.label; }) members.Into("label", object.spec.label);
    if constexpr (requires { object.spec.name; }) members.Into("name", object.spec.name);
    members.With("attributes", [&](const Node& list) { object.attributes = ReadAttributeList(list, families); });
    members.Into("memberOf", object.memberOf);
    members.With("drawn", [&](const Node& list) { object.drawn = ReadDrawings(list, readBody); });
}

PinModel ReadPin(const Node& node) {
    PinModel pin;
    ReadCommon(Members(node, {"index", "label", "attributes", "drawn"}), pin, ReadPinBody);
    return pin;
}

OccurrenceModel ReadOccurrence(const Node& node) {
    const Members members(node, {"configuration", "path", "attributes"});
    OccurrenceModel occurrence;
    members.Require("configuration", [&](const Node& config) { occurrence.config = ReadIndex(config); });
    members.Into("path", occurrence.path);
    members.With("attributes", [&](const Node& list) { occurrence.attributes = ReadAttributeList(list, true); });
    return occurrence;
}

NetPieceInfo ReadPiece(const Node& node) {
    const Members members(node, {"index", "on", "id", "joints", "segments", "style"});
    NetPieceInfo piece;
    members.Require("index", [&](const Node& index) { piece.index = ReadIndex(index); });
    members.Require("on", [&](const Node& on) { piece.view = ReadIndex(on); });
    members.Into("id", piece.data.objectId);
    ReadSegments(members, piece.data.segments);
    ReadStyle(members, piece.data.style);
    return piece;
}

}  // namespace

Attributes ReadAttributes(const Node& node) {
    return ReadAttributeList(node, false);
}

std::vector<DrawingInfo> ReadDrawn(const Node& node) {
    return ReadDrawings(node, RefuseBody);
}

Orin::BlockTypes ReadBlockTypes(const Node& node) {
    return ReadTypes<Orin::EBlockType>(node);
}

GroupModel ReadGroup(const Node& node) {
    const Members members(node,
                          {"index", "name", "type", "owner", "members", "attributes", "memberOf", "view", "drawn"});
    GroupModel group;
    ReadCommon(members, group, ReadGroupBody);
    members.IntoWord("type", group.spec.type);
    members.Into("owner", group.owner);
    members.Into("members", group.members);
    ReadView(members, group.view);
    return group;
}

CompModel ReadComp(const Node& node) {
    const Members members(node, {"index", "label", "name", "types", "partition", "definition", "child", "instance",
                                 "bus", "attributes", "memberOf", "occurrences", "pins", "view", "drawn"});
    CompModel comp;
    ReadCommon(members, comp, ReadCompBody, true);
    members.With("types", [&](const Node& types) { comp.spec.types = ReadTypes<Orin::ECompType>(types); });
    members.Into("partition", comp.spec.partition);
    members.Into("definition", comp.spec.definition);
    members.Into("child", comp.spec.childBlock);
    members.Into("instance", comp.spec.instanceIndex);
    members.Into("bus", comp.bus);
    members.With("occurrences", [&](const Node& list) {
        ReadEach(list, [&](const Node& one) { comp.occurrences.push_back(ReadOccurrence(one)); });
    });
    members.With(
        "pins", [&](const Node& list) { ReadEach(list, [&](const Node& one) { comp.pins.push_back(ReadPin(one)); }); });
    ReadView(members, comp.view);
    return comp;
}

NetModel ReadNet(const Node& node) {
    const Members members(node, {"index", "label", "attributes", "memberOf", "pins", "pieces", "drawn"});
    NetModel net;
    ReadCommon(members, net, RefuseBody);
    members.Into("pins", net.pins);
    members.With("pieces", [&](const Node& list) {
        ReadEach(list, [&](const Node& one) { net.pieces.push_back(ReadPiece(one)); });
    });
    return net;
}

BusModel ReadBus(const Node& node) {
    const Members members(node, {"index", "label", "attributes", "memberOf", "nets", "drawn"});
    BusModel bus;
    ReadCommon(members, bus, ReadBusBody);
    members.Into("nets", bus.nets);
    return bus;
}

ConfigModel ReadConfig(const Node& node) {
    const Members members(node, {"index", "name", "root", "attributes"});
    ConfigModel config;
    members.Require("index", [&](const Node& index) { config.spec.index = ReadIndex(index); });
    members.Into("name", config.spec.name);
    members.Into("root", config.spec.rootBlock);
    members.With("attributes", [&](const Node& list) { config.attributes = ReadAttributeList(list, false); });
    return config;
}

}  // namespace Quill::Interchange
