#include "platform/filesystem.h"

#include <filesystem>

#include <gtest/gtest.h>

#include "platform/detail/path_text.h"
#include "tests/support/temporary.h"

#ifndef _WIN32
#include <unistd.h>
#endif

namespace zolt::filesystem {
namespace {

struct Cut {
    std::string_view text, parent, last;
};

template <class... Syntaxes>
void CheckCuts(std::initializer_list<Cut> cuts) {
    for (const Cut& c : cuts) {
        EXPECT_TRUE(((ParentOf<Syntaxes>(c.text) == c.parent) && ...)) << c.text;
        EXPECT_TRUE(((c.text.substr(LastElement<Syntaxes>(c.text)) == c.last) && ...)) << c.text;
    }
}

TEST(Path, IsCutIntoParentAndLastElement) {
    // clang-format off
    CheckCuts<PosixSyntax, WindowsSyntax>({
        {"", "", ""}, {"a", "", "a"}, {"..", "", ".."}, {"a/b", "a", "b"}, {"a/", "a", ""}, {"a//b", "a", "b"},
        {"a b/\xC3\xA4", "a b", "\xC3\xA4"}, {"/", "/", ""}, {"/a", "/", "a"}, {"/a/b.c", "/a", "b.c"},
    });
    CheckCuts<PosixSyntax>({{"a\\b", "", "a\\b"}, {"C:", "", "C:"}});
    CheckCuts<WindowsSyntax>({
        {R"(a\b)", "a", "b"}, {R"(a/b\)", "a/b", ""},
        {R"(C:\)", R"(C:\)", ""}, {R"(C:\a)", R"(C:\)", "a"}, {"C:a", "C:", "a"},
        {R"(\\server\share\a)", R"(\\server\share)", "a"}, {R"(\\server\share)", R"(\\server\)", "share"},
        {R"(\\server)", R"(\\server)", ""}, {R"(\\\a)", R"(\\\)", "a"},
    });
    // clang-format on
}

TEST(Path, GrowsByOneElementWithOneSeparator) {
    // clang-format off
    const struct { std::string_view base, element, posix, windows; } cases[] = {
        {"a", "b", "a/b", R"(a\b)"},  {"a/", "b", "a/b", "a/b"},        {R"(a\)", "b", R"(a\/b)", R"(a\b)"},
        {"", "b", "b", "b"},          {"a", "", "a", "a"},              {"a", "/b", "/b", "/b"},
        {"C:", "b", "C:/b", "C:b"},   {"a", R"(C:\b)", R"(a/C:\b)", R"(C:\b)"},
        {R"(\\server)", "b", R"(\\server/b)", R"(\\server\b)"},
    };
    // clang-format on
    for (const auto& c : cases) {
        EXPECT_EQ(Joined<PosixSyntax>(c.base, c.element), c.posix);
        EXPECT_EQ(Joined<WindowsSyntax>(c.base, c.element), c.windows);
    }
    path self("a/");
    const path& same = self;
    EXPECT_EQ(self /= same, path("a/a/"));
}

class Disk : public testing::Test {
protected:
    static std::vector<std::string> Names(const path& directory) {
        std::vector<std::string> names;
        for (directory_iterator it(directory); it != directory_iterator(); ++it) {
            EXPECT_EQ(*it, directory / it->filename());
            names.push_back(it->filename().string());
        }
        return names;
    }

    const Tests::TemporaryFolder folder;
    const path root{folder.Path()};
};

TEST_F(Disk, ListsADirectorySortedWithoutLetterCase) {
    for (const char* name : {"b.1", ".hidden", "\xC3\x84", "C", "_", "a b"})
        folder.Write(name, "x");
    folder.MakeFolder("B");
    const std::vector<std::string> want = {".hidden", "_", "a b", "B", "b.1", "C", "\xC3\x84"};
    EXPECT_EQ(Names(root), want);
    EXPECT_EQ(Names(root / ""), want);
    EXPECT_EQ(Names(root / "B"), std::vector<std::string>());
    EXPECT_EQ(Names(root / "C"), std::vector<std::string>()) << "a file has no entries";
    EXPECT_EQ(Names(root / "missing"), std::vector<std::string>());
    EXPECT_EQ(Names(""), std::vector<std::string>());

    directory_iterator it(root);
    const directory_iterator start = it;
    EXPECT_EQ(it, start);
    EXPECT_NE(++it, start);
    EXPECT_NE(it, directory_iterator());
}

TEST_F(Disk, TellsDirectoriesAndFilesApartThroughLinks) {
    folder.MakeFolder("dir");
    folder.Write("file", "x");
    const auto kind = [&](const char* name) {
        const path where = root / name;
        return std::string(where.is_dir() ? "directory" : "") + (where.is_file() ? "file" : "");
    };
    EXPECT_EQ(kind("dir"), "directory");
    EXPECT_EQ(kind("dir/"), "directory");
    EXPECT_EQ(kind("file"), "file");
    EXPECT_EQ(kind("missing"), "");
    EXPECT_FALSE(path().is_dir() || path().is_file());
#ifndef _WIN32
    ASSERT_EQ(symlink("dir", (root / "to dir").string().c_str()), 0);
    ASSERT_EQ(symlink("nothing", (root / "to nothing").string().c_str()), 0);
    EXPECT_EQ(kind("to dir"), "directory");
    EXPECT_EQ(kind("to nothing"), "");
    EXPECT_EQ(kind("/dev/null"), "");
#endif
}

TEST_F(Disk, TakesPathsOfAnyLengthThatTheSystemTakes) {
#ifdef _WIN32
    const std::wstring liftsTheLimit = LR"(\\?\)";
#else
    const std::string liftsTheLimit;
#endif
    std::vector<std::filesystem::path> made = {
        liftsTheLimit + Tests::Native(folder.Path()).lexically_normal().make_preferred().native()};
    path seen = root;
    for (int level = 0; level < 12; ++level) {
        made.push_back(made.back() / std::string(80, 'd'));
        seen /= std::string(80, 'd');
        std::filesystem::create_directory(made.back());
    }
    EXPECT_TRUE(seen.is_dir());
    EXPECT_EQ(Names(seen), std::vector<std::string>());
    EXPECT_EQ(Names(seen.parent_path()), std::vector<std::string>{std::string(80, 'd')});
    EXPECT_TRUE(directory_iterator(seen.parent_path())->is_dir());
    for (; made.size() > 1; made.pop_back())
        std::filesystem::remove(made.back());
}

}  // namespace
}  // namespace zolt::filesystem
