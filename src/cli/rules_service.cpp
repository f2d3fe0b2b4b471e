#include "cli/rules_service.h"

#include "platform/interface_manager.h"
#include "platform/project_data.h"

namespace Quill::Cli {

namespace {

class Settings final : public IProjectSettings {
public:
    explicit Settings(const LabelRules& rules) : m_rules(rules) {}
    std::string getNetLimiter() const override { return LimiterText(m_rules.limiter); }
    const std::map<std::string, std::string>& getBusContents() const override { return m_rules.contents; }

private:
    const LabelRules m_rules;
};

class Data final : public IProjectData {
public:
    explicit Data(const LabelRules& rules) : m_settings(rules) {}
    const IProjectSettings* getSettings() const override { return &m_settings; }

private:
    const Settings m_settings;
};

}  // namespace

// Always gives the same object.
class RulesService::Factory final : public InterfaceFactory {
public:
    explicit Factory(const LabelRules& rules) : m_data(rules) {
        InterfaceManager::instance().registerInterface(IProjectData::InterfaceName, this);
    }
    Factory(const Factory&) = delete;
    Factory& operator=(const Factory&) = delete;
    ~Factory() override { InterfaceManager::instance().unRegisterInterface(IProjectData::InterfaceName, this); }

    Interface* internalCreate() override { return &m_data; }
    void internalRelease(Interface*) override {}

private:
    Data m_data;
};

RulesService::RulesService(const LabelRules& rules) : m_factory(std::make_unique<Factory>(rules)) {}
RulesService::~RulesService() = default;

std::string LimiterText(int limiter) {
    switch (limiter) {
        case BusContents::NoLimiter:
            return "";
        case BusContents::SquareLimiter:
            return "[]";
        case BusContents::RoundLimiter:
            return "()";
        default:
            return "?";
    }
}

}  // namespace Quill::Cli
