#include "designdb/testing/fault_injector.h"

#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "designdb/detail/faults.h"

namespace Orin::DesignDb {

std::atomic<bool> g_faultsWatched{false};

namespace {

struct Rule {
    Testing::Fault fault;
    unsigned matched = 0;
};

struct State {
    std::mutex mutex;
    std::vector<Rule> rules;
    std::map<std::string, unsigned, std::less<>> calls;
    unsigned all = 0;
    std::vector<std::string> failed;
};

State& TheState() {
    static State state;
    return state;
}

}  // namespace

int CheckFault(const char* operation, const Index& object) {
    State& state = TheState();
    const std::lock_guard lock(state.mutex);
    const bool ofStore = std::string_view(operation).starts_with("Store::");
    if (!ofStore) ++state.all;
    ++state.calls[operation];
    int code = 0;
    for (Rule& rule : state.rules) {
        if (rule.fault.operation.empty() ? ofStore : rule.fault.operation != operation) continue;
        if (!rule.fault.object.IsEmpty() && rule.fault.object != object) continue;
        ++rule.matched;
        // The first rule decides; the others count the call all the same.
        if (code == 0 && (rule.matched == rule.fault.call || (rule.fault.persistent && rule.matched > rule.fault.call)))
            code = static_cast<int>(rule.fault.code);
    }
    if (code != 0) state.failed.emplace_back(operation);
    return code;
}

namespace Testing {

FaultInjector::FaultInjector() {
    ResetCounts();
    g_faultsWatched.store(true);
}

FaultInjector::~FaultInjector() {
    g_faultsWatched.store(false);
    Clear();
}

void FaultInjector::Inject(const Fault& fault) {
    State& state = TheState();
    const std::lock_guard lock(state.mutex);
    state.rules.push_back({fault, 0});
}

void FaultInjector::Clear() {
    State& state = TheState();
    const std::lock_guard lock(state.mutex);
    state.rules.clear();
}

unsigned FaultInjector::Calls(std::string_view operation) const {
    State& state = TheState();
    const std::lock_guard lock(state.mutex);
    if (operation.empty()) return state.all;
    const auto found = state.calls.find(operation);
    return found != state.calls.end() ? found->second : 0;
}

void FaultInjector::ResetCounts() {
    State& state = TheState();
    const std::lock_guard lock(state.mutex);
    state.calls.clear();
    state.all = 0;
    state.failed.clear();
}

std::vector<std::string> FaultInjector::Failed() const {
    State& state = TheState();
    const std::lock_guard lock(state.mutex);
    return state.failed;
}

}  // namespace Testing

}  // namespace Orin::DesignDb
