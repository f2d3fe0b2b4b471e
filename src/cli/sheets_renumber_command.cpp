// quill sheets renumber: names by a numbering for the sheets of a block.
#include <set>

#include <fmt/format.h>

#include "cli/command.h"
#include "cli/design_lookup.h"
#include "cli/sheet_order.h"
#include "text/number.h"

namespace Quill::Cli {

namespace {

struct SheetsRenumberOptions {
    SheetEditOptions edit;
    std::vector<std::string> sheets;
    SheetRange::NumberingInfo numbering;
};

// The name of the sheet at `place` by the numbering, in 64 bits, so that no number is out of range unseen.
std::string NewName(const SheetRange::NumberingInfo& numbering, std::size_t place) {
    const std::int64_t number = numbering.start + static_cast<std::int64_t>(place) * numbering.step;
    if (number > std::numeric_limits<int>::max() || number < std::numeric_limits<int>::min())
        throw CommandError("The numbers become too large");
    return numbering.prefix + Text::Render(number);
}

// Names the clash and ends the command, if there is one.
void RefuseClashes(const SheetRange& range, const std::vector<SheetRange::Sheet>& sheets,
                   const SheetRange::NumberingInfo& numbering) {
    std::set<Orin::Index> renamed;
    for (const SheetRange::Sheet& sheet : sheets)
        renamed.insert(IndexOf(*sheet));
    std::set<std::string> taken;
    for (SheetRange::Iterator it = range.Begin(), end = range.End(); it != end; ++it)
        if (renamed.count(IndexOf(**it)) == 0) taken.insert(NameOf(**it));
    std::string clashes;
    for (std::size_t i = 0; i < sheets.size(); ++i) {
        const std::string name = NewName(numbering, i);
        if (!taken.insert(name).second) clashes += (clashes.empty() ? "" : ", ") + name;
    }
    if (!clashes.empty()) throw CommandError("Names would be taken twice: " + clashes);
}

ExitCode RunSheetsRenumber(const SheetsRenumberOptions& options) {
    return EditDesign(options.edit.edit, [&options](const OpenDesign& design) {
        SheetRange range = SheetsOf(design, options.edit.block);
        std::vector<SheetRange::Sheet> sheets = SheetsIn(range, options.sheets);
        if (sheets.empty())
            for (SheetRange::Iterator it = range.Begin(), end = range.End(); it != end; ++it)
                sheets.push_back(*it);
        range.Sort(sheets);
        RefuseClashes(range, sheets, options.numbering);
        std::vector<std::string> sentences;
        for (std::size_t i = 0; i < sheets.size(); ++i) {
            const std::string before = NameOf(*sheets[i]), after = NewName(options.numbering, i);
            if (before != after) sentences.push_back(fmt::format("Sheet {} is called {}", before, after));
        }
        if (!sentences.empty()) range.Renumber(sheets, options.numbering);
        return sentences;
    });
}

}  // namespace

void AddSheetsRenumberCommand(CommandLine& line) {
    const auto options = std::make_shared<SheetsRenumberOptions>();
    const Syntax command = line.Add(
        "sheets renumber", "Name the sheets of a block by a numbering",
        "All sheets, or the ones named, in the order of the block. Refused, with the names, when one would be\n"
        "taken twice.\n"
        "\n"
        "Examples:\n"
        "  quill sheets renumber board.json controller\n"
        "  quill sheets renumber board.json controller 3 TEST --prefix A --start 10 --step 10",
        [options] { return RunSheetsRenumber(*options); });
    AddSheetEditOptions(command, options->edit);
    command.Option("SHEET", options->sheets, "names of the sheets; all of the block when there are none");
    command.Option("--prefix", options->numbering.prefix, "what stands before the number");
    command.Option("--start", options->numbering.start, "first number; by default 1");
    command.Option("--step", options->numbering.step, "from one number to the next; by default 1");
}

}  // namespace Quill::Cli
