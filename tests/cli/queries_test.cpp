// The commands that ask a design, on one small design that has what is out of the ordinary.
#include "tests/cli/run_program.h"

namespace {

using Tests::Outcome;

// Two blocks stand below sheet B under one label, sheet A is excluded and stands first in the block but second in the
// user's order, print order 7 is given to three pages, and one name holds an escape character.
const char* const Plant = R"({"format": "quill-design", "version": 1, "design": "plant",
"attributes": [["$$Internal_BUS_CONTENTS", "DB\tD[1:0],CLK\nX\tY\nY\tX,Z\n"], ["$$Internal_NET_LIMITER", "[]"]],
"blocks": [
{"index": "block:1", "name": "plant", "types": ["schematic"],
 "groups": [
  {"index": "group:1", "name": "A", "members": ["comp:4", "comp:5", "bus:3"],
   "attributes": [["$$Internal_CUSTOM_ORDER", "2"], ["ExcludeFromPrintout", "TRUE"]]},
  {"index": "group:2", "name": "B", "members": ["comp:1", "comp:2", "comp:3", "comp:6", "bus:1", "bus:2"],
   "attributes": [["$$Internal_CUSTOM_ORDER", "1"]]}],
 "comps": [
  {"index": "comp:1", "types": ["border", "titled"], "attributes": [["$$NotCommonProperty_@PRINTORDER", "7"]]},
  {"index": "comp:2", "label": "S", "name": "b", "types": ["hierarchical"], "child": "block:2",
   "attributes": [["REFDES", "U10"]]},
  {"index": "comp:3", "label": "S", "name": "a", "types": ["hierarchical"], "child": "block:3",
   "attributes": [["REFDES", "U2"]]},
  {"index": "comp:4", "types": ["border", "titled"], "attributes": [["$$NotCommonProperty_@PRINTORDER", "3"]]},
  {"index": "comp:5", "label": "T", "types": ["hierarchical"], "child": "block:2"},
  {"index": "comp:6", "label": "NET", "types": ["connector"], "partition": "lib", "definition": "comp:30"}],
 "buses": [
  {"index": "bus:1", "label": "D[1:0]"},
  {"index": "bus:2", "label": "DB",
   "attributes": [["KiCad Label", "DB{}"], ["KiCad Other Labels", "E[7]\n"], ["Other Labels", "E7\n$F[1:0]"]]},
  {"index": "bus:3", "label": "D[1:0]"}]},
{"index": "block:2", "name": "sub", "types": ["schematic"],
 "groups": [{"index": "group:3", "name": "1\u001b", "members": ["comp:10", "comp:11", "comp:12"]}],
 "comps": [
  {"index": "comp:10", "types": ["border", "titled"], "attributes": [["$$NotCommonProperty_@PRINTORDER", "7"]]},
  {"index": "comp:11", "label": "NET", "partition": "kicad", "definition": "comp:31", "pins": [{"index": "pin:1"}]},
  {"index": "comp:12", "label": "PIN", "types": ["connector"], "partition": "kicad", "definition": "comp:32"}],
 "nets": [{"index": "net:1", "label": "N2"}, {"index": "net:2"}, {"index": "net:3", "label": "N2", "pins": ["pin:1"]}]},
{"index": "block:3", "name": "aux", "types": ["schematic"],
 "groups": [{"index": "group:4", "name": "x", "members": ["comp:20"]}], "buses": [{"index": "bus:4"}],
 "comps": [{"index": "comp:20", "label": "ALONE", "types": ["connector"], "partition": "lib", "definition": "comp:30"}]},
{"index": "block:4", "name": "lib", "types": ["symbol"],
 "comps": [
  {"index": "comp:30", "name": "off.1", "types": ["symbol"]},
  {"index": "comp:31", "name": "global_label.input", "types": ["symbol"]},
  {"index": "comp:32", "name": "hierarchical_label.input", "types": ["symbol"]}]}],
"configurations": [{"index": "config:1", "name": "plant", "root": "block:1"},
                   {"index": "config:2", "name": "bench", "root": "block:3"},
                   {"index": "config:3", "name": "nothing"}]})";

class Query : public Tests::ProgramTest {
protected:
    Query() { Write("plant.json", Plant); }

    struct Case {
        const char* arguments;
        int code;
        const char* out;
        const char* error;
    };
    template <std::size_t Size>
    void Check(const Case (&cases)[Size]) {
        for (const Case& c : cases)
            EXPECT_EQ(Run(c.arguments), (Outcome{c.code, c.out, c.error})) << c.arguments;
    }
};

