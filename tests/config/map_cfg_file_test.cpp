#include "config/map_cfg_file.h"

#include <gtest/gtest.h>

#include "tests/config/test_support.h"

using Quill::MapCfgFile;
using Quill::Test::EnvironmentVariable;
using Quill::Test::TemporaryFolder;

using Map = std::map<std::string, std::string>;

TEST(MapCfgFile, TakesQuotedTextsInPairs) {
    const TemporaryFolder folder;
    struct Case {
        const char* why;
        std::string text;
        Map want;
    };
    const Case cases[] = {
        {"what is outside quotes is ignored",
         "x \"RESISTOR\" = \"R\"\r\n\"CAP\"\"C\"",
         {{"RESISTOR", "R"}, {"CAP", "C"}}},
        {"a pair may span lines", "\"A\nB\"\n\n\"1\"", {{"A\nB", "1"}}},
        {"a line end after the last pair", "\"A\" \"1\"\r\n", {{"A", "1"}, {"", ""}}},
        {"the last occurrence counts", "\"A\"\"1\"\"A\"\"2\"", {{"A", "2"}}},
        {"an odd number of texts", "\"A\"\"1\"\"B\"", {{"A", "1"}, {"B", ""}}},
        {"an opening quote ends the file", "\"A\" \"", {{"A", ""}}},
        {"a text is open at the end", "\"A\" \"1 2", {{"A", "1 2"}}},
        {"empty texts are texts", "\"\"\"x\"", {{"", "x"}}},
        {"a NUL ends the file", std::string("\"A\"\"1\"\0\"B\"\"2\"", 14), {{"A", "1"}}},
        {"a NUL ends an open text", std::string("\"A\"\"1\0 2\"", 10), {{"A", "1"}}},
        {"no quotes at all", "A 1", {{"", ""}}},
        {"an empty file", "", {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        folder.Write("a map.cfg", c.text);
        MapCfgFile file;
        file.load(folder / "a map.cfg");
        EXPECT_EQ(file.getMap(), c.want);
    }
}

TEST(MapCfgFile, MergesAndLeavesTheMapAloneWhenTheFileCannotBeRead) {
    const TemporaryFolder folder;
    folder.Write("map.cfg", "\"A\"\"2\"\"B\"\"3\"");
    MapCfgFile file;
    file.getMap() = {{"A", "1"}, {"C", "1"}};
    file.load(folder / "missing.cfg");
    file.load(folder.Path());
    EXPECT_EQ(file.getMap(), (Map{{"A", "1"}, {"C", "1"}}));
    file.load(folder / "map.cfg");
    EXPECT_EQ(file.getMap(), (Map{{"A", "2"}, {"B", "3"}, {"C", "1"}}));
}

TEST(MapCfgFile, DefaultLocationsAreBelowTheInstallationRoot) {
    const TemporaryFolder folder;
    const EnvironmentVariable home("TOVE_HOME", folder / "Tools");
    folder.Write("Tools/standard/map.cfg", "\"map\"\"1\"");
    folder.Write("Tools/standard/mapnl.cfg", "\"mapnl\"\"1\"");
    folder.Write("Tools/standard/own.cfg", "\"own\"\"1\"");
    const auto keyAfter = [](auto load) {
        MapCfgFile file;
        load(file);
        return file.getMap().empty() ? std::string("none") : file.getMap().begin()->first;
    };
    EXPECT_EQ(keyAfter([](MapCfgFile& file) { file.loadFromDefaultLocations(); }), "map");
    EXPECT_EQ(keyAfter([](MapCfgFile& file) { file.loadFromDefaultLocations("Cobalt"); }), "map");
    EXPECT_EQ(keyAfter([](MapCfgFile& file) { file.loadFromDefaultLocations("netList"); }), "mapnl");
    EXPECT_EQ(keyAfter([](MapCfgFile& file) { file.loadFileFromDefaultLocations("own.cfg"); }), "own");
    EXPECT_EQ(keyAfter([](MapCfgFile& file) { file.loadFileFromDefaultLocations("no.cfg"); }), "none");
#ifndef _WIN32
    folder.Write("Tools\\standard\\own.cfg", "\"the path as it is given comes first\"\"1\"");
    EXPECT_EQ(keyAfter([](MapCfgFile& file) { file.loadFileFromDefaultLocations("own.cfg"); }),
              "the path as it is given comes first");
#endif
}
