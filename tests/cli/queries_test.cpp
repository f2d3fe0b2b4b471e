// The commands that ask a design, on one small design that has what is out of the ordinary.
#include "tests/cli/run_program.h"

namespace {

using Query = Tests::PlantTest;

TEST_F(Query, PagesAreListedInEveryOrder) {
    Check({
        {"pages plant.json", 0, R"(Page  Path  Block  Sheet  Print order  Name
   1  /     plant  B      7            B
   2  /S    sub    1\x1B  7            $2I0\1\x1B
   3  /S    aux    x                   $3I0\x
      /     plant  A      3            A           excluded
      /T    sub    1\x1B  7            $5I0\1\x1B  excluded
)"},
        {"pages plant.json --order level --children refdes | cut -c-5,40-49 | tr -s ' \\n' ' '", 0,
         R"(Page Name 1 B A 2 $3I0\x 3 $2I0\1\x1B $5I0\1\x1B )"},
        // Excluded pages keep their number; those without one of their own come last.
        {"pages --order print --children symbol --descending plant.json", 0,
         R"(Page  Path  Block  Sheet  Print order  Name
   1  /     plant  A      3            A           excluded
   2  /     plant  B      7            B
      /S    sub    1\x1B  7            $2I0\1\x1B
      /S    aux    x                   $3I0\x
      /T    sub    1\x1B  7            $5I0\1\x1B  excluded
)"},
        {"pages plant.json --children name", 0, R"(Page  Path  Block  Sheet  Print order  Name
   1  /     plant  B      7            B
   2  /S    aux    x                   $3I0\x
      /     plant  A      3            A           excluded
      /T    sub    1\x1B  7            $5I0\1\x1B  excluded
)",
         "quill: The child order \"name\" drops page $2I0\\1\\x1B (sheet 1\\x1B of sub at /S)\n"},
        {"pages --config bench --json plant.json", 0,
         R"([{"number": "1", "name": "x", "block": "aux", "sheet": "x", "path": [], "printOrder": "", )"
         R"("excluded": false}])"},
        {"pages --config nothing plant.json", 2, "", "quill: Configuration nothing has no root block\n"},
        {"pages --order up plant.json", 2, "",
         "quill: --order: up not in {depth,level,print}. \"quill --help\" says how it is used.\n"},
    });
    const std::string json = OneLine(Run("pages --order print --json plant.json").out);
    EXPECT_EQ(json.find(R"([{"number": "1", "name": "A", "block": "plant", "sheet": "A", "path": [], )"
                        R"("printOrder": "3", "excluded": true}, )"),
              0U);
    EXPECT_NE(json.find(R"({"number": "", "name": "$2I0\\1\u001b", "block": "sub", "sheet": "1\u001b", )"
                        R"("path": ["S"], "printOrder": "7", "excluded": false})"),
              json.npos)
        << json;
}

TEST_F(Query, PagesTellHowTheyCameByTheirNumbers) {
    Check({
        {"pages why plant.json 2", 0, R"(2: page $2I0\1\x1B (sheet 1\x1B of sub at /S)
  the walk begins in block plant
  sheet B is number 1 of 2 sheets of block plant
  below it, component S is number 1 of 2 by the child order "default"
  sheet 1\x1B is number 1 of 1 sheet of block sub
  by "depth", 1 page stands before it
  its number is 2
)"},
        {"pages why plant.json A", 0, R"(no number: page A (sheet A of plant at /)
  the walk begins in block plant
  sheet A is number 2 of 2 sheets of block plant
  the sheet is marked as excluded from printing
  by "depth", 3 pages stand before it
  excluded pages have no number
)"},
        {"pages why plant.json A --order print | tail -n 3", 0, R"(  its print order is 3
  by print order excluded pages are numbered too
  in the order of all print orders, its number is 1
)"},
        {"pages why plant.json '$3I0\\x' --order print | tail -n 1", 0,
         "  no print order stands on the page, so it has no number\n"},
        {"pages why plant.json \"$(printf '$5I0\\\\1\\033')\" --order print | tail -n 3", 0,
         R"(  a page above is excluded from printing, and with it this page
  its print order is 7
  page B (sheet B of plant at /) has it before, so this page has no number
)"},
        {"pages why plant.json 3 --order level --children refdes --descending --json", 0,
         R"({"number": "3", "name": "$3I0\\x", "steps": ["the walk begins in block plant", )"
         R"("sheet B is number 1 of 2 sheets of block plant", "below it, )"
         R"(component S is number 2 of 2 by the child order \"refdes\" backwards", )"
         R"("sheet x is number 1 of 1 sheet of block aux", "the page is at level 1, counted from 0", )"
         R"("by \"level\", 3 pages stand before it, 1 of them excluded", "its number is 3"]})"},
        {"pages why plant.json 4", 2, "", "quill: There is no page 4\n"},
    });
}

