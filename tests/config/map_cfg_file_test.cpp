#include "config/map_cfg_file.h"

#include <gtest/gtest.h>

#include "tests/support/temporary.h"

using Quill::MapCfgFile;
using Map = std::map<std::string, std::string>;

TEST(MapCfgFile, TakesQuotedTextsInPairs) {
    const Tests::TemporaryFolder folder;
    // clang-format off
    const struct { const char* why; std::string text; Map want; } cases[] = {
        {"what is outside quotes is ignored", "x \"RES\" = \"R\"\r\n\"CAP\"\"C\"", {{"RES", "R"}, {"CAP", "C"}}},
        {"a pair may span lines",          "\"A\nB\"\n\n\"1\"",    {{"A\nB", "1"}}},
        {"a line end after the last pair", "\"A\" \"1\"\r\n",      {{"A", "1"}, {"", ""}}},
        {"the last occurrence counts",     "\"A\"\"1\"\"A\"\"2\"", {{"A", "2"}}},
        {"an odd number of texts",         "\"A\"\"1\"\"B\"",      {{"A", "1"}, {"B", ""}}},
        {"an opening quote ends the file", "\"A\" \"",             {{"A", ""}}},
        {"a text is open at the end",      "\"A\" \"1 2",          {{"A", "1 2"}}},
        {"empty texts are texts",          "\"\"\"x\"",            {{"", "x"}}},
        {"a NUL ends the file",            std::string("\"A\"\"1\"\0\"B\"\"2\"", 13), {{"A", "1"}}},
        {"an empty file",                  "",                     {}},
    };
    // clang-format on
    for (const auto& c : cases) {
        folder.Write("a map.cfg", c.text);
        MapCfgFile file;
        file.load(folder / "a map.cfg");
        EXPECT_EQ(file.getMap(), c.want) << c.why;
    }
}

TEST(MapCfgFile, MergesAndLeavesTheMapAloneWhenTheFileCannotBeRead) {
    const Tests::TemporaryFolder folder;
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
    const Tests::TemporaryFolder folder;
    const Tests::Variable root("TOVE_HOME", folder / "Tools");
    for (const std::string name : {"map", "mapnl", "own"})
        folder.Write("Tools/standard/" + name + ".cfg", '"' + name + "\"\"\"");
    MapCfgFile schematic, cobalt, netlist, own;
    schematic.loadFromDefaultLocations();
    cobalt.loadFromDefaultLocations("Cobalt");
    netlist.loadFromDefaultLocations("netList");
    own.loadFileFromDefaultLocations("own.cfg");
    EXPECT_TRUE(schematic.getMap() == (Map{{"map", ""}}) && cobalt.getMap() == schematic.getMap());
    EXPECT_EQ(netlist.getMap(), (Map{{"mapnl", ""}}));
    EXPECT_EQ(own.getMap(), (Map{{"own", ""}}));
#ifndef _WIN32
    folder.Write("Tools\\standard\\own.cfg", "\"as it is given\"\"\"");
    own.loadFileFromDefaultLocations("own.cfg");
    EXPECT_EQ(own.getMap(), (Map{{"as it is given", ""}, {"own", ""}}));
#endif
}
