// What an application derives from to hear of schematic events instead of database events.
//
// Both kinds are registered with CORINEventDispatcher and called on its owner thread. The database callbacks that are
// not turned into one of the operations below arrive as such; of the swap and attribute callbacks none does.
// All bodies of the bases are empty. The order of the virtual operations is part of the binary interface.
#pragma once

#include <cstdint>
#include <string>

#include "orin/observers.h"
#include "quillutils_export.h"

namespace NQuillUtils::NEvents {

// Nets, buses, blocks, groups and labels. What the database could not tell any more is an empty index or text.
// The texts and indexes are those of the moment of the event, also when the call comes later.
class QUILLUTILS_EXPORT EventObserverEx : public Orin::EventObserver {
public:
    ~EventObserverEx() override;

    // `block` is the owning block. A net view item ("NetQuill") is one drawn piece of a net; its label is the net's.
    virtual void OnAddNetQuill(Orin::Index item, Orin::Index block, const std::string& label);
    virtual void OnAddNet(Orin::Index net, Orin::Index block, const std::string& label);
    virtual void OnAddBus(Orin::Index bus, Orin::Index block, const std::string& label);
    // Deletions are told while the object still exists, on the thread that deletes it; a deferred call comes later.
    // `owner` is the block or group that owns the group; `type` is the number of its type in decimal.
    virtual void OnDeleteGroup(Orin::Index group, Orin::Index owner, const std::string& name, const std::string& type);
    virtual void OnDeleteNetQuill(Orin::Index item, Orin::Index block, const std::string& label);
    virtual void OnDeleteNet(Orin::Index net, Orin::Index block, const std::string& label);
    virtual void OnDeleteBus(Orin::Index bus, Orin::Index block, const std::string& label);
    virtual void OnDeleteBlock(Orin::Index block, const std::string& name);
    // `instance` is the low part of the component's instance index.
    virtual void OnDeleteBlockComp(Orin::Index comp, Orin::Index parentBlock, Orin::Index childBlock,
                                   std::uint32_t instance);
    virtual void OnBeforeNetQuillSetData(Orin::Index item, Orin::Index net, Orin::Index block,
                                         const Orin::NetDataQuill& data);
    virtual void OnAfterNetQuillSetData(Orin::Index item, Orin::Index net, Orin::Index block,
                                        const Orin::NetDataQuill& data);
    // Of a net, bus or component.
    virtual void OnBeforeLabelChange(Orin::Index object, Orin::Index block, const std::string& label);
    virtual void OnAfterLabelChange(Orin::Index object, Orin::Index block, const std::string& label);
    // Only when the name is another one than before.
    virtual void OnBlockNameChange(Orin::Index block, const std::string& before, const std::string& after);
    // The mark that makes a sheet read-only was set or removed: on the block itself, or on a group that `block` owns.
    virtual void OnReadOnlyFlagChange(Orin::Index block);

protected:
    EventObserverEx() = default;
    EventObserverEx(const EventObserverEx&) = default;
    EventObserverEx& operator=(const EventObserverEx&) = default;
};

// What a view of the design's hierarchy shows.
class QUILLUTILS_EXPORT EventObserverNavigator : public Orin::EventObserver {
public:
    ~EventObserverNavigator() override;

    // `groups` are the groups of which the bus is a member.
    virtual void OnBeforeRipBus(Orin::Index bus, Orin::Index block, const Orin::ListT<Orin::Index>& groups);
    virtual void OnAfterRipBus(Orin::Index bus, Orin::Index block, const Orin::ListT<Orin::Index>& groups);
    virtual void OnDeleteBus(Orin::Index bus, Orin::Index block, const Orin::ListT<Orin::Index>& groups);
    // A block or a group is about to go.
    virtual void OnDeleteBlock(Orin::Index object);
    // The design name that marks `block` as the root of a design is another one than before; empty means no mark.
    virtual void OnDesignRootChange(Orin::Index block, const std::string& before, const std::string& after);

protected:
    EventObserverNavigator() = default;
    EventObserverNavigator(const EventObserverNavigator&) = default;
    EventObserverNavigator& operator=(const EventObserverNavigator&) = default;
};

}  // namespace NQuillUtils::NEvents
