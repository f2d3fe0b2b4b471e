// Base classes of those whom the database calls back.
//
// Callbacks come on the thread that made the change, with no lock of the database held, so an observer may read and
// edit. Each thread's events come in the order of its edits; between threads there is no order. An exception that
// leaves a callback is caught by the database, reported through ClientObserver::OnErrorUnexpected of the client that
// registered the observer, and changes nothing else. All bodies of the bases are empty.
//
// Observers may be registered and removed from any thread, also in callbacks. A removal returns when no other thread is
// inside the observer: then it can be destroyed. Calls that the removing thread is itself inside run to their end. Only
// when callbacks on two threads remove each other's observers, which could wait for ever, the later removal returns at
// once. Whoever registers in a callback is called from the next event on.
#pragma once

#include "orin/enums.h"
#include "orin/export.h"
#include "orin/records.h"
#include "orin/result.h"

namespace Orin {

// Hears of every edit of one snapshot. In the callbacks with two indexes the first is the parent (the block of a net,
// the net of a piece of it, the component of a pin) and the second the object itself. The trailing flag is true when
// the event undoes an earlier edit, by a rollback or by the restoring of a save point. A restore calls all of its
// before-callbacks first and then all of its after-callbacks; every other edit has its own two together.
class ORINPI_EXPORT EventObserver {
public:
    virtual ~EventObserver();

    virtual void OnBeforeAdd(const Index& parent, const Index& object, EEventsAdd kind, bool undo);
    virtual void OnBeforeDelete(const Index& parent, const Index& object, EEventsDelete kind, bool undo);
    virtual void OnBeforeDeleteAll(const Index& object, EEventsDeleteAll kind, bool undo);
    virtual void OnBeforeChange(const Index& object, EEventsChange kind, bool undo);
    virtual void OnBeforeQuillDataChange(const Index& parent, const Index& object, EEventsQuillDataChange kind,
                                         bool undo);
    virtual void OnBeforeConnectivityChange(const Index& parent, const Index& object, EEventsConnectivityChange kind,
                                            bool undo);
    virtual void OnBeforeSwap(const Index& parent, const Index& first, const Index& second, EEventsSwap kind,
                              bool undo);
    virtual void OnBeforeImport(const Index& object, EEventsImport kind, bool undo);
    virtual void OnBeforeSetAttribute(const Index& object, const String& name, const String& value, EAttributeType type,
                                      int reserved, bool undo);
    virtual void OnBeforeSetAttributes(const Index& object, const ListAttribute& attributes, int reserved, bool undo);
    virtual void OnBeforeRemoveAttribute(const Index& object, const String& name, EAttributeType type, int reserved,
                                         bool undo);
    virtual void OnBeforeRemoveAttributes(const Index& object, EAttributeType type, int reserved, bool undo);

    virtual void OnAfterAdd(const Index& parent, const Index& object, EEventsAdd kind, bool undo);
    virtual void OnAfterDelete(const Index& parent, const Index& object, EEventsDelete kind, bool undo);
    virtual void OnAfterDeleteAll(const Index& object, EEventsDeleteAll kind, bool undo);
    virtual void OnAfterChange(const Index& object, EEventsChange kind, bool undo);
    virtual void OnAfterQuillDataChange(const Index& parent, const Index& object, EEventsQuillDataChange kind,
                                        bool undo);
    virtual void OnAfterConnectivityChange(const Index& parent, const Index& object, EEventsConnectivityChange kind,
                                           bool undo);
    virtual void OnAfterSwap(const Index& parent, const Index& first, const Index& second, EEventsSwap kind, bool undo);
    virtual void OnAfterImport(const Index& object, EEventsImport kind, bool undo);
    virtual void OnAfterSetAttribute(const Index& object, const String& name, const String& value, EAttributeType type,
                                     int reserved, bool undo);
    virtual void OnAfterSetAttributes(const Index& object, const ListAttribute& attributes, int reserved, bool undo);
    virtual void OnAfterRemoveAttribute(const Index& object, const String& name, EAttributeType type, int reserved,
                                        bool undo);
    virtual void OnAfterRemoveAttributes(const Index& object, EAttributeType type, int reserved, bool undo);

    // Locks: the object, the project and the name of the client that took its first access to it or gave up its last. A
    // view goes by the index of its group or component. The multi forms come when several objects change hands at once:
    // taken together, or given up by a client that goes.
    virtual void OnLock(const Index& object, const String& project, const String& client);
    virtual void OnUnLock(const Index& object, const String& project, const String& client);
    virtual void OnMultiLock(const ListT<Index>& objects, const String& project, const String& client);
    virtual void OnMultiUnLock(const ListT<Index>& objects, const String& project, const String& client);

