#include "cli/edit_design.h"

#include <iostream>

#include "cli/console.h"
#include "cli/design_lookup.h"

namespace Quill::Cli {

void AddEditOptions(CLI::App& command, EditOptions& options) {
    command.add_option("DESIGN", options.design, "design file (.qdb or JSON)")->required();
    command.add_flag("--dry-run", options.dryRun, "say what would be done, and do nothing");
}

ExitCode EditDesign(const EditOptions& options,
                    const std::function<std::vector<std::string>(const OpenDesign&)>& edit) {
    if (IsSchematicPath(options.design))
        throw CommandError(
            options.design +
            ": A schematic is not edited; \"quill import\" writes it down as a design file, which can be");
    const OpenDesign design = ReadDesign(options.design, !options.dryRun);
    Need(design.snapshot->BeginTransaction(Orin::ETransactionType::Edit));
    const std::vector<std::string> sentences = edit(design);
    Need(options.dryRun ? design.snapshot->RollbackTransaction() : design.snapshot->CommitTransaction());
    if (!options.dryRun && !sentences.empty() && !design.isStored) WriteDesign(options.design, design);
    if (sentences.empty()) std::cout << "There is nothing to do.\n";
    for (const std::string& sentence : sentences)
        std::cout << (options.dryRun ? "Dry run: " : "") << Printable(sentence) << '\n';
    return Done;
}

}  // namespace Quill::Cli
