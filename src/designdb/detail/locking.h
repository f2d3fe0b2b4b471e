// Write access: how locks are taken and given up, and how observers hear of it.
#pragma once

#include <shared_mutex>
#include <vector>

#include "designdb/detail/project.h"

namespace Orin::DesignDb {

struct LockRequest {
    LockChain chain;
    Index object;
    bool changed = false;  // whether the client did not hold the object before, or does not hold it any more
};
using LockRequests = std::vector<LockRequest>;

// Write access to objects of one snapshot that is given up with the last handle.
class Token final : public LockToken {
public:
    Token(const SessionRef& session, ELockScope scope) : m_session(session), m_scope(scope) {}

    LockRequests& Requests() noexcept { return m_requests; }
    // Takes all of them or none. The caller holds the graph still.
    Result Acquire();
    // Tells observers of what is held since, and of what is not after all.
    void AnnounceTaken() const noexcept { Tell(&EventObserver::OnLock, &EventObserver::OnMultiLock); }
    void AnnounceGone() const noexcept { Tell(&EventObserver::OnUnLock, &EventObserver::OnMultiUnLock); }

private:
    using One = void (EventObserver::*)(const Index&, const String&, const String&);
    using Many = void (EventObserver::*)(const ListT<Index>&, const String&, const String&);

    ~Token() override;
    void GiveUp() noexcept;
    void Tell(One one, Many many) const noexcept;

    SessionRef m_session;
    ELockScope m_scope;
    LockRequests m_requests;
    std::size_t m_held = 0;  // of the requests, from the first on
    ListT<Index> m_objects;  // of several requests; made beforehand, so that giving up needs no memory
};

// Locks what `find(graph, requests)` asks for.
template <class Find>
Result AcquireLocks(const SessionRef& session, ELockScope scope, RefPtr<LockToken>& token, Find&& find) {
    try {
        if (session->client->IsClosed()) return EErrorCode::NotConnected;
        const RefPtr<Token> made(new Token(session, scope));
        {
            // The graph is held still until the locks are had: an edit of another client's that was permitted before is
            // done by then, and none can be permitted after.
            const std::shared_lock lock(session->snapshot->lock);
            if (Result found = find(session->snapshot->graph, made->Requests()); !found) return found;
            if (Result taken = made->Acquire(); !taken) return taken;
        }
        made->AnnounceTaken();
        if (!session->client->IsClosed()) {
            token = made;
            return {};
        }
        // A client that was closed meanwhile may have given up its locks before these came, or before they were told
        // of; who keeps count must not take them for held.
        made->AnnounceGone();
        return EErrorCode::NotConnected;
    } catch (const std::bad_alloc&) {
        return EErrorCode::OutOfMemory;
    }
}

}  // namespace Orin::DesignDb
