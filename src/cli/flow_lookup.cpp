#include "cli/flow_lookup.h"

#include "cli/command.h"

namespace Quill::Cli {

const CFlow& FindFlow(const std::string& nameOrType) {
    const CFlowCollection& flows = CFlowCollection::Instance();
    if (const CFlow* const flow = flows.GetFlowByName(nameOrType)) return *flow;
    if (const CFlow* const flow = flows.GetFlowByType(nameOrType)) return *flow;
    throw CommandError("There is no flow called " + nameOrType + "; \"quill flows\" lists them");
}

}  // namespace Quill::Cli
