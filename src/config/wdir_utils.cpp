#include "config/wdir_utils.h"

#include <algorithm>
#include <utility>

#include "config/detail/installation.h"
#include "config/flow.h"
#include "platform/environment.h"

namespace Quill {

bool WdirUtils::GetWDIRs(std::vector<std::string>& dirs) {
    return zolt::env::GetWDIRs(dirs);
}

bool WdirUtils::GetWDIRs(std::vector<std::string>& dirs, const std::string& flowType) {
    std::vector<std::string> platformDirs;
    if (!zolt::env::GetWDIRs(platformDirs)) return false;

    std::vector<std::string> tail;
    if (const CFlow* flow = CFlowCollection::Instance().GetFlowByType(flowType)) {
        tail.push_back(flow->GetTemplateLocation());
    }
    const std::string root = ConfigDetail::NormalisedInstallationRoot();
    if (!root.empty()) tail.push_back(root + "/standard");

    std::vector<std::string> result;
    for (std::string& dir : platformDirs) {
        if (std::find(tail.begin(), tail.end(), dir) == tail.end()) result.push_back(std::move(dir));
    }
    result.insert(result.end(), tail.begin(), tail.end());
    dirs = std::move(result);
    return true;
}

}  // namespace Quill
