// How objects are drawn.
#include <algorithm>

#include "designdb/detail/editing.h"

namespace Orin::DesignDb {

namespace {

// A view as the editor's callers name it: by its group or component. Its record may not have been made yet.
struct ViewPlace {
    Index owner;
    Slot group = 0;
    Slot comp = 0;
    Slot view = 0;
    Slot block = 0;

    explicit operator bool() const noexcept { return group != 0 || comp != 0; }
    LockKey Key() const noexcept {
        return group != 0 ? LockKey{EObjectType::BlockView, group, 0} : LockKey{EObjectType::CompView, comp, 0};
    }
};

ViewPlace FindView(const Graph& graph, const Index& owner) {
    if (const Slot slot = graph.SlotOf<GroupRecord>(owner); slot != 0) {
        const GroupRecord& group = *graph.Find<GroupRecord>(slot);
        return {owner, slot, 0, group.view, group.block};
    }
    if (const Slot slot = graph.SlotOf<CompRecord>(owner); slot != 0) {
        const CompRecord& comp = *graph.Find<CompRecord>(slot);
        return {owner, 0, slot, comp.view, comp.block};
    }
    return {};
}

// The view for an edit of it, when it is there and locks allow.
Result PermitView(const Edit& edit, const Index& owner, ViewPlace& place) {
    place = FindView(edit.Now(), owner);
    if (!place) return EErrorCode::ObjectNotFound;
    return edit.Permit(place.Key(), ELockScope::Shallow);
}

// The slot of the view's record, made when this is the first time that something is drawn on it.
Slot RecordOf(Edit& edit, const ViewPlace& place) {
    if (place.view != 0) return place.view;
    const EObjectType kind = place.group != 0 ? EObjectType::BlockView : EObjectType::CompView;
    const auto [slot, index] = edit.Now().Reserve<ViewRecord>({}, kind);
    ViewRecord record;
    record.index = index;
    record.group = place.group;
    record.comp = place.comp;
    edit.Do().Put(slot, std::move(record));
    if (place.group != 0) {
        edit.Do().Set(place.group, &GroupRecord::view, slot);
    } else {
        edit.Do().Set(place.comp, &CompRecord::view, slot);
    }
    return slot;
}

// Changes what a view shows of an object: `change(drawing)`, with an empty drawing when it shows nothing yet.
template <class Record, class Change>
void Redraw(Edit& edit, Slot object, Slot view, Change&& change) {
    Drawings drawings = edit.Now().Find<Record>(object)->drawings;
    const Drawing* const found = std::lower_bound(drawings.begin(), drawings.end(), view,
                                                  [](const Drawing& d, Slot wanted) { return d.view < wanted; });
    const std::size_t position = static_cast<std::size_t>(found - drawings.begin());
    if (found == drawings.end() || found->view != view) drawings.Insert(position, Drawing{view, {}, {}, {}});
    change((&drawings.Front())[position]);
    edit.Do().Set(object, &Record::drawings, std::move(drawings));
}

// The block whose sheets may show an object; of a pin its component's.
template <class Record>
Slot BlockOf(const Graph& graph, const Record& record) {
    if constexpr (std::is_same_v<Record, PinRecord>) {
        return graph.Find<CompRecord>(record.comp)->block;
    } else if constexpr (std::is_same_v<Record, BlockRecord>) {
        return graph.SlotOf<BlockRecord>(record.index);
    } else {
        return record.block;
    }
}

// Whether the object can be drawn on the view: a sheet shows what is in its block, and the block itself; the view of a
// symbol shows the symbol and its pins.
template <class Record>
bool Fits(const Graph& graph, const Record& record, Slot slot, const ViewPlace& place) {
    if (place.group != 0) return BlockOf(graph, record) == place.block;
    if constexpr (std::is_same_v<Record, PinRecord>) return record.comp == place.comp;
    return std::is_same_v<Record, CompRecord> && slot == place.comp;
}

// Draws the body of an object.
template <class Record, class ImplPointer, class Data>
Result SetBody(const ImplPointer& impl, const Index& view, const Index& object, const Data& data) {
    return Run(impl, [&](Edit& edit) -> Result {
        ViewPlace place;
        if (Result r = PermitView(edit, view, place); !r) return r;
        const Slot slot = edit.Now().SlotOf<Record>(object);
        if (slot == 0) return EErrorCode::ObjectNotFound;
        if (!Fits(edit.Now(), *edit.Now().Find<Record>(slot), slot, place)) return EErrorCode::InvalidArgument;
        if (!edit.Begin(Event::Drawn(view, object, EEventsQuillDataChange::Data))) return {};
        Redraw<Record>(edit, slot, RecordOf(edit, place), [&](Drawing& drawing) { drawing.body = data; });
        return {};
    });
}

// Draws something else of any object that can be drawn.
template <class ImplPointer, class Change>
Result SetDrawn(const ImplPointer& impl, const Index& view, const Index& object, EEventsQuillDataChange kind,
                Change&& change) {
    return Run(impl, [&](Edit& edit) -> Result {
        ViewPlace place;
        if (Result r = PermitView(edit, view, place); !r) return r;
        const Location at = edit.Now().Locate(object);
        return VisitRecord(edit.Now(), at, Result(EErrorCode::ObjectNotFound),
                           [&]<class Record>(const Record& record) -> Result {
                               if constexpr (requires { record.drawings; }) {
                                   if (!Fits(edit.Now(), record, at.slot, place)) return EErrorCode::InvalidArgument;
                                   if (!edit.Begin(Event::Drawn(view, object, kind))) return {};
                                   Redraw<Record>(edit, at.slot, RecordOf(edit, place), change);
                                   return {};
                               } else {
                                   return EErrorCode::InvalidArgument;
                               }
                           });
    });
}

template <class ImplPointer, class Data>
Result AddItem(const ImplPointer& impl, const Index& view, const Data& data, Index& item, const Index& wanted) {
    using Record = ItemRecord<Data>;
    Place place;
    Result result = Run(impl, [&](Edit& edit) -> Result {
        ViewPlace on;
        if (Result r = PermitView(edit, view, on); !r) return r;
        if (Result r = edit.Reserve<Record>(place, wanted); !r) return r;
        if (!edit.Begin(Event::Add(view, place->second, EEventsAdd::GraphicItem))) return {};
        const Slot viewSlot = RecordOf(edit, on);
        edit.Do().Put(place->first, Record{place->second, viewSlot, data});
        constexpr auto items = [](ViewRecord& r) -> SlotSet& {
            return r.items[static_cast<std::size_t>(ItemTraits<Data>::Item)];
        };
        edit.Do().Enter<ViewRecord>(viewSlot, items, place->first);
        return {};
    });
    if (result) item = place->second;
    return result;
}

template <class Record, class ImplPointer, class Data>
Result SetItem(const ImplPointer& impl, const Index& item, const Data& data) {
    return Run(impl, [&](Edit& edit) -> Result {
        const Slot slot = edit.Now().SlotOf<Record>(item);
        if (Result r = PermitRecord<Record>(edit, slot); !r) return r;
        Event what;
        if constexpr (std::is_same_v<Record, PieceRecord>) {
            what = Event::Change(item, EEventsChange::NetQuillData);
        } else {
            const ViewRecord& view = *edit.Now().Find<ViewRecord>(edit.Now().Find<Record>(slot)->view);
            what = Event::Drawn(ViewOwnerIndex(edit.Now(), view), item, EEventsQuillDataChange::Data);
        }
        if (edit.Begin(std::move(what))) edit.Do().Set(slot, &Record::data, data);
        return {};
    });
}

}  // namespace

Result Editor::SetModificationTime(const Index& view, int seconds) {
    return Run(m_impl, [&](Edit& edit) -> Result {
        ViewPlace place;
        if (Result r = PermitView(edit, view, place); !r) return r;
        if (!edit.Begin(Event::Change(view, EEventsChange::ViewTime))) return {};
        edit.Do().Set(RecordOf(edit, place), &ViewRecord::modified, std::optional<std::int32_t>(seconds));
        return {};
    });
}

Result Editor::SetCompData(const Index& view, const Index& comp, const CompDataQuill& data) {
    return SetBody<CompRecord>(m_impl, view, comp, data);
}

Result Editor::SetPinData(const Index& view, const Index& pin, const PinDataQuill& data) {
    return SetBody<PinRecord>(m_impl, view, pin, data);
}

Result Editor::SetBusData(const Index& view, const Index& bus, const BusDataQuill& data) {
    return SetBody<BusRecord>(m_impl, view, bus, data);
}

Result Editor::SetGroupData(const Index& view, const Index& group, const GroupDataQuill& data) {
    return SetBody<GroupRecord>(m_impl, view, group, data);
}

Result Editor::SetLabelData(const Index& view, const Index& object, const LabelDataQuill& data) {
    return SetDrawn(m_impl, view, object, EEventsQuillDataChange::Label,
                    [&](Drawing& drawing) { drawing.label = ListT<LabelDataQuill>{data}; });
}

Result Editor::SetAttrData(const Index& view, const Index& object, const String& name, const String& value,
                           const AttrDataQuill& data) {
    if (name.IsEmpty()) return EErrorCode::InvalidArgument;
    return SetDrawn(m_impl, view, object, EEventsQuillDataChange::Attribute, [&](Drawing& drawing) {
        const auto key = [](const DrawnAttribute& a) { return std::pair(a.name.View(), a.value.View()); };
        const std::pair wanted(name.View(), value.View());
        ListT<DrawnAttribute>& drawn = drawing.attributes;
        const DrawnAttribute* const found =
            std::lower_bound(drawn.begin(), drawn.end(), wanted,
                             [&key](const DrawnAttribute& a, const auto& other) { return key(a) < other; });
        const std::size_t position = static_cast<std::size_t>(found - drawn.begin());
        if (found != drawn.end() && key(*found) == wanted) {
            (&drawn.Front())[position].data = data;
        } else {
            drawn.Insert(position, {name, value, data});
        }
    });
}

Result Editor::Undraw(const Index& view, const Index& object) {
    return Run(m_impl, [&](Edit& edit) -> Result {
        ViewPlace place;
        if (Result r = PermitView(edit, view, place); !r) return r;
        const Location at = edit.Now().Locate(object);
        return VisitRecord(edit.Now(), at, Result(EErrorCode::ObjectNotFound),
                           [&]<class Record>(const Record& record) -> Result {
                               if constexpr (requires { record.drawings; }) {
                                   const Drawing* const drawing = FindDrawing(record.drawings, place.view);
                                   if (drawing == nullptr) return EErrorCode::ViewDataNotFound;
                                   if (!edit.Begin(Event::Drawn(view, object, EEventsQuillDataChange::Data))) return {};
                                   Drawings drawings = record.drawings;
                                   drawings.Erase(static_cast<std::size_t>(drawing - record.drawings.begin()));
                                   edit.Do().Set(at.slot, &Record::drawings, std::move(drawings));
                                   return {};
                               } else {
                                   return EErrorCode::InvalidArgument;
                               }
                           });
    });
}

Result Editor::AddNetQuill(const Index& view, const Index& net, const NetDataQuill& data, Index& piece,
                           const Index& index) {
    Place place;
    Result result = Run(m_impl, [&](Edit& edit) -> Result {
        ViewPlace on;
        if (Result r = PermitView(edit, view, on); !r) return r;
        const Slot netSlot = edit.Now().SlotOf<NetRecord>(net);
        if (netSlot == 0) return EErrorCode::ObjectNotFound;
        if (on.group == 0 || edit.Now().Find<NetRecord>(netSlot)->block != on.block) return EErrorCode::InvalidArgument;
        if (Result r = edit.Reserve<PieceRecord>(place, index); !r) return r;
        if (!edit.Begin(Event::Add(net, place->second, EEventsAdd::NetQuill))) return {};
        const Slot viewSlot = RecordOf(edit, on);
        const ListT<NetPiece>& pieces = edit.Now().Find<NetRecord>(netSlot)->pieces;
        const NetPiece* const behind =
            std::upper_bound(pieces.begin(), pieces.end(), viewSlot,
                             [](Slot wanted, const NetPiece& other) { return wanted < other.view; });
        const std::size_t position = static_cast<std::size_t>(behind - pieces.begin());
        edit.Do().Put(place->first, PieceRecord{place->second, netSlot, viewSlot, data});
        edit.Do().InsertAt(netSlot, &NetRecord::pieces, position, {viewSlot, place->first});
        edit.Do().Enter<ViewRecord>(
            viewSlot, [](ViewRecord& r) -> SlotSet& { return r.pieces; }, place->first);
        return {};
    });
    if (result) piece = place->second;
    return result;
}

Result Editor::SetNetQuillData(const Index& piece, const NetDataQuill& data) {
    return SetItem<PieceRecord>(m_impl, piece, data);
}

Result Editor::AddLine(const Index& view, const LineDataQuill& data, Index& item, const Index& index) {
    return AddItem(m_impl, view, data, item, index);
}

Result Editor::AddRect(const Index& view, const RectDataQuill& data, Index& item, const Index& index) {
    return AddItem(m_impl, view, data, item, index);
}

Result Editor::AddArc(const Index& view, const ArcDataQuill& data, Index& item, const Index& index) {
    return AddItem(m_impl, view, data, item, index);
}

Result Editor::AddCircle(const Index& view, const CircleDataQuill& data, Index& item, const Index& index) {
    return AddItem(m_impl, view, data, item, index);
}

Result Editor::AddText(const Index& view, const TextDataQuill& data, Index& item, const Index& index) {
    return AddItem(m_impl, view, data, item, index);
}

Result Editor::SetLine(const Index& item, const LineDataQuill& data) {
    return SetItem<LineRecord>(m_impl, item, data);
}
Result Editor::SetRect(const Index& item, const RectDataQuill& data) {
    return SetItem<RectRecord>(m_impl, item, data);
}
Result Editor::SetArc(const Index& item, const ArcDataQuill& data) {
    return SetItem<ArcRecord>(m_impl, item, data);
}
Result Editor::SetCircle(const Index& item, const CircleDataQuill& data) {
    return SetItem<CircleRecord>(m_impl, item, data);
}
Result Editor::SetText(const Index& item, const TextDataQuill& data) {
    return SetItem<TextRecord>(m_impl, item, data);
}

}  // namespace Orin::DesignDb
