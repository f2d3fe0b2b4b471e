#include <filesystem>

#include "tests/cli/markup.h"
#include "tests/cli/plant.h"
#include "tests/cli/run_program.h"

namespace {

class Picture : public Tests::ProgramTest {
protected:
    // What the picture holds between its style and its end, without the frame.
    std::string Items(const std::string& svg) const {
        const std::size_t first = svg.find("</g>\n", svg.find("<g class=\"frame\""));
        return svg.substr(first + 5, svg.rfind("</svg>") - first - 5);
    }
    void WriteSheet(const std::string& members, const std::string& content, const std::string& view = "{}") const {
        Write("sheet.json", R"({"format": "quill-design", "version": 1, "design": "b", "blocks": [
{"index": "block:1", "name": "b", "types": ["schematic", "drawn"], "groups": [
  {"index": "group:1", "name": "1", "members": [)" + members +
                                R"(], "view": )" + view + "}], " + content + R"(},
{"index": "block:2", "name": "lib", "types": ["symbol"], "comps": [
  {"index": "comp:90", "name": "BOX.1", "types": ["symbol"],
   "view": {"texts": [{"index": "text:90", "text": "in", "at": [1000000, 0], "style": {"height": 1000000}}],
            "rects": [{"index": "rect:90", "first": [-5000000, -3000000], "second": [5000000, 3000000],
                       "style": {"fill": "background", "width": 254000}}]},
   "pins": [
    {"index": "pin:90", "label": "7", "attributes": [["Pin Number", "7"], ["Pin Name", "EN"]],
     "drawn": [{"on": "comp:90", "body": {"at": [-8000000, 0], "inner": [-5000000, 0], "inverted": true}}]},
    {"index": "pin:91", "label": "Y", "drawn": [{"on": "comp:90", "body": {"at": [5000000, 2000000],
                                                                            "inner": [5000000, 2000000]}}]},
    {"index": "pin:92", "label": "LONG_NAME", "drawn": [{"on": "comp:90", "body": {"at": [0, -5000000],
                                                                                    "inner": [0, -3000000]}}]}]},
  {"index": "comp:91", "name": "flag.output", "types": ["symbol"]}]}],
"configurations": [{"index": "config:1", "name": "b", "root": "block:1"}]})");
    }
    std::string Drawn() const {
        const Tests::Outcome outcome = Run("render sheet.json 1 -o -");
        EXPECT_EQ(outcome.error, "");
        EXPECT_EQ(Tests::ReadMarkup(outcome.out).fault, "");
        return Items(outcome.out);
    }
};

TEST_F(Picture, SymbolsAreTurnedAndTheirTextsCanBeRead) {
    for (const auto& [orientation, want] : std::initializer_list<std::pair<const char*, const char*>>{
             {R"("orientation": "0")", ""}, {R"("orientation": "90", "mirrored": true)", ""}}) {
        WriteSheet(R"("comp:1")",
                   R"("comps": [{"index": "comp:1", "label": "U1", "name": "BOX", "definition": "comp:90",
                       "attributes": [["VALUE", "<5 & \"6\">"]], "drawn": [
                       {"on": "group:1", "body": {"at": [100000000, 50000000], )" +
                       std::string(orientation) + "}}]}]");
        EXPECT_EQ(Drawn(), want) << orientation;
    }
}

TEST_F(Picture, WiresAreDrawnWithTheirDotsAndLabels) {
    WriteSheet(R"("net:1", "bus:1", "comp:1", "comp:2")",
               R"("comps": [
  {"index": "comp:1", "label": "OUT", "definition": "comp:91", "types": ["connector"],
   "drawn": [{"on": "group:1", "body": {"at": [0, 0], "orientation": "180"}}]},
  {"index": "comp:2", "label": "P1", "drawn": [{"on": "group:1", "body": {"at": [0, -9000000]},
    "label": {"at": [0, -20000000], "style": {"horizontal": "centre"}}}]}],
 "nets": [{"index": "net:1", "label": "N\u0001", "drawn": [{"on": "group:1", "label": {"at": [0, 0], "style":
    {"orientation": "270"}}}], "pieces": [{"index": "piece:1", "on": "group:1",
   "joints": [[1, 0, 0], [2, 10000000, 0], [3, 20000000, 0], [4, 10000000, 5000050, "pin:1"]],
   "segments": [[1, 1, 2], [2, 2, 3], [3, 2, 4], [4, 2, 99]]}]}],
 "buses": [{"index": "bus:1", "label": "D[1:0]", "drawn": [{"on": "group:1", "body": {
   "joints": [[1, 0, 9000000], [2, 20000000, 9000000]], "segments": [[1, 1, 2]],
   "style": {"width": 500000, "pattern": "dash"}}}]}])",
               R"({"arcs": [{"index": "arc:1", "start": [0, 0], "middle": [10000000, 10000000], "end": [0, 20000000]}],
      "texts": [{"index": "text:1", "text": "two\nlines", "at": [0, 0], "style": {"vertical": "top"}},
                {"index": "text:2", "text": "hidden", "style": {"visible": false}}]})");
    EXPECT_EQ(Drawn(), "");
}

}  // namespace
