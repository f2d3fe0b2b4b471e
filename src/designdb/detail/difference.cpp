#include "designdb/detail/difference.h"

#include <algorithm>

namespace Orin::DesignDb {

namespace {

template <class Record>
Index IndexOf(const Graph& graph, Slot slot) {
    const Record* const record = graph.Find<Record>(slot);
    return record != nullptr ? record->index : Index();
}

// What the object stands in, as the events of adding and deleting name it.
template <class Record>
Index ParentOf(const Graph& graph, const Record& record) {
    if constexpr (std::is_same_v<Record, PinRecord>) {
        return IndexOf<CompRecord>(graph, record.comp);
    } else if constexpr (std::is_same_v<Record, PieceRecord>) {
        return IndexOf<NetRecord>(graph, record.net);
    } else if constexpr (requires { record.ownerGroup; }) {
        return record.ownerGroup != 0 ? IndexOf<GroupRecord>(graph, record.ownerGroup)
                                      : IndexOf<BlockRecord>(graph, record.block);
    } else if constexpr (requires { record.block; }) {
        return IndexOf<BlockRecord>(graph, record.block);
    } else if constexpr (requires { record.view; }) {
        const ViewRecord* const view = graph.Find<ViewRecord>(record.view);
        return view != nullptr ? ViewOwnerIndex(graph, *view) : Index();
    } else {
        return {};
    }
}

class Comparison {
public:
    Comparison(const Graph& before, const Graph& after) : m_before(before), m_after(after) {}

    std::vector<Event> Run(const Index& design) {
        // Containers come before what they contain.
        Tables<BlockRecord, ConfigRecord, BusRecord, NetRecord, CompRecord, GroupRecord, PinRecord, PieceRecord,
               LineRecord, RectRecord, ArcRecord, CircleRecord, TextRecord>();
        Views();
        Attributes(design, m_before.attributes, m_after.attributes);
        std::reverse(m_deleted.begin(), m_deleted.end());
        m_deleted.reserve(m_deleted.size() + m_added.size() + m_changed.size());
        for (std::vector<Event>* const events : {&m_added, &m_changed})
            std::move(events->begin(), events->end(), std::back_inserter(m_deleted));
        return std::move(m_deleted);
    }

private:
    template <class... Records>
    void Tables() {
        (Compare<Records>(), ...);
    }

    template <class Record>
    void Compare() {
        constexpr KindPair kinds = KindsOf(Record::Kind);
        m_before.Of<Record>().Compare(m_after.Of<Record>(), [&](Slot slot, const Record* before, const Record* after) {
            if (after == nullptr) {
                m_deleted.push_back(Event::Delete(ParentOf(m_before, *before), before->index, kinds.remove));
            } else if (before == nullptr) {
                m_added.push_back(Event::Add(ParentOf(m_after, *after), after->index, kinds.add));
            } else {
                Change(slot, *before, *after);
            }
        });
    }

    template <class Record>
    bool IsInBoth(Slot slot) const noexcept {
        return m_before.Find<Record>(slot) != nullptr && m_after.Find<Record>(slot) != nullptr;
    }

    // Whether the index names one object in both, and not two that came after one another.
    bool IsInBoth(const Index& index) const noexcept {
        const Location before = m_before.Locate(index);
        return before && before == m_after.Locate(index);
    }

    template <class Value>
    void Field(const Index& object, const Value& before, const Value& after, EEventsChange kind) {
        if (!(before == after)) m_changed.push_back(Event::Change(object, kind));
    }

    template <class Record>
    void Change(Slot slot, const Record& before, const Record& after) {
        const Index& index = after.index;
        if constexpr (requires { after.attributes; }) Attributes(index, before.attributes, after.attributes);
        if constexpr (requires { after.name; }) Field(index, before.name, after.name, EEventsChange::Name);
        if constexpr (requires { after.label; }) Field(index, before.label, after.label, EEventsChange::Label);
        if constexpr (requires { after.types; }) Field(index, before.types, after.types, EEventsChange::Type);
        if constexpr (requires { after.drawings; }) Drawn(index, before.drawings, after.drawings);
        if constexpr (requires { after.data; }) {
            if (before.data == after.data) return;
            m_changed.push_back(std::is_same_v<Record, PieceRecord>
                                    ? Event::Change(index, EEventsChange::NetQuillData)
                                    : Event::Drawn(ParentOf(m_after, after), index, EEventsQuillDataChange::Data));
        }
        Own(slot, before, after);
    }

    // ---- What only one kind of object has. ----

