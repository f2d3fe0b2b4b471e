// quill render: a page as a picture.
#include <iostream>

#include "cli/command.h"
#include "cli/page_map.h"
#include "cli/whole_file.h"
#include "drawing/svg_writer.h"

namespace Quill::Cli {

namespace {

struct RenderOptions {
    std::string design;
    std::string page;
    std::string target;
    std::string config;
};

ExitCode RunRender(const RenderOptions& options) {
    const OpenDesign design = ReadDesign(options.design);
    PageMap map(design, options.config);
    const std::string svg = Drawing::SvgFile(map.PictureOf(map.Find(options.page)));
    if (options.target == "-") {
        std::cout << svg;
    } else {
        ReplaceFile(options.target, svg);
    }
    return Done;
}

}  // namespace

void AddRenderCommand(CommandLine& line) {
    const auto options = std::make_shared<RenderOptions>();
    const Syntax command =
        line.Add("render", "Draw a page as an SVG picture",
                 "PAGE is a number by \"quill pages\" in its default order, or a name. The file needs\n"
                 "nothing but itself; one that is there is replaced when the picture is complete.\n"
                 "\n"
                 "Examples:\n"
                 "  quill render examples/lamp/lamp.kicad_sch 1 -o lamp.svg\n"
                 "  quill render examples/vibration-recorder.json 3 -o - | display",
                 [options] { return RunRender(*options); });
    AddDesignArgument(command, options->design);
    command.Option("PAGE", options->page, "number or name of the page").Required();
    command.Option("-o,--output", options->target, "file to write; \"-\" is standard output").Required();
    AddConfigOption(command, options->config);
}

}  // namespace Quill::Cli
