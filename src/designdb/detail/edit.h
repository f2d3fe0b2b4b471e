// How an edit is carried out: checked, announced, applied as a whole, announced again.
#pragma once

#include <mutex>
#include <new>
#include <optional>
#include <shared_mutex>
#include <thread>
#include <utility>

#include "designdb/detail/observation.h"
#include "designdb/detail/project.h"

namespace Orin::DesignDb {

// Whether an edit comes through a write handle and needs the lock that this stands for, or through the editor, which
// needs only that nobody else holds one.
enum class EditRight { Free, Locked };

// What the body of an edit works with. The body checks, calls Begin, and only when that says so changes. It runs twice
// when somebody observes: once to find out whether it would succeed and what to announce, with other readers beside it,
// and once to do it.
class Edit {
public:
    Edit(Session& session, Change& change, EditRight right, bool dry) noexcept
        : m_session(session), m_change(change), m_right(right), m_dry(dry) {}

    const Graph& Now() const noexcept { return m_change.Now(); }
    Change& Do() noexcept { return m_change; }

    // Whether locks allow an edit of the object itself (Shallow) or of it and all inside it (Whole).
    Result Permit(const LockKey& object, ELockScope scope) const {
        const LockTable& locks = m_session.snapshot->locks;
        if (m_right == EditRight::Free && locks.IsEmpty()) return {};
        const LockChain chain = ChainOf(m_change.Now(), object);
        if (locks.IsHeldByOther(*m_session.client, chain, scope)) return EErrorCode::AccessDenied;
        if (m_right == EditRight::Locked && !locks.Allows(*m_session.client, chain, scope))
            return EErrorCode::NotLocked;
        return {};
    }

    // Says what the edit is. False when it is only being tried.
    bool Begin(Event what) {
        event = std::move(what);
        return !m_dry;
    }

    // A place for a new record, the same in both runs. AlreadyExists when a living object bears the wanted index.
    template <class Record>
    Result Reserve(std::optional<std::pair<Slot, Index>>& place, const Index& wanted, EObjectType type = Record::Kind) {
        if (!wanted.IsEmpty() && m_change.Now().Locate(wanted)) return EErrorCode::AlreadyExists;
        // Between the runs somebody may have asked for the very index that the database had chosen.
        if (place && m_change.Now().Locate(place->second)) place.reset();
        if (!place) place = m_change.Now().Reserve<Record>(wanted, type);
        return {};
    }

    bool IsDry() const noexcept { return m_dry; }

    Event event;

private:
    Session& m_session;
    Change& m_change;
    EditRight m_right;
    bool m_dry;
};

// Whether the client may edit the snapshot at all; the caller holds the snapshot's lock.
inline Result MayEdit(const Session& session) {
    if (session.client->IsClosed()) return EErrorCode::NotConnected;
    if (session.snapshot->removed) return EErrorCode::ObjectNotFound;
    if (session.snapshot->reverting) return EErrorCode::AccessDenied;
    // A series that fails takes back all since it began, so the client's other threads have to keep out as well.
    if (session.snapshot->series != 0 && session.snapshot->seriesThread != std::this_thread::get_id())
        return EErrorCode::AccessDenied;
    const Client* const owner = session.snapshot->transactionOwner;
    return owner == nullptr || owner == session.client.Get() ? Result() : Result(EErrorCode::AccessDenied);
}

// One edit: `body(edit)` as described at Edit. An allocation failure gives OutOfMemory with nothing changed.
template <class Body>
Result Perform(Session& session, EditRight right, Body&& body) {
    Snapshot& snapshot = *session.snapshot;
    try {
        const auto run = [&](Change& change, Edit& edit) -> Result {
            if (Result allowed = MayEdit(session); !allowed) return allowed;
            Result result = body(edit);
            // Of a save point only what is said about it can be edited.
            if (result && snapshot.IsSavePoint() && edit.event.object != snapshot.DesignIndex())
                return EErrorCode::AccessDenied;
            if (!result || edit.IsDry()) return result;
            if (snapshot.transactionOwner != nullptr) {
                change.Mark(edit.event);
                change.Keep();
            } else {
                result = MakeDurable(session);
                if (!result) return result;
                change.Keep();
                snapshot.log.Forget(nullptr);
            }
            return result;
        };
        const auto carryOut = [&](Event& event) -> Result {
            const std::lock_guard lock(snapshot.lock);
            Change change(snapshot.graph, snapshot.log);
            Edit edit(session, change, right, false);
            Result result = run(change, edit);
            event = std::move(edit.event);
            return result;
        };

        Event event;
        if (snapshot.observation.IsEmpty()) return carryOut(event);
        {
            const std::shared_lock lock(snapshot.lock);
            Change change(snapshot.graph, snapshot.log);
            Edit edit(session, change, right, true);
            if (Result result = run(change, edit); !result) return result;
            event = std::move(edit.event);
        }
        const Announcement announcement(snapshot.observation);
        announcement.Before(event, false);
        Result result = carryOut(event);
        if (result) announcement.After(event, false);
        return result;
    } catch (const std::bad_alloc&) {
        return EErrorCode::OutOfMemory;
    }
}

// Several edits that happen as a whole or not at all: they join the client's transaction, or stand in one of their own
// that nobody hears of as such. Other clients cannot edit the snapshot meanwhile.
class EditSeries {
public:
    explicit EditSeries(Session& session);
    ~EditSeries();  // takes everything back unless Finish came
    EditSeries(const EditSeries&) = delete;
    EditSeries& operator=(const EditSeries&) = delete;

    // Whether the series could begin.
    const Result& Begun() const noexcept { return m_begun; }
    // Keeps the edits when `result` is a success; gives it on.
    Result Finish(Result result);

private:
    Session& m_session;
    UndoLog::Mark m_mark = nullptr;
    bool m_own = false;
    bool m_open = false;
    Result m_begun;
};

// Takes back the edits above the mark, newest first, each announced as its inverse. The caller owns the transaction.
// The snapshot's `reverting` stays set, so that nobody edits before the caller has done what it does next.
Result RevertEdits(Session& session, UndoLog::Mark mark);

}  // namespace Orin::DesignDb
