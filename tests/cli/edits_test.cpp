// The commands that change a design, one after the other on one file.
#include "tests/cli/plant.h"
#include "tests/cli/run_program.h"

namespace {

using Edit = Tests::ProgramTest;

TEST_F(Edit, ChangesSheetsAndPagesOfTheFile) {
    Write("plant.json", Tests::Plant);
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

TEST_F(Edit, SaysWhenAPageAboveKeepsAPageExcluded) {
    Write("plant.json", Tests::Plant);
    Check({{"pages include plant.json \"$(printf '$5I0\\\\1\\033')\"", 0, "There is nothing to do.\n",
            "quill: A page above excludes page $5I0\\1\\x1B (sheet 1\\x1B of sub at /T)\n"}});
    EXPECT_EQ(Run("info plant.json").code, 0);
}

}  // namespace
