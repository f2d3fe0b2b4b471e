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

// ---- ProjectCore ----

ProjectCore::ProjectCore(String projectName) : name(std::move(projectName)) {
    m_snapshots.emplace_back(new Snapshot(String(WorkingSnapshot), NextGlobalIndex()));
}

ProjectCore::~ProjectCore() {
    Project::Remove(name, *this);
}

Result ProjectCore::Attach(RefPtr<const Connection>& connection, const String& client) {
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

Result ProjectCore::AddSnapshot(const String& snapshot) {
    if (snapshot.IsEmpty()) return EErrorCode::InvalidArgument;
    try {
        RefPtr<Snapshot> made(new Snapshot(snapshot, NextGlobalIndex()));
        const std::lock_guard lock(m_mutex);
        for (const RefPtr<Snapshot>& other : m_snapshots)
            if (other->name == snapshot) return Result(EErrorCode::AlreadyExists, snapshot);
        m_snapshots.push_back(std::move(made));
        return {};
    } catch (const std::bad_alloc&) {
        return EErrorCode::OutOfMemory;
    }
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

Result Client::AddClientObserver(ClientObserver* observer) const {
    if (const int code = Fault("OrinPI::AddClientObserver", Index())) return Result(code);
    if (observer == nullptr) return EErrorCode::InvalidArgument;
    const std::lock_guard lock(m_mutex);
    if (std::find(m_observers.begin(), m_observers.end(), observer) != m_observers.end())
        return EErrorCode::AlreadyExists;
    try {
        m_observers.push_back(observer);
        return {};
    } catch (const std::bad_alloc&) {
        return EErrorCode::OutOfMemory;
    }
}

Result Client::RemoveClientObserver(ClientObserver* observer) const {
    if (const int code = Fault("OrinPI::RemoveClientObserver", Index())) return Result(code);
    const std::lock_guard lock(m_mutex);
    return std::erase(m_observers, observer) != 0 ? Result() : Result(EErrorCode::ObjectNotFound);
}

void Client::ReportUnexpected(const String& error) const noexcept {
    // Observers may come and go meanwhile, also in the callback; one that takes itself out makes room for the next.
    ClientObserver* told = nullptr;
    for (std::size_t position = 0;;) {
        {
            const std::lock_guard lock(m_mutex);
            if (told != nullptr && position < m_observers.size() && m_observers[position] == told) ++position;
            if (position >= m_observers.size()) return;
            told = m_observers[position];
        }
        try {
            told->OnErrorUnexpected(project->name, error);
        } catch (...) {
            // There is nobody left to tell.
        }
    }
}

void Client::Close() const noexcept {
    std::vector<Session*> sessions;
    {
        const std::lock_guard lock(m_mutex);
        if (m_closed.exchange(true, std::memory_order_acq_rel)) return;
        sessions.swap(m_sessions);
    }
    for (Session* const session : sessions) {
        session->snapshot->observation.RemoveAll(*this);
        AbandonTransaction(*session);
        session->snapshot->locks.ReleaseAll(*this);
        session->CloseByClient();
    }
    const std::lock_guard lock(m_mutex);
    m_observers.clear();
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
    if (session.client->IsClosed()) return EErrorCode::NotConnected;
    try {
        Result result = session.snapshot->observation.Add(observer, *session.client);
        if (!result || !session.client->IsClosed()) return result;
        // The client was closed meanwhile and may have let go of its observers before this one came.
        static_cast<void>(session.snapshot->observation.Remove(observer, *session.client));
        return EErrorCode::NotConnected;
    } catch (const std::bad_alloc&) {
        return EErrorCode::OutOfMemory;
    }
}

Result RemoveEventObserver(Session& session, EventObserver* observer) {
    try {
        return session.snapshot->observation.Remove(observer, *session.client);
    } catch (const std::bad_alloc&) {
        return EErrorCode::OutOfMemory;
    }
}

}  // namespace Orin::DesignDb
