#include "designdata/detail/instance_name.h"

#include <cstdint>
#include <string_view>
#include <utility>

#include "orin/views.h"
#include "properties/stored_attribute.h"
#include "text/number.h"

namespace Quill::Utils::detail {

namespace {

constexpr const char* SheetIdKey = "ID";

std::string Element(std::string_view sheet, std::uint32_t number) {
    std::string name("$");
    name.append(sheet).append(1, 'I');
    Text::AppendNumber(name, number);
    return name;
}

// Whether it is a schematic that is not drawn in the editor, so that no sheet tells its instances apart.
bool IsUndrawnSchematic(const Orin::IBlock& block) {
    Orin::BlockTypes types;  // stays empty when the type cannot be read
    static_cast<void>(block.GetType(types));
    return types.Contains(Orin::EBlockType::Schematic) && !types.Contains(Orin::EBlockType::Drawn);
}

// The element of a component that is drawn on a sheet of `block`; nothing when its definition stands on no sheet.
std::optional<std::string> DrawnElement(const Orin::IBlock& block, const Orin::Index& instance) {
    constexpr Orin::GroupTypes SheetTypes =
        Orin::GroupTypes(Orin::EGroupType::Sheet) | Orin::EGroupType::GeneratedSheet;
    Orin::ContainerT<const Orin::IComp> definition;
    Orin::ListT<Orin::GroupInfo> sheets;
    if (!block.GetComp(definition, instance) || !definition->GetListGroups(sheets, SheetTypes) || sheets.IsEmpty())
        return std::nullopt;

    Orin::ContainerT<const Orin::IGroup> sheet;
    Orin::ContainerT<const Orin::IBlockViewQuill> view;
    Orin::CompDataQuill data;
    if (!block.GetGroup(sheet, std::as_const(sheets).Front().index) ||
        !Orin::IBlockViewQuill::Init(view, block, *sheet) || !view->GetCompData(*definition, data))
        return std::string();
    Orin::String id;
    ReadInternal(*sheet, SheetIdKey, BareKey::Ignored, id);
    return Element(id.View(), data.objectId);
}

}  // namespace

std::optional<std::string> InstanceName(const Orin::IComp& comp) {
    Orin::String label;
    if (!comp.GetLabel(label)) return std::nullopt;
    if (label.View().starts_with('$')) return std::string(label.View());

    Orin::ContainerT<const Orin::IBlock> block;
    Orin::Index instance;
    if (!comp.GetParentBlock(block) || !comp.GetInstanceIndex(instance)) return std::nullopt;
    if (IsUndrawnSchematic(*block)) return Element(Text::Render(instance.Low()), instance.Middle());
    return DrawnElement(*block, instance);
}

}  // namespace Quill::Utils::detail
