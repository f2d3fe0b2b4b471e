// Bus labels of real schematics. Their tool writes A[3..0] and PREFIX{X Y}, lists a vector's members in rising order
// as A0, A1, those of a group as PREFIX.X, and has aliases for lists. What it found is compared with what we find.
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "labels/bus_contents_utils.h"
#include "labels_fixture.h"

namespace {

using namespace Quill::BusContents;
using Json = nlohmann::json;

// "A[3..0] B" as "A[0:3],B"
std::string Translated(const std::string& text) {
    std::string label;
    for (const std::string& item : Words(text)) {
        if (!label.empty()) label += ',';
        const std::size_t dots = item.find("..");
        const std::size_t bracket = item.find('[');
        label += item.substr(0, bracket);
        if (dots == std::string::npos) continue;
        const int from = std::stoi(item.substr(bracket + 1));
        const int to = std::stoi(item.substr(dots + 2));
        label += "[" + std::to_string(std::min(from, to)) + ":" + std::to_string(std::max(from, to)) + "]";
    }
    return label;
}

void CompareLabels(const Json& design) {
    std::map<std::string, std::string> contents;
    for (const auto& [alias, members] : design.at("bus_aliases").items()) {
        for (const std::string item : members)
            contents[alias] += Translated(item) + ",";
    }
    for (const auto& [text, found] : design.at("bus_labels").items()) {
        SCOPED_TRACE(text);
        const bool group = found.at("kind") == "group";
        const std::size_t brace = text.find('{');  // of a group, or of an overbar: "~{CS[0..7]}"
        const bool braces = brace != std::string::npos;
        const std::string prefix = !group ? (braces ? "~{" : "") : brace > 0 ? text.substr(0, brace) + "." : "";
        contents["THE BUS"] = Translated(braces ? text.substr(brace + 1, text.size() - brace - 2) : text);
        auto members = Expand(Utils::resolve_bus_contents("the bus", contents), SquareLimiter);
        if (!group) {
            EXPECT_EQ(Utils::BuildBusLabel(members, true), contents["THE BUS"]);
        }
        for (std::string& member : members) {
            std::replace(member.begin(), member.end(), '[', ']');
            member.erase(std::remove(member.begin(), member.end(), ']'), member.end());
            member = prefix + member + (braces && !group ? "}" : "");
        }
        EXPECT_EQ(Json(members), found.at("members"));
    }
}

TEST(BusLabelsOfRealDesigns, NameTheNetsThatTheirToolFound) {
    const char* const chosen = std::getenv("QUILL_DESIGNS");
    const std::filesystem::path folder = chosen != nullptr ? chosen : QUILL_DESIGNS_FOLDER;
    if (!std::filesystem::is_directory(folder)) GTEST_SKIP() << "no designs in " << folder << "; set QUILL_DESIGNS";
    const FakeProject project("[]");
    int designs = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        std::ifstream file(entry.path() / "oracle.json");
        if (!file) continue;
        SCOPED_TRACE(entry.path().filename().string());
        CompareLabels(Json::parse(file));
        ++designs;
    }
    EXPECT_GT(designs, 0);
}

}  // namespace
