// quill walk: everything that is drawn on a sheet.
#include <fmt/format.h>

#include "cli/command.h"
#include "cli/console.h"
#include "cli/design_lookup.h"
#include "cli/graphics.h"
#include "cli/json.h"
#include "cli/open_design.h"

namespace Quill::Cli {

namespace {

Json IdAsJson(Orin::ItemId id) {
    return IsId(id) ? Json(id) : Json();
}

Json AsJson(const std::vector<Graphic>& graphics) {
    Json answer = Json::EmptyList();
    for (const Graphic& graphic : graphics) {
        Json object{
            {"kind", graphic.kind}, {"id", IdAsJson(graphic.id)}, {"at", Json::List{graphic.at.x, graphic.at.y}}};
        if (graphic.attributeId) object.Add("attributeId", *graphic.attributeId);
        if (!graphic.text.empty()) object.Add("text", graphic.text);
        Json joints;
        for (const Orin::ListSegmentsQuillJoint& joint : graphic.joints)
            joints.Add(IdAsJson(joint.id));
        Json segments;
        for (const Orin::ListSegmentsQuillSegment& segment : graphic.segments)
            segments.Add(IdAsJson(segment.id));
        if (!graphic.joints.empty()) object.Add("joints", std::move(joints));
        if (!graphic.segments.empty()) object.Add("segments", std::move(segments));
        answer.Add(std::move(object));
    }
    return answer;
}

std::string IdText(Orin::ItemId id) {
    return IsId(id) ? fmt::format("{}", id) : std::string();
}

// "3-7 9" of the ids 3, 4, 5, 6, 7 and 9, in their order.
template <class List>
std::string IdRanges(const List& items) {
    std::string text;
    for (std::size_t i = 0; i < items.size();) {
        std::size_t last = i;
        while (last + 1 < items.size() && items[last + 1].id == items[last].id + 1)
            ++last;
        if (!text.empty()) text += ' ';
        text += IdText(items[i].id);
        if (last != i) text += '-' + IdText(items[last].id);
        i = last + 1;
    }
    return text;
}

std::string Millimetres(std::int64_t nanometres) {
    return fmt::format("{:.3f}", static_cast<double>(nanometres) / 1e6);
}

std::string AsTable(const std::vector<Graphic>& graphics) {
    using Align = Table::Align;
    Table table({{"Kind"},
                 {"Id", Align::Right},
                 {"Attribute id", Align::Right},
                 {"X (mm)", Align::Right},
                 {"Y (mm)", Align::Right},
                 {"Joints"},
                 {"Segments"},
                 {"Text"}});
    for (const Graphic& graphic : graphics)
        table.AddRow({graphic.kind, IdText(graphic.id),
                      graphic.attributeId ? fmt::format("{}", *graphic.attributeId) : "", Millimetres(graphic.at.x),
                      Millimetres(graphic.at.y), IdRanges(graphic.joints), IdRanges(graphic.segments), graphic.text});
    return table.Render(HasColours());
}

ExitCode RunWalk(const SheetOptions& options) {
    const OpenDesign design = ReadDesign(options.design);
    const Orin::ContainerT<const Orin::IBlock> block = FindBlock(*design.snapshot, options.block);
    const std::vector<Graphic> graphics = GraphicsOf(block, FindSheet(*block, options.sheet));
    Print(options.json, graphics, AsJson, AsTable);
    return Done;
}

}  // namespace

void AddWalkCommand(CommandLine& line) {
    const auto options = std::make_shared<SheetOptions>();
    const Syntax command = line.Add("walk", "List everything that is drawn on a sheet, with its ids",
                                    "Nets and buses come with the ids of their joints and segments.\n"
                                    "\n"
                                    "Examples:\n"
                                    "  quill walk examples/lamp/lamp.kicad_sch channel 1",
                                    [options] { return RunWalk(*options); });
    AddSheetOptions(command, *options);
}

}  // namespace Quill::Cli
