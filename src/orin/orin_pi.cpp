#include "orin/orin_pi.h"

#include <map>
#include <memory>
#include <mutex>
#include <new>
#include <string>
#include <vector>

#include "orin/observers.h"

namespace Orin {

namespace {

// Built by its first user and never destroyed, so that projects may come and go in static initialisers and
// destructors.
struct Directory {
    std::mutex mutex;
    std::map<std::string, Project*, std::less<>> projects;

    static Directory& Instance() {
        static Directory* const directory = new Directory;
        return *directory;
    }
};

}  // namespace

Result Project::Enter(const String& name, Project& project) {
    Directory& directory = Directory::Instance();
    const std::lock_guard lock(directory.mutex);
    try {
        const bool entered = directory.projects.emplace(name.View(), &project).second;
        return entered ? Result() : Result(EErrorCode::AlreadyExists, name);
    } catch (const std::bad_alloc&) {
        return EErrorCode::OutOfMemory;
    }
}

void Project::Remove(const String& name, const Project& project) noexcept {
    Directory& directory = Directory::Instance();
    const std::lock_guard lock(directory.mutex);
    const auto found = directory.projects.find(name.View());
    if (found != directory.projects.end() && found->second == &project) directory.projects.erase(found);
}

RefPtr<Project> Project::Find(const String& name) {
    Directory& directory = Directory::Instance();
    const std::lock_guard lock(directory.mutex);
    const auto found = directory.projects.find(name.View());
    // A project takes itself out when its last reference is gone; until it has, it must not be revived.
    if (found == directory.projects.end() || !found->second->TryAddReference()) return {};
    return RefPtr<Project>::Adopt(found->second);
}

class OrinPI::Impl {
public:
    RefPtr<const Connection> own;  // empty when the object was made unconnected
    std::vector<RefPtr<const Connection>> subClients;

    const Connection* Current() const noexcept { return subClients.empty() ? own.Get() : subClients.back().Get(); }
};

OrinPI::OrinPI() noexcept = default;

OrinPI::OrinPI(RefPtr<const Connection> connection) : m_impl(new Impl) {
    m_impl->own = std::move(connection);
}

OrinPI::~OrinPI() {
    if (m_impl == nullptr) return;
    while (DetachSubClient()) {
    }
    if (m_impl->own) m_impl->own->Close();
}

Result OrinPI::GetSnapshotByName(ContainerT<const ISnapshot>& snapshot, const String& name) {
    const Connection* const current = m_impl != nullptr ? m_impl->Current() : nullptr;
    return current != nullptr ? current->GetSnapshotByName(snapshot, name) : Result(EErrorCode::NotConnected);
}

Result OrinPI::AddClientObserver(ClientObserver* observer) {
    const Connection* const current = m_impl != nullptr ? m_impl->Current() : nullptr;
    return current != nullptr ? current->AddClientObserver(observer) : Result(EErrorCode::NotConnected);
}

Result OrinPI::RemoveClientObserver(ClientObserver* observer) {
    const Connection* const current = m_impl != nullptr ? m_impl->Current() : nullptr;
    return current != nullptr ? current->RemoveClientObserver(observer) : Result(EErrorCode::NotConnected);
}

Result OrinPI::AttachSubClient(const String& project, const String& client) {
    const RefPtr<Project> found = Project::Find(project);
    if (!found) return Result(EErrorCode::UnknownProject, project);
    // The room comes first: a client that is attached is held, so that it is closed one day.
    try {
        if (m_impl == nullptr) m_impl = std::make_unique<Impl>();
        m_impl->subClients.reserve(m_impl->subClients.size() + 1);
    } catch (const std::bad_alloc&) {
        return EErrorCode::OutOfMemory;
    }
    RefPtr<const Connection> connection;
    Result result = found->Attach(connection, client);
    if (result) m_impl->subClients.push_back(std::move(connection));
    return result;
}

Result OrinPI::DetachSubClient() {
    if (m_impl == nullptr || m_impl->subClients.empty()) return EErrorCode::NotConnected;
    m_impl->subClients.back()->Close();
    m_impl->subClients.pop_back();
    return {};
}

}  // namespace Orin
