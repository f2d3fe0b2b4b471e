// One design in the database.
#pragma once

#include "orin/enums.h"
#include "orin/handles.h"
#include "orin/records.h"

namespace Orin {

class EventObserver;
class IBlock;
class IComp;
class IConfig;
class IUIDManager;

// A design as it stands: its working state or a save point. Operations that edit need a write handle from
// LockerT<ISnapshot>::Lock; NotLocked otherwise.
class ORINPI_EXPORT ISnapshot : public IObject {
public:
    // Attributes of the design as a whole. AttributeNotFound when there is none of that name.
    virtual Result GetAttribute(const String& name, String& value) const = 0;
    virtual Result SetAttribute(const String& name, const String& value) = 0;

    virtual Result GetBlock(ContainerT<const IBlock>& block, const Index& index) const = 0;
    // All blocks, in the order in which they were added.
    virtual Result GetIterBlocks(IteratorT<const IBlock>& blocks) const = 0;
    // The components of the root blocks of all configurations that bear one of `types`; an empty set takes all.
    virtual Result GetIterComps(IteratorT<const IComp>& comps, const CompTypes& types) const = 0;
    // Blocks by name, in the order of GetIterBlocks; an empty search set compares names exactly. `found` is replaced;
    // no match is a success with an empty list.
    virtual Result FindBlock(ListT<BlockInfo>& found, const String& name, const SearchParams& search) const = 0;
    // The configuration of that name; ObjectNotFound when there is none.
    virtual Result GetDefaultConfig(ContainerT<const IConfig>& config, const String& name) const = 0;
    virtual Result GetInfo(SnapshotInfo& info) const = 0;
    virtual Result GetUIDManager(IUIDManager& manager) const = 0;

    // A transaction belongs to the client of this handle, one at a time on a snapshot. TransactionActive when this
    // client has one, AccessDenied when another client has, TransactionVetoed when an observer refused.
    virtual Result BeginTransaction(const ETransactionType& type) const = 0;
    // NoTransaction when this client has none. AccessDenied from inside a callback of a rollback, a restore or a
    // deletion, which must be able to take itself back; the transaction then stays active. StoreFailed when the
    // design's store refuses the commit, which is then taken back as by a rollback.
    virtual Result CommitTransaction() const = 0;
    // Undoes everything since the begin. Fails as the commit does.
    virtual Result RollbackTransaction() const = 0;
    // Whether this handle's client has a transaction on the snapshot.
    virtual Result IsTransactionActive(bool& active) const = 0;

    // Registers an observer, borrowed until it is removed or the client goes. InvalidArgument for null, AlreadyExists
    // when this client registered it before.
    virtual Result AddEventObserver(EventObserver* observer) const = 0;
    // When this returns, no thread is inside the observer and none will enter it, unless the caller itself is inside
    // it: then it is let go when that callback returns (orin/observers.h says more). ObjectNotFound when it is not
    // registered by this client.
    virtual Result RemoveEventObserver(EventObserver* observer) const = 0;

    // ---- Beyond the walk of the library: what tools ask for. ----

    virtual Result RemoveAttribute(const String& name) = 0;
    virtual Result GetAttributes(ListAttribute& attributes) const = 0;
    // All configurations, in the order in which they were added.
    virtual Result GetIterConfigs(IteratorT<const IConfig>& configs) const = 0;
};

}  // namespace Orin
