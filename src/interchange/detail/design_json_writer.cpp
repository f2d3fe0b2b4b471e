// Writes a design as JSON text.
#include <algorithm>
#include <unordered_map>

#include "designdb/inspector.h"
#include "interchange/design_json.h"
#include "interchange/detail/data_writer.h"
#include "interchange/detail/design_model.h"
#include "interchange/detail/json_text.h"

namespace Quill::Interchange {

namespace {

using Orin::ContainerT;
using Orin::Index;
using Orin::IteratorT;
using Orin::ListT;
using Orin::Result;
using Orin::String;
using Orin::DesignDb::DrawingInfo;
using Orin::DesignDb::NetPieceInfo;
using Orin::DesignDb::OccurrenceInfo;

// A failed read ends the writing; caught where it began.
void Need(const Result& result) {
    if (!result) throw result;
}

class Writer {
public:
    Writer(const Orin::ISnapshot& snapshot, std::string& out) : m_snapshot(snapshot), m_json(out) {}

    void Write(const ContainerT<const Orin::ISnapshot>& handle, const String& name);

private:
    template <class E>
    void WriteTypes(const Orin::BitContainerT<E, 1>& types) {
        if (types.IsEmpty()) return;
        m_json.Key("types");
        m_json.BeginArray();
        for (int position = 0; position < 32; ++position)
            if (types.Contains(static_cast<E>(position))) WriteWord(m_json, static_cast<E>(position));
        m_json.EndArray();
    }

    void WriteAttributeList(const Orin::ListAttribute& attributes, bool families);
    void WriteAttributes(const Index& object, bool families = false);
    void WriteMemberOf(const Index& object);
    void WriteDrawn(const Index& object);
    void WriteIndexes(std::string_view key, const ListT<Index>& indexes);
    void WriteIndexList(const ListT<Index>& indexes);
    template <class View>
    void WriteView(const View& view);
    template <class Item>
    void WriteItems(std::string_view key, IteratorT<const Item> items);

    void WriteBlock(const Orin::IBlock& block);
    void WriteGroup(const Orin::IBlock& block, const Index& blockIndex, const Orin::GroupInfo& info);
    void WriteComp(const Orin::IComp& comp);
    void WriteOccurrences(const Index& comp);
    void WriteNet(const Orin::INet& net);
    void WriteBus(const Orin::IBus& bus);
    void WriteConfig(const Orin::IConfig& config);

    // Lists each object of an iteration on a line of its own.
    template <class T, class WriteOne>
    void WriteList(std::string_view key, IteratorT<const T> objects, WriteOne&& writeOne) {
        if (!objects) return;
        m_json.KeyOnNewLine(key);
        m_json.BeginArray(true);
        for (; objects; ++objects)
            writeOne(*objects);
        m_json.EndArray();
    }

    static Index IndexOf(const Orin::IObject& object) {
        Index index;
        Need(object.GetIndex(index));
        return index;
    }