TEST_F(Query, PagesAreListedInEveryOrder) {
    const Case cases[] = {
        {"pages plant.json", 0, R"(Page  Path  Block  Sheet  Print order  Name
   1  /     plant  B      7            B
   2  /S    sub    1\x1B  7            $2I0\1\x1B
   3  /S    aux    x                   $3I0\x
      /     plant  A      3            A           excluded
      /T    sub    1\x1B  7            $5I0\1\x1B  excluded
)",
         ""},
        {"pages plant.json --order level --children refdes", 0, R"(Page  Path  Block  Sheet  Print order  Name
   1  /     plant  B      7            B
      /     plant  A      3            A           excluded
   2  /S    aux    x                   $3I0\x
   3  /S    sub    1\x1B  7            $2I0\1\x1B
      /T    sub    1\x1B  7            $5I0\1\x1B  excluded
)",
         ""},
        // Excluded pages keep their number; those without one of their own come last.
        {"pages --order print --children symbol --descending plant.json", 0,
         R"(Page  Path  Block  Sheet  Print order  Name
   1  /     plant  A      3            A           excluded
   2  /     plant  B      7            B
      /S    sub    1\x1B  7            $2I0\1\x1B
      /S    aux    x                   $3I0\x
      /T    sub    1\x1B  7            $5I0\1\x1B  excluded
)",
         ""},
        {"pages plant.json --children name", 0, R"(Page  Path  Block  Sheet  Print order  Name
   1  /     plant  B      7            B
   2  /S    aux    x                   $3I0\x
      /     plant  A      3            A           excluded
      /T    sub    1\x1B  7            $5I0\1\x1B  excluded
)",
         "quill: The child order \"name\" drops page $2I0\\1\\x1B (sheet 1\\x1B of sub at /S)\n"},
        {"pages --config bench --json plant.json", 0, R"([
  {
    "number": "1",
    "name": "x",
    "block": "aux",
    "sheet": "x",
    "path": [],
    "printOrder": "",
    "excluded": false
  }
]
)",
         ""},
        {"pages --config nothing plant.json", 2, "", "quill: Configuration nothing has no root block\n"},
        {"pages --order up plant.json", 2, "",
         "quill: --order: up not in {depth,level,print}. \"quill --help\" says how it is used.\n"},
    };
    Check(cases);
    const std::string json = Run("pages --order print --json plant.json").out;
    EXPECT_EQ(json.substr(0, json.find("},")), R"([
  {
    "number": "1",
    "name": "A",
    "block": "plant",
    "sheet": "A",
    "path": [],
    "printOrder": "3",
    "excluded": true
  )");
    EXPECT_NE(json.find(R"("number": "",
    "name": "$2I0\\1\u001b",
    "block": "sub",
    "sheet": "1\u001b",
    "path": [
      "S"
    ],
    "printOrder": "7",
    "excluded": false)"),
              std::string::npos)
        << json;
}

TEST_F(Query, ConnectorsAreListedByLabel) {
    const Case cases[] = {
        {"connectors plant.json", 0, R"(Label  Page  Path  Block  Sheet  Symbol                    Key
ALONE     3  /S    aux    x      lib:off.1                 3:0:7/[20:0:7]
NET       1  /     plant  B      lib:off.1                 [6:0:7]
NET       2  /S    sub    1\x1B  kicad:global_label.input  2:0:7/[11:0:7]
)",
         ""},
        {"connectors --json --label NET plant.json", 0, R"({
  "NET": [
    {
      "key": "[6:0:7]",
      "block": "plant",
      "sheet": "B",
      "path": [],
      "symbol": "lib:off.1"
    },
    {
      "key": "2:0:7/[11:0:7]",
      "block": "sub",
      "sheet": "1\u001b",
      "path": [
        "S"
      ],
      "symbol": "kicad:global_label.input"
    }
  ]
}
)",
         ""},
        {"connectors --json --label PIN plant.json", 1, "{}\n",
         "quill: There is no sheet connector with the label PIN\n"},
        {"connectors --config bench plant.json", 2, "",
         "quill: Connectors are known for a configuration that bears the name of its root block only; bench has the "
         "root block aux\n"},
    };
    Check(cases);
}

TEST_F(Query, ConnectorsLeadToTheirOtherEnds) {
    const char* const first = R"(Label  Page  Path  Block  Sheet  Symbol     Key
NET       1  /     plant  B      lib:off.1  [6:0:7]
)";
    const Case cases[] = {
        {"connectors next plant.json '2:0:7/[11:0:7]'", 0, first, ""},
        {"connectors all plant.json '2:0:7/[11:0:7]'", 0, first, ""},
        {"connectors next plant.json '[6:0:7]' --json", 0, R"({
  "label": "NET",
  "key": "2:0:7/[11:0:7]",
  "block": "sub",
  "sheet": "1\u001b",
  "path": [
    "S"
  ],
  "symbol": "kicad:global_label.input"
}
)",
         ""},
        {"connectors next plant.json '3:0:7/[20:0:7]' --json", 1, "null\n", "quill: The connector stands alone\n"},
        {"connectors all plant.json '3:0:7/[20:0:7]'", 1, "", "quill: The connector stands alone\n"},
        {"connectors next plant.json '[9:0:7]'", 2, "", "quill: There is no sheet connector with the key [9:0:7]\n"},
        {"connectors next plant.json", 2, "", "quill: KEY is required. \"quill --help\" says how it is used.\n"},
        {"connectors", 2, "", "quill: DESIGN is required. \"quill --help\" says how it is used.\n"},
        {"connectors lonely plant.json", 1, R"(Label  Page  Path  Block  Sheet  Symbol     Key
ALONE     3  /S    aux    x      lib:off.1  3:0:7/[20:0:7]
)",
         ""},
        {"connectors lonely --json " QUILL_EXAMPLES "/vibration-recorder.json", 0, "[]\n", ""},
    };
    Check(cases);
}

