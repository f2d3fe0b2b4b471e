// quill pages: all pages of a design, numbered.

#include "cli/command.h"
#include "cli/console.h"
#include "cli/design_lookup.h"
#include "cli/json.h"
#include "cli/page_list.h"
#include "cli/page_options.h"

namespace Quill::Cli {

namespace {

struct PagesOptions {
    std::string design;
    PageOptions pages;
    bool json = false;
};

Json AsJson(const std::vector<PageEntry>& pages) {
    Json answer = Json::EmptyList();
    for (const PageEntry& page : pages)
        answer.Add({{"number", page.number},
                    {"name", page.id.name},
                    {"block", page.block},
                    {"sheet", page.sheet},
                    {"path", page.way},
                    {"printOrder", page.printOrder},
                    {"excluded", page.excluded}});
    return answer;
}

std::string AsTable(const std::vector<PageEntry>& pages) {
    using Align = Table::Align;
    Table table({{"Page", Align::Right}, {"Path"}, {"Block"}, {"Sheet"}, {"Print order"}, {"Name"}, {""}});
    for (const PageEntry& page : pages)
        table.AddRow({page.number, WayText(page.way), page.block, page.sheet, page.printOrder, page.id.name,
                      page.excluded ? "excluded" : ""});
    return table.Render(HasColours());
}

ExitCode RunPages(const PagesOptions& options) {
    const OpenDesign design = ReadDesign(options.design);
    const PageOptions& order = options.pages;
    const PageList list = ListPages(design, order.config, order.Algorithm(), order.ChildAlgorithm());
    Print(options.json, list.pages, AsJson, AsTable);
    for (const PageEntry& page : list.dropped)
        Say("The child order \"" + order.children + "\" drops " + page.Description());
    return Done;
}

}  // namespace

void AddPagesCommand(CommandLine& line) {
    const auto options = std::make_shared<PagesOptions>();
    const Syntax command = line.Add(
        "pages", "List all pages of a design with their numbers",
        "A page is a sheet at one place of the hierarchy. Excluded pages stand at their places and have no number,\n"
        "but by print order, which numbers them too; pages without a usable print order then come last.\n"
        "A child order that leaves pages out, as \"name\" does with all but one of those with one label, names them\n"
        "on standard error.\n"
        "\n"
        "Orders:\n"
        "  depth    a sheet, then everything below it, then the next sheet\n"
        "  level    the sheets of the root block, then those one level below, and so on\n"
        "  print    by the print orders that stand on the pages\n"
        "\n"
        "Child orders, in which the blocks below a sheet follow:\n"
        "  default  as the sheet lists them        name    by label\n"
        "  custom   as stored on the sheet         symbol  by the name of the component\n"
        "  refdes   by reference designator\n"
        "\n"
        "Examples:\n"
        "  quill pages examples/vibration-recorder.json\n"
        "  quill pages --order print examples/vibration-recorder.json\n"
        "  quill pages --children refdes --descending --json examples/vibration-recorder.json",
        [options] { return RunPages(*options); });
    AddDesignArgument(command, options->design);
    AddPageOptions(command, options->pages);
    AddJsonFlag(command, options->json);
}

}  // namespace Quill::Cli
