// Projects, their snapshots, and the clients that work on them.
#pragma once

#include <array>
#include <atomic>
#include <memory>
#include <mutex>
#include <string_view>
#include <thread>
#include <unordered_map>
#include <vector>

#include "designdb/database.h"
#include "designdb/detail/change.h"
#include "designdb/detail/lock_table.h"
#include "designdb/detail/observation.h"
#include "designdb/detail/path_table.h"
#include "designdb/detail/readers_writer_lock.h"
#include "designdb/detail/store.h"

namespace Orin::DesignDb {

class Client;
class Session;

// Attribute names, each kept once: a million objects bear the same few, and a name that is shared is in the cache when
// the attributes of any object are searched. The caller sees to it that one thread at a time is inside.
class NameTable {
public:
    // A text like `name`, shared with all that were asked for before.
    String Shared(const String& name) {
        const auto known = m_names.find(name.View());
        if (known != m_names.end()) return known->second;
        // Names that a tool makes up by the thousand are worth no sharing.
        if (m_names.size() < Limit) m_names.emplace(name.View(), name);
        return name;
    }

private:
    static constexpr std::size_t Limit = 4096;
    std::unordered_map<std::string_view, String> m_names;  // by the text that the value holds
};

// One design of a project.
class Snapshot final : public Counted {
public:
    explicit Snapshot(String snapshotName) : Snapshot(std::move(snapshotName), GIndex(), {}, {}) {}
    // A save point: a state of the snapshot of that global index, with the attributes that the design had.
    Snapshot(String snapshotName, GIndex savedFrom, Graph state, ListAttribute designAttributes);

    const String name;
    const GIndex index;   // of its own
    const GIndex origin;  // of a save point: what it was made of

    bool IsSavePoint() const noexcept { return origin != GIndex(); }
    // Under which the design as a whole goes in events and faults.
    Index DesignIndex() const noexcept {
        return Index(EObjectType::Snapshot, 0, static_cast<std::uint32_t>(index.Value()));
    }

    // Guards the graph, the transaction and the log; the lock table guards itself.
    mutable ReadersWriterLock lock;
    Graph graph;
    // Of a save point: the design's attributes when it was made. Those of the graph belong to the save point from then
    // on, so that a comment on it does not come into the design that is restored.
    const ListAttribute savedAttributes;
    bool removed = false;  // from the project; the handles that are left find nothing
    const Client* transactionOwner = nullptr;
    bool transactionIsSeries = false;  // it only holds a series of edits together, and the owner does not know of it
    bool reverting = false;            // nobody may edit while edits are taken back or a save point is restored
    unsigned series = 0;               // that are open, in one another; the transaction cannot end meanwhile
    std::thread::id seriesThread;      // that they run on
    UndoLog log;                       // the steps of the transaction; between edits empty when there is none
    NameTable attributeNames;
    LockTable locks;
    Observation observation;
};

// A project.
class ProjectCore final : public Project {
public:
    explicit ProjectCore(String projectName);

    Result Attach(RefPtr<const Connection>& connection, const String& client) override;
    Result Connect(RefPtr<const Connection>& connection, const String& client);

    RefPtr<Snapshot> FindSnapshot(std::string_view snapshot) const;
    // AlreadyExists when there is one of that name. With a store the caller keeps the working snapshot from changing.
    Result Enter(const RefPtr<Snapshot>& snapshot);
    Result RemoveSnapshot(const String& snapshot);
    ListT<String> SnapshotNames() const;

    // Calls call(observer) with the client observers of all clients, or of one.
    template <class Call>
    void Notify(const Client* only, const Call& call) const noexcept {
        clientObservers.ForEach(clientObservers.Last(), [&](ObserverList<ClientObserver>::Entry& entry) {
            if (only == nullptr || entry.client.Get() == only) entry.Call(call);
        });
    }

    const String name;
    PathTable paths;
    ObserverList<ClientObserver> clientObservers;

    // Where commits go; null: nowhere. It is bound once, with all snapshots locked.
    Store* CurrentStore() const noexcept { return m_currentStore.load(std::memory_order_acquire); }
    void Bind(const RefPtr<Store>& store) noexcept {
        m_store = store;
        m_currentStore.store(store.Get(), std::memory_order_release);
    }
    Result BindTo(StoreWriter& writer);

private:
    ~ProjectCore() override;

