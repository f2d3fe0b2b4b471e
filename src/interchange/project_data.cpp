#include "interchange/project_data.h"

#include "platform/interface_manager.h"
#include "platform/project_data.h"

namespace Quill::Interchange {

namespace {

std::string Read(const Orin::ISnapshot& snapshot, const char* name) {
    Orin::String value;
    return snapshot.GetAttribute(name, value) ? std::string(value.View()) : std::string();
}

class Settings final : public IProjectSettings {
public:
    explicit Settings(const Orin::ISnapshot& snapshot) : m_netLimiter(Read(snapshot, NetLimiterAttribute)) {
        const std::string lines = Read(snapshot, BusContentsAttribute);
        for (std::string_view rest = lines; !rest.empty();) {
            const std::string_view line = rest.substr(0, rest.find('\n'));
            rest.remove_prefix(std::min(line.size() + 1, rest.size()));
            const std::size_t tab = line.find('\t');
            if (tab != line.npos) m_busContents.emplace(line.substr(0, tab), line.substr(tab + 1));
        }
    }

    std::string getNetLimiter() const override { return m_netLimiter; }
    const std::map<std::string, std::string>& getBusContents() const override { return m_busContents; }

private:
    const std::string m_netLimiter;
    std::map<std::string, std::string> m_busContents;
};

class ProjectData final : public IProjectData {
public:
    explicit ProjectData(const Orin::ISnapshot& snapshot) : m_settings(snapshot) {}
    const IProjectSettings* getSettings() const override { return &m_settings; }

private:
    const Settings m_settings;
};

}  // namespace

std::vector<Orin::Attribute> ProjectAttributes(std::string_view netLimiter,
                                               const std::map<std::string, std::string>& busContents) {
    std::string lines;
    for (const auto& [name, contents] : busContents)
        if (name.find_first_of("\t\n") == name.npos && contents.find('\n') == contents.npos)
            lines.append(name).append(1, '\t').append(contents).append(1, '\n');
    std::vector<Orin::Attribute> attributes{{NetLimiterAttribute, Orin::String(netLimiter)}};
    if (!lines.empty()) attributes.push_back({BusContentsAttribute, Orin::String(std::string_view(lines))});
    return attributes;
}

class ProjectDataService::Factory final : public InterfaceFactory {
public:
    explicit Factory(const Orin::ContainerT<const Orin::ISnapshot>& snapshot)
        : m_snapshot(snapshot), m_before(InterfaceManager::instance().getFactory(IProjectData::InterfaceName)) {
        InterfaceManager::instance().registerInterface(IProjectData::InterfaceName, this);
    }
    ~Factory() override {
        InterfaceManager& manager = InterfaceManager::instance();
        if (manager.unRegisterInterface(IProjectData::InterfaceName, this) && m_before != nullptr)
            manager.registerInterface(IProjectData::InterfaceName, m_before);
    }

    Interface* internalCreate() override { return m_snapshot ? new ProjectData(*m_snapshot) : nullptr; }
    void internalRelease(Interface* object) override { delete object; }

private:
    const Orin::ContainerT<const Orin::ISnapshot> m_snapshot;
    InterfaceFactory* const m_before;
};

ProjectDataService::ProjectDataService(const Orin::ContainerT<const Orin::ISnapshot>& snapshot)
    : m_factory(std::make_unique<Factory>(snapshot)) {}

ProjectDataService::~ProjectDataService() = default;

}  // namespace Quill::Interchange
