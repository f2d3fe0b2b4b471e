#include "designdb/editor.h"

#include "designdb/detail/editing.h"

namespace Orin::DesignDb {

Editor::Editor() noexcept = default;
Editor::Editor(Editor&&) noexcept = default;
Editor& Editor::operator=(Editor&&) noexcept = default;
Editor::~Editor() = default;

Result Editor::Open(Editor& editor, const ContainerT<const ISnapshot>& snapshot) {
    const SessionRef* const session = snapshot ? SessionOf(*snapshot) : nullptr;
    if (session == nullptr) return EErrorCode::InvalidArgument;
    try {
        editor.m_impl = std::make_unique<Impl>(*session);
        return {};
    } catch (const std::bad_alloc&) {
        return EErrorCode::OutOfMemory;
    }
}

Result Editor::Notify(const std::function<void(ClientObserver&)>& call) const {
    if (!m_impl) return EErrorCode::NotConnected;
    m_impl->session->Project().Notify(m_impl->session->client.Get(), call);
    return {};
}

// ---- Save points ----

Result Editor::MakeSavePoint(const String& name) {
    return m_impl ? DesignDb::MakeSavePoint(*m_impl->session, name) : Result(EErrorCode::NotConnected);
}

Result Editor::RestoreSavePoint(const String& name) {
    return m_impl ? DesignDb::RestoreSavePoint(*m_impl->session, name) : Result(EErrorCode::NotConnected);
}

// ---- Blocks ----

Result Editor::AddBlock(const BlockSpec& spec, Index& block) {
    Place place;
    Result result = Run(m_impl, [&](Edit& edit) -> Result {
        if (Result r = PermitSnapshot(edit); !r) return r;
        if (Result r = edit.Reserve<BlockRecord>(place, spec.index); !r) return r;
        if (!edit.Begin(Event::Add({}, place->second, EEventsAdd::Block))) return {};
        BlockRecord record;
        record.index = place->second;
        record.types = spec.types;
        record.name = spec.name;
        record.libraryName = spec.libraryName;
        edit.Do().Put(place->first, std::move(record));
        return {};
    });
    if (result) block = place->second;
    return result;
}

Result Editor::SetBlockTypes(const Index& block, const BlockTypes& types) {
    return Run(m_impl, [&](Edit& edit) -> Result {
        const Slot slot = edit.Now().SlotOf<BlockRecord>(block);
        if (Result r = PermitRecord<BlockRecord>(edit, slot); !r) return r;
        if (edit.Begin(Event::Change(block, EEventsChange::Type))) edit.Do().Set(slot, &BlockRecord::types, types);
        return {};
    });
}

Result Editor::SetLibraryName(const Index& block, const String& name) {
    return Run(m_impl, [&](Edit& edit) -> Result {
        const Slot slot = edit.Now().SlotOf<BlockRecord>(block);
        if (Result r = PermitRecord<BlockRecord>(edit, slot); !r) return r;
        if (edit.Begin(Event::Change(block, EEventsChange::LibraryName)))
            edit.Do().Set(slot, &BlockRecord::libraryName, name);
        return {};
    });
}

// ---- Components and pins ----

Result Editor::AddComp(const Index& block, const CompSpec& spec, Index& comp) {
    Place place;
    Result result = Run(m_impl, [&](Edit& edit) -> Result {
        const Slot owner = edit.Now().SlotOf<BlockRecord>(block);
        if (Result r = PermitRecord<BlockRecord>(edit, owner); !r) return r;
        const Slot definition = edit.Now().SlotOf<CompRecord>(spec.definition);
        const Slot child = edit.Now().SlotOf<BlockRecord>(spec.childBlock);
        if ((definition == 0 && !spec.definition.IsEmpty()) || (child == 0 && !spec.childBlock.IsEmpty()))
            return EErrorCode::ObjectNotFound;
        if (Result r = edit.Reserve<CompRecord>(place, spec.index); !r) return r;
        if (!edit.Begin(Event::Add(block, place->second, EEventsAdd::Comp))) return {};
        CompRecord record;
        record.index = place->second;
        record.instance = spec.instanceIndex;
        record.types = spec.types;
        record.block = owner;
        record.definition = definition;
        record.child = child;
        record.label = spec.label;
        record.name = spec.name;
        record.partition = spec.partition;
        edit.Do().Put(place->first, std::move(record));
        edit.Do().Enter<BlockRecord>(
            owner, [](BlockRecord& r) -> SlotSet& { return r.comps; }, place->first);
        return {};
    });
    if (result) comp = place->second;
    return result;
}

namespace {

// Sets one field of a component.
template <class ImplPointer, class Value>
Result SetOfComp(const ImplPointer& impl, const Index& comp, EEventsChange kind, Value CompRecord::*field,
                 const std::type_identity_t<Value>& value) {
    return Run(impl, [&](Edit& edit) -> Result {
        const Slot slot = edit.Now().SlotOf<CompRecord>(comp);
        if (Result r = PermitRecord<CompRecord>(edit, slot); !r) return r;
        if (edit.Begin(Event::Change(comp, kind))) edit.Do().Set(slot, field, value);
        return {};
    });
}

// The same where the value is another object, which exists or is taken away by an empty index.
template <class Target, class ImplPointer>
Result ReferOfComp(const ImplPointer& impl, const Index& comp, EEventsChange kind, Slot CompRecord::*field,
                   const Index& target) {
    return Run(impl, [&](Edit& edit) -> Result {
        const Slot slot = edit.Now().SlotOf<CompRecord>(comp);
        if (Result r = PermitRecord<CompRecord>(edit, slot); !r) return r;
        const Slot other = edit.Now().SlotOf<Target>(target);
        if (other == 0 && !target.IsEmpty()) return EErrorCode::ObjectNotFound;
        if (edit.Begin(Event::Change(comp, kind))) edit.Do().Set(slot, field, other);
        return {};
    });
}

}  // namespace

Result Editor::SetCompTypes(const Index& comp, const CompTypes& types) {
    return SetOfComp(m_impl, comp, EEventsChange::Type, &CompRecord::types, types);
}

Result Editor::SetPartition(const Index& comp, const String& partition) {
    return SetOfComp(m_impl, comp, EEventsChange::Partition, &CompRecord::partition, partition);
}

Result Editor::SetInstanceIndex(const Index& comp, const Index& instance) {
    return SetOfComp(m_impl, comp, EEventsChange::InstanceIndex, &CompRecord::instance, instance);
}

Result Editor::SetDefinition(const Index& comp, const Index& definition) {
    return ReferOfComp<CompRecord>(m_impl, comp, EEventsChange::Definition, &CompRecord::definition, definition);
}

Result Editor::SetChildBlock(const Index& comp, const Index& block) {
    return ReferOfComp<BlockRecord>(m_impl, comp, EEventsChange::ChildBlock, &CompRecord::child, block);
}

Result Editor::AddPin(const Index& comp, const PinSpec& spec, Index& pin) {
    Place place;
    Result result = Run(m_impl, [&](Edit& edit) -> Result {
        const Slot owner = edit.Now().SlotOf<CompRecord>(comp);
        if (Result r = PermitRecord<CompRecord>(edit, owner); !r) return r;
        if (Result r = edit.Reserve<PinRecord>(place, spec.index); !r) return r;
        if (!edit.Begin(Event::Add(comp, place->second, EEventsAdd::Pin))) return {};
        PinRecord record;
        record.index = place->second;
        record.comp = owner;
        record.label = spec.label;
        edit.Do().Put(place->first, std::move(record));
        edit.Do().InsertAt(owner, &CompRecord::pins, edit.Now().Find<CompRecord>(owner)->pins.Count(), place->first);
        return {};
    });
    if (result) pin = place->second;
    return result;
}

// ---- Configurations ----

namespace {

bool ConfigNameIsTaken(const Graph& graph, const String& name, Slot except) {
    const Table<ConfigRecord>& configs = graph.Of<ConfigRecord>();
    for (Slot slot = configs.Above(0); slot != 0; slot = configs.Above(slot))
        if (slot != except && configs.Find(slot)->name == name) return true;
    return false;
}

}  // namespace

Result Editor::AddConfig(const ConfigSpec& spec, Index& config) {
    Place place;
    Result result = Run(m_impl, [&](Edit& edit) -> Result {
        if (Result r = PermitSnapshot(edit); !r) return r;
        const Slot root = edit.Now().SlotOf<BlockRecord>(spec.rootBlock);
        if (root == 0 && !spec.rootBlock.IsEmpty()) return EErrorCode::ObjectNotFound;
        if (ConfigNameIsTaken(edit.Now(), spec.name, 0)) return Result(EErrorCode::AlreadyExists, spec.name);
        if (Result r = edit.Reserve<ConfigRecord>(place, spec.index); !r) return r;
        if (!edit.Begin(Event::Add({}, place->second, EEventsAdd::Config))) return {};
        ConfigRecord record;
        record.index = place->second;
        record.root = root;
        record.name = spec.name;
        edit.Do().Put(place->first, std::move(record));
        return {};
    });
    if (result) config = place->second;
    return result;
}

Result Editor::DeleteConfig(const Index& config) {
    return Run(m_impl, [&](Edit& edit) -> Result {
        const Slot slot = edit.Now().SlotOf<ConfigRecord>(config);
        if (Result r = PermitRecord<ConfigRecord>(edit, slot, ELockScope::Whole); !r) return r;
        if (edit.Begin(Event::Delete({}, config, EEventsDelete::Config))) edit.Do().Take<ConfigRecord>(slot);
        return {};
    });
}

Result Editor::SetRoot(const Index& config, const Index& block) {
    return Run(m_impl, [&](Edit& edit) -> Result {
        const Slot slot = edit.Now().SlotOf<ConfigRecord>(config);
        if (Result r = PermitRecord<ConfigRecord>(edit, slot); !r) return r;
        const Slot root = edit.Now().SlotOf<BlockRecord>(block);
        if (root == 0 && !block.IsEmpty()) return EErrorCode::ObjectNotFound;
        if (edit.Begin(Event::Change(config, EEventsChange::Root))) edit.Do().Set(slot, &ConfigRecord::root, root);
        return {};
    });
}

// ---- Names and labels ----

namespace {

Result SetNameOf(Edit& edit, Location at, const String& name) {
    return VisitRecord(edit.Now(), at, Result(EErrorCode::ObjectNotFound),
                       [&]<class Record>(const Record& r) -> Result {
                           if constexpr (requires { r.name; }) {
                               if (Result permitted = PermitRecord<Record>(edit, at.slot); !permitted) return permitted;
                               if (std::is_same_v<Record, ConfigRecord> && ConfigNameIsTaken(edit.Now(), name, at.slot))
                                   return Result(EErrorCode::AlreadyExists, name);
                               if (edit.Begin(Event::Change(r.index, EEventsChange::Name)))
                                   edit.Do().Set(at.slot, &Record::name, name);
                               return {};
                           } else {
                               return EErrorCode::InvalidArgument;
                           }
                       });
}

}  // namespace

Result Editor::SetName(const Index& object, const String& name) {
    return Run(m_impl, [&](Edit& edit) { return SetNameOf(edit, edit.Now().Locate(object), name); });
}

Result SetNameLocked(Session& session, Location at, const String& name) {
    return Perform(session, EditRight::Locked, [&](Edit& edit) { return SetNameOf(edit, at, name); });
}

Result Editor::SetLabel(const Index& object, const String& label) {
    return Run(m_impl, [&](Edit& edit) -> Result {
        const Location at = edit.Now().Locate(object);
        return VisitRecord(edit.Now(), at, Result(EErrorCode::ObjectNotFound),
                           [&]<class Record>(const Record& r) -> Result {
                               if constexpr (requires { r.label; }) {
                                   if (Result permitted = PermitRecord<Record>(edit, at.slot); !permitted)
                                       return permitted;
                                   if (edit.Begin(Event::Change(object, EEventsChange::Label)))
                                       edit.Do().Set(at.slot, &Record::label, label);
                                   return {};
                               } else {
                                   return EErrorCode::InvalidArgument;
                               }
                           });
    });
}

}  // namespace Orin::DesignDb
