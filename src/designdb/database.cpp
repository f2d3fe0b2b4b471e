#include "designdb/database.h"

#include "designdb/detail/project.h"

namespace Orin::DesignDb {

Database::Database() noexcept = default;
Database::Database(const Database&) noexcept = default;
Database::Database(Database&&) noexcept = default;
Database& Database::operator=(Database other) noexcept {
    m_core = std::move(other.m_core);
    return *this;
}
Database::~Database() = default;

Result Database::Create(Database& database, const String& project) {
    if (project.IsEmpty()) return EErrorCode::InvalidArgument;
    try {
        RefPtr<ProjectCore> core(new ProjectCore(project));
        if (Result entered = Project::Enter(project, *core); !entered) return entered;
        database.m_core = std::move(core);
        return {};
    } catch (const std::bad_alloc&) {
        return EErrorCode::OutOfMemory;
    }
}

Result Database::Open(Database& database, const String& project) {
    RefPtr<Project> found = Project::Find(project);
    // A project of another implementation of the interface may bear the name.
    auto* const core = dynamic_cast<ProjectCore*>(found.Get());
    if (core == nullptr) return Result(EErrorCode::UnknownProject, project);
    database.m_core = RefPtr<ProjectCore>(core);
    return {};
}

Database::operator bool() const noexcept {
    return static_cast<bool>(m_core);
}

String Database::ProjectName() const {
    return m_core ? m_core->name : String();
}

std::unique_ptr<OrinPI> Database::Connect(const String& client) const {
    if (!m_core) return nullptr;
    RefPtr<const Connection> connection;
    if (!m_core->Connect(connection, client)) return nullptr;
    return std::make_unique<OrinPI>(std::move(connection));
}

Result Database::ListSnapshots(ListT<String>& names) const {
    if (!m_core) return EErrorCode::NotConnected;
    try {
        names = m_core->SnapshotNames();
        return {};
    } catch (const std::bad_alloc&) {
        return EErrorCode::OutOfMemory;
    }
}

Result Database::AddSnapshot(const String& name) const {
    if (!m_core) return EErrorCode::NotConnected;
    if (name.IsEmpty()) return EErrorCode::InvalidArgument;
    try {
        return m_core->Enter(RefPtr<Snapshot>(new Snapshot(name)));
    } catch (const std::bad_alloc&) {
        return EErrorCode::OutOfMemory;
    }
}

Result Database::Notify(const std::function<void(ClientObserver&)>& call) const {
    if (!m_core) return EErrorCode::NotConnected;
    m_core->Notify(nullptr, call);
    return {};
}

Result Database::RemoveSnapshot(const String& name) const {
    return m_core ? m_core->RemoveSnapshot(name) : Result(EErrorCode::NotConnected);
}

}  // namespace Orin::DesignDb
