// quill pages exclude: exclude pages from printing, with everything below them.
#include "cli/command.h"
#include "cli/page_exclusion.h"

namespace Quill::Cli {

void AddPagesExcludeCommand(CommandLine& line) {
    const auto options = std::make_shared<ExclusionOptions>();
    const Syntax command = line.Add("pages exclude", "Exclude pages from printing, with everything below them",
                                    "The mark stands on the sheet and so holds at all its places. PAGE is a number by\n"
                                    "\"quill pages\" in its default order, or the name of a page.\n"
                                    "\n"
                                    "Examples:\n"
                                    "  quill pages exclude board.json 7 12 --dry-run",
                                    [options] { return EditExclusion(*options, true); });
    AddExclusionOptions(command, *options);
}

}  // namespace Quill::Cli
