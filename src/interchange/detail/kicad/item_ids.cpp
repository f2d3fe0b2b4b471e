#include "interchange/detail/kicad/item_ids.h"

#include <unordered_map>

#include "ids/id_generator.h"

namespace Quill::Interchange::Kicad {

namespace {

using Orin::ContainerT;
using Orin::Index;

void Need(const Orin::Result& result) {
    if (!result) throw result;
}

void Need(const Utils::IdGeneratorResult& result) {
    if (!result) Fail({}, "The ids of a sheet or symbol are exhausted");
}

// The generators of one sheet or symbol.
class ItemIds {
public:
    void Start(const ContainerT<const Orin::IBlock>& block, const ContainerT<const Orin::IGroup>& group) {
        Need(m_objects.Init(block, group));
        Need(m_attributes.Init(group));
    }
    void Start(const ContainerT<const Orin::IComp>& symbol) {
        Need(m_objects.Init(symbol));
        Need(m_attributes.Init(symbol));
    }
    void Store() {
        if (m_used) Need(m_objects.Store());
    }

    void Number(std::monostate) {}
    template <class Data>
    void Number(Data& data) {
        Utils::ObjectId id;
        Need(m_objects.GetNext(id));
        data.objectId = id.Value();
        m_used = true;
    }
    void NumberAttribute(Orin::AttrDataQuill& data) {
        Number(data);
        Utils::AttributeId id;
        Need(m_attributes.GetNext(id));
        data.attributeId = id.Value();
    }

private:
    Utils::IdGenerator<Utils::ObjectId, 0> m_objects;
    Utils::IdGenerator<Utils::AttributeId, 0> m_attributes;
    bool m_used = false;
};

class Numbering {
public:
    explicit Numbering(const ContainerT<const Orin::ISnapshot>& snapshot) : m_snapshot(snapshot) {}

    void Run(BlockModel& block) {
        m_ids.clear();
        Need(m_snapshot->GetBlock(m_block, block.spec.index));
        for (GroupModel& group : block.groups) {
            NumberView(group.spec.index, group.view.get());
            NumberDrawings(group);
        }
        NumberDrawings(block);
        for (CompModel& comp : block.comps) {
            NumberDrawings(comp);
            for (PinModel& pin : comp.pins)
                NumberDrawings(pin);
            NumberView(comp.spec.index, comp.view.get());
        }
        for (NetModel& net : block.nets) {
            NumberDrawings(net);
            for (Orin::DesignDb::NetPieceInfo& piece : net.pieces)
                Of(piece.view).Number(piece.data);
        }
        for (BusModel& bus : block.buses)
            NumberDrawings(bus);
        for (auto& [view, ids] : m_ids)
            ids.Store();
    }

private:
    // The ids of a sheet of the block or of a symbol in it.
    ItemIds& Of(const Index& view) {
        const auto [known, isNew] = m_ids.try_emplace(view);
        if (!isNew) return known->second;
        if (view.GetType() == Orin::EObjectType::Group) {
            ContainerT<const Orin::IGroup> group;
            Need(m_block->GetGroup(group, view));
            known->second.Start(m_block, group);
        } else {
            ContainerT<const Orin::IComp> symbol;
            Need(m_block->GetComp(symbol, view));
            known->second.Start(symbol);
        }
        return known->second;
    }

    void NumberView(const Index& owner, ViewModel* view) {
        if (view == nullptr) return;
        const auto number = [&](auto& items) {
            for (auto& item : items)
                Of(owner).Number(item.data);
        };
        number(view->lines);
        number(view->rects);
        number(view->arcs);
        number(view->circles);
        number(view->texts);
    }

    template <class Object>
    void NumberDrawings(Object& object) {
        for (Orin::DesignDb::DrawingInfo& drawing : object.drawn) {
            ItemIds& ids = Of(drawing.view);
            std::visit([&](auto& data) { ids.Number(data); }, drawing.body);
            if (drawing.label) ids.Number(*drawing.label);
            for (auto attribute = drawing.attributes.GetIterator(); attribute.IsValid(); ++attribute)
                ids.NumberAttribute(attribute->data);
        }
    }

    const ContainerT<const Orin::ISnapshot> m_snapshot;
    ContainerT<const Orin::IBlock> m_block;
    std::unordered_map<Index, ItemIds> m_ids;
};

}  // namespace

void NumberItems(DesignModel& design, const ContainerT<const Orin::ISnapshot>& snapshot) {
    Numbering numbering(snapshot);
    for (BlockModel& block : design.blocks)
        numbering.Run(block);
}

}  // namespace Quill::Interchange::Kicad