TEST_F(Query, GraphicsAndIdsOfASheetAreListed) {
    Write("drawn.json", Read(QUILL_TEST_DATA "/drawn.json"));
    Check({
        {"walk drawn.json b 1", 0, R"(Kind       Id  Attribute id  X (mm)  Y (mm)  Joints  Segments  Text
component   1                25.400  12.700
label                         0.000   0.000
attribute   3       4194305   0.005  -0.005
net         4                 0.000   0.000  1-2 9   1-2
line        5                 0.000   0.000
text        5                 1.000   2.000                    note
)"},
        {"ids drawn.json b 1", 1, R"(Kind       Used  Highest     Next
object        5        5        6
attribute     1  4194305  4194306
joint         3        9
segment       2        2
)",
         "quill: object id 5 stands on several items\n"},
        {"ids drawn.json b 2", 2, "", "quill: Block b has no sheet called 2\n"},
    });
    EXPECT_NE(OneLine(Run("walk drawn.json b 1 --json").out)
                  .find(R"("kind": "label", "id": null, "at": [0, 0]}, {"kind": "attribute", "id": 3, )"
                        R"("at": [5000, -5000], "attributeId": 4194305},)"),
              std::string::npos);
    EXPECT_EQ(OneLine(Run("ids drawn.json b 1 --json").out)
                  .find(R"({"object": {"used": 5, "highest": 5, "next": 6, "doubled": [5]}, "attribute": {)"),
              0U);
}

TEST_F(Query, ConnectorsAreListedByLabel) {
    Check({
        {"connectors plant.json", 0, R"(Label  Page  Path  Block  Sheet  Symbol                    Key
ALONE     3  /S    aux    x      lib:off.1                 3:0:7/[20:0:7]
NET       1  /     plant  B      lib:off.1                 [6:0:7]
NET       2  /S    sub    1\x1B  kicad:global_label.input  2:0:7/[11:0:7]
)"},
        {"connectors --json --label NET plant.json", 0,
         R"({"NET": [{"key": "[6:0:7]", "block": "plant", "sheet": "B", "path": [], "symbol": "lib:off.1"}, )"
         R"({"key": "2:0:7/[11:0:7]", "block": "sub", "sheet": "1\u001b", "path": ["S"], )"
         R"("symbol": "kicad:global_label.input"}]})"},
        {"connectors --json --label PIN plant.json", 1, "{}",
         "quill: There is no sheet connector with the label PIN\n"},
        {"connectors --config bench plant.json", 2, "",
         "quill: Connectors are known for a configuration that bears the name of its root block only; bench has the "
         "root block aux\n"},
    });
}

TEST_F(Query, ConnectorsLeadToTheirOtherEnds) {
    const char* const first = R"(Label  Page  Path  Block  Sheet  Symbol     Key
NET       1  /     plant  B      lib:off.1  [6:0:7]
)";
    Check({
        {"connectors next plant.json '2:0:7/[11:0:7]'", 0, first},
        {"connectors all plant.json '2:0:7/[11:0:7]'", 0, first},
        {"connectors next plant.json '[6:0:7]' --json", 0,
         R"({"label": "NET", "key": "2:0:7/[11:0:7]", "block": "sub", "sheet": "1\u001b", "path": ["S"], )"
         R"("symbol": "kicad:global_label.input"})"},
        {"connectors next plant.json '3:0:7/[20:0:7]' --json", 1, "null", "quill: The connector stands alone\n"},
        {"connectors all plant.json '3:0:7/[20:0:7]'", 1, "", "quill: The connector stands alone\n"},
        {"connectors next plant.json '[9:0:7]'", 2, "", "quill: There is no sheet connector with the key [9:0:7]\n"},
        {"connectors next plant.json", 2, "", "quill: KEY is required. \"quill --help\" says how it is used.\n"},
        {"connectors", 2, "", "quill: DESIGN is required. \"quill --help\" says how it is used.\n"},
        {"connectors lonely plant.json", 1, R"(Label  Page  Path  Block  Sheet  Symbol     Key
ALONE     3  /S    aux    x      lib:off.1  3:0:7/[20:0:7]
)"},
        {"connectors lonely --json " QUILL_EXAMPLES "/vibration-recorder.json", 0, "[]"},
    });
}

