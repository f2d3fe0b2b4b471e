
#include "tests/cli/run_program.h"

namespace {

// A root with one child sheet, whose file is not there at first.
class ImportCommand : public Tests::ProgramTest {
protected:
    ImportCommand() {
        Write("root.kicad_sch", R"((kicad_sch (version 20231120) (generator "test") (uuid "11")
  (global_label "NET" (shape input) (at 10 10 0) (uuid "12"))
  (sheet (at 20 20) (size 20 20) (uuid "13") (property "Sheetname" "Sub") (property "Sheetfile" "sub.kicad_sch")
    (instances (project "root" (path "/11" (page "2")))))
  (sheet_instances (path "/" (page "1"))))
)");
    }
};

const std::string Missing =
    R"(root.kicad_sch:3:97: sheet "Sub": sub.kicad_sch: cannot be read: No such file or directory
)";

TEST_F(ImportCommand, GivesTheDesignThatTheOtherCommandsReadFromTheSchematicItself) {
    Write("sub.kicad_sch", R"((kicad_sch (version 20231120) (generator "test") (uuid "21")
  (global_label "NET" (shape output) (at 10 10 0) (uuid "22"))
  (bus (pts (xy 10 20) (xy 30 20)) (uuid "23"))
  (label "D[1..0]" (at 10 20 0) (uuid "24")))
)");
    Check({{"import root.kicad_sch -o design.json", 0, ""}});
    for (const std::string design : {"design.json", "root.kicad_sch"}) {
        Check({
            {"pages " + design, 0, R"(Page  Path  Block  Sheet  Print order  Name
   1  /     root   1      1            1
   2  /Sub  sub    1      2            $1I2\1
)"},
            {"connectors " + design + " | cut -c1-58 | sed 's/ *$//'", 0, R"(Label  Page  Path  Block  Sheet  Symbol
NET       1  /     root   1      kicad:global_label.input
NET       2  /Sub  sub    1      kicad:global_label.output
)"},
            {"buses --json " + design, 0,
             R"([{"block": "sub", "sheet": "1", "label": "D[1:0]", "source": "D[1..0]", )"
             R"("members": ["D[1]", "D[0]"]}])"},
        });
    }
    Check({{"import root.kicad_sch -o flat.json --merge-flat-sheets && '" QUILL_PROGRAM "' pages flat.json", 0,
            R"(Page  Path  Block  Sheet  Print order  Name
   1  /     root   1      1            1
   2  /     root   Sub    2            Sub
)"}});
}

TEST_F(ImportCommand, LeavesTheTargetAsItWasWhenAnythingFails) {
    Write("design.json", "as it was");
    Write("bad.kicad_sch", "(kicad_sch (version 20231120)\n  (uuid ");
    const std::string none = "quill: warning: " + Missing + "quill: ";
    Check({
        {"import root.kicad_sch -o design.json", 2, "", "quill: " + Missing},
        {"import bad.kicad_sch -o design.json", 2, "", "quill: bad.kicad_sch:2:9: the text ends inside a list\n"},
        {"import none.kicad_sch -o design.json", 2, "",
         "quill: none.kicad_sch: cannot be read: No such file or directory\n"},
        {"import root.kicad_sch -o root.kicad_sch", 2, "",
         "quill: root.kicad_sch: A schematic is not overwritten with a design file\n"},
        {"import root.kicad_sch --allow-missing -o none/design.json", 2, "",
         none + "none/design.json: No such file or directory\n"},
        {"import root.kicad_sch --allow-missing -o .", 2, "", none + ".: Is not a regular file\n"},
        {"import root.kicad_sch", 2, "", "quill: --output is required. \"quill --help\" says how it is used.\n"},
    });
    Check({{"--help > /dev/null; cat design.json; ls", 0,
            "as it wasbad.kicad_sch\ndesign.json\nerror\nout\nroot.kicad_sch\n"}});

    // A link stays one; what it leads to is replaced.
    Check({
        {"--help > /dev/null; ln -s design.json link.json", 0, ""},
        {"import root.kicad_sch --allow-missing -o link.json", 0, "", "quill: warning: " + Missing},
        {"pages design.json", 0,
         "Page  Path  Block  Sheet  Print order  Name\n   1  /     root   1      1            1\n"},
    });
}

}  // namespace
