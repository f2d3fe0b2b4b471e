// Save points of a design file, from the first to the last.
#include "tests/cli/run_program.h"

namespace {

using SavePoint = Tests::PlantTest;

TEST_F(SavePoint, BringsBackTheDesignAsItWas) {
    const std::string dated = R"( | sed -E 's/[0-9-]{10} [0-9:]{8}/DATE/g; s/"[0-9]{10}"/"STAMP"/')";
    Check({
        {"export plant.json -o plant.qdb", 0, ""},
        {"export plant.qdb -o before.json", 0, ""},
        {"savepoint list plant.qdb", 0, "Name  Save point\n"},
        {"savepoint add plant.qdb --comment 'before the sheets move'" + dated, 0,
         "The design is kept as save point 1, DATE (\"before the sheets mo...\")\n"},
        {"savepoint add plant.qdb 2 --dry-run" + dated, 0, "Dry run: The design is kept as save point 2, DATE\n"},
        {"savepoint add plant.qdb first --json" + dated, 0,
         R"({"dryRun": false, "changes": ["The design is kept as save point first, DATE"], "name": "first", )"
         R"("date": "STAMP", "comment": "", "menu": "DATE"})"},
        {"sheets up plant.qdb plant A", 0, "The sheets of plant are in this order: A, B\n"},
        {"savepoint add plant.qdb --comment \"$(printf 'a\\033')\"" + dated, 0,
         "The design is kept as save point 3, DATE (\"a\\x1B\")\n"},
        {"savepoint list plant.qdb" + dated, 0, R"(Name   Save point
1      DATE ("before the sheets mo...")
first  DATE
3      DATE ("a\x1B")
)"},
        {"savepoint restore plant.qdb 1 --dry-run" + dated, 0,
         "Dry run: The design is again as in save point 1, DATE (\"before the sheets mo...\")\n"},
        {"savepoint remove plant.qdb 1 --dry-run" + dated, 0,
         "Dry run: The design no longer has save point 1, DATE (\"before the sheets mo...\")\n"},
        {"sheets plant.qdb plant | cut -c1", 0, "S\nA\nB\n"},
        {"savepoint remove plant.qdb 1" + dated, 0,
         "The design no longer has save point 1, DATE (\"before the sheets mo...\")\n"},
        {"savepoint restore plant.qdb 1", 2, "", "quill: The design has no save point called 1\n"},
        {"savepoint restore plant.qdb first" + dated, 0, "The design is again as in save point first, DATE\n"},
        {"export plant.qdb -o after.json", 0, ""},
        {"savepoint list plant.qdb --json" + dated, 0,
         R"([{"name": "first", "date": "STAMP", "comment": "", "menu": "DATE"},)"
         R"!( {"name": "3", "date": "STAMP", "comment": "a\u001b", "menu": "DATE (\"a\u001b\")"}])!"},
        {"savepoint add plant.qdb 3", 2, "", "quill: The name 3 is taken\n"},
        {"savepoint add plant.qdb QUILL", 2, "", "quill: The name QUILL is taken\n"},
        {"savepoint add plant.qdb '' --dry-run", 2, "", "quill: A save point needs a name\n"},
        {"savepoint remove plant.qdb QUILL", 2, "", "quill: The design has no save point called QUILL\n"},
        {"savepoint add plant.json", 2, "",
         "quill: plant.json: Save points are kept in design files only; \"quill export plant.json -o FILE.qdb\" makes "
         "one\n"},
        {"savepoint list root.kicad_sch", 2, "",
         "quill: root.kicad_sch: Save points are kept in design files only; \"quill import root.kicad_sch -o "
         "FILE.qdb\" makes one\n"},
        {"savepoint", 2, "", "quill: A subcommand is required. \"quill --help\" says how it is used.\n"},
    });
    EXPECT_NE(Read("before.json"), "");
    EXPECT_EQ(Read("before.json"), Read("after.json"));
}

}  // namespace
