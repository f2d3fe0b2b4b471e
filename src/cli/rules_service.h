// Tells the libraries by which rules to read labels, where no design does.
#pragma once

#include <memory>
#include <string>

#include "cli/bus_members.h"

namespace Quill::Cli {

// The service "IProjectData" (platform/project_data.h) with these rules, from construction to destruction. No design is
// open meanwhile.
class RulesService {
public:
    explicit RulesService(const LabelRules& rules);
    ~RulesService();
    RulesService(const RulesService&) = delete;
    RulesService& operator=(const RulesService&) = delete;

private:
    class Factory;
    std::unique_ptr<Factory> m_factory;
};

// "", "[]" or "()"; "?" for an unknown limiter.
std::string LimiterText(int limiter);

}  // namespace Quill::Cli
