// quill reuse: the marks of blocks that are placed as a whole.
#include <optional>

#include "cli/command.h"
#include "cli/console.h"
#include "cli/design_lookup.h"
#include "cli/edit_design.h"
#include "cli/json.h"
#include "properties/reuse_block.h"
#include "properties/stored_attribute.h"

namespace Quill::Cli {

namespace {

using Utils::ReuseBlock;

struct ReuseOptions {
    EditOptions edit;
    std::string block;
    std::string mark;
};

struct BlockEntry {
    std::string name;
    bool isReuse = false;
    bool isTopLevel = false;
};

Json AsJson(const std::vector<BlockEntry>& blocks) {
    Json answer = Json::EmptyList();
    for (const BlockEntry& block : blocks)
        answer.Add({{"block", block.name}, {"reuse", block.isReuse}, {"topLevel", block.isTopLevel}});
    return answer;
}

std::string AsTable(const std::vector<BlockEntry>& blocks) {
    Table table({{"Block"}, {"Reuse"}, {"Top level"}});
    for (const BlockEntry& block : blocks)
        table.AddRow({block.name, block.isReuse ? "yes" : "", block.isTopLevel ? "yes" : ""});
    return table.Render(HasColours());
}

ExitCode List(const EditOptions& options) {
    if (options.dryRun) throw CommandError("--dry-run needs BLOCK and on or off");
    const OpenDesign design = ReadDesign(options.design);
    std::vector<BlockEntry> blocks;
    for (const Orin::ContainerT<const Orin::IBlock>& block : AllBlocks(*design.snapshot))
        blocks.push_back({NameOf(*block), ReuseBlock::IsReuseBlock(*block),
                          ReuseBlock::IsTopLevelReuseBlock(IndexOf(*block), design.snapshot)});
    Print(options.json, blocks, AsJson, AsTable);
    return Done;
}

// The mark as the library writes it; nothing where there is none, whatever older designs may have.
std::optional<std::string> StoredMark(const Orin::IBlock& block) {
    Orin::String value;
    if (!Utils::ReadInternal(block, "ReuseBlock", Utils::BareKey::Ignored, value)) return std::nullopt;
    return std::string(value.View());
}

Changes Mark(const OpenDesign& design, const std::string& name, bool on) {
    const Orin::ContainerT<const Orin::IBlock> block = FindBlock(*design.snapshot, name);
    const std::optional<std::string> before = StoredMark(*block);
    Orin::MutableContainerT<Orin::IBlock> writable;
    Need(Orin::LockerT<Orin::IBlock>::Lock(block, writable));
    ReuseBlock::SetIsReuseBlock(writable, on);
    const std::optional<std::string> after = StoredMark(*block);
    if (on ? !ReuseBlock::IsReuseBlock(*block) : after.has_value())
        throw CommandError("The mark of block " + name + " cannot be written");
    if (!on && ReuseBlock::IsReuseBlock(*block))
        Say("Block " + name + " bears the mark of an older design, which stays, and so remains a reuse block");
    if (before == after) return {{}};
    return {{"Block " + name + " is " + (on ? "now" : "no longer") + " marked as a reuse block"}};
}

ExitCode RunReuse(const ReuseOptions& options) {
    if (options.block.empty()) return List(options.edit);
    if (options.mark.empty()) throw CommandError("BLOCK needs on or off behind it");
    return EditDesign(options.edit, [&options](const OpenDesign& design) {
        return Mark(design, options.block, options.mark == "on");
    });
}

}  // namespace

void AddReuseCommand(CommandLine& line) {
    const auto options = std::make_shared<ReuseOptions>();
    const Syntax command =
        line.Add("reuse", "List the blocks with their reuse marks, or set one",
                 "A reuse block is prepared content that is placed as a whole. Without BLOCK all blocks\n"
                 "are listed, and whether a component at the top of the design stands for them.\n"
                 "\n"
                 "Examples:\n"
                 "  quill reuse examples/vibration-recorder.json\n"
                 "  quill reuse board.json power on",
                 [options] { return RunReuse(*options); });
    AddEditOptions(command, options->edit);
    command.Option("BLOCK", options->block, "name of the block");
    command.Option("MARK", options->mark, "on or off").OneOf({"on", "off"});
}

}  // namespace Quill::Cli
