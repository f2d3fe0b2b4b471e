#include "interchange/detail/kicad/block_plan.h"

#include <algorithm>
#include <set>

#include "text/ascii.h"
#include "text/number.h"

namespace Quill::Interchange::Kicad {

namespace {

// Numbers by their value, then everything else as text, then nothing.
struct PageOrder {
    int rank = 2;
    std::uint64_t number = 0;
    std::string_view text;
    auto operator<=>(const PageOrder&) const = default;
};

PageOrder OrderOf(const PageNumbers& numbers, FileId file) {
    if (numbers[file].empty()) return {};
    const std::string_view text = numbers[file].front().second;
    const Text::ParsedNumber<std::uint64_t> number = Text::ParseUInt64(text);
    if (number.Ok() && number.length == text.size()) return {0, number.value, text};
    return {1, 0, text};
}

// The only sheet symbol that stands for each file, where there is just one and it has no pins.
std::vector<std::optional<SheetStep>> FlatSheets(const Hierarchy& hierarchy) {
    const std::size_t files = hierarchy.files.size();
    std::vector<std::optional<SheetStep>> flat(files);
    std::vector<unsigned> uses(files);
    for (FileId file = 0; file < files; ++file) {
        const SchematicFile& parent = *hierarchy.files[file];
        for (std::uint32_t sheet = 0; sheet < parent.children.size(); ++sheet) {
            const std::optional<FileId> child = parent.children[sheet];
            if (!child) continue;
            ++uses[*child];
            if (parent.content.sheets[sheet].pins.empty()) flat[*child] = SheetStep{file, sheet};
        }
    }
    for (std::size_t file = 0; file < files; ++file)
        if (uses[file] != 1) flat[file].reset();
    return flat;
}

// Sheet names differ within a block, whatever the case of their letters.
std::string FreshName(const std::string& name, std::set<std::string>& taken) {
    std::string fresh = name;
    for (unsigned k = 1; !taken.insert(Text::ToLower(fresh)).second; ++k)
        fresh = name + "_" + Text::Render(k);
    return fresh;
}

}  // namespace

bool BlockPlan::IsMerged(const Hierarchy& hierarchy, const SheetStep& step) const {
    const std::optional<FileId> child = hierarchy.files[step.file]->children[step.sheet];
    return child && blockOf[*child] == blockOf[step.file];
}

BlockPlan PlanBlocks(const Hierarchy& hierarchy, const PageNumbers& numbers, bool mergeFlatSheets) {
    const std::size_t files = hierarchy.files.size();
    const std::vector<std::optional<SheetStep>> flat =
        mergeFlatSheets ? FlatSheets(hierarchy) : std::vector<std::optional<SheetStep>>(files);
    BlockPlan plan;
    plan.blockOf.resize(files);
    // A parent may come after its child, so the block of each is found by walking up.
    for (FileId file = 0; file < files; ++file) {
        if (flat[file]) continue;
        plan.blockOf[file] = plan.blocks.size();
        plan.blocks.push_back({{{file, "1"}}});
    }
    std::vector<std::vector<FileId>> joining(plan.blocks.size());
    for (FileId file = 0; file < files; ++file) {
        if (!flat[file]) continue;
        FileId top = file;
        while (flat[top])
            top = flat[top]->file;
        plan.blockOf[file] = plan.blockOf[top];
        joining[plan.blockOf[top]].push_back(file);
    }
    for (std::size_t block = 0; block < plan.blocks.size(); ++block) {
        std::vector<FileId>& further = joining[block];
        std::stable_sort(further.begin(), further.end(),
                         [&](FileId a, FileId b) { return OrderOf(numbers, a) < OrderOf(numbers, b); });
        std::set<std::string> taken{"1"};
        for (const FileId file : further) {
            const SchematicFile& parent = *hierarchy.files[flat[file]->file];
            std::string name(parent.content.sheets[flat[file]->sheet].name);
            if (name.empty()) name = Text::Render(plan.blocks[block].pages.size() + 1);
            plan.blocks[block].pages.push_back({file, FreshName(name, taken)});
        }
    }
    return plan;
}

}  // namespace Quill::Interchange::Kicad
