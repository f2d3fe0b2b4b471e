#include "cli/sheet_order.h"

#include "cli/design_lookup.h"

namespace Quill::Cli {

void AddSheetEditOptions(const Syntax& command, SheetEditOptions& options) {
    AddEditOptions(command, options.edit);
    command.Option("BLOCK", options.block, "name of the block").Required();
}

void AddSheetStepOptions(const Syntax& command, SheetStepOptions& options) {
    AddSheetEditOptions(command, options.edit);
    command.Option("SHEET", options.sheet, "name of the sheet").Required();
}

SheetRange SheetsOf(const OpenDesign& design, const std::string& block) {
    SheetRange range;
    range.Init(FindBlock(*design.snapshot, block));
    return range;
}

SheetRange::Sheet SheetIn(const SheetRange& range, const std::string& name) {
    SheetRange::Sheet found;
    for (SheetRange::Iterator it = range.Begin(), end = range.End(); it != end; ++it) {
        if (NameOf(**it) != name) continue;
        if (found) throw CommandError("There are several sheets called " + name);
        found = *it;
    }
    if (!found) throw CommandError("There is no sheet called " + name);
    return found;
}

std::vector<SheetRange::Sheet> SheetsIn(const SheetRange& range, const std::vector<std::string>& names) {
    std::vector<SheetRange::Sheet> sheets;
    sheets.reserve(names.size());
    for (const std::string& name : names)
        sheets.push_back(SheetIn(range, name));
    return sheets;
}

std::string OrderSentence(const SheetRange& range, const std::string& block) {
    std::string sentence = "The sheets of " + block + " are in this order:";
    const char* separator = " ";
    for (SheetRange::Iterator it = range.Begin(), end = range.End(); it != end; ++it) {
        sentence += separator + NameOf(**it);
        separator = ", ";
    }
    return sentence;
}

ExitCode EditOrder(const SheetEditOptions& options, const std::function<void(SheetRange&)>& change) {
    return EditDesign(options.edit, [&](const OpenDesign& design) {
        SheetRange range = SheetsOf(design, options.block);
        const std::string before = OrderSentence(range, options.block);
        change(range);
        const std::string after = OrderSentence(range, options.block);
        return after != before ? std::vector<std::string>{after} : std::vector<std::string>();
    });
}

ExitCode StepSheet(const SheetStepOptions& options, bool (SheetRange::*step)(SheetRange::Sheet)) {
    return EditOrder(options.edit, [&](SheetRange& range) { (range.*step)(SheetIn(range, options.sheet)); });
}

}  // namespace Quill::Cli
