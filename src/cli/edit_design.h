// Commands that change a design.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "cli/command.h"
#include "cli/json.h"
#include "cli/open_design.h"

namespace Quill::Cli {

struct EditOptions {
    std::string design;
    bool dryRun = false;
    bool json = false;
};

// Adds DESIGN, --dry-run and --json.
void AddEditOptions(const Syntax& command, EditOptions& options);

// What an edit did: a sentence for each thing, and what a program wants to know besides, as members of a JSON object.
struct Changes {
    Changes(std::vector<std::string> said, Json known = Json::EmptyObject())
        : sentences(std::move(said)), fields(std::move(known)) {}

    std::vector<std::string> sentences;
    Json fields;
};

using EditAction = std::function<Changes(const OpenDesign&)>;

// Opens the design file, lets `edit` work on it in one transaction, puts the changed design in the file's place, and
// prints the answer. With --dry-run, and when there are no sentences, the file is not touched. Throws a CommandError,
// with the file as it was, when anything fails, and for a schematic, which is not to be edited.
ExitCode EditDesign(const EditOptions& options, const EditAction& edit);

// The same for a design that is open already: for reading with --dry-run, else to edit.
ExitCode EditDesign(const EditOptions& options, const OpenDesign& design, const EditAction& edit);

// Prints the answer of an edit: its sentences, or in JSON an object.
ExitCode PrintChanges(const EditOptions& options, const Changes& changes);

}  // namespace Quill::Cli
