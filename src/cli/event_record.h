// Events that were heard, and the files that keep them. docs/edit-script.md describes the form.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

#include "cli/events.h"
#include "cli/json.h"

namespace Quill::Cli {

struct HeardEvent {
    Event event;
    std::size_t line = 0;  // of the script, that raised it
    std::chrono::microseconds waited{};
};

// The form of `quill events --json`; without the time where not `withTimes`.
Json AsJson(const HeardEvent& event, bool withTimes);

// Puts a record of the events in the place of `path`. Throws a CommandError as ReplaceFile does.
void WriteRecord(const std::string& path, const std::string& design, const std::vector<HeardEvent>& events);

// Calls `next` with each event of the record. Throws a CommandError that names the file and the line, where that one is
// wrong or `next` throws one.
void ReadRecord(const std::string& path, const std::function<void(const HeardEvent&)>& next);

}  // namespace Quill::Cli