    template <class Record>
    void Own(Slot, const Record& before, const Record& after) {
        if constexpr (std::is_same_v<Record, NetRecord>) MembershipsOf(after.index, before.groups, after.groups);
    }

    void Own(Slot, const BlockRecord& before, const BlockRecord& after) {
        Field(after.index, before.libraryName, after.libraryName, EEventsChange::LibraryName);
    }

    void Own(Slot, const ConfigRecord& before, const ConfigRecord& after) {
        Field(after.index, before.root, after.root, EEventsChange::Root);
    }

    void Own(Slot, const CompRecord& before, const CompRecord& after) {
        const Index& index = after.index;
        Field(index, before.partition, after.partition, EEventsChange::Partition);
        Field(index, before.definition, after.definition, EEventsChange::Definition);
        Field(index, before.child, after.child, EEventsChange::ChildBlock);
        Field(index, before.instance, after.instance, EEventsChange::InstanceIndex);
        if (before.rippedBus != after.rippedBus) {
            const BusRecord* bus = m_after.Find<BusRecord>(after.rippedBus);
            if (bus == nullptr) bus = m_before.Find<BusRecord>(before.rippedBus);
            if (bus != nullptr) m_changed.push_back(Event::Change(bus->index, EEventsChange::RipBus));
        }
        Union(before.occurrences, after.occurrences, &OccurrenceAttributes::path,
              [&](const OccurrenceAttributes* was, const OccurrenceAttributes* is) {
                  static const ListAttribute s_none;
                  Attributes(index, was != nullptr ? was->attributes : s_none, is != nullptr ? is->attributes : s_none);
              });
        MembershipsOf(index, before.groups, after.groups);
    }

    void Own(Slot, const PinRecord& before, const PinRecord& after) {
        if (before.net == after.net) return;
        if (IsInBoth<NetRecord>(before.net))
            Connectivity(m_before.Find<NetRecord>(before.net)->index, after.index,
                         EEventsConnectivityChange::Disconnect);
        if (IsInBoth<NetRecord>(after.net))
            Connectivity(m_after.Find<NetRecord>(after.net)->index, after.index, EEventsConnectivityChange::Connect);
    }

    void Own(Slot, const BusRecord& before, const BusRecord& after) {
        MembershipsOf(after.index, before.groups, after.groups);
        if (before.nets.SharesAll(after.nets)) return;
        const auto tell = [&](const SlotSet& from, const SlotSet& to, EEventsConnectivityChange kind) {
            from.ForEach([&](Slot net) {
                if (!to.ContainsSorted(net) && IsInBoth<NetRecord>(net))
                    Connectivity(after.index, m_after.Find<NetRecord>(net)->index, kind);
            });
        };
        tell(before.nets, after.nets, EEventsConnectivityChange::Disconnect);
        tell(after.nets, before.nets, EEventsConnectivityChange::Connect);
    }

    void Own(Slot, const GroupRecord& before, const GroupRecord& after) {
        Field(after.index, before.type, after.type, EEventsChange::Type);
        MembershipsOf(after.index, before.memberships, after.memberships);
        if (before.members.SharesAll(after.members)) return;
        const auto stayed = [this](const ChunkedSequence<std::uint64_t>& all) {
            std::vector<Index> members;
            all.ForEach([&](std::uint64_t member) {
                if (IsInBoth(Index(member))) members.emplace_back(member);
            });
            return members;
        };
        std::vector<Index> was = stayed(before.members);
        std::vector<Index> is = stayed(after.members);
        const auto takeAway = [&](std::vector<Index>& from, const std::vector<Index>& others,
                                  EEventsConnectivityChange kind) {
            std::vector<Index> sorted = others;
            std::sort(sorted.begin(), sorted.end());
            std::erase_if(from, [&](const Index& member) {
                if (std::binary_search(sorted.begin(), sorted.end(), member)) return false;
                Connectivity(after.index, member, kind);
                return true;
            });
        };
        const std::vector<Index> all = was;
        takeAway(was, is, EEventsConnectivityChange::LeaveGroup);
        takeAway(is, all, EEventsConnectivityChange::JoinGroup);
        for (std::size_t i = 0; i < is.size(); ++i)
            if (is[i] != was[i]) Connectivity(after.index, is[i], EEventsConnectivityChange::Reorder);
    }

