// Graphical views and the items on them.
#include <algorithm>

#include "designdb/detail/face.h"

namespace Orin::DesignDb {

namespace {

template <class Data, class Interface>
class ItemFace final : public Face<Interface, ItemRecord<Data>> {
public:
    using Base = Face<Interface, ItemRecord<Data>>;
    ItemFace(const SessionRef& session, Slot slot, const Index& index) noexcept : Base(session, slot, index) {}

    Result GetData(Data& data) const override {
        return this->Read(Operation, [&](const Graph&, const ItemRecord<Data>& item) -> Result {
            data = item.data;
            return {};
        });
    }

    static RefPtr<const Interface> Make(const SessionRef& session, const Graph& graph, Slot slot) {
        return RefPtr<const Interface>(new ItemFace(session, slot, graph.Find<ItemRecord<Data>>(slot)->index));
    }

private:
    static constexpr const char* Operations[ItemKinds] = {"ILineQuill::GetData", "IRectQuill::GetData",
                                                          "IArcQuill::GetData", "ICircleQuill::GetData",
                                                          "ITextQuill::GetData"};
    static constexpr const char* Operation = Operations[static_cast<std::size_t>(ItemTraits<Data>::Item)];
};

class PieceFace final : public Face<INetQuill, PieceRecord> {
public:
    PieceFace(const SessionRef& session, Slot slot, const Index& index) noexcept : Face(session, slot, index) {}

    Result GetData(NetDataQuill& data) const override {
        return Read("INetQuill::GetData", [&](const Graph&, const PieceRecord& piece) -> Result {
            data = piece.data;
            return {};
        });
    }
    Result GetNet(ContainerT<const INet>& net) const override {
        return Read("INetQuill::GetNet", [&](const Graph& graph, const PieceRecord& piece) -> Result {
            net = ContainerT<const INet>(MakeNet(m_session, graph, piece.net));
            return {};
        });
    }
};

template <EItem Item>
Slot AboveInItems(const Graph& graph, Slot view, Slot last) {
    const ViewRecord* const record = graph.Find<ViewRecord>(view);
    return record != nullptr ? record->items[static_cast<std::size_t>(Item)].Above(last) : 0;
}

// What both kinds of views share. `Owner` is the record of the group or component that the view belongs to; a view has
// a record of its own only from the first time that something is drawn on it.
template <class Interface, class Owner>
class ViewFace : public Interface {
public:
    Result GetName(String&) const override {
        return Read("IObject::GetName", [](const Graph&, Slot) { return Result(EErrorCode::NoValue); });
    }
    Result GetIndex(Index& index) const override {
        return Read("IObject::GetIndex", [&](const Graph& graph, Slot view) -> Result {
            const ViewRecord* const record = graph.Find<ViewRecord>(view);
            if (record == nullptr) return EErrorCode::NoValue;
            index = record->index;
            return {};
        });
    }
    Result IsValid() const override {
        return Read("IObject::IsValid", [](const Graph&, Slot) { return Result(); });
    }

protected:
    ViewFace(const SessionRef& session, Slot owner, const Index& index) noexcept
        : m_session(session), m_ownerIndex(index), m_owner(owner) {}

    // `read(graph, view)`; the view's slot is 0 while it has no record.
    template <class Function>
    Result Read(const char* operation, Function&& read) const {
        return ReadGraph(operation, m_ownerIndex, m_session, [&](const Graph& graph) -> Result {
            const Owner* const owner = graph.Find<Owner>(m_owner);
            return owner != nullptr ? read(graph, owner->view) : Result(EErrorCode::ObjectNotFound);
        });
    }

    Result ReadModificationTime(const char* operation, int& seconds) const {
        return Read(operation, [&](const Graph& graph, Slot view) -> Result {
            const ViewRecord* const record = graph.Find<ViewRecord>(view);
            if (record == nullptr || !record->modified) return EErrorCode::ViewDataNotFound;
            seconds = *record->modified;
            return {};
        });
    }

