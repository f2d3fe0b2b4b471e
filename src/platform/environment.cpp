#include "platform/environment.h"

#include <cstdlib>
#include <string_view>
#include <utility>

#include "platform/detail/hook.h"
#include "platform/detail/immortal.h"

namespace zolt::env {

namespace {

#ifdef _WIN32
constexpr char ListSeparator = ';';
#else
constexpr char ListSeparator = ':';
#endif

using ProviderHook = Quill::Platform::Hook<WDIRsProvider>;

ProviderHook& Provider() {
    static Quill::Platform::Immortal<ProviderHook> hook;
    return hook.Get();
}

std::vector<std::string> SplitList(std::string_view list) {
    std::vector<std::string> elements;
    while (!list.empty()) {
        const std::string_view element = list.substr(0, list.find(ListSeparator));
        if (!element.empty()) elements.emplace_back(element);
        list.remove_prefix(element.size() < list.size() ? element.size() + 1 : element.size());
    }
    return elements;
}

}  // namespace

bool GetWDIRs(std::vector<std::string>& dirs) {
    // The provider gets a list of its own: one that fails half-way or throws leaves the caller's as it was.
    std::vector<std::string> found;
    if (const auto provider = Provider().Get()) {
        if (!(*provider)(found)) return false;
    } else {
        found = SplitList(GetVariable("QUILL_WDIRS"));
    }
    dirs = std::move(found);
    return true;
}

void SetWDIRsProvider(WDIRsProvider provider) {
    Provider().Set(std::move(provider));
}

std::string GetVariable(const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

}  // namespace zolt::env
