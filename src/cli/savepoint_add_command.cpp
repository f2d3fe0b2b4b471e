// quill savepoint add: keep a design as it is now.
#include <algorithm>
#include <optional>

#include <fmt/format.h>

#include "cli/command.h"
#include "cli/save_points.h"
#include "labels/time_stamp.h"

namespace Quill::Cli {

namespace {

struct SavepointAddOptions {
    EditOptions edit;
    std::optional<std::string> name;
    std::string comment;
};

bool IsTaken(const std::vector<SavePoint>& points, const std::string& name) {
    return name == Orin::DesignDb::WorkingSnapshot ||
           std::any_of(points.begin(), points.end(), [&name](const SavePoint& point) { return point.name == name; });
}

// A number behind those that were given so far.
std::string FreshName(const std::vector<SavePoint>& points) {
    std::size_t number = points.size() + 1;
    while (IsTaken(points, fmt::format("{}", number)))
        ++number;
    return fmt::format("{}", number);
}

ExitCode RunSavepointAdd(const SavepointAddOptions& options) {
    const OpenDesign design = OpenDesignFile(options.edit.design, !options.edit.dryRun);
    const std::vector<SavePoint> points = ListSavePoints(design);
    const SavePoint point{options.name ? *options.name : FreshName(points),
                          Utils::time_stamp::current(Utils::time_stamp::raw), options.comment};
    if (point.name.empty()) throw CommandError("A save point needs a name");
    if (IsTaken(points, point.name)) throw CommandError("The name " + point.name + " is taken");
    if (!options.edit.dryRun) MakeSavePoint(design, point);
    return PrintChanges(options.edit, {{"The design is kept as " + point.Description()}, AsJson(point)});
}

}  // namespace

void AddSavepointAddCommand(CommandLine& line) {
    const auto options = std::make_shared<SavepointAddOptions>();
    const Syntax command =
        line.Add("savepoint add", "Keep a design as it is now, so that it can be restored",
                 "Costs nothing until something changes. Without NAME the save point is called by a\n"
                 "number.\n"
                 "\n"
                 "Examples:\n"
                 "  quill savepoint add board.qdb\n"
                 "  quill savepoint add board.qdb routed --comment 'before the second revision'",
                 [options] { return RunSavepointAdd(*options); });
    AddEditOptions(command, options->edit);
    command.Option("NAME", options->name, "name of the save point");
    command.Option("--comment", options->comment, "what people are to know of it");
}

}  // namespace Quill::Cli
