#include "tests/cli/run_program.h"

namespace {

using InfoCommand = Tests::ProgramTest;

const std::string Header = R"({"format": "quill-design", "version": 1)";

TEST_F(InfoCommand, SaysWhatTheExampleHolds) {
    Check({{"info " QUILL_EXAMPLES "/vibration-recorder.json", 0, R"(vibration-recorder: 33 pages

       9  blocks
      14  sheets
     195  components
     369  pins
     114  nets
       3  buses
      38  symbols
       2  configurations

Block               Used  Sheets  Components  Pins  Nets  Buses
vibration-recorder     1       2          31    75    25      1
power                  1       2          43    77    16      0
controller             1       4          58   105    28      2
display                1       1          13    24    10      0
channel                4       1           9    16     8      0
input_stage            4       1          10    19     8      0
protection             4       1           8    12     5      0
filter                 8       1           8    14     5      0
adc                    4       1          15    27     9      0
)"},
           {"info --json --config channel-bench " QUILL_EXAMPLES "/vibration-recorder.json", 0,
            R"({"design": "vibration-recorder", "pages": 6, "counts": {"blocks": 9, "sheets": 14, "components": 195, )"
            R"("pins": 369, "nets": 114, "buses": 3, "symbols": 38, "configurations": 2}})"}});
    // Here alone the lines of JSON are looked at.
    EXPECT_EQ(Run("bus expand 'A[1:0]' --json").out,
              "{\n  \"label\": \"A[1:0]\",\n  \"members\": [\n    \"A[1]\",\n    \"A[0]\"\n  ]\n}\n");
}

TEST_F(InfoCommand, LetsNothingReachTheTerminalThatWouldCommandIt) {
    // Escape, U+009B, a change of direction and a byte that is not UTF-8; the widths go by what is shown.
    Write("evil.json", Header + R"(, "design": "a\u001b[2Jb\u009b\u202e", "blocks": [
        {"index": "block:1", "name": {"hex": "C3A9FF"}, "types": ["schematic"]}],
        "configurations": [{"index": "config:1", "root": "block:1"}]})");
    Check({{"info evil.json | sed -n '1p; /^Block/,$p'", 0, R"(a\x1B[2Jb\u009B\u202E: 0 pages
Block  Used  Sheets  Components  Pins  Nets  Buses
é\xFF     1       0           0     0     0      0
)"},
           {"info \"$(printf 'no\\033[1mfile')\"", 2, "", "quill: no\\x1B[1mfile: No such file or directory\n"}});
}

TEST_F(InfoCommand, CountsThePlacesOfAHierarchyThatContainsItselfOnce) {
    Write("loop.json", Header + R"(, "blocks": [
        {"index": "block:1", "types": ["schematic"], "groups": [{"index": "group:1"}, {"index": "group:2", "type": 7}],
         "comps": [{"index": "comp:1", "types": ["hierarchical"], "child": "block:2"},
                   {"index": "comp:2", "types": ["hierarchical"], "child": "block:2"},
                   {"index": "comp:3", "types": ["part"], "child": "block:2"},
                   {"index": "comp:4", "types": ["hierarchical"]}]},
        {"index": "block:2", "types": ["schematic"], "groups": [{"index": "group:3", "type": "generatedSheet"}],
         "comps": [{"index": "comp:5", "types": ["hierarchical"], "child": "block:1"}]},
        {"index": "block:3", "types": ["schematic"], "groups": [{"index": "group:4"}]}],
        "configurations": [{"index": "config:1", "name": "first", "root": "block:1"},
                           {"index": "config:2", "name": "empty"}]})");
    Check({{"info --json loop.json | grep pages", 0, R"("pages": 3,)"},
           {"info --json --config empty loop.json | grep pages", 0, R"("pages": 0,)"},
           {"info --config none loop.json", 2, "", "quill: The design has no configuration called none\n"}});
}

TEST_F(InfoCommand, GivesTwoAndOneLineOnStandardErrorWhenItCannotAnswer) {
    Write("version.json", R"({"format": "quill-design", "version": 7})");
    Write("bare.json", Header + "}");
    Check({
        {"info version.json", 2, "", "quill: version.json: /version: is a version that this program does not know\n"},
        {"info bare.json", 2, "", "quill: The design has no configuration\n"},
        {"info missing.json", 2, "", "quill: missing.json: No such file or directory\n"},
        {"info .", 2, "", "quill: .: Is a directory\n"},
        {"info", 2, "", "quill: DESIGN is required. \"quill --help\" says how it is used.\n"},
        {"info --colour bare.json", 2, "",
         "quill: The following argument was not expected: --colour. \"quill --help\" says how it is used.\n"},
        {"", 2, "", "quill: A subcommand is required. \"quill --help\" says how it is used.\n"},
        {"info " QUILL_EXAMPLES "/vibration-recorder.json > /dev/full", 2, "",
         "quill: Standard output cannot be written\n"},
        {"--help > /dev/null", 0, ""},
        {"info --help | grep -o 'quill info --json examples/'", 0, "quill info --json examples/"},
    });
}

}  // namespace
