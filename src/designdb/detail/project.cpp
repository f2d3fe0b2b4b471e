#include "designdb/detail/project.h"

#include <algorithm>
#include <shared_mutex>
#include <thread>

#include "designdb/detail/face.h"

namespace Orin::DesignDb {

namespace {

GIndex NextGlobalIndex() noexcept {
    static std::atomic<std::uint64_t> s_last{0};
    return GIndex(++s_last);
}

}  // namespace

Snapshot::Snapshot(String snapshotName, GIndex savedFrom, Graph state, ListAttribute designAttributes)
    : name(std::move(snapshotName)),
      index(NextGlobalIndex()),
      origin(savedFrom),
      graph(std::move(state)),
      savedAttributes(std::move(designAttributes)) {}

// ---- ProjectCore ----

ProjectCore::ProjectCore(String projectName) : name(std::move(projectName)) {
    m_snapshots.emplace_back(new Snapshot(String(WorkingSnapshot)));
}

ProjectCore::~ProjectCore() {
    Project::Remove(name, *this);
}

Result ProjectCore::Attach(RefPtr<const Connection>& connection, const String& client) {
    if (const int code = Fault("OrinPI::AttachSubClient", Index())) return Result(code);
    return Connect(connection, client);
}

Result ProjectCore::Connect(RefPtr<const Connection>& connection, const String& client) {
    try {
        connection = RefPtr<const Connection>(new Client(RefPtr<ProjectCore>(this), client));
        return {};
    } catch (const std::bad_alloc&) {
        return EErrorCode::OutOfMemory;
    }
}

RefPtr<Snapshot> ProjectCore::FindSnapshot(std::string_view snapshot) const {
    const std::lock_guard lock(m_mutex);
    for (const RefPtr<Snapshot>& candidate : m_snapshots)
        if (candidate->name.View() == snapshot) return candidate;
    return {};
}

Result ProjectCore::Enter(const RefPtr<Snapshot>& snapshot) {
    const std::lock_guard lock(m_mutex);
    for (const RefPtr<Snapshot>& other : m_snapshots)
        if (other->name == snapshot->name) return Result(EErrorCode::AlreadyExists, snapshot->name);
    m_snapshots.push_back(snapshot);
    Result kept;
    if (const int code = Fault("Store::Add", Index())) kept = Result(code);
    if (Store* const store = CurrentStore(); kept && store != nullptr) {
        const Snapshot& working = *m_snapshots.front();
        kept = snapshot->origin == working.index
                   ? store->Add({snapshot->name, snapshot->graph, snapshot->savedAttributes}, working.graph)
                   : Result(EErrorCode::StoreFailed, "a store keeps one design and its save points");
    }
    if (!kept) m_snapshots.pop_back();
    return kept;
}

Result ProjectCore::RemoveSnapshot(const String& snapshot) {
    if (snapshot == WorkingSnapshot) return EErrorCode::InvalidArgument;
    Graph freed;
    const RefPtr<Snapshot> found = FindSnapshot(snapshot.View());
    if (!found) return Result(EErrorCode::ObjectNotFound, snapshot);
    {
        const std::lock_guard lock(found->lock);
        if (found->removed) return Result(EErrorCode::ObjectNotFound, snapshot);
        if (found->transactionOwner != nullptr || found->reverting || !found->locks.IsEmpty())
            return EErrorCode::AccessDenied;
        if (const int code = Fault("Store::Remove", Index())) return Result(code);
        if (Store* const store = CurrentStore(); store != nullptr)
            if (Result kept = store->Remove(found->name); !kept) return kept;
        found->removed = true;
        // Whoever has a handle yet finds nothing, under the indexes that were given nor under new ones.
        freed.ReserveThrough(found->graph);
        std::swap(found->graph, freed);
    }
    const std::lock_guard lock(m_mutex);
    std::erase_if(m_snapshots, [&](const RefPtr<Snapshot>& other) { return other.Get() == found.Get(); });
    return {};
}

ListT<String> ProjectCore::SnapshotNames() const {
    const std::lock_guard lock(m_mutex);
    ListT<String> names;
    for (const RefPtr<Snapshot>& snapshot : m_snapshots)
        names.Append(snapshot->name);
    return names;
}

// ---- Client ----

Client::Client(RefPtr<ProjectCore> owner, String clientName) : project(std::move(owner)), name(std::move(clientName)) {}

Client::~Client() = default;

Result Client::GetSnapshotByName(ContainerT<const ISnapshot>& snapshot, const String& snapshotName) const {
    if (const int code = Fault("OrinPI::GetSnapshotByName", Index())) return Result(code);
    try {
        const RefPtr<Snapshot> found = project->FindSnapshot(snapshotName.View());
        if (!found) return Result(EErrorCode::ObjectNotFound, snapshotName);
        EndRemoved();
        const std::lock_guard lock(m_mutex);
        if (IsClosed()) return EErrorCode::NotConnected;
        auto session = std::find_if(m_sessions.begin(), m_sessions.end(),
                                    [&](const Session* s) { return s->snapshot.Get() == found.Get(); });
        if (session == m_sessions.end()) {
            m_sessions.reserve(m_sessions.size() + 1);
            m_sessions.push_back(new Session(*this, found));
            session = std::prev(m_sessions.end());
        }
        snapshot = ContainerT<const ISnapshot>(MakeSnapshot(SessionRef(**session)));
        return {};
    } catch (const std::bad_alloc&) {
        return EErrorCode::OutOfMemory;
    }
}

namespace {

// Registers an observer, unless its client was closed meanwhile and may have let go of its observers before this one
// came.
template <class Observer>
Result AddTo(ObserverList<Observer>& list, Observer* observer, const Client& client) {
    if (client.IsClosed()) return EErrorCode::NotConnected;
    try {
        Result result = list.Add(observer, client);
        if (!result || !client.IsClosed()) return result;
        static_cast<void>(list.Remove(observer, client));
        return EErrorCode::NotConnected;
    } catch (const std::bad_alloc&) {
        return EErrorCode::OutOfMemory;
    }
}

// Ends a client's work on a snapshot.
void End(Session& session) noexcept {
    session.snapshot->observation.RemoveAll(*session.client);
    AbandonTransaction(session);
    AbandonLocks(session);
    session.CloseByClient();
}

}  // namespace

void Client::EndRemoved() const noexcept {
    for (;;) {
        Session* ended = nullptr;
        {
            const std::lock_guard lock(m_mutex);
            const auto found = std::find_if(m_sessions.begin(), m_sessions.end(), [](const Session* session) {
                const std::shared_lock graph(session->snapshot->lock);
                return session->snapshot->removed;
            });
            if (found == m_sessions.end()) return;
            ended = *found;
            m_sessions.erase(found);
        }
        End(*ended);
    }
}

Result Client::AddClientObserver(ClientObserver* observer) const {
    if (const int code = Fault("OrinPI::AddClientObserver", Index())) return Result(code);
    return AddTo(project->clientObservers, observer, *this);
}

Result Client::RemoveClientObserver(ClientObserver* observer) const {
    if (const int code = Fault("OrinPI::RemoveClientObserver", Index())) return Result(code);
    return project->clientObservers.Remove(observer, *this);
}

void Client::Close() const noexcept {
    // Callbacks may let go of the last handle to this client.
    const RefPtr<const Client> self(this);
    std::vector<Session*> sessions;
    {
        const std::lock_guard lock(m_mutex);
        if (m_closed.exchange(true, std::memory_order_acq_rel)) return;
        sessions.swap(m_sessions);
    }
    for (Session* const session : sessions)
        End(*session);
    project->clientObservers.RemoveAll(*this);
}

// ---- Session ----

Session::Session(const Client& sessionClient, RefPtr<Snapshot> sessionSnapshot)
    : client(&sessionClient), snapshot(std::move(sessionSnapshot)) {
    for (Share& share : m_shares)
        share.session = this;
}

void Session::Drop(Share& share) noexcept {
    if (share.count.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
    Session* const session = share.session;
    if (session->m_open.fetch_sub(1, std::memory_order_acq_rel) == 1) delete session;
}

void Session::CloseByClient() noexcept {
    // The last drop may delete this object, so the shares are walked by pointer and no further than the last.
    Share* const shares = m_shares.data();
    for (std::size_t i = 0; i < ShareCount; ++i)
        Drop(shares[i]);
}

Result AddEventObserver(Session& session, EventObserver* observer) {
    return AddTo(session.snapshot->observation, observer, *session.client);
}

Result RemoveEventObserver(Session& session, EventObserver* observer) {
    return session.snapshot->observation.Remove(observer, *session.client);
}

}  // namespace Orin::DesignDb
