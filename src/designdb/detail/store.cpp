#include "designdb/detail/store.h"

#include <mutex>

#include "designdb/detail/faults.h"
#include "designdb/detail/project.h"

namespace Orin::DesignDb {

class DatabaseAccess {
public:
    static RefPtr<ProjectCore>& CoreOf(Database& database) noexcept { return database.m_core; }
    static ProjectCore* CoreOf(const Database& database) noexcept { return database.m_core.Get(); }
};

void TouchDifference(const Graph& before, const Graph& after, Touches& touches) {
    const auto compare = [&]<class... Records>(const Table<Records>*...) {
        (before.Of<Records>().Compare(after.Of<Records>(),
                                      [&touches](Slot slot, const Records* was, const Records* is) {
                                          if (was != nullptr && is != nullptr && *was == *is) return;
                                          touches.Add(Records::Kind, slot, Touches::Extent::Replaced);
                                      }),
         ...);
    };
    Graph::WithTables(compare);
    touches.designAttributes = touches.designAttributes || !(before.attributes == after.attributes);
}

void RestoreStep::Touch(const Graph& graph, Touches& touches) const {
    TouchDifference(m_state, graph, touches);
}

Result CreateStored(Database& database, const String& project, const RefPtr<Store>& store) {
    if (project.IsEmpty() || !store) return EErrorCode::InvalidArgument;
    try {
        if (Project::Find(project)) return Result(EErrorCode::AlreadyExists, project);
        RefPtr<ProjectCore> core(new ProjectCore(project));
        const RefPtr<Snapshot> working = core->FindSnapshot(WorkingSnapshot);
        std::vector<SavedState> savePoints;
        // Nobody else knows the project before it is entered.
        if (Result loaded = store->Load({core->paths, working->graph, savePoints}); !loaded) return loaded;
        for (SavedState& saved : savePoints) {
            const RefPtr<Snapshot> made(
                new Snapshot(saved.name, working->index, std::move(saved.graph), std::move(saved.attributes)));
            if (Result entered = core->Enter(made); !entered) return entered;
        }
        core->Bind(store);
        if (Result entered = Project::Enter(project, *core); !entered) return entered;
        DatabaseAccess::CoreOf(database) = std::move(core);
        return {};
    } catch (const std::bad_alloc&) {
        return EErrorCode::OutOfMemory;
    }
}

Result BindStored(const Database& database, StoreWriter& writer) {
    ProjectCore* const core = DatabaseAccess::CoreOf(database);
    return core != nullptr ? core->BindTo(writer) : Result(EErrorCode::NotConnected);
}

Result ProjectCore::BindTo(StoreWriter& writer) {
    try {
        Snapshot& working = *FindSnapshot(WorkingSnapshot);
        const std::lock_guard noEdit(working.lock);
        const std::lock_guard noSavePoint(m_mutex);
        if (CurrentStore() != nullptr) return EErrorCode::AlreadyExists;
        if (working.transactionOwner != nullptr || working.series != 0) return EErrorCode::TransactionActive;
        std::vector<std::unique_lock<ReadersWriterLock>> locks;
        std::vector<SavedState> savePoints;
        for (std::size_t i = 1; i < m_snapshots.size(); ++i) {
            const Snapshot& saved = *m_snapshots[i];
            std::unique_lock lock(saved.lock);
            if (saved.removed) continue;  // and about to leave the list
            if (saved.origin != working.index) return Result(EErrorCode::InvalidArgument, saved.name);
            locks.push_back(std::move(lock));
            savePoints.push_back({saved.name, saved.graph, saved.savedAttributes});
        }
        RefPtr<Store> store;
        Result written = writer.Write({paths, working.graph, savePoints}, store);
        if (written) Bind(store);
        return written;
    } catch (const std::bad_alloc&) {
        return EErrorCode::OutOfMemory;
    }
}

Result MakeDurable(const Session& session) {
    const Snapshot& snapshot = *session.snapshot;
    if (const int code = Fault("Store::Commit", snapshot.DesignIndex())) return Result(code);
    Store* const store = session.Project().CurrentStore();
    if (store == nullptr) return {};
    try {
        Touches touches;
        for (const UndoStep* step = snapshot.log.Top(); step != nullptr; step = step->below)
            step->Touch(snapshot.graph, touches);
        return store->Commit({snapshot.name, snapshot.graph, touches, session.client->name});
    } catch (const std::bad_alloc&) {
        return EErrorCode::OutOfMemory;
    }
}

}  // namespace Orin::DesignDb
