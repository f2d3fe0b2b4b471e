// Designs in one form and the other.
#include "tests/cli/run_program.h"

namespace {

using Tests::Outcome;

using Export = Tests::ProgramTest;

TEST_F(Export, IsIdenticalThroughEveryForm) {
    Check({{"export '" QUILL_EXAMPLES "/vibration-recorder.json' -o recorder.qdb", 0, ""},
           {"export recorder.qdb -o recorder.json", 0, ""},
           {"export recorder.qdb -o again.qdb", 0, ""},
           {"export again.qdb -o again.json", 0, ""}});
    const std::string text = Read("recorder.json");
    EXPECT_NE(text, "");
    EXPECT_EQ(Run("info '" QUILL_EXAMPLES "/vibration-recorder.json'"), Run("info recorder.qdb"));
    EXPECT_EQ(text, Read("again.json"));
    std::ifstream example(QUILL_EXAMPLES "/vibration-recorder.json", std::ios::binary);
    EXPECT_EQ(text, std::string(std::istreambuf_iterator<char>(example), {}));
}

TEST_F(Export, SaysWhatItCannotDo) {
    ASSERT_EQ(Run("export '" QUILL_EXAMPLES "/vibration-recorder.json' -o recorder.qdb").code, 0);
    const std::string before = Read("recorder.qdb");
    const Outcome there = Run("export recorder.qdb -o recorder.qdb");
    EXPECT_EQ(there.code, 2);
    EXPECT_NE(there.error.find("recorder.qdb"), std::string::npos) << there.error;
    EXPECT_TRUE(Read("recorder.qdb") == before);
    Write("damaged.qdb", before.substr(0, 8192));
    const Outcome damaged = Run("info damaged.qdb");
    EXPECT_EQ(damaged.code, 2);
    EXPECT_NE(damaged.error.find("damaged.qdb: the file is damaged"), std::string::npos) << damaged.error;
    const Outcome nowhere = Run("export recorder.qdb -o none/recorder.json");
    EXPECT_EQ(nowhere.code, 2);
    EXPECT_NE(nowhere.error.find("none/recorder.json: No such file"), std::string::npos) << nowhere.error;
}

}  // namespace
