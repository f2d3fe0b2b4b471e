// Components, at no place and at a place of the hierarchy, and their pins.
#include "designdb/detail/face.h"

namespace Orin::DesignDb {

namespace {

class CompFace final : public Face<IComp, CompRecord> {
public:
    CompFace(const SessionRef& session, Slot slot, const Index& index, const PathNode* place) noexcept
        : Face(session, slot, index), m_place(place) {}

    Result IsValid() const override {
        return Read("IObject::IsValid", [&](const Graph& graph, const CompRecord& comp) -> Result {
            return Stands(graph, comp) ? Result() : Result(EErrorCode::ObjectNotFound);
        });
    }

    Result GetAttribute(const String& name, String& value, EAttributeType type) const override {
        return Read("IComp::GetAttribute", [&](const Graph&, const CompRecord& comp) -> Result {
            if (const OccurrenceAttributes* const own = Own(comp)) {
                Result result = ReadAttribute(own->attributes, name, type, value);
                if (result) return result;
            }
            return ReadAttribute(comp.attributes, name, type, value);
        });
    }
    Result SetAttribute(const String& name, const String& value, EAttributeType type) override {
        if (const int code = Fault("IComp::SetAttribute", m_index)) return Result(code);
        return SetAttributeLocked(*m_session, {Record::Kind, m_slot}, m_place, name, value, type);
    }
    Result RemoveAttribute(const String& name, EAttributeType type) override {
        if (const int code = Fault("IComp::RemoveAttribute", m_index)) return Result(code);
        return RemoveAttributeLocked(*m_session, {Record::Kind, m_slot}, m_place, name, type);
    }
    Result GetAttributes(ListAttribute& attributes) const override {
        return Read("IComp::GetAttributes", [&](const Graph&, const CompRecord& comp) -> Result {
            ListAttribute all = comp.attributes;
            if (const OccurrenceAttributes* const own = Own(comp))
                for (const Attribute& attribute : own->attributes)
                    all = WithAttribute(std::move(all), attribute.name, attribute.value, attribute.type);
            attributes = std::move(all);
            return {};
        });
    }
    Result GetChildBlock(ContainerT<const IBlock>& block) const override {
        return Read("IComp::GetChildBlock", [&](const Graph& graph, const CompRecord& comp) -> Result {
            if (graph.Find<BlockRecord>(comp.child) == nullptr) return EErrorCode::NoValue;
            block = ContainerT<const IBlock>(MakeBlock(m_session, graph, comp.child));
            return {};
        });
    }
    Result GetDefinition(ContainerT<const IComp>& definition) const override {
        return Read("IComp::GetDefinition", [&](const Graph& graph, const CompRecord& comp) -> Result {
            if (graph.Find<CompRecord>(comp.definition) == nullptr) return EErrorCode::NoValue;
            definition = ContainerT<const IComp>(MakeComp(m_session, graph, comp.definition));
            return {};
        });
    }
    Result GetInstanceIndex(Index& index) const override {
        return Read("IComp::GetInstanceIndex", [&](const Graph&, const CompRecord& comp) -> Result {
            index = comp.instance.IsEmpty() ? comp.index : comp.instance;
            return {};
        });
    }
    Result GetIterPins(IteratorT<const IPin>& pins) const override {
        ListT<Slot> slots;
        Result result = Read("IComp::GetIterPins", [&](const Graph&, const CompRecord& comp) -> Result {
            slots = comp.pins;
            return {};
        });
        if (!result) return result;
        try {
            pins = IteratorT<const IPin>(
                RefPtr<IterationSource>(new ListSource<PinRecord, IPin>(m_session, std::move(slots), MakePin)));
            return {};
        } catch (const std::bad_alloc&) {
            return EErrorCode::OutOfMemory;
        }
    }
    Result GetLabel(String& label) const override {
        return Read("IComp::GetLabel", [&](const Graph&, const CompRecord& comp) -> Result {
            label = comp.label;
            return {};
        });
    }
    Result GetListGroups(ListT<GroupInfo>& groups, const GroupTypes& types) const override {
        return Read("IComp::GetListGroups", [&](const Graph& graph, const CompRecord& comp) -> Result {
            groups = ListGroups(graph, comp.groups, types);
            return {};
        });
    }
    Result GetParentBlock(ContainerT<const IBlock>& block) const override {
        return Read("IComp::GetParentBlock", [&](const Graph& graph, const CompRecord& comp) -> Result {
            block = ContainerT<const IBlock>(MakeBlock(m_session, graph, comp.block));
            return {};
        });
    }
    Result GetPartitionName(String& name) const override {
        return Read("IComp::GetPartitionName", [&](const Graph&, const CompRecord& comp) -> Result {
            if (comp.partition.IsEmpty()) return EErrorCode::NoValue;
            name = comp.partition;
            return {};
        });
    }
    Result GetPath(ContainerT<const IPath>& path) const override {
        return Read("IComp::GetPath", [&](const Graph&, const CompRecord&) -> Result {
            if (m_place == nullptr) return EErrorCode::NoValue;
            path = ContainerT<const IPath>(MakePath(m_session, *m_place));
            return {};
        });
    }
    Result GetType(CompTypes& types) const override {
        return Read("IComp::GetType", [&](const Graph&, const CompRecord& comp) -> Result {
            types = comp.types;
            return {};
        });
    }

private:
    Result OpenView(ContainerT<const ICompViewQuill>& view) const override {
        return Read("ICompViewQuill::Init", [&](const Graph& graph, const CompRecord&) -> Result {
            view = ContainerT<const ICompViewQuill>(MakeCompView(m_session, graph, m_slot));
            return {};
        });
    }

