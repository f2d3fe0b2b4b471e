// What an application tells the libraries about the open project: the service "IProjectData".
#pragma once

#include <map>
#include <string>

#include "platform/interface.h"

namespace Quill {

// Settings of one project. Implemented by the application; read on the thread that asks.
class QUILLINTERFACEMANAGER_EXPORT IProjectSettings {
public:
    virtual ~IProjectSettings();

    // The brackets of bus indexes: "" (none), "[]" or "()".
    virtual std::string getNetLimiter() const = 0;

    // Bus name to its contents, a comma-separated list of net names and further bus names.
    virtual const std::map<std::string, std::string>& getBusContents() const = 0;

    IProjectSettings(const IProjectSettings&) = delete;
    IProjectSettings& operator=(const IProjectSettings&) = delete;

protected:
    IProjectSettings() noexcept = default;
};

// The project-data service. An application registers a factory of it under InterfaceName.
class QUILLINTERFACEMANAGER_EXPORT IProjectData : public Interface {
public:
    static constexpr const char* InterfaceName = "IProjectData";

    const char* interfaceName() const noexcept override;

    // The settings of the open project, owned by this object; null when no project is open.
    virtual const IProjectSettings* getSettings() const = 0;
};

}  // namespace Quill
