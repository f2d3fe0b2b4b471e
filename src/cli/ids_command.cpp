// quill ids: the ids in use on a sheet.
#include <algorithm>
#include <optional>

#include <fmt/format.h>

#include "cli/command.h"
#include "cli/console.h"
#include "cli/design_lookup.h"
#include "cli/graphics.h"
#include "cli/json.h"
#include "cli/open_design.h"
#include "ids/id_generator.h"

namespace Quill::Cli {

namespace {

// The ids of one kind.
struct Ids {
    const char* kind;
    std::vector<Orin::ItemId> used = {};  // ascending
    std::optional<Orin::ItemId> next = {};
    bool areUnique = true;  // two items never share one

    std::vector<Orin::ItemId> Doubled() const {
        std::vector<Orin::ItemId> doubled;
        for (std::size_t i = 1; i < used.size(); ++i)
            if (areUnique && used[i] == used[i - 1] && (doubled.empty() || doubled.back() != used[i]))
                doubled.push_back(used[i]);
        return doubled;
    }
};

// What a generator hands out next; nothing when it has nothing for this sheet.
template <class Kind>
std::optional<Orin::ItemId> NextOf(const Orin::ContainerT<const Orin::IBlock>& block,
                                   const Orin::ContainerT<const Orin::IGroup>& sheet) {
    Utils::IdGenerator<Kind, 0> generator;
    Kind id;
    if (!generator.Init(block, sheet) || !generator.GetNext(id)) return std::nullopt;
    return id.Value();
}

std::vector<Ids> IdsOf(const Orin::ContainerT<const Orin::IBlock>& block,
                       const Orin::ContainerT<const Orin::IGroup>& sheet) {
    Ids objects{"object"}, attributes{"attribute"}, joints{"joint"}, segments{"segment"};
    // These are told apart within their net or bus.
    joints.areUnique = segments.areUnique = false;
    for (const Graphic& graphic : GraphicsOf(block, sheet)) {
        if (IsId(graphic.id)) objects.used.push_back(graphic.id);
        if (graphic.attributeId && *graphic.attributeId != Utils::NoId) attributes.used.push_back(*graphic.attributeId);
        for (const Orin::ListSegmentsQuillJoint& joint : graphic.joints)
            if (IsId(joint.id)) joints.used.push_back(joint.id);
        for (const Orin::ListSegmentsQuillSegment& segment : graphic.segments)
            if (IsId(segment.id)) segments.used.push_back(segment.id);
    }
    objects.next = NextOf<Utils::ObjectId>(block, sheet);
    attributes.next = NextOf<Utils::AttributeId>(block, sheet);
    std::vector<Ids> all{objects, attributes, joints, segments};
    for (Ids& ids : all)
        std::sort(ids.used.begin(), ids.used.end());
    return all;
}

Json AsJson(const std::vector<Ids>& all) {
    Json answer = Json::EmptyObject();
    for (const Ids& ids : all)
        answer.Add(ids.kind, {{"used", ids.used.size()},
                              {"highest", ids.used.empty() ? Json() : Json(ids.used.back())},
                              {"next", ids.next},
                              {"doubled", ids.Doubled()}});
    return answer;
}

std::string AsTable(const std::vector<Ids>& all) {
    using Align = Table::Align;
    Table table({{"Kind"}, {"Used", Align::Right}, {"Highest", Align::Right}, {"Next", Align::Right}});
    for (const Ids& ids : all)
        table.AddRow({ids.kind, fmt::format("{}", ids.used.size()),
                      ids.used.empty() ? "" : fmt::format("{}", ids.used.back()),
                      ids.next ? fmt::format("{}", *ids.next) : ""});
    return table.Render(HasColours());
}

ExitCode RunIds(const SheetOptions& options) {
    const OpenDesign design = ReadDesign(options.design);
    const Orin::ContainerT<const Orin::IBlock> block = FindBlock(*design.snapshot, options.block);
    const std::vector<Ids> all = IdsOf(block, FindSheet(*block, options.sheet));
    Print(options.json, all, AsJson, AsTable);
    ExitCode code = Done;
    for (const Ids& ids : all)
        for (const Orin::ItemId id : ids.Doubled()) {
            Say(fmt::format("{} id {} stands on several items", ids.kind, id));
            code = NegativeAnswer;
        }
    return code;
}

}  // namespace

void AddIdsCommand(CommandLine& line) {
    const auto options = std::make_shared<SheetOptions>();
    const Syntax command =
        line.Add("ids", "Say which ids are in use on a sheet, and which come next",
                 "Object and attribute ids are unique on a sheet; those that stand on several items are named on\n"
                 "standard error, and the exit code is 1. Nothing is drawn: asking twice gives the same answer.\n"
                 "\n"
                 "Examples:\n"
                 "  quill ids examples/vibration-recorder.json controller 1",
                 [options] { return RunIds(*options); });
    AddSheetOptions(command, *options);
}

}  // namespace Quill::Cli