    const OccurrenceAttributes* Own(const CompRecord& comp) const noexcept {
        return m_place != nullptr ? FindOccurrence(comp.occurrences, m_place->slot) : nullptr;
    }

    LockKey Key() const noexcept override { return {Record::Kind, m_slot, m_place != nullptr ? m_place->slot : 0}; }
    bool Stands(const Graph& graph, const CompRecord& comp) const noexcept override {
        return m_place == nullptr || StandsAt(graph, *m_place, comp);
    }
    const char* LockOperation(ELockScope scope) const noexcept override {
        return scope == ELockScope::Whole ? "LockerT<IComp>::Lock" : "LockerT<IComp>::ShallowLock";
    }

    const PathNode* const m_place;  // null at no place; lives as long as the project
};

class PinFace final : public Face<IPin, PinRecord> {
public:
    PinFace(const SessionRef& session, Slot slot, const Index& index) noexcept : Face(session, slot, index) {}

    Result GetAttributes(ListAttribute& attributes) const override {
        return Read("IPin::GetAttributes", [&](const Graph&, const PinRecord& pin) -> Result {
            attributes = pin.attributes;
            return {};
        });
    }
    Result GetAttribute(const String& name, String& value) const override {
        return Read("IPin::GetAttribute", [&](const Graph&, const PinRecord& pin) {
            return ReadAttribute(pin.attributes, name, EAttributeType::User, value);
        });
    }
    Result GetLabel(String& label) const override {
        return Read("IPin::GetLabel", [&](const Graph&, const PinRecord& pin) -> Result {
            label = pin.label;
            return {};
        });
    }
    Result GetParentComp(ContainerT<const IComp>& comp) const override {
        return Read("IPin::GetParentComp", [&](const Graph& graph, const PinRecord& pin) -> Result {
            comp = ContainerT<const IComp>(MakeComp(m_session, graph, pin.comp));
            return {};
        });
    }
    Result GetNet(ContainerT<const INet>& net) const override {
        return Read("IPin::GetNet", [&](const Graph& graph, const PinRecord& pin) -> Result {
            if (graph.Find<NetRecord>(pin.net) == nullptr) return EErrorCode::NoValue;
            net = ContainerT<const INet>(MakeNet(m_session, graph, pin.net));
            return {};
        });
    }
};

}  // namespace

RefPtr<const IComp> MakeComp(const SessionRef& session, const Graph& graph, Slot slot, const PathNode* place) {
    return RefPtr<const IComp>(new CompFace(session, slot, graph.Find<CompRecord>(slot)->index, place));
}

RefPtr<const IPin> MakePin(const SessionRef& session, const Graph& graph, Slot slot) {
    return RefPtr<const IPin>(new PinFace(session, slot, graph.Find<PinRecord>(slot)->index));
}

}  // namespace Orin::DesignDb
