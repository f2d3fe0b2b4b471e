#include "cli/edit_design.h"

#include "cli/console.h"
#include "cli/design_lookup.h"
#include "cli/json.h"

namespace Quill::Cli {

void AddEditOptions(const Syntax& command, EditOptions& options) {
    command.Option("DESIGN", options.design, "design file (.qdb or JSON)").Required();
    command.Flag("--dry-run", options.dryRun, "say what would be done, and do nothing");
    AddJsonFlag(command, options.json);
}

ExitCode EditDesign(const EditOptions& options, const EditAction& edit) {
    if (IsSchematicPath(options.design))
        throw CommandError(
            options.design +
            ": A schematic is not edited; \"quill import\" writes it down as a design file, which can be");
    return EditDesign(options, ReadDesign(options.design, !options.dryRun), edit);
}

ExitCode EditDesign(const EditOptions& options, const OpenDesign& design, const EditAction& edit) {
    Need(design.snapshot->BeginTransaction(Orin::ETransactionType::Edit));
    const Changes changes = edit(design);
    Need(options.dryRun ? design.snapshot->RollbackTransaction() : design.snapshot->CommitTransaction());
    if (!options.dryRun && !changes.sentences.empty() && !design.isStored) WriteDesign(options.design, design);
    return PrintChanges(options, changes);
}

ExitCode PrintChanges(const EditOptions& options, const Changes& changes) {
    if (options.json) {
        Json answer{{"dryRun", options.dryRun}, {"changes", changes.sentences}};
        answer.AddMembersOf(changes.fields);
        PrintJson(answer);
        return Done;
    }
    if (changes.sentences.empty()) PrintText("There is nothing to do.\n");
    for (const std::string& sentence : changes.sentences)
        PrintLines({(options.dryRun ? "Dry run: " : "") + sentence});
    return Done;
}

}  // namespace Quill::Cli
