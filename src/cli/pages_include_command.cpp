// quill pages include: take away the marks that exclude pages from printing.
#include "cli/command.h"
#include "cli/page_exclusion.h"

namespace Quill::Cli {

void AddPagesIncludeCommand(CommandLine& line) {
    const auto options = std::make_shared<ExclusionOptions>();
    const Syntax command = line.Add("pages include", "Take away the marks that exclude pages from printing",
                                    "The mark stands on the sheet and so holds at all its places. PAGE is a number by\n"
                                    "\"quill pages\" in its default order, or the name of a page.\n"
                                    "\n"
                                    "Examples:\n"
                                    "  quill pages include board.json 7 12 --dry-run",
                                    [options] { return EditExclusion(*options, false); });
    AddExclusionOptions(command, *options);
}

}  // namespace Quill::Cli
