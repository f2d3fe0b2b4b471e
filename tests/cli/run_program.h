// Runs the program as a user does, in a folder of the test's own.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Tests {

struct Outcome {
    int code = -1;
    std::string out;
    std::string error = "";

    bool operator==(const Outcome&) const = default;
    friend void PrintTo(const Outcome& o, std::ostream* to) {
        *to << "exit code " << o.code << "\n---- standard output\n" << o.out << "---- standard error\n" << o.error;
    }
};

class ProgramTest : public testing::Test {
protected:
    ProgramTest() : m_folder(testing::TempDir() + "quill_cli_" + std::to_string(getpid())) {
        std::filesystem::create_directories(m_folder);
    }
    ~ProgramTest() override { std::filesystem::remove_all(m_folder); }

    void Write(const std::string& name, const std::string& text) const {
        std::filesystem::create_directories((m_folder / name).parent_path());
        std::ofstream(m_folder / name, std::ios::binary) << text;
    }

    // `arguments` as a shell takes them.
    Outcome Run(const std::string& arguments) const { return Shell("'" QUILL_PROGRAM "' " + arguments); }

    Outcome Shell(const std::string& commands) const {
        const int status = std::system(("( cd '" + m_folder.string() + "' || exit; " + commands + " ) > '" +
                                        Path("out") + "' 2> '" + Path("error") + "'")
                                           .c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, Read("out"), Read("error")};
    }

    struct Case {
        std::string arguments;
        int code;
        std::string out;  // of "--json": on one line
        std::string error = "";
    };
    void Check(std::initializer_list<Case> cases) const {
        for (const Case& c : cases) {
            Outcome outcome = Run(c.arguments);
            if (c.arguments.find("--json") != std::string::npos) outcome.out = OneLine(outcome.out);
            EXPECT_EQ(outcome, (Outcome{c.code, c.out, c.error})) << c.arguments;
        }
    }
    // JSON whose lines are joined.
    static std::string OneLine(const std::string& json) {
        std::istringstream lines(json);
        std::string all;
        for (std::string line; std::getline(lines, line);) {
            if (!all.empty() && all.back() == ',') all += ' ';
            all += line.substr(std::min(line.find_first_not_of(' '), line.size()));
        }
        return all;
    }

    std::string Path(const std::string& name) const { return (m_folder / name).string(); }
    std::string Read(const std::string& name) const {
        std::ifstream file(Path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

private:
    const std::filesystem::path m_folder;
};

// With plant.json in the folder, a small design that has what is out of the ordinary: two blocks stand below sheet B
// under one label, sheet A is excluded and stands first in the block but second in the user's order, print order 7 is
// given to three pages, and one name holds an escape character.
class PlantTest : public ProgramTest {
protected:
    PlantTest() { Write("plant.json", Read(QUILL_TEST_DATA "/plant.json")); }
};

}  // namespace Tests
