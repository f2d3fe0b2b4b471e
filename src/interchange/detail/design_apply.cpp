// Enters a design's model into the database.
#include <unordered_map>
#include <unordered_set>

#include "interchange/detail/design_model.h"
#include "interchange/index_text.h"

namespace Quill::Interchange {

namespace {

using Orin::ContainerT;
using Orin::EErrorCode;
using Orin::Index;
using Orin::Result;
using Orin::DesignDb::DrawingInfo;

// `named` is the index that the edit depends on.
void Check(const Result& result, const Place& place, const Index& named) {
    if (result) return;
    switch (static_cast<EErrorCode>(result.GetErrorCode())) {
        case EErrorCode::ObjectNotFound:
            Fail(place, IndexText(named) + " names no object of the right kind in this design");
        case EErrorCode::AlreadyExists:
            Fail(place, IndexText(named) + " is there already");
        case EErrorCode::InvalidArgument:
            Fail(place, IndexText(named) + " does not go together with this object");
        default:
            Fail(place, static_cast<const char*>(result.GetDescription()));
    }
}

// Calls use(element, place) for each element of a list that the document has as member `name` of `owner`.
template <class List, class Use>
void ForEach(List& list, const Place& owner, std::string_view name, Use&& use) {
    const Place place = owner.Member(name);
    std::size_t position = 0;
    for (auto& element : list)
        use(element, place.At(position++));
}

class Entry {
public:
    Entry(const DesignModel& design, const ContainerT<const Orin::ISnapshot>& snapshot)
        : m_design(design), m_snapshot(snapshot) {}

    void Run(const std::function<void()>& beforeDrawing) {
        Check(Orin::DesignDb::Editor::Open(m_editor, m_snapshot), {}, {});
        // Objects first, so that whatever names one finds it, and so that no index that the database chooses for
        // itself, as it does for views, can be one that the document wants.
        ForEach(m_design.blocks, m_root, "blocks", [this](const BlockModel& block, const Place& place) {
            Index index;
            Check(m_editor.AddBlock(block.spec, index), place.Member("index"), block.spec.index);
        });
        EachBlock(&Entry::AddContents);
        ForEach(m_design.configs, m_root, "configurations",
                [this](const ConfigModel& config, const Place& place) { AddConfig(config, place); });
        EachBlock(&Entry::Connect);
        EachBlock(&Entry::OrderMemberships);
        EachBlock(&Entry::SetAttributes);
        SetAttributesOf({}, m_design.attributes, m_root);
        EachBlock(&Entry::SetOccurrences);
        if (beforeDrawing) beforeDrawing();
        EachBlock(&Entry::Draw);
    }

private:
    void EachBlock(void (Entry::*step)(const BlockModel&, const Place&)) {
        ForEach(m_design.blocks, m_root, "blocks",
                [&](const BlockModel& block, const Place& place) { (this->*step)(block, place); });
    }

    template <class Model, class Add>
    void AddObject(const Model& model, const Place& place, Add&& add) {
        Index index;
        Check(add(index), place.Member("index"), model.spec.index);
    }

    void AddContents(const BlockModel& block, const Place& at);
    void AddPins(const BlockModel& block, const Place& at);
    void AddConfig(const ConfigModel& config, const Place& place);
    void Connect(const BlockModel& block, const Place& at);
    void ConnectComp(const CompModel& comp, const Place& place);
    void OrderMemberships(const BlockModel& block, const Place& at);
    void SetAttributes(const BlockModel& block, const Place& at);
    void SetAttributesOf(const Index& object, const Attributes& attributes, const Place& place);
    void SetOccurrences(const BlockModel& block, const Place& at);
    void SetOccurrence(const CompModel& comp, const OccurrenceModel& occurrence, const Place& place,
                       std::unordered_set<Index>& places);
    void Draw(const BlockModel& block, const Place& at);
    template <class Object>
    void DrawObject(const Object& object, const Place& place);
    void DrawView(const Index& owner, const ViewModel* view, const Place& place);

