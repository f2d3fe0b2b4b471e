// Save points: states of a snapshot that are kept under a name.
#include <shared_mutex>

#include "designdb/detail/difference.h"
#include "designdb/detail/edit.h"

namespace Orin::DesignDb {

Result MakeSavePoint(Session& session, const String& name) {
    if (name.IsEmpty()) return EErrorCode::InvalidArgument;
    const Snapshot& snapshot = *session.snapshot;
    try {
        std::shared_lock lock(snapshot.lock);
        if (Result allowed = MayEdit(session); !allowed) return allowed;
        // What a rollback may take back, or a deletion that is under way, is no state to come back to.
        if (snapshot.series != 0) return EErrorCode::AccessDenied;
        if (snapshot.transactionOwner != nullptr) return EErrorCode::TransactionActive;
        Graph state = snapshot.graph;
        const bool copy = snapshot.IsSavePoint();
        RefPtr<Snapshot> working;
        if (copy) {
            // A store tells the save point from the working design, which has to stand still meanwhile.
            lock.unlock();
            working = session.Project().FindSnapshot(WorkingSnapshot);
            lock = std::shared_lock(working->lock);
        }
        const ListAttribute attributes = copy ? snapshot.savedAttributes : state.attributes;
        const GIndex origin = copy ? snapshot.origin : snapshot.index;
        return session.Project().Enter(RefPtr<Snapshot>(new Snapshot(name, origin, std::move(state), attributes)));
    } catch (const std::bad_alloc&) {
        return EErrorCode::OutOfMemory;
    }
}

namespace {

// Keeps everybody from editing, from a first check on until it goes.
class Standstill {
public:
    explicit Standstill(Session& session) : m_session(session) {
        const std::lock_guard lock(session.snapshot->lock);
        m_begun = MayEdit(session);
        if (m_begun) m_begun = MayGoOn();
        if (m_begun) session.snapshot->reverting = true;
    }
    ~Standstill() {
        if (!m_begun) return;
        {
            const std::lock_guard lock(m_session.snapshot->lock);
            m_session.snapshot->reverting = false;
        }
        // A callback may have closed the client, which could not end its transaction then.
        if (m_session.client->IsClosed()) AbandonTransaction(m_session);
    }
    Standstill(const Standstill&) = delete;
    Standstill& operator=(const Standstill&) = delete;

    const Result& Begun() const noexcept { return m_begun; }

    // What callbacks may have changed. The caller holds the snapshot's lock.
    Result MayGoOn() const {
        const Snapshot& snapshot = *m_session.snapshot;
        if (m_session.client->IsClosed()) return EErrorCode::NotConnected;
        const bool held =
            snapshot.locks.IsHeldByOther(*m_session.client, {{EObjectType::Snapshot, 0, 0}}, ELockScope::Whole);
        return held || snapshot.series != 0 || snapshot.IsSavePoint() ? Result(EErrorCode::AccessDenied) : Result();
    }

private:
    Session& m_session;
    Result m_begun;
};

// Exchanges the content of the session's snapshot for another state of it.
Result Exchange(Session& session, Graph state) {
    Snapshot& snapshot = *session.snapshot;
    const Standstill standstill(session);
    if (!standstill.Begun()) return standstill.Begun();
    const Announcement announcement(snapshot.observation);
    std::vector<Event> events;
    if (!snapshot.observation.IsEmpty()) {
        const std::shared_lock lock(snapshot.lock);
        events = Difference(snapshot.graph, state, snapshot.DesignIndex());
    }
    for (const Event& event : events)
        announcement.Before(event, true);
    {
        const std::lock_guard lock(snapshot.lock);
        if (Result allowed = standstill.MayGoOn(); !allowed) return allowed;
        Change change(snapshot.graph, snapshot.log);
        change.Restore(std::move(state));
        if (snapshot.transactionOwner != nullptr) {
            change.Mark({});
            change.Keep();
        } else {
            if (Result kept = MakeDurable(session); !kept) return kept;
            change.Keep();
            snapshot.log.Forget(nullptr);
        }
    }
    for (const Event& event : events)
        announcement.After(event, true);
    return {};
}

}  // namespace

Result RestoreSavePoint(Session& session, const String& name) {
    const Snapshot& snapshot = *session.snapshot;
    const ProjectCore& project = session.Project();
    try {
        const RefPtr<Snapshot> from = project.FindSnapshot(name.View());
        if (!from) return Result(EErrorCode::ObjectNotFound, name);
        if (snapshot.IsSavePoint()) return EErrorCode::AccessDenied;
        if (from->origin != snapshot.index) return EErrorCode::InvalidArgument;
        Graph state;
        {
            const std::shared_lock lock(from->lock);
            if (from->removed) return Result(EErrorCode::ObjectNotFound, name);
            state = from->graph;
        }
        state.attributes = from->savedAttributes;
        Result result = Exchange(session, std::move(state));
        if (result)
            project.Notify(nullptr, [&](ClientObserver& observer) { observer.OnRestore(project.name, snapshot.name); });
        return result;
    } catch (const std::bad_alloc&) {
        return EErrorCode::OutOfMemory;
    }
}

}  // namespace Orin::DesignDb
