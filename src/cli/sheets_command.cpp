// quill sheets: the sheets of a block in the user's order.
#include <optional>

#include <fmt/format.h>

#include "cli/command.h"
#include "cli/console.h"
#include "cli/design_lookup.h"
#include "cli/json.h"
#include "cli/open_design.h"
#include "sheets/sheet_name.h"
#include "sheets/sheet_range.h"

namespace Quill::Cli {

namespace {

struct SheetsOptions {
    std::string design;
    std::string block;
    bool json = false;
};

struct SheetEntry {
    std::string name;
    std::optional<int> id;
    unsigned objects = 0;
    bool excluded = false;  // by its own mark
};

SheetEntry Read(const Orin::IGroup& sheet) {
    SheetEntry entry;
    entry.name = NameOf(sheet);
    int id = 0;
    if (ReadSheetId(sheet, id)) entry.id = id;
    Orin::ListT<Orin::Index> objects;
    Need(sheet.GetListObjects(objects));
    entry.objects = objects.Count();
    entry.excluded = IsMarkedExcluded(sheet);
    return entry;
}

Json AsJson(const std::vector<SheetEntry>& sheets) {
    Json answer = Json::EmptyList();
    for (const SheetEntry& sheet : sheets)
        answer.Add({{"sheet", sheet.name}, {"id", sheet.id}, {"objects", sheet.objects}, {"excluded", sheet.excluded}});
    return answer;
}

std::string AsTable(const std::vector<SheetEntry>& sheets) {
    using Align = Table::Align;
    Table table({{"Sheet"}, {"Id", Align::Right}, {"Objects", Align::Right}, {""}});
    for (const SheetEntry& sheet : sheets)
        table.AddRow({sheet.name, sheet.id ? fmt::format("{}", *sheet.id) : "", fmt::format("{}", sheet.objects),
                      sheet.excluded ? "excluded" : ""});
    return table.Render(HasColours());
}

ExitCode RunSheets(const SheetsOptions& options) {
    const OpenDesign design = ReadDesign(options.design);
    SheetRange range;
    range.Init(FindBlock(*design.snapshot, options.block));
    std::vector<SheetEntry> sheets;
    for (SheetRange::Iterator it = range.Begin(), end = range.End(); it != end; ++it)
        sheets.push_back(Read(**it));
    Print(options.json, sheets, AsJson, AsTable);
    return Done;
}

}  // namespace

void AddSheetsCommand(CommandLine& line) {
    const auto options = std::make_shared<SheetsOptions>();
    const Syntax command =
        line.Add("sheets", "List the sheets of a block in their order",
                 "With the id that a sheet keeps when it is renamed, how many objects stand on it, and\n"
                 "whether its own mark excludes it from printing.\n"
                 "\n"
                 "Examples:\n"
                 "  quill sheets examples/vibration-recorder.json controller",
                 [options] { return RunSheets(*options); });
    AddDesignArgument(command, options->design);
    command.Option("BLOCK", options->block, "name of the block").Required();
    AddJsonFlag(command, options->json);
}

}  // namespace Quill::Cli