    // What the view shows of the object with that index.
    template <class Record, class Function>
    Result ReadDrawing(const char* operation, const IObject& object, Function&& read) const {
        return ReadDrawing<Record>(operation, ObjectAccess::Identity(object), read);
    }
    template <class Record, class Function>
    Result ReadDrawing(const char* operation, const Index& index, Function&& read) const {
        return Read(operation, [&](const Graph& graph, Slot view) -> Result {
            const Record* const record = graph.Find<Record>(index);
            if (record == nullptr) return EErrorCode::ObjectNotFound;
            const Drawing* const drawing = FindDrawing(record->drawings, view);
            return drawing != nullptr ? read(*drawing) : Result(EErrorCode::ViewDataNotFound);
        });
    }

    template <class Record, class Data>
    Result ReadBody(const char* operation, const IObject& object, Data& data) const {
        return ReadDrawing<Record>(operation, object, [&](const Drawing& drawing) -> Result {
            const Data* const body = std::get_if<Data>(&drawing.body);
            if (body == nullptr) return EErrorCode::ViewDataNotFound;
            data = *body;
            return {};
        });
    }
    template <class Record>
    Result ReadLabel(const char* operation, const IObject& object, LabelDataQuill& data) const {
        return ReadDrawing<Record>(operation, object, [&](const Drawing& drawing) -> Result {
            if (drawing.label.IsEmpty()) return EErrorCode::ViewDataNotFound;
            data = drawing.label[0];
            return {};
        });
    }
    static Result ReadAttr(const Drawing& drawing, const String& name, const String& value, AttrDataQuill& data) {
        const DrawnAttribute* found = FindDrawnAttribute(drawing, name.View(), value.View());
        // An attribute that was drawn without regard to its value is drawn so for every value.
        if (found == nullptr) found = FindDrawnAttribute(drawing, name.View(), {});
        if (found == nullptr) return EErrorCode::ViewDataNotFound;
        data = found->data;
        return {};
    }
    template <class Record>
    Result ReadAttr(const char* operation, const IObject& object, const String& name, const String& value,
                    AttrDataQuill& data) const {
        return ReadDrawing<Record>(operation, object,
                                   [&](const Drawing& drawing) { return ReadAttr(drawing, name, value, data); });
    }

    template <class Data, class Item>
    Result IterateItems(const char* operation, IteratorT<const Item>& items) const {
        Slot viewSlot = 0;
        Result result = Read(operation, [&](const Graph&, Slot view) -> Result {
            viewSlot = view;
            return {};
        });
        if (!result) return result;
        try {
            items = IteratorT<const Item>(RefPtr<IterationSource>(new SlotSource<ItemRecord<Data>, Item>(
                m_session, viewSlot, AboveInItems<ItemTraits<Data>::Item>, ItemFace<Data, Item>::Make)));
            return {};
        } catch (const std::bad_alloc&) {
            return EErrorCode::OutOfMemory;
        }
    }

    const SessionRef m_session;
    const Index m_ownerIndex;
    const Slot m_owner;

private:
    Result AcquireLock(ELockScope scope, RefPtr<LockToken>& token) const override {
        constexpr bool sheet = std::is_same_v<Owner, GroupRecord>;
        if (const int code =
                Fault(sheet ? "LockerT<IBlockViewQuill>::Lock" : "LockerT<ICompViewQuill>::Lock", m_ownerIndex))
            return Result(code);
        const LockKey key{sheet ? EObjectType::BlockView : EObjectType::CompView, m_owner, 0};
        return AcquireLocks(m_session, scope, token, [&](const Graph& graph, LockRequests& requests) -> Result {
            if (graph.Find<Owner>(m_owner) == nullptr) return EErrorCode::ObjectNotFound;
            requests.push_back({ChainOf(graph, key), m_ownerIndex, false});
            return {};
        });
    }
    Index Identity() const noexcept override {
        Index index;
        const std::shared_lock lock(m_session->snapshot->lock);
        const Graph& graph = m_session->snapshot->graph;
        const Owner* const owner = graph.Find<Owner>(m_owner);
        const ViewRecord* const record = owner != nullptr ? graph.Find<ViewRecord>(owner->view) : nullptr;
        if (record != nullptr) index = record->index;
        return index;
    }
    void OnUnreferenced() const noexcept override { delete this; }
};

class BlockViewFace final : public ViewFace<IBlockViewQuill, GroupRecord> {
public:
    BlockViewFace(const SessionRef& session, Slot group, const Index& index) noexcept
        : ViewFace(session, group, index) {}

