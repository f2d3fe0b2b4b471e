// Designs in one form and the other.
#include "tests/cli/run_program.h"

namespace {

using Tests::Outcome;

class Export : public Tests::ProgramTest {};

TEST_F(Export, IsIdenticalThroughEveryForm) {
    EXPECT_EQ(Run("export '" QUILL_EXAMPLES "/vibration-recorder.json' -o recorder.qdb"), (Outcome{0, "", ""}));
    EXPECT_EQ(Run("export recorder.qdb -o recorder.json"), (Outcome{0, "", ""}));
    EXPECT_EQ(Run("export recorder.qdb -o again.qdb"), (Outcome{0, "", ""}));
    EXPECT_EQ(Run("export again.qdb -o again.json"), (Outcome{0, "", ""}));
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
