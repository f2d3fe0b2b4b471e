#include "designdb/detail/edit.h"

#include <shared_mutex>
#include <thread>

#include "designdb/detail/difference.h"

namespace Orin::DesignDb {

EditSeries::EditSeries(Session& session) : m_session(session) {
    Snapshot& snapshot = *session.snapshot;
    const std::lock_guard lock(snapshot.lock);
    m_begun = MayEdit(session);
    if (!m_begun) return;
    m_open = true;
    if (snapshot.series++ == 0) snapshot.seriesThread = std::this_thread::get_id();
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
    if (result && m_own) {
        const std::shared_lock lock(m_session.snapshot->lock);
        result = MakeDurable(m_session);
    }
    if (!result) {
        // Taking back can fail for want of memory alone, and then goes on where it stopped.
        while (!RevertEdits(m_session, m_mark))
            std::this_thread::yield();
    }
    m_open = false;
    {
        Snapshot& snapshot = *m_session.snapshot;
        const std::lock_guard lock(snapshot.lock);
        --snapshot.series;
        if (!result) snapshot.reverting = false;
        if (m_own) {
            snapshot.log.Forget(nullptr);
            snapshot.transactionOwner = nullptr;
            snapshot.transactionIsSeries = false;
        }
    }
    // A callback may have closed the client, which could not end the transaction then.
    if (!m_own && m_session.client->IsClosed()) AbandonTransaction(m_session);
    return result;
}

Result RevertEdits(Session& session, UndoLog::Mark mark) {
    Snapshot& snapshot = *session.snapshot;
    try {
        {
            const std::lock_guard lock(snapshot.lock);
            snapshot.reverting = true;
            if (snapshot.observation.IsEmpty())
                while (snapshot.log.Top() != mark)
                    snapshot.log.RevertEdit(snapshot.graph);
        }
        std::vector<Event> inverse;
        for (;;) {
            {
                const std::lock_guard lock(snapshot.lock);
                if (snapshot.log.Top() == mark) break;
                const EditMark& edit = *snapshot.log.TopEdit();
                const Graph* const state = edit.below != nullptr ? edit.below->AsState() : nullptr;
                if (state != nullptr) {
                    inverse = Difference(snapshot.graph, *state, snapshot.DesignIndex());
                } else {
                    inverse.assign(1, Inverse(edit.What()));
                }
            }
            const Announcement announcement(snapshot.observation);
            for (const Event& event : inverse)
                announcement.Before(event, true);
            {
                const std::lock_guard lock(snapshot.lock);
                snapshot.log.RevertEdit(snapshot.graph);
            }
            for (const Event& event : inverse)
                announcement.After(event, true);
        }
        return {};
    } catch (const std::bad_alloc&) {
        return EErrorCode::OutOfMemory;
    }
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
    if (!snapshot.observation.IsEmpty()) {
        const unsigned transaction = ++s_transactions;
        bool veto = false;
        // Each call has a vote of its own, so that none can take back another's; it counts when the call throws, too.
        struct Vote {
            bool& veto;
            bool refused = false;
            ~Vote() { veto = veto || refused; }
        };
        Announcement(snapshot.observation)
            .Each(
                [&](EventObserver& observer) {
                    Vote vote{veto};
                    observer.OnBeforeTransaction(transaction, type, vote.refused);
                },
                [&](EventObserver& observer) {
                    Vote vote{veto};
                    observer.OnBeforeTransaction(transaction, vote.refused);
                });
        if (veto) return EErrorCode::TransactionVetoed;
    }
    const std::lock_guard lock(snapshot.lock);
    if (Result allowed = check(); !allowed) return allowed;
    snapshot.transactionOwner = session.client.Get();
    return {};
}

namespace {

// Whether the client can end its transaction now: not from inside a callback of a deletion, which must be able to take
// itself back, or of a rollback. The caller holds the snapshot's lock.
Result MayEnd(const Session& session) {
    const Snapshot& snapshot = *session.snapshot;
    if (snapshot.transactionOwner != session.client.Get() || snapshot.transactionIsSeries)
        return EErrorCode::NoTransaction;
    return snapshot.reverting || snapshot.series != 0 ? Result(EErrorCode::AccessDenied) : Result();
}

// Begins to end the transaction: from now on nobody edits.
Result BeginEnd(Session& session) {
    const std::lock_guard lock(session.snapshot->lock);
    if (Result may = MayEnd(session); !may) return may;
    session.snapshot->reverting = true;
    return {};
}

// Ends the transaction, or goes on with it when `result` is a failure; gives it on.
Result EndWith(Session& session, Result result) {
    Snapshot& snapshot = *session.snapshot;
    {
        const std::lock_guard lock(snapshot.lock);
        snapshot.reverting = false;
        if (!result) return result;
        snapshot.log.Forget(nullptr);
        snapshot.transactionOwner = nullptr;
    }
    Announcement(snapshot.observation).Each([](EventObserver& observer) { observer.OnAfterTransaction(); });
    return result;
}

}  // namespace

Result CommitTransaction(Session& session) {
    if (Result begun = BeginEnd(session); !begun) return begun;
    std::shared_lock lock(session.snapshot->lock);
    Result kept = MakeDurable(session);
    lock.unlock();
    Result ended = EndWith(session, std::move(kept));
    // What cannot be made durable does not stay in memory either.
    if (!ended) AbandonTransaction(session);
    return ended;
}

Result RollbackTransaction(Session& session) {
    if (Result begun = BeginEnd(session); !begun) return begun;
    Announcement(session.snapshot->observation).Each([](EventObserver& observer) {
        observer.OnBeforeRollbackTransaction();
    });
    return EndWith(session, RevertEdits(session, nullptr));
}

void AbandonTransaction(Session& session) noexcept {
    // Taking back can fail for want of memory alone, and then goes on where it stopped.
    while (RollbackTransaction(session).GetErrorCode() == static_cast<int>(EErrorCode::OutOfMemory))
        std::this_thread::yield();
}

bool OwnsTransaction(const Session& session) {
    const Snapshot& snapshot = *session.snapshot;
    const std::shared_lock lock(snapshot.lock);
    return snapshot.transactionOwner == session.client.Get() && !snapshot.transactionIsSeries;
}

}  // namespace Orin::DesignDb
