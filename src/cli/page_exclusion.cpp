#include "cli/page_exclusion.h"

#include <algorithm>
#include <set>

#include <fmt/format.h>

#include "cli/console.h"
#include "cli/design_lookup.h"
#include "cli/page_list.h"

namespace Quill::Cli {

namespace {

constexpr const char* ExcludedAttribute = "ExcludeFromPrintout";

void Mark(const OpenDesign& design, const PageEntry& page, bool exclude) {
    Orin::IUIDManager objects;
    Orin::ContainerT<const Orin::IGroup> sheet;
    Orin::MutableContainerT<Orin::IGroup> writable;
    Need(design.snapshot->GetUIDManager(objects));
    Need(objects.GetGroup(sheet, page.id.group));
    Need(Orin::LockerT<Orin::IGroup>::ShallowLock(sheet, writable));
    Need(exclude ? writable->SetAttribute(ExcludedAttribute, "TRUE") : writable->RemoveAttribute(ExcludedAttribute));
}

std::vector<std::string> Edit(const OpenDesign& design, const ExclusionOptions& options, bool exclude) {
    const PageList list = ListPages(design, options.config, EAlgorithm::DepthFirst, ECompAlgorithm::Default);
    Orin::IUIDManager objects;
    Need(design.snapshot->GetUIDManager(objects));
    std::vector<std::string> sentences;
    std::set<Orin::Index> done;
    for (const std::string& name : options.pages) {
        const PageEntry& page = FindPage(list, name);
        Orin::ContainerT<const Orin::IGroup> sheet;
        Need(objects.GetGroup(sheet, page.id.group));
        if (!done.insert(page.id.group).second) continue;
        if (IsMarkedExcluded(*sheet) == exclude) {
            if (page.excluded && !exclude) Say("A page above excludes " + page.Description());
            continue;
        }
        Mark(design, page, exclude);
        const auto count = std::count_if(list.pages.begin(), list.pages.end(),
                                         [&page](const PageEntry& other) { return other.id.group == page.id.group; });
        sentences.push_back(fmt::format("Sheet {} of {} is {} marked as excluded from printing, at {}", page.sheet,
                                        page.block, exclude ? "now" : "no longer",
                                        count == 1 ? "its one place" : fmt::format("all its {} places", count)));
    }
    return sentences;
}

}  // namespace

void AddExclusionOptions(const Syntax& command, ExclusionOptions& options) {
    AddEditOptions(command, options.edit);
    command.Option("PAGE", options.pages, "numbers or names of pages").Required();
    AddConfigOption(command, options.config);
}

ExitCode EditExclusion(const ExclusionOptions& options, bool exclude) {
    return EditDesign(options.edit, [&](const OpenDesign& design) { return Edit(design, options, exclude); });
}

}  // namespace Quill::Cli
