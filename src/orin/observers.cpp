#include "orin/observers.h"

namespace Orin {

EventObserver::~EventObserver() = default;

void EventObserver::OnBeforeAdd(const Index&, const Index&, EEventsAdd, bool) {}

void EventObserver::OnBeforeDelete(const Index&, const Index&, EEventsDelete, bool) {}

void EventObserver::OnBeforeDeleteAll(const Index&, EEventsDeleteAll, bool) {}

void EventObserver::OnBeforeChange(const Index&, EEventsChange, bool) {}

void EventObserver::OnBeforeQuillDataChange(const Index&, const Index&, EEventsQuillDataChange, bool) {}

void EventObserver::OnBeforeConnectivityChange(const Index&, const Index&, EEventsConnectivityChange, bool) {}

void EventObserver::OnBeforeSwap(const Index&, const Index&, const Index&, EEventsSwap, bool) {}

void EventObserver::OnBeforeImport(const Index&, EEventsImport, bool) {}

void EventObserver::OnBeforeSetAttribute(const Index&, const String&, const String&, EAttributeType, int, bool) {}

void EventObserver::OnBeforeSetAttributes(const Index&, const ListAttribute&, int, bool) {}

void EventObserver::OnBeforeRemoveAttribute(const Index&, const String&, EAttributeType, int, bool) {}

void EventObserver::OnBeforeRemoveAttributes(const Index&, EAttributeType, int, bool) {}

void EventObserver::OnAfterAdd(const Index&, const Index&, EEventsAdd, bool) {}

void EventObserver::OnAfterDelete(const Index&, const Index&, EEventsDelete, bool) {}

void EventObserver::OnAfterDeleteAll(const Index&, EEventsDeleteAll, bool) {}

void EventObserver::OnAfterChange(const Index&, EEventsChange, bool) {}

void EventObserver::OnAfterQuillDataChange(const Index&, const Index&, EEventsQuillDataChange, bool) {}

void EventObserver::OnAfterConnectivityChange(const Index&, const Index&, EEventsConnectivityChange, bool) {}

void EventObserver::OnAfterSwap(const Index&, const Index&, const Index&, EEventsSwap, bool) {}

void EventObserver::OnAfterImport(const Index&, EEventsImport, bool) {}

void EventObserver::OnAfterSetAttribute(const Index&, const String&, const String&, EAttributeType, int, bool) {}

void EventObserver::OnAfterSetAttributes(const Index&, const ListAttribute&, int, bool) {}

void EventObserver::OnAfterRemoveAttribute(const Index&, const String&, EAttributeType, int, bool) {}

void EventObserver::OnAfterRemoveAttributes(const Index&, EAttributeType, int, bool) {}

void EventObserver::OnLock(const Index&, const String&, const String&) {}

void EventObserver::OnUnLock(const Index&, const String&, const String&) {}

void EventObserver::OnMultiLock(const ListT<Index>&, const String&, const String&) {}

void EventObserver::OnMultiUnLock(const ListT<Index>&, const String&, const String&) {}

void EventObserver::OnBeforeTransaction(unsigned, const ETransactionType&, bool&) {}

void EventObserver::OnBeforeTransaction(unsigned, bool&) {}

void EventObserver::OnBeforeRollbackTransaction() {}

void EventObserver::OnAfterTransaction() {}

ClientObserver::~ClientObserver() = default;

void ClientObserver::OnErrorAdd(const String&, const String&, const Index&, const Index&, EEventsAdd) {}

void ClientObserver::OnErrorDelete(const String&, const String&, const Index&, const Index&, EEventsDelete) {}

void ClientObserver::OnErrorDeleteAll(const String&, const String&, const Index&, EEventsDeleteAll) {}

void ClientObserver::OnErrorChange(const String&, const String&, const Index&, EEventsChange) {}

void ClientObserver::OnErrorQuillDataChange(const String&, const String&, const Index&, const Index&,
                                            EEventsQuillDataChange) {}

void ClientObserver::OnErrorConnectivityChange(const String&, const String&, const Index&, const Index&,
                                               EEventsConnectivityChange) {}

void ClientObserver::OnErrorSwap(const String&, const String&, const Index&, const Index&, const Index&, EEventsSwap) {}

void ClientObserver::OnErrorImport(const String&, const String&, const Index&, EEventsImport) {}

void ClientObserver::OnErrorSetAttribute(const String&, const String&, const Index&, const String&, const String&,
                                         EAttributeType, int) {}

void ClientObserver::OnErrorSetAttributes(const String&, const String&, const Index&, const ListAttribute&, int) {}

void ClientObserver::OnErrorRemoveAttribute(const String&, const String&, const Index&, const String&, EAttributeType,
                                            int) {}

void ClientObserver::OnErrorRemoveAttributes(const String&, const String&, const Index&, EAttributeType, int) {}

void ClientObserver::OnErrorTransaction(const String&, const String&) {}

void ClientObserver::OnErrorUnexpected(const String&, const String&) {}

void ClientObserver::OnWorkingModeChange(EClientWorkingMode) {}

void ClientObserver::OnBackupPending(const String&, const String&, const String&, bool, bool) {}

void ClientObserver::OnBackupDone(const String&, const String&, const String&, bool, bool) {}

void ClientObserver::OnBackupError(const Result&, const String&, const String&, const String&, bool, bool) {}

void ClientObserver::OnProjectBackupRequest(const ProjectBackupData&) {}

void ClientObserver::OnProjectBackupReject(const ProjectBackupData&) {}

void ClientObserver::OnProjectBackupBegin(const ProjectBackupData&) {}

void ClientObserver::OnProjectBackupDone(const ProjectBackupData&) {}

void ClientObserver::OnProjectBackupError(const Result&, const ProjectBackupData&) {}

void ClientObserver::OnRestore(const String&, const String&) {}

void ClientObserver::OnErrorSnapshotAdd(const String&, const String&) {}

void ClientObserver::OnErrorSnapshotRemove(const String&, const String&) {}

void ClientObserver::OnErrorSnapshotCopy(const String&, const String&, const String&, bool) {}

void ClientObserver::OnErrorSnapshotCopyTo(const String&, const ProjectData&, const String&, const String&, bool) {}

void ClientObserver::OnErrorSnapshotBackup(const String&, const String&, const String&, bool) {}

void ClientObserver::OnErrorSnapshotUndock(const String&, const ProjectData&, const ListT<SnapshotPairInfo>&) {}

void ClientObserver::OnErrorSnapshotDock(const String&, EDockingSide, const ProjectData&,
                                         const ListT<SnapshotPairInfo>&) {}

void ClientObserver::OnErrorSnapshotRename(const String&, const String&, const String&) {}

void ClientObserver::OnErrorDefConstraintAdd(const String&, const Index&, const String&, const EConstraintType&,
                                             const EDefConstraintType&) {}

void ClientObserver::OnErrorDefConstraintDelete(const String&, const String&) {}

void ClientObserver::OnErrorDefConstraintRename(const String&, const String&, const String&) {}

void ClientObserver::OnErrorDefConstraintChange(const String&, const Index&, EEventsDefConstraintChange) {}

void ClientObserver::OnErrorDefConstraintCNSFileVersionSet(const String&, const String&) {}

}  // namespace Orin
