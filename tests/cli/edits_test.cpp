// The commands that change a design, one after the other on one file.
#include "tests/cli/run_program.h"

namespace {

using Edit = Tests::PlantTest;

TEST_F(Edit, ChangesSheetsAndPagesOfTheFile) {
    Check({
        {"sheets up plant.json plant A", 0, "The sheets of plant are in this order: A, B\n"},
        {"sheets up plant.json plant A", 0, "There is nothing to do.\n"},
        {"sheets move plant.json plant A --after B --dry-run", 0,
         "Dry run: The sheets of plant are in this order: B, A\n"},
        {"sheets plant.json plant | cut -c1", 0, "S\nA\nB\n"},
        {"sheets down plant.json plant A", 0, "The sheets of plant are in this order: B, A\n"},
        {"sheets move plant.json plant A --before B", 0, "The sheets of plant are in this order: A, B\n"},
        {"sheets move plant.json plant A --before A", 2, "", "quill: Sheet A cannot be moved to its own side\n"},
        {"sheets move plant.json plant A --before C", 2, "", "quill: There is no sheet called C\n"},
        {"sheets renumber plant.json plant --step 0", 2, "", "quill: Names would be taken twice: 1\n"},
        {"sheets renumber plant.json plant B --prefix 'A' --start 2147483647", 0, "Sheet B is called A2147483647\n"},
        {"sheets renumber plant.json plant --start 2147483647", 2, "", "quill: The numbers become too large\n"},
        {"sheets renumber plant.json plant --start 10 --step 10", 0,
         "Sheet A is called 10\nSheet A2147483647 is called 20\n"},
        {"sheets new plant.json plant", 0, "Block plant has a new sheet 2\n"},
        {"sheets new plant.json plant --dry-run --json", 0,
         R"({"dryRun": true, "changes": ["Block plant has a new sheet 3"], "sheet": "3", "id": 3})"},
        {"sheets new plant.json plant --name 10", 0, "Block plant has a new sheet 10_1\n"},
        {"pages exclude plant.json 2 2", 0,
         "Sheet 1\\x1B of sub is now marked as excluded from printing, at all its 2 places\n"},
        {"pages include plant.json 10", 0,
         "Sheet 10 of plant is no longer marked as excluded from printing, at its one place\n"},
        {"pages exclude plant.json 7", 2, "", "quill: There is no page 7\n"},
        {"pages plant.json", 0, R"(Page  Path  Block  Sheet  Print order  Name
   1  /     plant  10     3            10
      /T    sub    1\x1B  7            $5I0\1\x1B  excluded
   2  /     plant  20     7            20
      /S    sub    1\x1B  7            $2I0\1\x1B  excluded
   3  /S    aux    x                   $3I0\x
   4  /     plant  2                   2
   5  /     plant  10_1                10_1
)"},
        {"sheets up root.kicad_sch plant A", 2, "",
         "quill: root.kicad_sch: A schematic is not edited; \"quill import\" writes it down as a design file, "
         "which can be\n"},
    });
}

TEST_F(Edit, MarksBlocksForReuse) {
    Write("old.json", R"({"format": "quill-design", "version": 1, "blocks": [
        {"index": "block:1", "name": "b", "types": ["schematic"], "attributes": [["ReuseBlock", "true"]]}]})");
    Check({
        {"reuse plant.json sub on --dry-run --json", 0,
         R"({"dryRun": true, "changes": ["Block sub is now marked as a reuse block"]})"},
        {"reuse plant.json sub on", 0, "Block sub is now marked as a reuse block\n"},
        {"reuse plant.json sub on", 0, "There is nothing to do.\n"},
        {"reuse plant.json", 0, "Block  Reuse  Top level\nplant\nsub    yes    yes\naux           yes\n"},
        {"reuse plant.json sub off", 0, "Block sub is no longer marked as a reuse block\n"},
        {"reuse plant.json sub off --json", 0, R"({"dryRun": false, "changes": []})"},
        {"reuse old.json b off", 0, "There is nothing to do.\n",
         "quill: Block b bears the mark of an older design, which stays, and so remains a reuse block\n"},
        {"reuse old.json --json", 0, R"([{"block": "b", "reuse": true, "topLevel": false}])"},
        {"reuse plant.json sub", 2, "", "quill: BLOCK needs on or off behind it\n"},
        {"reuse plant.json lib on", 2, "", "quill: The design has no schematic block called lib\n"},
        {"reuse plant.json sub maybe", 2, "",
         "quill: MARK: maybe not in {on,off}. \"quill --help\" says how it is used.\n"},
        {"reuse plant.json --dry-run", 2, "", "quill: --dry-run needs BLOCK and on or off\n"},
    });
}

TEST_F(Edit, StampsSheetsAndSymbols) {
    Check({
        {"stamp plant.json plant --set 1710407107", 0,
         "The sheet A of plant is stamped 9:05:07_3-14-24\nThe sheet B of plant is stamped 9:05:07_3-14-24\n"},
        {"stamp plant.json plant A --set 1710407107", 0, "There is nothing to do.\n"},
        {"stamp plant.json lib off.1 --set -1 --raw", 0, "The symbol off.1 of lib is stamped -1\n"},
        {"stamp plant.json plant B --remove --dry-run", 0, "Dry run: The sheet B of plant has no stamp now\n"},
        {"stamp plant.json plant B --remove", 0, "The sheet B of plant has no stamp now\n"},
        {"stamp plant.json aux --set now | sed -E 's/[0-9]+:[0-9:]{5}_[0-9-]+/NOW/'", 0,
         "The sheet x of aux is stamped NOW\n"},
        {"stamp plant.json aux --remove", 0, "The sheet x of aux has no stamp now\n"},
        {"stamp plant.json", 0, R"(Kind    Block  Name                      Stamp            Time (UTC)
sheet   plant  A                         9:05:07_3-14-24  9:05:07_3-14-24
sheet   plant  B
sheet   sub    1\x1B
sheet   aux    x
symbol  lib    off.1                     -1               23:59:59_12-31-69
symbol  lib    global_label.input
symbol  lib    hierarchical_label.input
)"},
        {"stamp plant.json lib off.1 --json", 0,
         R"([{"kind": "symbol", "block": "lib", "name": "off.1", "stamp": "-1", "time": "23:59:59_12-31-69"}])"},
        {"stamp plant.json --set soon", 2, "",
         "quill: --set takes \"now\" or a 32-bit number of seconds since 1970, not soon\n"},
        {"stamp plant.json none", 2, "", "quill: The design has no block called none\n"},
        {"stamp plant.json plant C", 2, "", "quill: Block plant has no sheet or symbol called C\n"},
        {"stamp plant.json --dry-run", 2, "", "quill: --dry-run needs --set or --remove\n"},
        {"stamp plant.json --raw", 2, "", "quill: --raw requires --set. \"quill --help\" says how it is used.\n"},
        {"stamp plant.json --remove --set now", 2, "",
         "quill: --set excludes --remove. \"quill --help\" says how it is used.\n"},
    });
}

TEST_F(Edit, SaysWhenAPageAboveKeepsAPageExcluded) {
    Check({{"pages include plant.json \"$(printf '$5I0\\\\1\\033')\"", 0, "There is nothing to do.\n",
            "quill: A page above excludes page $5I0\\1\\x1B (sheet 1\\x1B of sub at /T)\n"}});
    EXPECT_EQ(Run("info plant.json").code, 0);
}

}  // namespace
