// Nets, buses, and what they connect.
#include "designdb/detail/editing.h"

namespace Orin::DesignDb {

namespace {

SlotSet& PinsOf(NetRecord& net) {
    return net.pins;
}
SlotSet& BusesOf(NetRecord& net) {
    return net.buses;
}
SlotSet& NetsOf(BusRecord& bus) {
    return bus.nets;
}

}  // namespace

Result Editor::AddNet(const Index& block, const NetSpec& spec, Index& net) {
    Place place;
    Result result = Run(m_impl, [&](Edit& edit) -> Result {
        const Slot owner = edit.Now().SlotOf<BlockRecord>(block);
        if (Result r = PermitRecord<BlockRecord>(edit, owner); !r) return r;
        if (Result r = edit.Reserve<NetRecord>(place, spec.index); !r) return r;
        if (!edit.Begin(Event::Add(block, place->second, EEventsAdd::Net))) return {};
        NetRecord record;
        record.index = place->second;
        record.block = owner;
        record.label = spec.label;
        edit.Do().Put(place->first, std::move(record));
        edit.Do().Enter<BlockRecord>(
            owner, [](BlockRecord& r) -> SlotSet& { return r.nets; }, place->first);
        return {};
    });
    if (result) net = place->second;
    return result;
}

Result Editor::AddBus(const Index& block, const BusSpec& spec, Index& bus) {
    Place place;
    Result result = Run(m_impl, [&](Edit& edit) -> Result {
        const Slot owner = edit.Now().SlotOf<BlockRecord>(block);
        if (Result r = PermitRecord<BlockRecord>(edit, owner); !r) return r;
        if (Result r = edit.Reserve<BusRecord>(place, spec.index); !r) return r;
        if (!edit.Begin(Event::Add(block, place->second, EEventsAdd::Bus))) return {};
        BusRecord record;
        record.index = place->second;
        record.block = owner;
        record.label = spec.label;
        edit.Do().Put(place->first, std::move(record));
        edit.Do().Enter<BlockRecord>(
            owner, [](BlockRecord& r) -> SlotSet& { return r.buses; }, place->first);
        return {};
    });
    if (result) bus = place->second;
    return result;
}

namespace {

// Puts a pin on a net. `before` is the net that it is on and has to leave first; nothing happens then.
Result ConnectFreePin(Session& session, const Index& net, const Index& pin, Slot& before) {
    return Perform(session, EditRight::Free, [&](Edit& edit) -> Result {
        const Graph& graph = edit.Now();
        const Slot netSlot = graph.SlotOf<NetRecord>(net);
        const Slot pinSlot = graph.SlotOf<PinRecord>(pin);
        if (Result r = PermitRecord<NetRecord>(edit, netSlot); !r) return r;
        if (Result r = PermitRecord<PinRecord>(edit, pinSlot); !r) return r;
        const PinRecord& record = *graph.Find<PinRecord>(pinSlot);
        if (graph.Find<CompRecord>(record.comp)->block != graph.Find<NetRecord>(netSlot)->block)
            return EErrorCode::InvalidArgument;
        if (record.net == netSlot) return EErrorCode::AlreadyExists;
        before = graph.Find<NetRecord>(record.net) != nullptr ? record.net : 0;
        if (before != 0) {
            Result permitted = PermitRecord<NetRecord>(edit, before);
            return permitted ? Result(EErrorCode::ObjectInUse) : permitted;
        }
        if (!edit.Begin(Event::Connected(net, pin, EEventsConnectivityChange::Connect))) return {};
        edit.Do().Enter<NetRecord>(netSlot, PinsOf, pinSlot);
        edit.Do().Set(pinSlot, &PinRecord::net, netSlot);
        return {};
    });
}

Result DisconnectPinOf(Session& session, const Index& pin) {
    return Perform(session, EditRight::Free, [&](Edit& edit) -> Result {
        const Graph& graph = edit.Now();
        const Slot slot = graph.SlotOf<PinRecord>(pin);
        if (Result r = PermitRecord<PinRecord>(edit, slot); !r) return r;
        const Slot net = graph.Find<PinRecord>(slot)->net;
        if (graph.Find<NetRecord>(net) == nullptr) return EErrorCode::NoValue;
        if (Result r = PermitRecord<NetRecord>(edit, net); !r) return r;
        const Index netIndex = graph.Find<NetRecord>(net)->index;
        if (!edit.Begin(Event::Connected(netIndex, pin, EEventsConnectivityChange::Disconnect))) return {};
        edit.Do().Leave<NetRecord>(net, PinsOf, slot);
        edit.Do().Set(slot, &PinRecord::net, 0);
        return {};
    });
}

}  // namespace

// A pin that changes its net leaves one and joins the other, two edits that happen as a whole: whoever keeps the
// connections by the events learns of both, also when they are taken back.
Result Editor::ConnectPin(const Index& net, const Index& pin) {
    if (!m_impl) return EErrorCode::NotConnected;
    Session& session = *m_impl->session;
    Slot before = 0;
    Result result = ConnectFreePin(session, net, pin, before);
    if (before == 0 || result.GetErrorCode() != static_cast<int>(EErrorCode::ObjectInUse)) return result;
    EditSeries series(session);
    if (!series.Begun()) return series.Begun();
    result = DisconnectPinOf(session, pin);
    if (result) result = ConnectFreePin(session, net, pin, before);
    return series.Finish(std::move(result));
}

Result Editor::DisconnectPin(const Index& pin) {
    return m_impl ? DisconnectPinOf(*m_impl->session, pin) : Result(EErrorCode::NotConnected);
}

Result Editor::ConnectNet(const Index& bus, const Index& net) {
    return Run(m_impl, [&](Edit& edit) -> Result {
        const Graph& graph = edit.Now();
        const Slot busSlot = graph.SlotOf<BusRecord>(bus);
        const Slot netSlot = graph.SlotOf<NetRecord>(net);
        if (Result r = PermitRecord<BusRecord>(edit, busSlot); !r) return r;
        if (Result r = PermitRecord<NetRecord>(edit, netSlot); !r) return r;
        const BusRecord& record = *graph.Find<BusRecord>(busSlot);
        if (record.block != graph.Find<NetRecord>(netSlot)->block) return EErrorCode::InvalidArgument;
        if (record.nets.ContainsSorted(netSlot)) return EErrorCode::AlreadyExists;
        if (!edit.Begin(Event::Connected(bus, net, EEventsConnectivityChange::Connect))) return {};
        edit.Do().Enter<BusRecord>(busSlot, NetsOf, netSlot);
        edit.Do().Enter<NetRecord>(netSlot, BusesOf, busSlot);
        return {};
    });
}

Result Editor::DisconnectNet(const Index& bus, const Index& net) {
    return Run(m_impl, [&](Edit& edit) -> Result {
        const Graph& graph = edit.Now();
        const Slot busSlot = graph.SlotOf<BusRecord>(bus);
        const Slot netSlot = graph.SlotOf<NetRecord>(net);
        if (Result r = PermitRecord<BusRecord>(edit, busSlot); !r) return r;
        if (Result r = PermitRecord<NetRecord>(edit, netSlot); !r) return r;
        if (!graph.Find<BusRecord>(busSlot)->nets.ContainsSorted(netSlot)) return EErrorCode::NoValue;
        if (!edit.Begin(Event::Connected(bus, net, EEventsConnectivityChange::Disconnect))) return {};
        edit.Do().Leave<BusRecord>(busSlot, NetsOf, netSlot);
        edit.Do().Leave<NetRecord>(netSlot, BusesOf, busSlot);
        return {};
    });
}

// The bus that changes is the one that is tapped now, or that was when it is freed.
Result Editor::RipBus(const Index& ripper, const Index& bus) {
    return Run(m_impl, [&](Edit& edit) -> Result {
        const Graph& graph = edit.Now();
        const Slot comp = graph.SlotOf<CompRecord>(ripper);
        if (Result r = PermitRecord<CompRecord>(edit, comp); !r) return r;
        const Slot before = graph.Find<CompRecord>(comp)->rippedBus;
        const Slot after = graph.SlotOf<BusRecord>(bus);
        if (after == 0 && !bus.IsEmpty()) return EErrorCode::ObjectNotFound;
        const BusRecord* const changed = graph.Find<BusRecord>(after != 0 ? after : before);
        if (changed == nullptr) return EErrorCode::NoValue;
        if (changed->block != graph.Find<CompRecord>(comp)->block) return EErrorCode::InvalidArgument;
        if (Result r = PermitRecord<BusRecord>(edit, after != 0 ? after : before); !r) return r;
        if (!edit.Begin(Event::Change(changed->index, EEventsChange::RipBus))) return {};
        edit.Do().Set(comp, &CompRecord::rippedBus, after);
        return {};
    });
}

Result Editor::GetRippedBus(const Index& ripper, Index& bus) const {
    if (!m_impl) return EErrorCode::NotConnected;
    const std::shared_lock lock(m_impl->session->snapshot->lock);
    const Graph& graph = m_impl->session->snapshot->graph;
    const CompRecord* const comp = graph.Find<CompRecord>(ripper);
    if (comp == nullptr) return EErrorCode::ObjectNotFound;
    const BusRecord* const found = graph.Find<BusRecord>(comp->rippedBus);
    if (found == nullptr) return EErrorCode::NoValue;
    bus = found->index;
    return {};
}

}  // namespace Orin::DesignDb
