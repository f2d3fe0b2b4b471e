#include "designdb/detail/locking.h"

#include <algorithm>
#include <thread>

#include "designdb/detail/editing.h"

namespace Orin::DesignDb {

Result Token::Acquire() {
    const Session& session = *m_session;
    if (m_requests.size() > 1) {
        m_objects.Reserve(m_requests.size());
        for (const LockRequest& request : m_requests)
            m_objects.Append(request.object);
    }
    try {
        for (LockRequest& request : m_requests) {
            Result taken = session.snapshot->locks.Acquire(*session.client, request.chain, m_scope, request.object,
                                                           request.changed);
            if (!taken) {
                GiveUp();
                return taken;
            }
            ++m_held;
        }
        return {};
    } catch (...) {
        GiveUp();
        throw;
    }
}

Token::~Token() {
    if (m_held == 0) return;
    GiveUp();
    AnnounceGone();
}

void Token::GiveUp() noexcept {
    for (; m_held != 0; --m_held) {
        LockRequest& request = m_requests[m_held - 1];
        request.changed = m_session->snapshot->locks.Release(*m_session->client, request.chain, m_scope);
    }
}

// Several objects are told of at once when all of them have changed hands.
void Token::Tell(One one, Many many) const noexcept {
    const Session& session = *m_session;
    const Announcement announcement(session.snapshot->observation);
    const String& project = session.Project().name;
    const String& client = session.client->name;
    if (!m_objects.IsEmpty() &&
        std::all_of(m_requests.begin(), m_requests.end(), [](const LockRequest& request) { return request.changed; }))
        return announcement.Each([&](EventObserver& observer) { (observer.*many)(m_objects, project, client); });
    for (const LockRequest& request : m_requests)
        if (request.changed)
            announcement.Each([&](EventObserver& observer) { (observer.*one)(request.object, project, client); });
}

void AbandonLocks(Session& session) noexcept {
    ListT<Index> objects;
    for (;;) {
        try {
            objects = session.snapshot->locks.ReleaseAll(*session.client);
            break;
        } catch (const std::bad_alloc&) {
            // Locks that stayed would shut everybody out for ever.
            std::this_thread::yield();
        }
    }
    const Announcement announcement(session.snapshot->observation);
    const String& project = session.Project().name;
    const String& client = session.client->name;
    if (objects.Count() > 1)
        return announcement.Each([&](EventObserver& observer) { observer.OnMultiUnLock(objects, project, client); });
    for (const Index& object : objects)
        announcement.Each([&](EventObserver& observer) { observer.OnUnLock(object, project, client); });
}

Result Editor::Lock(const ListT<Index>& objects, RefPtr<LockToken>& hold) {
    if (!m_impl) return EErrorCode::NotConnected;
    const Session& session = *m_impl->session;
    return AcquireLocks(m_impl->session, ELockScope::Whole, hold, [&](const Graph& graph, LockRequests& requests) {
        if (objects.IsEmpty()) return Result(EErrorCode::InvalidArgument);
        if (session.snapshot->removed) return Result(EErrorCode::ObjectNotFound);
        for (const Index& object : objects) {
            const Location at = object.IsEmpty() ? Location{EObjectType::Snapshot, 0} : graph.Locate(object);
            switch (at.kind) {
                case EObjectType::Snapshot:
                case EObjectType::Block:
                case EObjectType::Comp:
                case EObjectType::Group:
                case EObjectType::Bus:
                    break;
                case EObjectType::None:
                    return Result(EErrorCode::ObjectNotFound);
                default:
                    return Result(EErrorCode::InvalidArgument);
            }
            const Index named = object.IsEmpty() ? session.snapshot->DesignIndex() : object;
            requests.push_back({ChainOf(graph, {at.kind, at.slot, 0}), named, false});
        }
        return Result();
    });
}

}  // namespace Orin::DesignDb
