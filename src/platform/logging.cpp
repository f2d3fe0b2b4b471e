#include "platform/logging.h"

#include <cstdio>
#include <utility>

#include "platform/detail/hook.h"
#include "platform/detail/immortal.h"

namespace zolt {

namespace {

using SinkHook = Quill::Platform::Hook<Logging::Sink>;

SinkHook& InstalledSink() {
    static Quill::Platform::Immortal<SinkHook> hook;
    return hook.Get();
}

bool GiveToSink(const std::string& message) noexcept {
    try {
        const auto sink = InstalledSink().Get();
        if (sink == nullptr) return false;
        (*sink)(message);
        return true;
    } catch (...) {
        return false;
    }
}

}  // namespace

void Logging::FatalError(const std::string& message) noexcept {
    // One call of the stream, so that lines of several threads do not mix.
    if (!GiveToSink(message)) std::fprintf(stderr, "%s\n", message.c_str());
}

void Logging::SetSink(Sink sink) {
    InstalledSink().Set(std::move(sink));
}

}  // namespace zolt
