#include "interchange/detail/kicad/project_file.h"

#include <system_error>

#include <nlohmann/json.hpp>

namespace Quill::Interchange::Kicad {

namespace {

// The member of an object; null when there is none.
const nlohmann::json* Member(const nlohmann::json* object, const char* name) {
    if (object == nullptr || !object->is_object()) return nullptr;
    const auto found = object->find(name);
    return found == object->end() ? nullptr : &*found;
}

// Keeps the parser from nesting without bounds.
constexpr int DeepestProject = 64;

}  // namespace

BusAliases ReadProjectAliases(const Hierarchy& hierarchy, std::vector<KicadMessage>& warnings) {
    std::filesystem::path path = hierarchy.files.front()->path;
    path.replace_extension(".kicad_pro");
    std::error_code failed;
    if (!std::filesystem::is_regular_file(path, failed)) return {};
    BusAliases aliases;
    const std::string name = path.generic_string();
    try {
        const auto shallow = [](int depth, nlohmann::json::parse_event_t, nlohmann::json&) {
            return depth < DeepestProject;
        };
        const nlohmann::json project = nlohmann::json::parse(ReadWholeFile(path, name), shallow, false);
        if (project.is_discarded()) throw KicadMessage{name, 0, 0, "this is no JSON; its bus aliases are left out"};
        const nlohmann::json* const known = Member(Member(&project, "schematic"), "bus_aliases");
        if (known == nullptr || !known->is_object()) return aliases;
        for (const auto& [alias, members] : known->items()) {
            if (!members.is_array()) continue;
            std::vector<std::string>& list = aliases[alias];
            for (const nlohmann::json& member : members)
                if (member.is_string()) list.push_back(member.get<std::string>());
        }
    } catch (KicadMessage& problem) {
        warnings.push_back(std::move(problem));
    }
    return aliases;
}

}  // namespace Quill::Interchange::Kicad
