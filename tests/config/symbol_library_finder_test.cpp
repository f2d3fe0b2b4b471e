#include "config/symbol_library_finder.h"

#include <gtest/gtest.h>

#include "tests/support/temporary.h"

using Quill::CSymbolFinder;
using Quill::CSymbolLibsFinder;
using Tests::Native;
using Tests::TemporaryFolder;
using Names = std::list<std::string>;

namespace {

std::string Record(std::string name) {
    name.resize(30, ' ');
    return name;
}

Names Symbols(const std::string& folder, bool fromTable, bool firstOnly = false) {
    CSymbolFinder finder;
    finder.SearchSymbols(folder.c_str(), fromTable, firstOnly);
    return finder.GetSymbols();
}

}  // namespace

TEST(SymbolFinder, TableGivesWellFormedNamesInRecordOrder) {
    const TemporaryFolder folder;
    const std::string widest = std::string(28, 'w') + ".1";
    // clang-format off
    const struct { const char* why; std::string table; Names want; } cases[] = {
        {"record order, repeats too",       Record("res.2") + Record("cap.1") + Record("res.2"), {"res.2", "cap.1", "res.2"}},
        {"all characters of names",         Record("aZ09_$&#@!%'`()+-.12"), {"aZ09_$&#@!%'`()+-.12"}},
        {"only the last dot counts",        Record("a.b.1") + Record("r(2)+.12"), {"r(2)+.12"}},
        {"digits after the dot, only",      Record("res") + Record("res.") + Record("res.a1") + Record("res.1a"), {}},
        {"other characters before it",      Record("r*.1") + Record("r/s.1") + Record("\xC3\xA9.1") + Record("r\\.1"), {}},
        {"a blank or NUL ends the name",    Record("a.1 b.2") + Record(std::string("b.2\0z", 5)) + Record("r s.1"), {"a.1", "b.2"}},
        {"nothing before the dot",          Record(".1"), {".1"}},
        {"a name may fill its record",      widest + Record("a.1"), {widest, "a.1"}},
        {"a rest is no record",             Record("a.1") + Record("b.1").substr(0, 29), {"a.1"}},
        {"line ends are bytes like others", Record("a.1") + "\r\n" + Record("b.1"), {"a.1"}},
    };
    // clang-format on
    for (const auto& c : cases) {
        folder.Write("lib/sym.tbl", c.table);
        EXPECT_EQ(Symbols(folder / "lib", true), c.want) << c.why;
    }
    folder.Write("lib/sym.tbl", Record("bad") + Record("b.1") + Record("a.1"));
    EXPECT_EQ(Symbols(folder / "lib", true, true), Names{"b.1"});
}

TEST(SymbolFinder, FolderGivesWellFormedFileNamesSorted) {
    const TemporaryFolder folder;
    for (const char* name : {"res.1", "Cap.1", "r(2)+.12", "cap.2", ".1", ".x.1", "r s.1", "res", "res.", "res.a1"})
        folder.Write(std::string("lib/sym/") + name, "");
    folder.MakeFolder("lib/sym/a.1");
    EXPECT_EQ(Symbols(folder / "lib", false), (Names{"Cap.1", "cap.2", "r(2)+.12", "res.1"}));
    EXPECT_EQ(Symbols(folder / "lib", false, true), Names{"Cap.1"});

    CSymbolFinder finder;
    finder.SearchSymbols((folder / "lib").c_str(), false);
    EXPECT_EQ(finder.GetSymbols().size(), 4u);
    finder.SearchSymbols((folder / "lib").c_str(), true);
    EXPECT_EQ(finder.GetSymbols(), Names()) << "the library has no table, and a search begins with an empty list";
    finder.SearchSymbols(nullptr, false);
}

TEST(SymbolLibsFinder, FindsTheFoldersBesideTheCentralLibraryFile) {
    const TemporaryFolder folder;
    // clang-format off
    const std::pair<const char*, const char*> files[] = {
        {"not a folder", ""},   {"a file/x", ""},
        {"both/sym.tbl", ""},   {"both/sym.lib", ""},   {"both/lib.cfg", "Alias x\naliases y\nalias"},
        {"dirs/sym.tbl", ""},   {"dirs/sym.lib/x", ""}, {"table/lib.cfg", "alias\tTab\nalias last line"},
        {"table/sym.tbl", ""},  {"Analog/lib.cfg", "version 2\r\nalias  My Lib\r\nalias other\r\n"},
    };
    // clang-format on
    for (const auto& [name, text] : files)
        folder.Write(std::string("CL/SymbolLibs/") + name, text);
    CSymbolLibsFinder finder;
    const auto found = [&] {
        std::string all;
        for (const auto* item : finder.GetItems()) {
            all += zolt::filesystem::path(item->GetPath()).filename().string() + "=" + item->GetAlias() +
                   (item->IsMega() ? " mega, " : ", ");
        }
        return all;
    };
    finder.SearchForLibraries(folder / "CL/central.lmc");
    EXPECT_EQ(found(), "a file=a file, Analog= My Lib, both=both mega, dirs=dirs, table=last line, ");
    EXPECT_TRUE(
        std::filesystem::equivalent(Native(finder.GetItems()[1]->GetPath()), Native(folder / "CL/SymbolLibs/Analog")));
    finder.SearchCLForLibraries(folder.Path() + "\\CL\\central.lmc", true, true);
    EXPECT_EQ(found(), "a file=a file, Analog=Analog, both=both, dirs=dirs, table=table, ");

    finder.SearchForLibraries(finder.GetItems()[0]->GetPath());
    EXPECT_EQ(found(), "") << "no SymbolLibs beside this one, which is named by a text of the finder itself";
    finder.SearchForLibraries("central.lmc");
    EXPECT_EQ(found(), "") << "a file without a folder";
}

TEST(SymbolLibsFinder, LibCfgLinesSplitAtTheirFirstBlank) {
    const TemporaryFolder folder;
    folder.Write("lib.cfg", "a b c \r\n\nkey\n x\r\r\nz ");
    using Pairs = std::vector<std::pair<std::string, std::string>>;
    EXPECT_EQ(CSymbolLibsFinder::CLibCfgParser(folder / "lib.cfg").GetPairs(),
              (Pairs{{"a", "b c "}, {"", ""}, {"key", ""}, {"", "x\r"}, {"z", ""}}));
    EXPECT_EQ(CSymbolLibsFinder::CLibCfgParser(folder / "none.cfg").GetPairs(), Pairs());
}
