// Writes to a design that happen as a whole or not at all.
#pragma once

#include "orin/handles.h"
#include "orin/result.h"
#include "orin/snapshot.h"

namespace Quill::detail {

// Lives around a group of writes. It begins a transaction of its own unless the caller has one already; then the writes
// join the caller's, and the guard neither commits nor rolls back: the caller alone knows what else belongs to it.
//
//     TransactionGuard guard(snapshot);
//     Require(group->SetName(name));   // leaving the scope rolls back
//     guard.Commit();
class TransactionGuard {
public:
    // Throws the failed Orin::Result of the query or the begin; ObjectNotFound for an empty handle.
    explicit TransactionGuard(const Orin::ContainerT<const Orin::ISnapshot>& snapshot);
    // Rolls back a transaction of its own that was not committed.
    ~TransactionGuard();
    TransactionGuard(const TransactionGuard&) = delete;
    TransactionGuard& operator=(const TransactionGuard&) = delete;

    // Commits a transaction of its own. When that fails everything is rolled back and the failed result thrown.
    void Commit();

private:
    void RollBack() noexcept;

    Orin::ContainerT<const Orin::ISnapshot> m_snapshot;
    bool m_owns = false;
};

}  // namespace Quill::detail
