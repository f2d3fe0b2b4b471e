#include "designdb/detail/edit.h"

#include <shared_mutex>
#include <thread>

namespace Orin::DesignDb {

EditSeries::EditSeries(Session& session) : m_session(session) {
    Snapshot& snapshot = *session.snapshot;
    const std::lock_guard lock(snapshot.lock);
    m_begun = MayEdit(session);
    if (!m_begun) return;
    m_open = true;
    m_mark = snapshot.log.Top();
    m_own = snapshot.transactionOwner == nullptr;
    if (m_own) {
        snapshot.transactionOwner = session.client.Get();
        snapshot.transactionIsSeries = true;
    }
}

EditSeries::~EditSeries() {
    if (m_open) static_cast<void>(Finish(EErrorCode::OutOfMemory));
}

Result EditSeries::Finish(Result result) {
    if (!result) {
        // Taking back can fail for want of memory alone, and then goes on where it stopped.
        while (!RevertEdits(m_session, m_mark))
            std::this_thread::yield();
    }
    m_open = false;
    if (m_own) {
        Snapshot& snapshot = *m_session.snapshot;
        const std::lock_guard lock(snapshot.lock);
        snapshot.log.Forget(nullptr);
        snapshot.transactionOwner = nullptr;
        snapshot.transactionIsSeries = false;
    }
    return result;
}

Result RevertEdits(Session& session, UndoLog::Mark mark) {
    Snapshot& snapshot = *session.snapshot;
    Result result;
    try {
        {
            const std::lock_guard lock(snapshot.lock);
            snapshot.reverting = true;
            if (!snapshot.observation.IsObserved()) snapshot.log.Revert(snapshot.graph, mark);
        }
        for (;;) {
            Event inverse;
            {
                const std::lock_guard lock(snapshot.lock);
                if (snapshot.log.Top() == mark) break;
                inverse = Inverse(snapshot.log.TopEdit()->event);
            }
            const Announcement announcement(snapshot.observation);
            announcement.Before(inverse, true);
            {
                const std::lock_guard lock(snapshot.lock);
                snapshot.log.RevertEdit(snapshot.graph);
            }
            announcement.After(inverse, true);
        }
    } catch (const std::bad_alloc&) {
        result = EErrorCode::OutOfMemory;
    }
    const std::lock_guard lock(snapshot.lock);
    snapshot.reverting = false;
    return result;
}

Result BeginTransaction(Session& session, const ETransactionType& type) {
    static std::atomic<unsigned> s_transactions{0};
    Snapshot& snapshot = *session.snapshot;
    const auto check = [&]() -> Result {
        if (Result allowed = MayEdit(session); !allowed) return allowed;
        return snapshot.transactionOwner == nullptr ? Result() : Result(EErrorCode::TransactionActive);
    };
    {
        const std::lock_guard lock(snapshot.lock);
        if (Result allowed = check(); !allowed) return allowed;
    }
    if (snapshot.observation.IsObserved()) {
        const unsigned transaction = ++s_transactions;
        bool veto = false;
        Announcement(snapshot.observation).Each([&](EventObserver& observer) {
            // Each form has a veto of its own, so that none can take back another's.
            bool longer = false;
            bool shorter = false;
            observer.OnBeforeTransaction(transaction, type, longer);
            observer.OnBeforeTransaction(transaction, shorter);
            veto = veto || longer || shorter;
        });
        if (veto) return EErrorCode::TransactionVetoed;
    }
    const std::lock_guard lock(snapshot.lock);
    if (Result allowed = check(); !allowed) return allowed;
    snapshot.transactionOwner = session.client.Get();
    return {};
}

namespace {

// Ends the client's transaction; the log is empty.
void EndTransaction(Session& session) {
    Snapshot& snapshot = *session.snapshot;
    {
        const std::lock_guard lock(snapshot.lock);
        snapshot.transactionOwner = nullptr;
    }
    if (snapshot.observation.IsObserved())
        Announcement(snapshot.observation).Each([](EventObserver& observer) { observer.OnAfterTransaction(); });
}

}  // namespace

Result CommitTransaction(Session& session) {
    Snapshot& snapshot = *session.snapshot;
    {
        const std::lock_guard lock(snapshot.lock);
        if (snapshot.transactionOwner != session.client.Get() || snapshot.transactionIsSeries)
            return EErrorCode::NoTransaction;
        snapshot.log.Forget(nullptr);
    }
    EndTransaction(session);
    return {};
}

Result RollbackTransaction(Session& session) {
    if (!OwnsTransaction(session)) return EErrorCode::NoTransaction;
    Snapshot& snapshot = *session.snapshot;
    if (snapshot.observation.IsObserved())
        Announcement(snapshot.observation).Each([](EventObserver& observer) {
            observer.OnBeforeRollbackTransaction();
        });
    Result result = RevertEdits(session, nullptr);
    if (result) EndTransaction(session);
    return result;
}

bool OwnsTransaction(const Session& session) {
    const Snapshot& snapshot = *session.snapshot;
    const std::shared_lock lock(snapshot.lock);
    return snapshot.transactionOwner == session.client.Get() && !snapshot.transactionIsSeries;
}

}  // namespace Orin::DesignDb
