// Designs in one form and the other.
#include "tests/cli/run_program.h"

namespace {

using Export = Tests::ProgramTest;

TEST_F(Export, IsIdenticalThroughEveryForm) {
    const std::string example = "'" QUILL_EXAMPLES "/vibration-recorder.json'";
    Check({{"export " + example + " -o recorder.qdb", 0, ""},
           {"export recorder.qdb -o again.qdb", 0, ""},
           {"export again.qdb -o again.json && cmp again.json " + example, 0, ""}});
    EXPECT_EQ(Run("info " + example), Run("info recorder.qdb"));
}

TEST_F(Export, SaysWhatItCannotDo) {
    ASSERT_EQ(Run("export '" QUILL_EXAMPLES "/vibration-recorder.json' -o recorder.qdb").code, 0);
    const std::string before = Read("recorder.qdb");
    Write("damaged.qdb", before.substr(0, 8192));
    Check({
        {"export recorder.qdb -o recorder.qdb", 2, "",
         "quill: An object of that name or index exists: " + Path("recorder.qdb") + "\n"},
        {"info damaged.qdb", 2, "",
         "quill: The store of the design failed: " + Path("damaged.qdb") +
             ": the file is damaged: database disk image is malformed\n"},
        {"export recorder.qdb -o none/recorder.json", 2, "", "quill: none/recorder.json: No such file or directory\n"},
    });
    EXPECT_TRUE(Read("recorder.qdb") == before);
}

}  // namespace
