// quill savepoint list: what a design can be restored to.

#include "cli/command.h"
#include "cli/console.h"
#include "cli/json.h"
#include "cli/save_points.h"

namespace Quill::Cli {

namespace {

struct SavepointListOptions {
    std::string design;
    bool json = false;
};

Json ListAsJson(const std::vector<SavePoint>& points) {
    Json answer = Json::EmptyList();
    for (const SavePoint& point : points)
        answer.Add(AsJson(point));
    return answer;
}

std::string AsTable(const std::vector<SavePoint>& points) {
    Table table({{"Name"}, {"Save point"}});
    for (const SavePoint& point : points)
        table.AddRow({point.name, point.MenuText()});
    return table.Render(HasColours());
}

ExitCode RunSavepointList(const SavepointListOptions& options) {
    const OpenDesign design = OpenDesignFile(options.design, false);
    Print(options.json, ListSavePoints(design), ListAsJson, AsTable);
    return Done;
}

}  // namespace

void AddSavepointListCommand(CommandLine& line) {
    const auto options = std::make_shared<SavepointListOptions>();
    const Syntax command =
        line.Add("savepoint list", "List the save points of a design, oldest first",
                 "As the rollback menu of an application shows them: the time in your time zone and the\n"
                 "beginning of the comment.\n"
                 "\n"
                 "Examples:\n"
                 "  quill savepoint list board.qdb",
                 [options] { return RunSavepointList(*options); });
    AddDesignArgument(command, options->design);
    AddJsonFlag(command, options->json);
}

}  // namespace Quill::Cli