    // Joining and leaving is told from the groups' side. Who left and joined again may have its groups in another
    // order.
    void MembershipsOf(const Index& object, const Memberships& before, const Memberships& after) {
        const auto stayed = [this](const Memberships& all, const Memberships& others) {
            std::vector<Slot> groups;
            const auto visit = [&](Slot group) {
                if (IsInBoth<GroupRecord>(group) && IsMember(others, group)) groups.push_back(group);
            };
            visit(all.first);
            std::for_each(all.further.begin(), all.further.end(), visit);
            return groups;
        };
        if (before.first == after.first && before.further == after.further) return;
        const std::vector<Slot> was = stayed(before, after);
        const std::vector<Slot> is = stayed(after, before);
        for (std::size_t i = 0; i < is.size(); ++i)
            if (is[i] != was[i])
                Connectivity(m_after.Find<GroupRecord>(is[i])->index, object, EEventsConnectivityChange::Reorder);
    }

    // ---- What several kinds have. ----

    void Connectivity(const Index& parent, const Index& object, EEventsConnectivityChange kind) {
        m_changed.push_back(Event::Connected(parent, object, kind));
    }

    // Calls visit(was, is) for each key of two lists that are sorted by a field; either is null where it is not there.
    template <class Element, class Key, class Visit>
    static void Union(const ListT<Element>& before, const ListT<Element>& after, Key Element::*key, Visit&& visit) {
        if (before == after) return;
        const Element* was = before.begin();
        const Element* is = after.begin();
        while (was != before.end() || is != after.end()) {
            const bool onlyWas = is == after.end() || (was != before.end() && was->*key < is->*key);
            const bool onlyIs = !onlyWas && (was == before.end() || is->*key < was->*key);
            visit(onlyIs ? nullptr : was, onlyWas ? nullptr : is);
            if (!onlyIs) ++was;
            if (!onlyWas) ++is;
        }
    }

    void Attributes(const Index& object, const ListAttribute& before, const ListAttribute& after) {
        if (before == after) return;
        for (const Attribute& was : before)
            if (FindAttribute(after, was.name.View(), was.type) == nullptr)
                m_changed.push_back(Event::RemoveAttribute(object, was.name, was.type, was.value));
        for (const Attribute& is : after) {
            const Attribute* const was = FindAttribute(before, is.name.View(), is.type);
            if (was == nullptr || !(was->value == is.value))
                m_changed.push_back(Event::SetAttribute(object, is.name, is.value, is.type, was));
        }
    }

    void Drawn(const Index& object, const Drawings& before, const Drawings& after) {
        Union(before, after, &Drawing::view, [&](const Drawing* was, const Drawing* is) {
            static const Drawing s_nothing;
            const Index view = ViewInBoth(was != nullptr ? was->view : is->view);
            if (view.IsEmpty()) return;
            const Drawing& from = was != nullptr ? *was : s_nothing;
            const Drawing& to = is != nullptr ? *is : s_nothing;
            const auto tell = [&](bool same, EEventsQuillDataChange kind) {
                if (!same) m_changed.push_back(Event::Drawn(view, object, kind));
            };
            tell(from.body == to.body, EEventsQuillDataChange::Data);
            tell(from.label == to.label, EEventsQuillDataChange::Label);
            tell(from.attributes == to.attributes, EEventsQuillDataChange::Attribute);
        });
    }

    // The group or symbol whose view it is, when that is in both states; the view itself is made when something is
    // first drawn on it.
    Index ViewInBoth(Slot slot) const noexcept {
        const ViewRecord* view = m_before.Find<ViewRecord>(slot);
        if (view == nullptr) view = m_after.Find<ViewRecord>(slot);
        if (view == nullptr || !(IsInBoth<GroupRecord>(view->group) || IsInBoth<CompRecord>(view->comp))) return {};
        return ViewOwnerIndex(m_after, *view);
    }

    void Views() {
        const auto timeOf = [](const ViewRecord* view) { return view != nullptr ? view->modified : std::nullopt; };
        m_before.Of<ViewRecord>().Compare(m_after.Of<ViewRecord>(),
                                          [&](Slot slot, const ViewRecord* before, const ViewRecord* after) {
                                              const Index owner = ViewInBoth(slot);
                                              if (!owner.IsEmpty())
                                                  Field(owner, timeOf(before), timeOf(after), EEventsChange::ViewTime);
                                          });
    }

    const Graph& m_before;
    const Graph& m_after;
    std::vector<Event> m_deleted, m_added, m_changed;
};

}  // namespace

std::vector<Event> Difference(const Graph& before, const Graph& after, const Index& design) {
    return Comparison(before, after).Run(design);
}

}  // namespace Orin::DesignDb
