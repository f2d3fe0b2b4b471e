// quill report: a design to look at in a browser.
#include "cli/command.h"
#include "cli/report_folder.h"
#include "cli/report_site.h"

namespace Quill::Cli {

namespace {

struct ReportOptions {
    std::string design;
    std::string target;
    std::string config;
};

ExitCode RunReport(const ReportOptions& options) {
    ReportFolder folder(options.target);
    const OpenDesign design = ReadDesign(options.design);
    PageMap map(design, options.config);
    const ReportSite site(map, design.name.empty() ? options.design : design.name);
    folder.Add("style.css", ReportSite::Style());
    folder.Add("index.html", site.Index());
    for (std::size_t page = 0; page < map.Pages().size(); ++page)
        if (map.IsNumbered(page)) folder.Add(map.FileOf(page), site.Page(page));
    folder.TakePlace();
    return Done;
}

}  // namespace

void AddReportCommand(CommandLine& line) {
    const auto options = std::make_shared<ReportOptions>();
    const Syntax command =
        line.Add("report", "Write a design down for a browser",
                 "Open index.html of the folder: the tree of the pages, and for each page its picture\n"
                 "with links to the pages to which its connectors and blocks lead. It works from the\n"
                 "file system, without a network. A folder with an earlier report and nothing else is\n"
                 "replaced when the new report is complete.\n"
                 "\n"
                 "Examples:\n"
                 "  quill report examples/vibration-recorder.json -o recorder-report",
                 [options] { return RunReport(*options); });
    AddDesignArgument(command, options->design);
    command.Option("-o,--output", options->target, "folder to write").Required();
    AddConfigOption(command, options->config);
}

}  // namespace Quill::Cli