    Result GetModificationTime(int& seconds) const override {
        return ReadModificationTime("IBlockViewQuill::GetModificationTime", seconds);
    }
    Result GetAttr(const String& name, const String& value, AttrDataQuill& data) const override {
        return Read("IBlockViewQuill::GetAttr", [&](const Graph& graph, Slot view) -> Result {
            const BlockRecord* const block = graph.Find<BlockRecord>(graph.Find<GroupRecord>(m_owner)->block);
            const Drawing* const drawing = FindDrawing(block->drawings, view);
            return drawing != nullptr ? ReadAttr(*drawing, name, value, data) : Result(EErrorCode::ViewDataNotFound);
        });
    }
    Result GetCompData(const IComp& comp, CompDataQuill& data) const override {
        return ReadBody<CompRecord>("IBlockViewQuill::GetCompData", comp, data);
    }
    Result GetCompLabel(const IComp& comp, LabelDataQuill& data) const override {
        return ReadLabel<CompRecord>("IBlockViewQuill::GetCompLabel", comp, data);
    }
    Result GetCompAttr(const IComp& comp, const String& name, const String& value, AttrDataQuill& data) const override {
        return ViewFace::ReadAttr<CompRecord>("IBlockViewQuill::GetCompAttr", comp, name, value, data);
    }
    Result GetNetLabel(const INet& net, LabelDataQuill& data) const override {
        return ReadLabel<NetRecord>("IBlockViewQuill::GetNetLabel", net, data);
    }
    Result GetNetAttr(const INet& net, const String& name, const String& value, AttrDataQuill& data) const override {
        return ViewFace::ReadAttr<NetRecord>("IBlockViewQuill::GetNetAttr", net, name, value, data);
    }
    Result GetBusData(const IBus& bus, BusDataQuill& data) const override {
        return ReadBody<BusRecord>("IBlockViewQuill::GetBusData", bus, data);
    }
    Result GetBusLabel(const IBus& bus, LabelDataQuill& data) const override {
        return ReadLabel<BusRecord>("IBlockViewQuill::GetBusLabel", bus, data);
    }
    Result GetBusAttr(const IBus& bus, const String& name, const String& value, AttrDataQuill& data) const override {
        return ViewFace::ReadAttr<BusRecord>("IBlockViewQuill::GetBusAttr", bus, name, value, data);
    }
    Result GetGroupData(const IGroup& group, GroupDataQuill& data) const override {
        return ReadBody<GroupRecord>("IBlockViewQuill::GetGroupData", group, data);
    }
    Result GetGroupLabel(const IGroup& group, LabelDataQuill& data) const override {
        return ReadLabel<GroupRecord>("IBlockViewQuill::GetGroupLabel", group, data);
    }
    Result GetGroupAttr(const IGroup& group, const String& name, const String& value,
                        AttrDataQuill& data) const override {
        return ViewFace::ReadAttr<GroupRecord>("IBlockViewQuill::GetGroupAttr", group, name, value, data);
    }
    Result GetPinAttr(const IPin& pin, const String& name, const String& value, AttrDataQuill& data) const override {
        return ViewFace::ReadAttr<PinRecord>("IBlockViewQuill::GetPinAttr", pin, name, value, data);
    }
    Result GetIterNetsQuill(const INet& net, IteratorT<const INetQuill>& pieces) const override {
        const Index index = ObjectAccess::Identity(net);
        ListT<Slot> slots;
        Result result = Read("IBlockViewQuill::GetIterNetsQuill", [&](const Graph& graph, Slot view) -> Result {
            const NetRecord* const record = graph.Find<NetRecord>(index);
            if (record == nullptr) return EErrorCode::ObjectNotFound;
            const auto [first, last] =
                std::equal_range(record->pieces.begin(), record->pieces.end(), NetPiece{view, 0},
                                 [](const NetPiece& a, const NetPiece& b) { return a.view < b.view; });
            for (const NetPiece* piece = first; piece != last; ++piece)
                slots.Append(piece->piece);
            return {};
        });
        if (!result) return result;
        try {
            pieces = IteratorT<const INetQuill>(RefPtr<IterationSource>(
                new ListSource<PieceRecord, INetQuill>(m_session, std::move(slots), MakePiece)));
            return {};
        } catch (const std::bad_alloc&) {
            return EErrorCode::OutOfMemory;
        }
    }
    Result GetIterLines(IteratorT<const ILineQuill>& lines) const override {
        return IterateItems<LineDataQuill>("IBlockViewQuill::GetIterLines", lines);
    }
    Result GetIterRectangles(IteratorT<const IRectQuill>& rectangles) const override {
        return IterateItems<RectDataQuill>("IBlockViewQuill::GetIterRectangles", rectangles);
    }
    Result GetIterArcs(IteratorT<const IArcQuill>& arcs) const override {
        return IterateItems<ArcDataQuill>("IBlockViewQuill::GetIterArcs", arcs);
    }
    Result GetIterCircles(IteratorT<const ICircleQuill>& circles) const override {
        return IterateItems<CircleDataQuill>("IBlockViewQuill::GetIterCircles", circles);
    }
    Result GetIterTexts(IteratorT<const ITextQuill>& texts) const override {
        return IterateItems<TextDataQuill>("IBlockViewQuill::GetIterTexts", texts);
    }

private:
    using ViewFace::ReadAttr;
};

class CompViewFace final : public ViewFace<ICompViewQuill, CompRecord> {
public:
    CompViewFace(const SessionRef& session, Slot comp, const Index& index) noexcept : ViewFace(session, comp, index) {}

