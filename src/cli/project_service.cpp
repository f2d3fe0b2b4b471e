#include "cli/project_service.h"

#include <string_view>

#include "cli/design_lookup.h"
#include "interchange/project_attributes.h"
#include "platform/interface_manager.h"
#include "platform/project_data.h"

namespace Quill::Cli {

namespace {

namespace Attributes = Interchange::ProjectAttributes;

class Settings final : public IProjectSettings {
public:
    std::string getNetLimiter() const override { return netLimiter; }
    const std::map<std::string, std::string>& getBusContents() const override { return busContents; }

    std::string netLimiter = "[]";
    std::map<std::string, std::string> busContents;
};

class Data final : public IProjectData {
public:
    const IProjectSettings* getSettings() const override { return &settings; }

    Settings settings;
};

}  // namespace

// Always gives the same object.
class ProjectService::Impl final : public InterfaceFactory {
public:
    Interface* internalCreate() override { return &data; }
    void internalRelease(Interface*) override {}

    Data data;
};

ProjectService::ProjectService(const Orin::ISnapshot& design) : m_impl(std::make_unique<Impl>()) {
    Settings& settings = m_impl->data.settings;
    Orin::ListAttribute attributes;
    Need(design.GetAttributes(attributes));
    for (const Orin::Attribute& attribute : std::as_const(attributes)) {
        constexpr std::string_view Bus = Attributes::BusContents;
        const std::string_view name = attribute.name.View();
        if (name == Attributes::NetLimiter) settings.netLimiter = attribute.value.View();
        if (name.substr(0, Bus.size()) == Bus)
            settings.busContents.emplace(name.substr(Bus.size()), attribute.value.View());
    }
    InterfaceManager::instance().registerInterface(IProjectData::InterfaceName, m_impl.get());
}

ProjectService::~ProjectService() {
    InterfaceManager::instance().unRegisterInterface(IProjectData::InterfaceName, m_impl.get());
}

const std::string& ProjectService::NetLimiter() const noexcept {
    return m_impl->data.settings.netLimiter;
}

const std::map<std::string, std::string>& ProjectService::BusContents() const noexcept {
    return m_impl->data.settings.busContents;
}

}  // namespace Quill::Cli
