// quill stamp: the date stamps of sheets and symbols.
#include <optional>

#include "cli/command.h"
#include "cli/console.h"
#include "cli/design_lookup.h"
#include "cli/edit_design.h"
#include "cli/json.h"
#include "labels/time_stamp.h"
#include "text/number.h"

namespace Quill::Cli {

namespace {

using Orin::ContainerT;
using Utils::time_stamp;

struct StampOptions {
    EditOptions edit;
    std::optional<std::string> block;
    std::optional<std::string> name;
    std::optional<std::string> moment;
    bool raw = false;
    bool remove = false;
};

// A sheet or a symbol: one of the two is there.
struct Stamped {
    std::string block;
    std::string name;
    ContainerT<const Orin::IGroup> sheet;
    ContainerT<const Orin::IComp> symbol;
    std::string stamp;  // empty when it has none

    const char* Kind() const { return sheet ? "sheet" : "symbol"; }
};

// Those of a block; `name` leaves the others out.
void Collect(const ContainerT<const Orin::IBlock>& block, const std::optional<std::string>& name,
             std::vector<Stamped>& found) {
    const auto add = [&](const std::string& itsName, const auto& object) -> Stamped* {
        if (name && *name != itsName) return nullptr;
        Stamped& stamped = found.emplace_back(Stamped{NameOf(*block), itsName, {}, {}, {}});
        time_stamp::read(*object, stamped.stamp);
        return &stamped;
    };
    Orin::ListT<Orin::GroupInfo> sheets;
    Need(block->GetListOwnedGroups(sheets, SheetTypes()));
    for (const Orin::GroupInfo& info : std::as_const(sheets)) {
        ContainerT<const Orin::IGroup> sheet;
        Need(block->GetGroup(sheet, info.index));
        if (Stamped* const stamped = add(std::string(info.name.View()), sheet)) stamped->sheet = sheet;
    }
    Orin::IteratorT<const Orin::IComp> symbols;
    Need(block->GetIterComps(symbols, Orin::CompTypes(Orin::ECompType::Symbol)));
    for (; symbols; ++symbols) {
        const ContainerT<const Orin::IComp>& symbol = symbols;
        if (Stamped* const stamped = add(NameOf(*symbol), symbol)) stamped->symbol = symbol;
    }
}

// What the command line names, in the order of the design: sheets of a block, then its symbols.
std::vector<Stamped> Find(const OpenDesign& design, const StampOptions& options) {
    std::vector<Stamped> found;
    bool isThere = !options.block;
    Orin::IteratorT<const Orin::IBlock> blocks;
    Need(design.snapshot->GetIterBlocks(blocks));
    for (; blocks; ++blocks) {
        if (options.block && NameOf(*blocks) != *options.block) continue;
        isThere = true;
        Collect(blocks, options.name, found);
    }
    if (!isThere) throw CommandError("The design has no block called " + *options.block);
    if (options.name && found.empty())
        throw CommandError("Block " + *options.block + " has no sheet or symbol called " + *options.name);
    return found;
}

// A stamp as the time that it stands for; empty for none and for a raw one that is no number.
std::string TimeOf(const std::string& stamp) {
    if (!time_stamp::is_raw(stamp)) return stamp;
    const Text::ParsedNumber<std::int32_t> seconds = Text::ParseInt32(stamp);
    return seconds.Ok() ? time_stamp::at(seconds.value, time_stamp::formatted) : std::string();
}

Json AsJson(const std::vector<Stamped>& all) {
    Json answer = Json::EmptyList();
    for (const Stamped& stamped : all)
        answer.Add({{"kind", stamped.Kind()},
                    {"block", stamped.block},
                    {"name", stamped.name},
                    {"stamp", stamped.stamp},
                    {"time", TimeOf(stamped.stamp)}});
    return answer;
}

std::string AsTable(const std::vector<Stamped>& all) {
    Table table({{"Kind"}, {"Block"}, {"Name"}, {"Stamp"}, {"Time (UTC)"}});
    for (const Stamped& stamped : all)
        table.AddRow({stamped.Kind(), stamped.block, stamped.name, stamped.stamp, TimeOf(stamped.stamp)});
    return table.Render(HasColours());
}

// The stamp to write; empty to remove it.
std::string NewStamp(const StampOptions& options) {
    if (options.remove) return {};
    const time_stamp::mode mode = options.raw ? time_stamp::raw : time_stamp::formatted;
    if (*options.moment == "now") return time_stamp::current(mode);
    const Text::ParsedNumber<std::int32_t> seconds = Text::ParseInt32(*options.moment);
    if (!seconds.Ok() || seconds.length != options.moment->size())
        throw CommandError("--set takes \"now\" or a 32-bit number of seconds since 1970, not " + *options.moment);
    return time_stamp::at(seconds.value, mode);
}

template <class T>
bool Write(const ContainerT<const T>& object, const std::string& stamp) {
    Orin::MutableContainerT<T> writable;
    Need(Orin::LockerT<T>::ShallowLock(object, writable));
    return time_stamp::write(*writable, stamp.c_str());
}

std::vector<std::string> Stamp(const OpenDesign& design, const StampOptions& options, const std::string& stamp) {
    std::vector<std::string> sentences;
    for (const Stamped& stamped : Find(design, options)) {
        if (stamped.stamp == stamp) continue;
        const std::string what = std::string(stamped.Kind()) + ' ' + stamped.name + " of " + stamped.block;
        if (!(stamped.sheet ? Write(stamped.sheet, stamp) : Write(stamped.symbol, stamp)))
            throw CommandError("The stamp of " + what + " cannot be written");
        sentences.push_back("The " + what + (stamp.empty() ? " has no stamp now" : " is stamped " + stamp));
    }
    return sentences;
}

ExitCode RunStamp(const StampOptions& options) {
    if (options.moment || options.remove) {
        const std::string stamp = NewStamp(options);
        return EditDesign(options.edit, [&](const OpenDesign& design) { return Stamp(design, options, stamp); });
    }
    if (options.edit.dryRun) throw CommandError("--dry-run needs --set or --remove");
    const OpenDesign design = ReadDesign(options.edit.design);
    Print(options.edit.json, Find(design, options), AsJson, AsTable);
    return Done;
}

}  // namespace

void AddStampCommand(CommandLine& line) {
    const auto options = std::make_shared<StampOptions>();
    const Syntax command =
        line.Add("stamp", "List, set or remove the date stamps of sheets and symbols",
                 "A stamp says when its sheet or symbol was last changed. Without BLOCK those of all\n"
                 "blocks are meant, without NAME those of the whole block.\n"
                 "\n"
                 "Examples:\n"
                 "  quill stamp examples/vibration-recorder.json\n"
                 "  quill stamp board.json controller 1 --set now\n"
                 "  quill stamp board.json --set 1700000000 --raw",
                 [options] { return RunStamp(*options); });
    AddEditOptions(command, options->edit);
    command.Option("BLOCK", options->block, "name of the block");
    command.Option("NAME", options->name, "name of the sheet or symbol");
    const Parameter set = command.Option("--set", options->moment, "stamp them: \"now\", or seconds since 1970 in UTC");
    command.Flag("--raw", options->raw, "write the stamp as seconds, not as a date").Needs(set);
    command.Flag("--remove", options->remove, "take their stamps away").Excludes(set);
}

}  // namespace Quill::Cli