    Result GetModificationTime(int& seconds) const override {
        return ReadModificationTime("ICompViewQuill::GetModificationTime", seconds);
    }
    Result GetAttr(const String& name, const String& value, AttrDataQuill& data) const override {
        return ReadDrawing<CompRecord>("ICompViewQuill::GetAttr", m_ownerIndex,
                                       [&](const Drawing& drawing) { return ReadAttr(drawing, name, value, data); });
    }
    Result GetPinData(const IPin& pin, PinDataQuill& data) const override {
        return ReadBody<PinRecord>("ICompViewQuill::GetPinData", pin, data);
    }
    Result GetPinLabel(const IPin& pin, LabelDataQuill& data) const override {
        return ReadLabel<PinRecord>("ICompViewQuill::GetPinLabel", pin, data);
    }
    Result GetPinAttr(const IPin& pin, const String& name, const String& value, AttrDataQuill& data) const override {
        return ViewFace::ReadAttr<PinRecord>("ICompViewQuill::GetPinAttr", pin, name, value, data);
    }
    Result GetIterLines(IteratorT<const ILineQuill>& lines) const override {
        return IterateItems<LineDataQuill>("ICompViewQuill::GetIterLines", lines);
    }
    Result GetIterRectangles(IteratorT<const IRectQuill>& rectangles) const override {
        return IterateItems<RectDataQuill>("ICompViewQuill::GetIterRectangles", rectangles);
    }
    Result GetIterArcs(IteratorT<const IArcQuill>& arcs) const override {
        return IterateItems<ArcDataQuill>("ICompViewQuill::GetIterArcs", arcs);
    }
    Result GetIterCircles(IteratorT<const ICircleQuill>& circles) const override {
        return IterateItems<CircleDataQuill>("ICompViewQuill::GetIterCircles", circles);
    }
    Result GetIterTexts(IteratorT<const ITextQuill>& texts) const override {
        return IterateItems<TextDataQuill>("ICompViewQuill::GetIterTexts", texts);
    }

private:
    using ViewFace::ReadAttr;
};

}  // namespace

RefPtr<const INetQuill> MakePiece(const SessionRef& session, const Graph& graph, Slot slot) {
    return RefPtr<const INetQuill>(new PieceFace(session, slot, graph.Find<PieceRecord>(slot)->index));
}

RefPtr<const IBlockViewQuill> MakeBlockView(const SessionRef& session, const Graph& graph, Slot group) {
    return RefPtr<const IBlockViewQuill>(new BlockViewFace(session, group, graph.Find<GroupRecord>(group)->index));
}

RefPtr<const ICompViewQuill> MakeCompView(const SessionRef& session, const Graph& graph, Slot comp) {
    return RefPtr<const ICompViewQuill>(new CompViewFace(session, comp, graph.Find<CompRecord>(comp)->index));
}

}  // namespace Orin::DesignDb