TEST_F(Query, SheetsAndNetsOfABlockAreListed) {
    Check({
        {"sheets plant.json plant", 0, "Sheet  Id  Objects\nB                6\nA                3  excluded\n"},
        {"sheets " QUILL_EXAMPLES "/vibration-recorder.json display --json", 0,
         R"([{"sheet": "1", "id": 1, "objects": 24, "excluded": false}])"},
        {"sheets plant.json lib", 2, "", "quill: The design has no schematic block called lib\n"},
        {"nets plant.json", 0, R"(Block  Name    Nets  Pins
sub    (none)     1     0
sub    N2         2     1
)"},
        {"nets plant.json --json aux", 0, "[]"},
        {"nets plant.json nowhere", 2, "", "quill: The design has no schematic block called nowhere\n"},
    });
}

TEST_F(Query, LabelsAreExpandedBuiltAndChecked) {
    Check({
        {"buses plant.json", 0, R"(Block  Sheet  Label    Nets  First    Last
plant  B      D[1:0]      2  D[1]     D[0]
plant  B      DB          3  D[1]     CLK
plant  B      E7          1  E7       E7
plant  B      $F[1:0]     1  $F[1:0]  $F[1:0]
)"},
        {"buses --json --block sub plant.json", 0, "[]"},
        {"buses --block lib plant.json", 2, "", "quill: The design has no schematic block called lib\n"},
        {"bus expand '{CLK,D[1:0]}2'", 0, "CLK\nD[1]\nD[0]\nCLK\nD[1]\nD[0]\n"},
        {"bus expand 'D[1:0],E(1:0)' --limiter '()'", 0, "D[1:0]\nE(1)\nE(0)\n"},
        {"bus expand 'D[1:0]' --limiter ''", 0, "D[1:0]\n"},
        {"bus expand --design plant.json --json db", 0, R"({"label": "db", "members": ["D[1]", "D[0]", "CLK"]})"},
        {"bus expand X --design plant.json", 2, "", "quill: Buses list each other in a circle: X, Y\n"},
        {"bus expand 'D[0:9][0:999999]'", 2, "", "quill: Label D[0:9][0:999999] stands for more than 1000000 nets\n"},
        {"bus expand \"$(printf 'A\\302\\233')\" --json", 0, R"({"label": "A\u009b", "members": ["A\u009b"]})"},
        {"bus expand", 2, "", "quill: LABEL is required. \"quill --help\" says how it is used.\n"},
        {"bus build 'D[3]' 'D[2]' 'D[1]' 'A[7]' CLK", 0, "D[3:1],A7,CLK\n"},
        {"bus build 'A(7)' 'A(8)' 'B(0)' --limiter '()' --bracket-singles", 0, "A(7:8),B(0)\n"},
        {"bus build --old '{A}2' A A A", 0, "{A}3\n"},
        {"bus build --old db 'D[1]' 'D[0]' CLK --design plant.json --json", 0, R"({"label": "db"})"},
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
)"},
        {"label check '~A$' --json", 1,
         R"({"text": "~A$", "label": true, "netLabel": false, "inverted": true, "partlyInverted": false})"},
        {"label invert 'A~B'", 0, "~AB\n"},
        {"label invert '~A~B' --off --json", 0, R"({"text": "~A~B", "label": "AB"})"},
        {"bus", 2, "", "quill: A subcommand is required. \"quill --help\" says how it is used.\n"},
    });
    const std::string buses = OneLine(Run("buses --json plant.json").out);
    EXPECT_NE(buses.find(R"("label": "E7", "source": "E[7]",)"), buses.npos);
    EXPECT_NE(buses.find(R"("label": "$F[1:0]", "source": "$F[1:0]",)"), buses.npos);
}

}  // namespace
