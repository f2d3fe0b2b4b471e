
#include "tests/cli/run_program.h"

namespace {

using Tests::Outcome;

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
    void AddChild() {
        Write("sub.kicad_sch", R"((kicad_sch (version 20231120) (generator "test") (uuid "21")
  (global_label "NET" (shape output) (at 10 10 0) (uuid "22"))
  (bus (pts (xy 10 20) (xy 30 20)) (uuid "23"))
  (label "D[1..0]" (at 10 20 0) (uuid "24")))
)");
    }
};

const std::string Missing =
    R"(root.kicad_sch:3:97: sheet "Sub": sub.kicad_sch: cannot be read: No such file or directory
)";

TEST_F(ImportCommand, GivesTheDesignThatTheOtherCommandsReadFromTheSchematicItself) {
    AddChild();
    EXPECT_EQ(Run("import root.kicad_sch -o design.json"), (Outcome{0, "", ""}));
    for (const std::string design : {"design.json", "root.kicad_sch"}) {
        EXPECT_EQ(Run("pages " + design), (Outcome{0, R"(Page  Path  Block  Sheet  Print order  Name
   1  /     root   1      1            1
   2  /Sub  sub    1      2            $1I2\1
)",
                                                   ""}));
        EXPECT_EQ(Run("connectors " + design + " | cut -c1-58 | sed 's/ *$//'").out,
                  R"(Label  Page  Path  Block  Sheet  Symbol
NET       1  /     root   1      kicad:global_label.input
NET       2  /Sub  sub    1      kicad:global_label.output
)");
        EXPECT_EQ(Run("buses --json " + design).out, R"([
  {
    "block": "sub",
    "sheet": "1",
    "label": "D[1:0]",
    "source": "D[1..0]",
    "members": [
      "D[1]",
      "D[0]"
    ]
  }
]
)");
    }
    EXPECT_EQ(Run("import root.kicad_sch -o flat.json --merge-flat-sheets && '" QUILL_PROGRAM "' pages flat.json").out,
              R"(Page  Path  Block  Sheet  Print order  Name
   1  /     root   1      1            1
   2  /     root   Sub    2            Sub
)");
}

TEST_F(ImportCommand, LeavesTheTargetAsItWasWhenAnythingFails) {
    Write("design.json", "as it was");
    Write("bad.kicad_sch", "(kicad_sch (version 20231120)\n  (uuid ");
    struct Case {
        const char* arguments;
        std::string error;
    };
    const Case cases[] = {
        {"root.kicad_sch -o design.json", Missing},
        {"bad.kicad_sch -o design.json", "bad.kicad_sch:2:9: the text ends inside a list\n"},
        {"none.kicad_sch -o design.json", "none.kicad_sch: cannot be read: No such file or directory\n"},
        {"root.kicad_sch -o root.kicad_sch", "root.kicad_sch: A schematic is not overwritten with a design file\n"},
        {"root.kicad_sch --allow-missing -o none/design.json",
         "warning: " + Missing + "quill: none/design.json: No such file or directory\n"},
        {"root.kicad_sch --allow-missing -o .", "warning: " + Missing + "quill: .: Is not a regular file\n"},
        {"root.kicad_sch", "--output is required. \"quill --help\" says how it is used.\n"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(Run(std::string("import ") + c.arguments), (Outcome{2, "", "quill: " + c.error})) << c.arguments;
    EXPECT_EQ(Run("info design.json").error.substr(0, 20), "quill: design.json: ");
    EXPECT_EQ(Run("info design.json > /dev/null; ls").out, "bad.kicad_sch\ndesign.json\nerror\nout\nroot.kicad_sch\n");

    // A link stays one; what it leads to is replaced.
    EXPECT_EQ(Run("--help > /dev/null; ln -s design.json link.json").code, 0);
    EXPECT_EQ(Run("import root.kicad_sch --allow-missing -o link.json"),
              (Outcome{0, "", "quill: warning: " + Missing}));
    EXPECT_EQ(Run("pages design.json").out,
              "Page  Path  Block  Sheet  Print order  Name\n   1  /     root   1      1            1\n");
}

}  // namespace
