#include "config/symbol_library_finder.h"

#include <gtest/gtest.h>

#include "tests/config/test_support.h"

using Quill::CSymbolFinder;
using Quill::CSymbolLibsFinder;
using Quill::Test::TemporaryFolder;

namespace {

std::string Record(std::string name) {
    name.resize(30, ' ');
    return name;
}

std::string Symbols(const std::string& folder, bool fromTable, bool firstOnly = false) {
    CSymbolFinder finder;
    finder.SearchSymbols(folder.c_str(), fromTable, firstOnly);
    std::string all;
    for (const std::string& symbol : finder.GetSymbols())
        all += symbol + "\n";
    return all;
}

// "folder alias m" a library, "m" only of a mega library.
std::string Libraries(const CSymbolLibsFinder& finder, const std::string& base) {
    std::string all;
    for (const auto* item : finder.GetItems()) {
        EXPECT_EQ(item->GetPath().rfind(base + "/", 0), 0u) << item->GetPath();
        all += item->GetPath().substr(base.size() + 1) + "=" + item->GetAlias() + (item->IsMega() ? "=m\n" : "\n");
    }
    return all;
}

}  // namespace

TEST(SymbolFinder, TableGivesWellFormedNamesInRecordOrder) {
    const TemporaryFolder folder;
    const std::string widest = std::string(28, 'w') + ".1";
    struct Case {
        const char* why;
        std::string table;
        const char* want;
    };
    const Case cases[] = {
        {"record order, repeats too", Record("res.2") + Record("cap.1") + Record("res.2"), "res.2\ncap.1\nres.2\n"},
        {"all characters of names", Record("aZ09_$&#@!%'`()+-.12"), "aZ09_$&#@!%'`()+-.12\n"},
        {"only the last dot counts", Record("a.b.1") + Record("r(2)+.12"), "r(2)+.12\n"},
        {"no dot, no digits, other text", Record("res") + Record("res.") + Record("res.a1") + Record("res.1a"), ""},
        {"other characters", Record("r*.1") + Record("r/s.1") + Record("\xC3\xA9.1") + Record("r\\.1"), ""},
        {"a blank or NUL ends the name", Record("a.1 b.2") + Record(std::string("b.2\0zz", 6)) + Record("re s.1"),
         "a.1\nb.2\n"},
        {"nothing before the dot", Record(".1"), ".1\n"},
        {"a name may fill its record", widest + Record("a.1"), "wwwwwwwwwwwwwwwwwwwwwwwwwwww.1\na.1\n"},
        {"a rest is no record", Record("a.1") + Record("b.1").substr(0, 29), "a.1\n"},
        {"line ends are bytes like others", Record("a.1") + "\r\n" + Record("b.1"), "a.1\n"},
        {"an empty table", "", ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        folder.Write("lib/sym.tbl", c.table);
        EXPECT_EQ(Symbols(folder / "lib", true), c.want);
    }
    folder.Write("lib/sym.tbl", Record("bad") + Record("b.1") + Record("a.1"));
    EXPECT_EQ(Symbols(folder / "lib", true, true), "b.1\n");
    EXPECT_EQ(Symbols(folder / "missing", true), "");
}

TEST(SymbolFinder, FolderGivesWellFormedFileNamesSorted) {
    const TemporaryFolder folder;
    for (const char* name : {"res.1", "Cap.1", "r(2)+.12", "cap.2", ".1", ".x.1", "r s.1", "res", "res.", "res.a1"}) {
        folder.Write(std::string("lib/sym/") + name, "");
    }
    folder.MakeFolder("lib/sym/a.1");
    EXPECT_EQ(Symbols(folder / "lib", false), "Cap.1\ncap.2\nr(2)+.12\nres.1\n");
    EXPECT_EQ(Symbols(folder / "lib", false, true), "Cap.1\n");

    CSymbolFinder finder;
    finder.SearchSymbols((folder / "lib").c_str(), false);
    EXPECT_EQ(finder.GetSymbols().size(), 4u);
    finder.SearchSymbols((folder / "lib").c_str(), true);
    EXPECT_EQ(finder.GetSymbols().size(), 0u) << "a search begins with an empty list, and this library has no table";
    finder.SearchSymbols(nullptr, false);
    EXPECT_EQ(finder.GetSymbols().size(), 0u);
}

TEST(SymbolLibsFinder, FindsTheFoldersBesideTheCentralLibraryFile) {
    const TemporaryFolder folder;
    const std::string libs = folder / "CL/SymbolLibs";
    folder.Write("CL/SymbolLibs/a file/x", "");
    folder.Write("CL/SymbolLibs/not a folder", "");
    folder.Write("CL/SymbolLibs/Analog/lib.cfg", "version 2\r\nalias  My Lib\r\nalias other\r\n");
    folder.Write("CL/SymbolLibs/both/sym.tbl", "");
    folder.Write("CL/SymbolLibs/both/sym.lib", "");
    folder.Write("CL/SymbolLibs/both/lib.cfg", "Alias x\naliases y\nalias");
    folder.Write("CL/SymbolLibs/dirs/sym.lib/x", "");
    folder.Write("CL/SymbolLibs/dirs/sym.tbl", "");
    folder.Write("CL/SymbolLibs/table/sym.tbl", "");
    folder.Write("CL/SymbolLibs/table/lib.cfg", "alias\tTab\nalias last line");
    CSymbolLibsFinder finder;
    finder.SearchForLibraries(folder / "CL/central.lmc");
    EXPECT_EQ(Libraries(finder, libs), "a file=a file\nAnalog= My Lib\nboth=both=m\ndirs=dirs\ntable=last line\n");
    finder.SearchCLForLibraries(folder / "CL/central.lmc", true, true);
    EXPECT_EQ(Libraries(finder, libs), "a file=a file\nAnalog=Analog\nboth=both\ndirs=dirs\ntable=table\n");
    EXPECT_FALSE(finder.GetItems()[0]->ContainsPath(finder.GetItems()[0]->GetPath()));
    EXPECT_EQ(finder.GetItems()[0]->GetRelativePath(libs), "");

    finder.SearchForLibraries(folder.Path() + "\\CL\\central.lmc");
    EXPECT_EQ(finder.GetItems().size(), 5u) << "a path with backslashes";
    finder.SearchForLibraries(finder.GetItems()[0]->GetPath());
    EXPECT_EQ(finder.GetItems().size(), 0u) << "no SymbolLibs beside this one, named by a text of the finder itself";
    finder.SearchForLibraries("central.lmc");
    EXPECT_EQ(finder.GetItems().size(), 0u) << "a file without a folder";
}

TEST(SymbolLibsFinder, LibCfgLinesSplitAtTheirFirstBlank) {
    const TemporaryFolder folder;
    folder.Write("lib.cfg", "a b c \r\n\nkey\n x\r\r\nz ");
    using Pairs = std::vector<std::pair<std::string, std::string>>;
    EXPECT_EQ(CSymbolLibsFinder::CLibCfgParser(folder / "lib.cfg").GetPairs(),
              (Pairs{{"a", "b c "}, {"", ""}, {"key", ""}, {"", "x\r"}, {"z", ""}}));
    EXPECT_EQ(CSymbolLibsFinder::CLibCfgParser(folder / "none.cfg").GetPairs(), Pairs());
}

TEST(SymbolLibsFinder, FindsTenThousandLibrariesInOrder) {
    const TemporaryFolder folder;
    for (int i = 19999; i >= 10000; --i)
        folder.MakeFolder("SymbolLibs/lib " + std::to_string(i));
    folder.Write("SymbolLibs/lib 15000/lib.cfg", "alias middle");
    CSymbolLibsFinder finder;
    finder.SearchForLibraries(folder / "central.lmc");
    ASSERT_EQ(finder.GetItems().size(), 10000u);
    for (std::size_t i = 0; i < 10000; ++i) {
        ASSERT_EQ(finder.GetItems()[i]->GetAlias(), i == 5000 ? "middle" : "lib " + std::to_string(10000 + i));
    }
}