TEST_F(Query, SheetsAndNetsOfABlockAreListed) {
    const Case cases[] = {
        {"sheets plant.json plant", 0, "Sheet  Id  Objects\nB                6\nA                3  excluded\n", ""},
        {"sheets " QUILL_EXAMPLES "/vibration-recorder.json display --json", 0, R"([
  {
    "sheet": "1",
    "id": 1,
    "objects": 24,
    "excluded": false
  }
]
)",
         ""},
        {"sheets plant.json lib", 2, "", "quill: The design has no schematic block called lib\n"},
        {"nets plant.json", 0, R"(Block  Name    Nets  Pins
sub    (none)     1     0
sub    N2         2     1
)",
         ""},
        {"nets plant.json --json aux", 0, "[]\n", ""},
        {"nets plant.json nowhere", 2, "", "quill: The design has no schematic block called nowhere\n"},
    };
    Check(cases);
}

TEST_F(Query, LabelsAreExpandedBuiltAndChecked) {
    const Case cases[] = {
        {"buses plant.json", 0, R"(Block  Sheet  Label    Nets  First    Last
plant  B      D[1:0]      2  D[1]     D[0]
plant  B      DB          3  D[1]     CLK
plant  B      E7          1  E7       E7
plant  B      $F[1:0]     1  $F[1:0]  $F[1:0]
)",
         ""},
        {"buses --json --block sub plant.json", 0, "[]\n", ""},
        {"buses --block lib plant.json", 2, "", "quill: The design has no schematic block called lib\n"},
        {"bus expand '{CLK,D[1:0]}2'", 0, "CLK\nD[1]\nD[0]\nCLK\nD[1]\nD[0]\n", ""},
        {"bus expand 'D[1:0],E(1:0)' --limiter '()'", 0, "D[1:0]\nE(1)\nE(0)\n", ""},
        {"bus expand 'D[1:0]' --limiter ''", 0, "D[1:0]\n", ""},
        {"bus expand --design plant.json --json db", 0, R"({
  "label": "db",
  "members": [
    "D[1]",
    "D[0]",
    "CLK"
  ]
}
)",
         ""},
        {"bus expand X --design plant.json", 2, "", "quill: Buses list each other in a circle: X, Y\n"},
        {"bus expand 'D[0:9][0:999999]'", 2, "", "quill: Label D[0:9][0:999999] stands for more than 1000000 nets\n"},
        {"bus expand \"$(printf 'A\\302\\233')\" --json", 0,
         "{\n  \"label\": \"A\\u009b\",\n  \"members\": [\n    \"A\\u009b\"\n  ]\n}\n", ""},
        {"bus expand", 2, "", "quill: LABEL is required. \"quill --help\" says how it is used.\n"},
        {"bus build 'D[3]' 'D[2]' 'D[1]' 'A[7]' CLK", 0, "D[3:1],A7,CLK\n", ""},
        {"bus build 'A(7)' 'A(8)' 'B(0)' --limiter '()' --bracket-singles", 0, "A(7:8),B(0)\n", ""},
        {"bus build --old '{A}2' A A A", 0, "{A}3\n", ""},
        {"bus build --old db 'D[1]' 'D[0]' CLK --design plant.json --json", 0, "{\n  \"label\": \"db\"\n}\n", ""},
        {"bus build --old X A --design plant.json", 2, "", "quill: Buses list each other in a circle: X, Y\n"},
        {"bus build 'A[3].'", 1, "", "quill: No label can be built of these nets\n"},
        {"bus contents plant.json", 1, R"(Bus  Contents    Nets
DB   D[1:0],CLK  D[1:0],CLK
X    Y           circle: X, Y
Y    X,Z         circle: Y, X
)",
         "quill: Bus X stands for no nets: circle: X, Y\nquill: Bus Y stands for no nets: circle: Y, X\n"},
        {"label check 'A~B'", 0, R"(Question          Answer
may be a label    yes
may name a net    yes
inverted          no
inverted in part  yes
)",
         ""},
        {"label check '~A$' --json", 1, R"({
  "text": "~A$",
  "label": true,
  "netLabel": false,
  "inverted": true,
  "partlyInverted": false
}
)",
         ""},
        {"label invert 'A~B'", 0, "~AB\n", ""},
        {"label invert '~A~B' --off --json", 0, "{\n  \"text\": \"~A~B\",\n  \"label\": \"AB\"\n}\n", ""},
        {"bus", 2, "", "quill: A subcommand is required. \"quill --help\" says how it is used.\n"},
    };
    Check(cases);
    EXPECT_NE(Run("buses --json plant.json").out.find(R"("label": "E7",
    "source": "E[7]",)"),
              std::string::npos);
    EXPECT_NE(Run("buses --json plant.json").out.find(R"("label": "$F[1:0]",
    "source": "$F[1:0]",)"),
              std::string::npos);
}

}  // namespace