    const DesignModel& m_design;
    const ContainerT<const Orin::ISnapshot> m_snapshot;
    const Place m_root;
    Orin::DesignDb::Editor m_editor;
    std::unordered_map<Index, ContainerT<const Orin::IPath>> m_roots;  // by configuration
};

void Entry::AddContents(const BlockModel& block, const Place& at) {
    const Index& owner = block.spec.index;
    std::unordered_set<Index> groups;
    ForEach(block.groups, at, "groups", [&](const GroupModel& group, const Place& place) {
        // The editor would take a group of another block as well.
        if (!group.owner.IsEmpty() && groups.count(group.owner) == 0)
            Fail(place.Member("owner"),
                 IndexText(group.owner) + " is no group of the block that stands before this one");
        groups.insert(group.spec.index);
        AddObject(group, place, [&](Index& index) {
            return m_editor.AddGroup(group.owner.IsEmpty() ? owner : group.owner, group.spec, index);
        });
    });
    ForEach(block.comps, at, "comps", [&](const CompModel& comp, const Place& place) {
        Orin::DesignDb::CompSpec spec = comp.spec;
        spec.definition = {};  // it may come later
        spec.childBlock = {};
        AddObject(comp, place, [&](Index& index) { return m_editor.AddComp(owner, spec, index); });
    });
    AddPins(block, at);
    ForEach(block.nets, at, "nets", [&](const NetModel& net, const Place& place) {
        AddObject(net, place, [&](Index& index) { return m_editor.AddNet(owner, net.spec, index); });
    });
    ForEach(block.buses, at, "buses", [&](const BusModel& bus, const Place& place) {
        AddObject(bus, place, [&](Index& index) { return m_editor.AddBus(owner, bus.spec, index); });
    });
}

// Nets list pins in the order in which they were added.
void Entry::AddPins(const BlockModel& block, const Place& at) {
    struct Wanted {
        const CompModel* comp;
        std::size_t compPosition;
        std::size_t pinPosition;
    };
    const auto add = [&](const Wanted& wanted) {
        const PinModel& pin = wanted.comp->pins[wanted.pinPosition];
        const Place comps = at.Member("comps");
        const Place comp = comps.At(wanted.compPosition);
        const Place pins = comp.Member("pins");
        AddObject(pin, pins.At(wanted.pinPosition),
                  [&](Index& index) { return m_editor.AddPin(wanted.comp->spec.index, pin.spec, index); });
    };
    std::unordered_map<Index, Wanted> byIndex;
    for (std::size_t i = 0; i < block.comps.size(); ++i) {
        for (std::size_t j = 0; j < block.comps[i].pins.size(); ++j) {
            const Wanted wanted{&block.comps[i], i, j};
            if (block.pinOrder.empty()) {
                add(wanted);
            } else {
                byIndex.emplace(block.comps[i].pins[j].spec.index, wanted);
            }
        }
    }
    for (const Index& pin : block.pinOrder)
        add(byIndex.at(pin));
}

void Entry::AddConfig(const ConfigModel& config, const Place& place) {
    // Each fault names its own place.
    ContainerT<const Orin::IConfig> sameName;
    if (m_snapshot->GetDefaultConfig(sameName, config.spec.name))
        Fail(place.Member("name"), "is the name of another configuration");
    Index index;
    Check(m_editor.AddConfig({config.spec.name, {}, config.spec.index}, index), place.Member("index"),
          config.spec.index);
    if (!config.spec.rootBlock.IsEmpty())
        Check(m_editor.SetRoot(index, config.spec.rootBlock), place.Member("root"), config.spec.rootBlock);
    SetAttributesOf(index, config.attributes, place);
    ContainerT<const Orin::IConfig> entered;
    Check(m_snapshot->GetDefaultConfig(entered, config.spec.name), place, index);
    ContainerT<const Orin::IPath> root;
    if (entered->GetRoot(root)) m_roots.emplace(index, root);
}

void Entry::ConnectComp(const CompModel& comp, const Place& place) {
    const Index& index = comp.spec.index;
    if (!comp.spec.definition.IsEmpty())
        Check(m_editor.SetDefinition(index, comp.spec.definition), place.Member("definition"), comp.spec.definition);
    if (!comp.spec.childBlock.IsEmpty())
        Check(m_editor.SetChildBlock(index, comp.spec.childBlock), place.Member("child"), comp.spec.childBlock);
    if (!comp.bus.IsEmpty()) Check(m_editor.RipBus(index, comp.bus), place.Member("bus"), comp.bus);
}

void Entry::Connect(const BlockModel& block, const Place& at) {
    ForEach(block.comps, at, "comps", [&](const CompModel& comp, const Place& place) { ConnectComp(comp, place); });
    std::unordered_set<Index> connected;
    ForEach(block.nets, at, "nets", [&](const NetModel& net, const Place& netPlace) {
        ForEach(net.pins, netPlace, "pins", [&](const Index& pin, const Place& place) {
            // The database would move it.
            if (!connected.insert(pin).second) Fail(place, IndexText(pin) + " is on a net already");
            Check(m_editor.ConnectPin(net.spec.index, pin), place, pin);
        });
    });
    ForEach(block.buses, at, "buses", [&](const BusModel& bus, const Place& busPlace) {
        ForEach(bus.nets, busPlace, "nets", [&](const Index& net, const Place& place) {
            Check(m_editor.ConnectNet(bus.spec.index, net), place, net);
        });
    });
    ForEach(block.groups, at, "groups", [&](const GroupModel& group, const Place& groupPlace) {
        ForEach(group.members, groupPlace, "members", [&](const Index& member, const Place& place) {
            Check(m_editor.AddMember(group.spec.index, member), place, member);
        });
    });
}

// An object became a member of the groups in their order; where the document has another, it leaves and joins again.
void Entry::OrderMemberships(const BlockModel& block, const Place& at) {
    Orin::DesignDb::Inspector inspector;
    Check(Orin::DesignDb::Inspector::Open(inspector, m_snapshot), at, {});
    Orin::IUIDManager objects;
    Check(m_snapshot->GetUIDManager(objects), at, {});
    const auto order = [&](const auto& object, const Place& place) {
        if (object.memberOf.empty()) return;
        const Place list = place.Member("memberOf");
        const Index& index = object.spec.index;
        Orin::ListT<Orin::GroupInfo> groups;
        Check(inspector.GetMemberships(index, groups), list, index);
        std::unordered_set<Index> expected;
        for (const Orin::GroupInfo& group : groups)
            expected.insert(group.index);
        for (const Index& group : object.memberOf)
            if (expected.erase(group) == 0) Fail(list, "does not list each group that has the object as a member once");
        if (!expected.empty()) Fail(list, "does not list each group that has the object as a member once");
        for (const Index& groupIndex : object.memberOf) {
            ContainerT<const Orin::IGroup> group;
            Check(objects.GetGroup(group, groupIndex), list, groupIndex);
            Orin::ListT<Index> members;
            Check(group->GetListObjects(members), list, groupIndex);
            unsigned position = 0;
            while (members[position] != index)
                ++position;
            Check(m_editor.RemoveMember(groupIndex, index), list, groupIndex);
            Check(m_editor.AddMember(groupIndex, index, position), list, groupIndex);
        }
    };
    ForEach(block.groups, at, "groups", order);
    ForEach(block.comps, at, "comps", order);
    ForEach(block.nets, at, "nets", order);
    ForEach(block.buses, at, "buses", order);
}

void Entry::SetAttributesOf(const Index& object, const Attributes& attributes, const Place& owner) {
    ForEach(attributes, owner, "attributes", [&](const Orin::Attribute& attribute, const Place& place) {
        Check(m_editor.SetAttribute(object, attribute.name, attribute.value, attribute.type), place, object);
    });
}

void Entry::SetAttributes(const BlockModel& block, const Place& at) {
    const auto set = [this](const auto& object, const Place& place) {
        SetAttributesOf(object.spec.index, object.attributes, place);
    };
    set(block, at);
    ForEach(block.groups, at, "groups", set);
    ForEach(block.comps, at, "comps", [&](const CompModel& comp, const Place& place) {
        set(comp, place);
        ForEach(comp.pins, place, "pins", set);
    });
    ForEach(block.nets, at, "nets", set);
    ForEach(block.buses, at, "buses", set);
}

void Entry::SetOccurrences(const BlockModel& block, const Place& at) {
    ForEach(block.comps, at, "comps", [&](const CompModel& comp, const Place& compPlace) {
        std::unordered_set<Index> places;
        ForEach(comp.occurrences, compPlace, "occurrences", [&](const OccurrenceModel& occurrence, const Place& place) {
            SetOccurrence(comp, occurrence, place, places);
        });
    });
}

void Entry::SetOccurrence(const CompModel& comp, const OccurrenceModel& occurrence, const Place& place,
                          std::unordered_set<Index>& places) {
    const auto root = m_roots.find(occurrence.config);
    if (root == m_roots.end())
        Fail(place.Member("configuration"), IndexText(occurrence.config) + " is no configuration with a root");
    ContainerT<const Orin::IPath> path = root->second;
    ForEach(occurrence.path, place, "path", [&](const Index& step, const Place& stepPlace) {
        if (!path->GetChildPath(path, step))
            Fail(stepPlace, IndexText(step) + " leads to no block below this place of the hierarchy");
    });
    Index pathIndex;
    ContainerT<const Orin::IComp> here;
    Check(path->GetIndex(pathIndex), place, {});
    if (!places.insert(pathIndex).second) Fail(place, "is a second occurrence at one place of the hierarchy");
    if (!path->GetCompInPath(here, comp.spec.index))
        Fail(place.Member("path"), "does not lead to the component's block");
    ForEach(occurrence.attributes, place, "attributes", [&](const Orin::Attribute& attribute, const Place& at) {
        Check(m_editor.SetAttributeInPath(pathIndex, comp.spec.index, attribute.name, attribute.value, attribute.type),
              at, comp.spec.index);
    });
}

template <class Object>
void Entry::DrawObject(const Object& object, const Place& owner) {
    const Index& index = object.spec.index;
    ForEach(object.drawn, owner, "drawn", [&](const DrawingInfo& drawing, const Place& place) {
        const Place on = place.Member("on");
        const auto check = [&](const Result& result) { Check(result, on, drawing.view); };
        const auto body = [&](const auto& data) -> Result {
            using Data = std::decay_t<decltype(data)>;
            if constexpr (std::is_same_v<Data, Orin::CompDataQuill>) {
                return m_editor.SetCompData(drawing.view, index, data);
            } else if constexpr (std::is_same_v<Data, Orin::PinDataQuill>) {
                return m_editor.SetPinData(drawing.view, index, data);
            } else if constexpr (std::is_same_v<Data, Orin::BusDataQuill>) {
                return m_editor.SetBusData(drawing.view, index, data);
            } else if constexpr (std::is_same_v<Data, Orin::GroupDataQuill>) {
                return m_editor.SetGroupData(drawing.view, index, data);
            } else {
                return {};
            }
        };
        check(std::visit(body, drawing.body));
        if (drawing.label) check(m_editor.SetLabelData(drawing.view, index, *drawing.label));
        for (const Orin::DesignDb::DrawnAttributeInfo& attribute : drawing.attributes)
            check(m_editor.SetAttrData(drawing.view, index, attribute.name, attribute.value, attribute.data));
    });
}

void Entry::DrawView(const Index& owner, const ViewModel* view, const Place& ownerPlace) {
    if (view == nullptr) return;
    const Place at = ownerPlace.Member("view");
    if (view->time) Check(m_editor.SetModificationTime(owner, *view->time), at.Member("time"), owner);
    const auto draw = [&](const auto& items, std::string_view name, auto add) {
        ForEach(items, at, name, [&](const auto& item, const Place& place) {
            Index index;
            Check((m_editor.*add)(owner, item.data, index, item.index), place.Member("index"), item.index);
        });
    };
    using Orin::DesignDb::Editor;
    draw(view->lines, "lines", &Editor::AddLine);
    draw(view->rects, "rects", &Editor::AddRect);
    draw(view->arcs, "arcs", &Editor::AddArc);
    draw(view->circles, "circles", &Editor::AddCircle);
    draw(view->texts, "texts", &Editor::AddText);
}

void Entry::Draw(const BlockModel& block, const Place& at) {
    DrawObject(block, at);
    ForEach(block.groups, at, "groups", [&](const GroupModel& group, const Place& place) {
        DrawView(group.spec.index, group.view.get(), place);
        DrawObject(group, place);
    });
    ForEach(block.comps, at, "comps", [&](const CompModel& comp, const Place& place) {
        DrawView(comp.spec.index, comp.view.get(), place);
        DrawObject(comp, place);
        ForEach(comp.pins, place, "pins",
                [&](const PinModel& pin, const Place& pinPlace) { DrawObject(pin, pinPlace); });
    });
    ForEach(block.nets, at, "nets", [&](const NetModel& net, const Place& netPlace) {
        DrawObject(net, netPlace);
        ForEach(net.pieces, netPlace, "pieces", [&](const Orin::DesignDb::NetPieceInfo& piece, const Place& place) {
            Index index;
            const Result result = m_editor.AddNetQuill(piece.view, net.spec.index, piece.data, index, piece.index);
            const bool taken = result.GetErrorCode() == static_cast<int>(EErrorCode::AlreadyExists);
            Check(result, place.Member(taken ? "index" : "on"), taken ? piece.index : piece.view);
        });
    });
    ForEach(block.buses, at, "buses", [&](const BusModel& bus, const Place& place) { DrawObject(bus, place); });
}

}  // namespace

void ApplyDesign(const DesignModel& design, const ContainerT<const Orin::ISnapshot>& snapshot,
                 const std::function<void()>& beforeDrawing) {
    Entry(design, snapshot).Run(beforeDrawing);
}

}  // namespace Quill::Interchange
