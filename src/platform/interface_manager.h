// The process-wide directory of service factories.
#pragma once

#include <memory>
#include <string_view>

#include "platform/interface.h"

namespace Quill {

// Maps interface names to factories. Names are compared exactly. All operations may be called from any thread and from
// any static initialiser or destructor of any translation unit: the directory is built by its first user and lives
// until the process ends. No lock is held while a factory is at work; the manager itself never calls one.
class QUILLINTERFACEMANAGER_EXPORT InterfaceManager {
public:
    static InterfaceManager& instance();

    // Enters `factory` under `name`; borrows it until it is unregistered. A later registration of the same name takes
    // the place of the earlier one. False, with nothing changed, when the name is empty or the factory null.
    bool registerInterface(std::string_view name, InterfaceFactory* factory);

    // Takes the name out. False when nothing is registered under it.
    bool unRegisterInterface(std::string_view name);

    // Takes the name out only when it stands for `factory`, so that the owner of a factory that has been replaced does
    // not take out its successor. False when it does not.
    bool unRegisterInterface(std::string_view name, const InterfaceFactory* factory);

    // The factory registered under `name`, or null. It stays usable until its owner unregisters it.
    InterfaceFactory* getFactory(std::string_view name) const;

    InterfaceManager(const InterfaceManager&) = delete;
    InterfaceManager& operator=(const InterfaceManager&) = delete;
    ~InterfaceManager() = delete;  // it outlives every static object

private:
    class Impl;
    InterfaceManager();
    std::unique_ptr<Impl> m_impl;
};

}  // namespace Quill