    RefPtr<Store> m_store;
    std::atomic<Store*> m_currentStore{nullptr};

    mutable std::mutex m_mutex;
    std::vector<RefPtr<Snapshot>> m_snapshots;  // in the order of making, the working one first
};

// An identity that owns locks and transactions.
class Client final : public Connection {
public:
    Client(RefPtr<ProjectCore> owner, String clientName);

    Result GetSnapshotByName(ContainerT<const ISnapshot>& snapshot, const String& snapshotName) const override;
    Result AddClientObserver(ClientObserver* observer) const override;
    Result RemoveClientObserver(ClientObserver* observer) const override;
    void Close() const noexcept override;

    bool IsClosed() const noexcept { return m_closed.load(std::memory_order_acquire); }

    const RefPtr<ProjectCore> project;
    const String name;

private:
    ~Client() override;

    // Lets go of the work on snapshots that were removed from the project.
    void EndRemoved() const noexcept;

    mutable std::mutex m_mutex;
    mutable std::vector<Session*> m_sessions;
    mutable std::atomic<bool> m_closed{false};
};

// One client's work on one snapshot: what every face of an object refers to. It lives until its client is closed and
// the last face is gone. Faces count themselves in shares, so that threads that make and drop faces of one session do
// not write to one cache line.
class Session {
public:
    Session(const Client& sessionClient, RefPtr<Snapshot> sessionSnapshot);

    struct alignas(64) Share {
        std::atomic<std::size_t> count{1};  // one for the client until it is closed
        Session* session = nullptr;
    };

    Share& ShareOfThisThread() noexcept { return m_shares[ReadersWriterLock::ThreadSlot() % ShareCount]; }
    static void Drop(Share& share) noexcept;
    void CloseByClient() noexcept;

    ProjectCore& Project() const noexcept { return *client->project; }

    const RefPtr<const Client> client;
    const RefPtr<Snapshot> snapshot;

private:
    ~Session() = default;

    static constexpr std::size_t ShareCount = 8;
    std::array<Share, ShareCount> m_shares;
    std::atomic<std::size_t> m_open{ShareCount};
};

// Keeps a session alive.
class SessionRef {
public:
    // Of a session whose client is not closed.
    explicit SessionRef(Session& session) noexcept : m_share(&session.ShareOfThisThread()) {
        m_share->count.fetch_add(1, std::memory_order_relaxed);
    }
    // After the client was closed this thread's share may be used up; the other's is in use by the other.
    SessionRef(const SessionRef& other) noexcept : m_share(&other->ShareOfThisThread()) {
        std::size_t count = m_share->count.load(std::memory_order_relaxed);
        while (count != 0)
            if (m_share->count.compare_exchange_weak(count, count + 1, std::memory_order_relaxed)) return;
        m_share = other.m_share;
        m_share->count.fetch_add(1, std::memory_order_relaxed);
    }
    SessionRef& operator=(const SessionRef&) = delete;
    ~SessionRef() { Session::Drop(*m_share); }

    Session& operator*() const noexcept { return *m_share->session; }
    Session* operator->() const noexcept { return m_share->session; }

private:
    Session::Share* m_share;
};

// ---- Save points, for the editor. ----

Result MakeSavePoint(Session& session, const String& name);
Result RestoreSavePoint(Session& session, const String& name);

// Asks the project's store to keep a commit of the session's snapshot: see Store::Commit.
Result MakeDurable(const Session& session);

// ---- Transactions and observers, for ISnapshot. ----

Result BeginTransaction(Session& session, const ETransactionType& type);
Result CommitTransaction(Session& session);
Result RollbackTransaction(Session& session);
bool OwnsTransaction(const Session& session);
// For a client that is closed: takes its transaction back, or leaves that to the work on it that is under way.
void AbandonTransaction(Session& session) noexcept;
// For a client that is closed: gives up all its locks.
void AbandonLocks(Session& session) noexcept;
Result AddEventObserver(Session& session, EventObserver* observer);
Result RemoveEventObserver(Session& session, EventObserver* observer);

}  // namespace Orin::DesignDb
