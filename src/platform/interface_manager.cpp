#include "platform/interface_manager.h"

#include <map>
#include <new>
#include <string>

#include "platform/annotated_mutex.h"
#include "platform/project_data.h"

namespace Quill {

Interface::~Interface() = default;
InterfaceFactory::~InterfaceFactory() = default;
IProjectSettings::~IProjectSettings() = default;

const char* IProjectData::interfaceName() const noexcept {
    return InterfaceName;
}

class InterfaceManager::Impl {
public:
    mutable Platform::Mutex mutex;
    std::map<std::string, InterfaceFactory*, std::less<>> factories QUILL_GUARDED_BY(mutex);
};

InterfaceManager::InterfaceManager() : m_impl(std::make_unique<Impl>()) {}

InterfaceManager& InterfaceManager::instance() {
    // Built in place and never destroyed: factories take themselves out in static destructors, which may run after
    // those of this library.
    alignas(InterfaceManager) static unsigned char storage[sizeof(InterfaceManager)];
    static InterfaceManager* const manager = ::new (static_cast<void*>(storage)) InterfaceManager;
    return *manager;
}

bool InterfaceManager::registerInterface(std::string_view name, InterfaceFactory* factory) {
    if (name.empty() || factory == nullptr) return false;
    const Platform::MutexLock lock(m_impl->mutex);
    m_impl->factories.insert_or_assign(std::string(name), factory);
    return true;
}

bool InterfaceManager::unRegisterInterface(std::string_view name) {
    const Platform::MutexLock lock(m_impl->mutex);
    const auto found = m_impl->factories.find(name);
    if (found == m_impl->factories.end()) return false;
    m_impl->factories.erase(found);
    return true;
}

bool InterfaceManager::unRegisterInterface(std::string_view name, const InterfaceFactory* factory) {
    const Platform::MutexLock lock(m_impl->mutex);
    const auto found = m_impl->factories.find(name);
    if (found == m_impl->factories.end() || found->second != factory) return false;
    m_impl->factories.erase(found);
    return true;
}

InterfaceFactory* InterfaceManager::getFactory(std::string_view name) const {
    const Platform::MutexLock lock(m_impl->mutex);
    const auto found = m_impl->factories.find(name);
    return found != m_impl->factories.end() ? found->second : nullptr;
}

}  // namespace Quill