    const Orin::ISnapshot& m_snapshot;
    JsonText m_json;
    Orin::DesignDb::Inspector m_inspector;
    std::unordered_map<Index, std::size_t> m_groupPositions;  // of the block that is being written
    std::vector<Index> m_pins;                                // of that block, component by component
};

void Writer::WriteAttributeList(const Orin::ListAttribute& attributes, bool families) {
    if (attributes.IsEmpty()) return;
    m_json.Key("attributes");
    m_json.BeginArray();
    for (const Orin::Attribute& attribute : attributes) {
        m_json.BeginArray();
        m_json.Value(attribute.name);
        m_json.Value(attribute.value);
        if (families && attribute.type != Orin::EAttributeType::User) WriteWord(m_json, attribute.type);
        m_json.EndArray();
    }
    m_json.EndArray();
}

void Writer::WriteAttributes(const Index& object, bool families) {
    Orin::ListAttribute attributes;
    Need(m_inspector.GetAttributes(object, attributes));
    WriteAttributeList(attributes, families);
}

void Writer::WriteMemberOf(const Index& object) {
    ListT<Orin::GroupInfo> groups;
    Need(m_inspector.GetMemberships(object, groups));
    const auto before = [this](const Orin::GroupInfo& a, const Orin::GroupInfo& b) {
        return m_groupPositions[a.index] < m_groupPositions[b.index];
    };
    if (std::is_sorted(groups.begin(), groups.end(), before)) return;
    m_json.Key("memberOf");
    m_json.BeginArray();
    for (const Orin::GroupInfo& group : groups)
        m_json.Value(group.index);
    m_json.EndArray();
}

void Writer::WriteDrawn(const Index& object) {
    ListT<DrawingInfo> drawings;
    Need(m_inspector.GetDrawings(object, drawings));
    if (drawings.IsEmpty()) return;
    // The database keeps them in the order in which the views were first drawn on, which is nobody's choice.
    std::vector<DrawingInfo> sorted(drawings.begin(), drawings.end());
    std::sort(sorted.begin(), sorted.end(), [](const DrawingInfo& a, const DrawingInfo& b) { return a.view < b.view; });
    m_json.KeyOnNewLine("drawn");
    m_json.BeginArray(true);
    for (const DrawingInfo& drawing : sorted) {
        m_json.BeginObject();
        m_json.Member("on", drawing.view);
        if (drawing.body.index() != 0) {
            m_json.Key("body");
            m_json.BeginObject();
            std::visit([this](const auto& body) { WriteData(m_json, body); }, drawing.body);
            m_json.EndObject();
        }
        if (drawing.label) {
            m_json.Key("label");
            m_json.BeginObject();
            WriteData(m_json, *drawing.label);
            m_json.EndObject();
        }
        if (!drawing.attributes.IsEmpty()) {
            m_json.Key("attributes");
            m_json.BeginArray();
            for (const Orin::DesignDb::DrawnAttributeInfo& attribute : drawing.attributes) {
                m_json.BeginObject();
                m_json.Member("name", attribute.name);
                m_json.OptionalMember("value", attribute.value);
                m_json.OptionalMember("id", attribute.data.objectId);
                m_json.OptionalMember("attributeId", attribute.data.attributeId);
                WriteOptionalPoint(m_json, "at", attribute.data.position);
                WriteStyle(m_json, attribute.data.style);
                m_json.OptionalMember("showName", attribute.data.showName);
                m_json.EndObject();
            }
            m_json.EndArray();
        }
        m_json.EndObject();
    }
    m_json.EndArray();
}

void Writer::WriteIndexes(std::string_view key, const ListT<Index>& indexes) {
    if (indexes.IsEmpty()) return;
    m_json.Key(key);
    WriteIndexList(indexes);
}

void Writer::WriteIndexList(const ListT<Index>& indexes) {
    m_json.BeginArray();
    for (const Index& index : indexes)
        m_json.Value(index);
    m_json.EndArray();
}

template <class Item>
void Writer::WriteItems(std::string_view key, IteratorT<const Item> items) {
    WriteList(key, std::move(items), [this](const Item& item) {
        m_json.BeginObject();
        m_json.Member("index", IndexOf(item));
        DataOf<Item> data;
        Need(item.GetData(data));
        WriteData(m_json, data);
        m_json.EndObject();
    });
}

template <class View>
void Writer::WriteView(const View& view) {
    int seconds = 0;
    const bool timed = static_cast<bool>(view.GetModificationTime(seconds));
    IteratorT<const Orin::ILineQuill> lines;
    IteratorT<const Orin::IRectQuill> rects;
    IteratorT<const Orin::IArcQuill> arcs;
    IteratorT<const Orin::ICircleQuill> circles;
    IteratorT<const Orin::ITextQuill> texts;
    Need(view.GetIterLines(lines));
    Need(view.GetIterRectangles(rects));
    Need(view.GetIterArcs(arcs));
    Need(view.GetIterCircles(circles));
    Need(view.GetIterTexts(texts));
    if (!timed && !lines && !rects && !arcs && !circles && !texts) return;
    m_json.KeyOnNewLine("view");
    m_json.BeginObject();
    if (timed) m_json.Member("time", seconds);
    WriteItems("lines", std::move(lines));
    WriteItems("rects", std::move(rects));
    WriteItems("arcs", std::move(arcs));
    WriteItems("circles", std::move(circles));
    WriteItems("texts", std::move(texts));
    m_json.EndObject();
}

void Writer::WriteGroup(const Orin::IBlock& block, const Index& blockIndex, const Orin::GroupInfo& info) {
    ContainerT<const Orin::IGroup> group;
    Need(block.GetGroup(group, info.index));
    m_json.BeginObject();
    m_json.Member("index", info.index);
    m_json.OptionalMember("name", info.name);
    WriteOptionalWord(m_json, "type", info.type, Orin::EGroupType::Sheet);
    Index owner;
    Need(group->GetOwner(owner));
    if (owner != blockIndex) m_json.Member("owner", owner);
    WriteAttributes(info.index);
    ListT<Index> members;
    Need(group->GetListObjects(members));
    WriteIndexes("members", members);
    WriteMemberOf(info.index);
    ContainerT<const Orin::IBlockViewQuill> view;
    Need(Orin::IBlockViewQuill::Init(view, block, *group));
    WriteView(*view);
    WriteDrawn(info.index);
    m_json.EndObject();
}

void Writer::WriteOccurrences(const Index& comp) {
    ListT<OccurrenceInfo> occurrences;
    Need(m_inspector.GetOccurrences(comp, occurrences));
    if (occurrences.IsEmpty()) return;
    // The database keeps them in the order in which somebody first asked for the places.
    std::vector<OccurrenceInfo> sorted(occurrences.begin(), occurrences.end());
    std::sort(sorted.begin(), sorted.end(), [](const OccurrenceInfo& a, const OccurrenceInfo& b) {
        if (a.config != b.config) return a.config < b.config;
        return std::lexicographical_compare(a.comps.begin(), a.comps.end(), b.comps.begin(), b.comps.end());
    });
    m_json.KeyOnNewLine("occurrences");
    m_json.BeginArray(true);
    for (const OccurrenceInfo& occurrence : sorted) {
        m_json.BeginObject();
        m_json.Member("configuration", occurrence.config);
        WriteIndexes("path", occurrence.comps);
        WriteAttributeList(occurrence.attributes, true);
        m_json.EndObject();
    }
    m_json.EndArray();
}

void Writer::WriteComp(const Orin::IComp& comp) {
    const Index index = IndexOf(comp);
    String label, name, partition;
    Orin::CompTypes types;
    Index instance, bus;
    Need(comp.GetLabel(label));
    Need(comp.GetName(name));
    Need(comp.GetType(types));
    Need(comp.GetInstanceIndex(instance));
    m_json.BeginObject();
    m_json.Member("index", index);
    m_json.OptionalMember("label", label);
    m_json.OptionalMember("name", name);
    WriteTypes(types);
    if (comp.GetPartitionName(partition)) m_json.Member("partition", partition);
    ContainerT<const Orin::IComp> definition;
    if (comp.GetDefinition(definition)) m_json.Member("definition", IndexOf(*definition));
    ContainerT<const Orin::IBlock> child;
    if (comp.GetChildBlock(child)) m_json.Member("child", IndexOf(*child));
    if (instance != index) m_json.Member("instance", instance);
    if (m_inspector.GetRippedBus(index, bus)) m_json.Member("bus", bus);
    WriteMemberOf(index);
    WriteAttributes(index, true);
    WriteOccurrences(index);
    IteratorT<const Orin::IPin> pins;
    Need(comp.GetIterPins(pins));
    WriteList("pins", std::move(pins), [this](const Orin::IPin& pin) {
        const Index pinIndex = IndexOf(pin);
        m_pins.push_back(pinIndex);
        String pinLabel;
        Need(pin.GetLabel(pinLabel));
        m_json.BeginObject();
        m_json.Member("index", pinIndex);
        m_json.OptionalMember("label", pinLabel);
        WriteAttributes(pinIndex);
        WriteDrawn(pinIndex);
        m_json.EndObject();
    });
    ContainerT<const Orin::ICompViewQuill> view;
    Need(Orin::ICompViewQuill::Init(view, comp));
    WriteView(*view);
    WriteDrawn(index);
    m_json.EndObject();
}

void Writer::WriteNet(const Orin::INet& net) {
    const Index index = IndexOf(net);
    String label;
    Need(net.GetLabel(label));
    m_json.BeginObject();
    m_json.Member("index", index);
    m_json.OptionalMember("label", label);
    WriteMemberOf(index);
    WriteAttributes(index);
    IteratorT<const Orin::IPin> pins;
    Need(net.GetIterPinsConnected(pins));
    ListT<Index> connected;
    for (; pins; ++pins)
        connected.Append(IndexOf(*pins));
    WriteIndexes("pins", connected);
    ListT<NetPieceInfo> pieces;
    Need(m_inspector.GetPieces(index, pieces));
    if (!pieces.IsEmpty()) {
        std::vector<NetPieceInfo> sorted(pieces.begin(), pieces.end());
        std::stable_sort(sorted.begin(), sorted.end(),
                         [](const NetPieceInfo& a, const NetPieceInfo& b) { return a.view < b.view; });
        m_json.KeyOnNewLine("pieces");
        m_json.BeginArray(true);
        for (const NetPieceInfo& piece : sorted) {
            m_json.BeginObject();
            m_json.Member("index", piece.index);
            m_json.Member("on", piece.view);
            WriteData(m_json, piece.data);
            m_json.EndObject();
        }
        m_json.EndArray();
    }
    WriteDrawn(index);
    m_json.EndObject();
}

void Writer::WriteBus(const Orin::IBus& bus) {
    const Index index = IndexOf(bus);
    String label;
    Need(bus.GetLabel(label));
    m_json.BeginObject();
    m_json.Member("index", index);
    m_json.OptionalMember("label", label);
    WriteMemberOf(index);
    WriteAttributes(index);
    IteratorT<const Orin::INet> nets;
    Need(bus.GetIterNetsConnected(nets));
    ListT<Index> connected;
    for (; nets; ++nets)
        connected.Append(IndexOf(*nets));
    WriteIndexes("nets", connected);
    WriteDrawn(index);
    m_json.EndObject();
}

void Writer::WriteBlock(const Orin::IBlock& block) {
    const Index index = IndexOf(block);
    String name, library;
    Orin::BlockTypes types;
    Need(block.GetName(name));
    Need(block.GetLibraryName(library));
    Need(block.GetType(types));
    m_json.BeginObject();
    m_json.Member("index", index);
    m_json.OptionalMember("name", name);
    WriteTypes(types);
    m_json.OptionalMember("library", library);
    WriteAttributes(index);

    ListT<Orin::GroupInfo> groups;
    Need(m_inspector.GetGroups(index, groups));
    m_groupPositions.clear();
    for (unsigned i = 0; i < groups.Count(); ++i)
        m_groupPositions[groups[i].index] = i;
    if (!groups.IsEmpty()) {
        m_json.KeyOnNewLine("groups");
        m_json.BeginArray(true);
        for (const Orin::GroupInfo& group : groups)
            WriteGroup(block, index, group);
        m_json.EndArray();
    }
    m_pins.clear();
    IteratorT<const Orin::IComp> comps;
    IteratorT<const Orin::INet> nets;
    IteratorT<const Orin::IBus> buses;
    Need(block.GetIterComps(comps, {}));
    Need(block.GetIterNets(nets));
    Need(block.GetIterBuses(buses));
    WriteList("comps", std::move(comps), [this](const Orin::IComp& comp) { WriteComp(comp); });
    WriteList("nets", std::move(nets), [this](const Orin::INet& net) { WriteNet(net); });
    WriteList("buses", std::move(buses), [this](const Orin::IBus& bus) { WriteBus(bus); });
    ListT<Index> order;
    Need(m_inspector.GetPins(index, order));
    if (!std::equal(m_pins.begin(), m_pins.end(), order.begin(), order.end())) {
        m_json.KeyOnNewLine("pinOrder");
        WriteIndexList(order);
    }
    WriteDrawn(index);
    m_json.EndObject();
}

void Writer::WriteConfig(const Orin::IConfig& config) {
    const Index index = IndexOf(config);
    String name;
    Need(config.GetName(name));
    m_json.BeginObject();
    m_json.Member("index", index);
    m_json.OptionalMember("name", name);
    ContainerT<const Orin::IPath> root;
    if (config.GetRoot(root)) {
        ContainerT<const Orin::IBlock> block;
        Need(root->GetBlock(block));
        m_json.Member("root", IndexOf(*block));
    }
    WriteAttributes(index);
    m_json.EndObject();
}

void Writer::Write(const ContainerT<const Orin::ISnapshot>& handle, const String& name) {
    Need(Orin::DesignDb::Inspector::Open(m_inspector, handle));
    m_json.BeginObject();
    m_json.Key("format");
    m_json.Value(FormatName);
    m_json.Member("version", FormatVersion);
    m_json.OptionalMember("design", name);
    WriteAttributes({});
    IteratorT<const Orin::IBlock> blocks;
    IteratorT<const Orin::IConfig> configs;
    Need(m_snapshot.GetIterBlocks(blocks));
    Need(m_snapshot.GetIterConfigs(configs));
    WriteList("blocks", std::move(blocks), [this](const Orin::IBlock& block) { WriteBlock(block); });
    WriteList("configurations", std::move(configs), [this](const Orin::IConfig& config) { WriteConfig(config); });
    m_json.EndObject();
}

}  // namespace

Result WriteDesignJson(const ContainerT<const Orin::ISnapshot>& snapshot, const String& name, std::string& text) {
    if (!snapshot) return Orin::EErrorCode::InvalidArgument;
    try {
        std::string written;
        Writer(*snapshot, written).Write(snapshot, name);
        text = std::move(written);
        return {};
    } catch (const Result& failed) {
        return failed;
    } catch (const std::bad_alloc&) {
        return Orin::EErrorCode::OutOfMemory;
    }
}

}  // namespace Quill::Interchange