    // Before a transaction begins; an observer that sets `veto` refuses it. Both forms are called, the longer first.
    virtual void OnBeforeTransaction(unsigned transaction, const ETransactionType& type, bool& veto);
    virtual void OnBeforeTransaction(unsigned transaction, bool& veto);
    virtual void OnBeforeRollbackTransaction();
    // After a commit or a rollback.
    virtual void OnAfterTransaction();

protected:
    EventObserver() = default;
    EventObserver(const EventObserver&) = default;
    EventObserver& operator=(const EventObserver&) = default;
};

// Hears of what concerns a client's connection. The error callbacks begin with the project and the error's description,
// those of snapshots and of constraint definitions with the description alone.
class ORINPI_EXPORT ClientObserver {
public:
    virtual ~ClientObserver();

    virtual void OnErrorAdd(const String& project, const String& error, const Index& parent, const Index& object,
                            EEventsAdd kind);
    virtual void OnErrorDelete(const String& project, const String& error, const Index& parent, const Index& object,
                               EEventsDelete kind);
    virtual void OnErrorDeleteAll(const String& project, const String& error, const Index& object,
                                  EEventsDeleteAll kind);
    virtual void OnErrorChange(const String& project, const String& error, const Index& object, EEventsChange kind);
    virtual void OnErrorQuillDataChange(const String& project, const String& error, const Index& parent,
                                        const Index& object, EEventsQuillDataChange kind);
    virtual void OnErrorConnectivityChange(const String& project, const String& error, const Index& parent,
                                           const Index& object, EEventsConnectivityChange kind);
    virtual void OnErrorSwap(const String& project, const String& error, const Index& parent, const Index& first,
                             const Index& second, EEventsSwap kind);
    virtual void OnErrorImport(const String& project, const String& error, const Index& object, EEventsImport kind);
    virtual void OnErrorSetAttribute(const String& project, const String& error, const Index& object,
                                     const String& name, const String& value, EAttributeType type, int reserved);
    virtual void OnErrorSetAttributes(const String& project, const String& error, const Index& object,
                                      const ListAttribute& attributes, int reserved);
    virtual void OnErrorRemoveAttribute(const String& project, const String& error, const Index& object,
                                        const String& name, EAttributeType type, int reserved);
    virtual void OnErrorRemoveAttributes(const String& project, const String& error, const Index& object,
                                         EAttributeType type, int reserved);
    virtual void OnErrorTransaction(const String& project, const String& error);
    virtual void OnErrorUnexpected(const String& project, const String& error);
    virtual void OnWorkingModeChange(EClientWorkingMode mode);

    virtual void OnBackupPending(const String& project, const String& target, const String& comment, bool automatic,
                                 bool whole);
    virtual void OnBackupDone(const String& project, const String& target, const String& comment, bool automatic,
                              bool whole);
    virtual void OnBackupError(const Result& error, const String& project, const String& target, const String& comment,
                               bool automatic, bool whole);
    virtual void OnProjectBackupRequest(const ProjectBackupData& backup);
    virtual void OnProjectBackupReject(const ProjectBackupData& backup);
    virtual void OnProjectBackupBegin(const ProjectBackupData& backup);
    virtual void OnProjectBackupDone(const ProjectBackupData& backup);
    virtual void OnProjectBackupError(const Result& error, const ProjectBackupData& backup);
    virtual void OnRestore(const String& project, const String& snapshot);

    virtual void OnErrorSnapshotAdd(const String& error, const String& snapshot);
    virtual void OnErrorSnapshotRemove(const String& error, const String& snapshot);
    virtual void OnErrorSnapshotCopy(const String& error, const String& source, const String& target, bool replace);
    virtual void OnErrorSnapshotCopyTo(const String& error, const ProjectData& project, const String& source,
                                       const String& target, bool replace);
    virtual void OnErrorSnapshotBackup(const String& error, const String& snapshot, const String& target, bool replace);
    virtual void OnErrorSnapshotUndock(const String& error, const ProjectData& project,
                                       const ListT<SnapshotPairInfo>& snapshots);
    virtual void OnErrorSnapshotDock(const String& error, EDockingSide side, const ProjectData& project,
                                     const ListT<SnapshotPairInfo>& snapshots);
    virtual void OnErrorSnapshotRename(const String& error, const String& before, const String& after);

    virtual void OnErrorDefConstraintAdd(const String& error, const Index& object, const String& name,
                                         const EConstraintType& type, const EDefConstraintType& definition);
    virtual void OnErrorDefConstraintDelete(const String& error, const String& name);
    virtual void OnErrorDefConstraintRename(const String& error, const String& before, const String& after);
    virtual void OnErrorDefConstraintChange(const String& error, const Index& object, EEventsDefConstraintChange kind);
    virtual void OnErrorDefConstraintCNSFileVersionSet(const String& error, const String& version);

protected:
    ClientObserver() = default;
    ClientObserver(const ClientObserver&) = default;
    ClientObserver& operator=(const ClientObserver&) = default;
};

}  // namespace Orin
