// quill pages why: how a page came by its number.
#include <algorithm>
#include <iostream>
#include <optional>

#include <fmt/format.h>

#include "cli/command.h"
#include "cli/console.h"
#include "cli/design_lookup.h"
#include "cli/page_list.h"
#include "cli/page_options.h"

namespace Quill::Cli {

namespace {

struct PagesWhyOptions {
    std::string design;
    std::string page;
    PageOptions pages;
    bool json = false;
};

std::string Counted(std::size_t count, const char* what) {
    return fmt::format("{} {}{}", count, what, count == 1 ? "" : "s");
}

// Tells the way to one page of a list.
class Explanation {
public:
    Explanation(const OpenDesign& design, const PageOptions& options, const PageEntry& page)
        : m_design(design),
          m_options(options),
          m_page(page),
          m_walk(ListPages(design, options.config, EAlgorithm::DepthFirst, options.ChildAlgorithm()).pages) {
        Need(design.snapshot->GetUIDManager(m_objects));
        TellWay();
        TellExclusion();
        TellNumber();
    }

    const std::vector<std::string>& Steps() const noexcept { return m_steps; }

private:
    using Path = Orin::ContainerT<const Orin::IPath>;
    using Pages = std::vector<PageEntry>;

    static std::vector<PageEntry>::const_iterator Find(const Pages& pages, const PageID& id) {
        return std::find_if(pages.begin(), pages.end(), [&id](const PageEntry& page) { return page.id == id; });
    }

    void TellWay() {
        Orin::ListT<Orin::Index> hierarchy;
        Path path;
        Need(m_objects.GetPath(path, m_page.id.path));
        Need(path->GetListHierarchyIndexes(hierarchy));
        path = RootOf(*FindConfig(m_design, m_options.config));
        Orin::ContainerT<const Orin::IBlock> block;
        Need(path->GetBlock(block));
        m_steps.emplace_back("the walk begins in block " + NameOf(*block));
        for (const Orin::Index& index : std::as_const(hierarchy)) {
            TellDescent(*path, index);
            Path below;
            Need(path->GetChildPath(below, index));
            path = below;
        }
        TellSheet(m_page.id);
    }

    // The sheet's place among those of its block, as the walk comes to them.
    void TellSheet(const PageID& id) {
        std::size_t place = 0, count = 0;
        std::string sheet, block;
        for (const PageEntry& page : m_walk) {
            if (page.id.path != id.path) continue;
            ++count;
            if (page.id.group != id.group) continue;
            place = count;
            sheet = page.sheet;
            block = page.block;
        }
        m_steps.emplace_back(
            fmt::format("sheet {} is number {} of {} of block {}", sheet, place, Counted(count, "sheet"), block));
    }

    // From a sheet at the place into the block of one of its components.
    void TellDescent(const Orin::IPath& path, const Orin::Index& index) {
        Orin::ContainerT<const Orin::IComp> comp;
        Need(m_objects.GetComp(comp, index));
        Orin::ListT<Orin::GroupInfo> sheets;
        Need(comp->GetListGroups(sheets, SheetTypes()));
        // The components of the sheet, in the order in which the walk comes to what is below them.
        std::vector<Orin::Index> places;
        const PageID page{IndexOf(path), sheets.IsEmpty() ? Orin::Index() : sheets[0].index, {}};
        for (const PageEntry& other : m_walk) {
            const std::optional<Orin::Index> child = ChildBelow(path, page.group, other.id.path);
            if (child && std::find(places.begin(), places.end(), *child) == places.end()) places.push_back(*child);
        }
        TellSheet(page);
        const auto place = std::find(places.begin(), places.end(), index);
        m_steps.emplace_back(fmt::format("below it, component {} is number {} of {} by the child order \"{}\"{}",
                                         LabelOf(*comp), place - places.begin() + 1, places.size(), m_options.children,
                                         m_options.descending ? " backwards" : ""));
    }

    // The component through which the place `below` lies below the sheet `group` of `path`; nothing when it does not.
    std::optional<Orin::Index> ChildBelow(const Orin::IPath& path, const Orin::Index& group,
                                          const Orin::Index& below) const {
        Orin::ListT<Orin::Index> here, there;
        Path place;
        Need(m_objects.GetPath(place, below));
        Need(path.GetListHierarchyIndexes(here));
        Need(place->GetListHierarchyIndexes(there));
        if (there.Count() != here.Count() + 1 || !std::equal(here.begin(), here.end(), there.begin())) return {};
        const Orin::Index index = std::as_const(there)[here.Count()];
        Orin::ContainerT<const Orin::IComp> comp;
        Orin::ListT<Orin::GroupInfo> sheets;
        Need(m_objects.GetComp(comp, index));
        Need(comp->GetListGroups(sheets, SheetTypes()));
        if (sheets.IsEmpty() || std::as_const(sheets)[0].index != group) return {};
        return index;
    }

    void TellExclusion() {
        if (!m_page.excluded) return;
        Orin::ContainerT<const Orin::IGroup> sheet;
        Need(m_objects.GetGroup(sheet, m_page.id.group));
        m_steps.emplace_back(IsMarkedExcluded(*sheet)
                                 ? "the sheet is marked as excluded from printing"
                                 : "a page above is excluded from printing, and with it this page");
    }

    void TellNumber() {
        if (m_options.Algorithm() == EAlgorithm::PrintOrder) {
            TellPrintOrder();
            return;
        }
        const Pages pages =
            ListPages(m_design, m_options.config, m_options.Algorithm(), m_options.ChildAlgorithm()).pages;
        const auto here = Find(pages, m_page.id);
        const auto before = static_cast<std::size_t>(here - pages.begin());
        const auto excluded = static_cast<std::size_t>(
            std::count_if(pages.begin(), here, [](const PageEntry& page) { return page.excluded; }));
        if (m_options.Algorithm() == EAlgorithm::LevelByLevel)
            m_steps.emplace_back(fmt::format("the page is at level {}, counted from 0", m_page.way.size()));
        std::string step = fmt::format("by \"{}\", {} before it", m_options.order,
                                       before == 1 ? "1 page stands" : fmt::format("{} pages stand", before));
        if (excluded != 0) step += fmt::format(", {} of them excluded", excluded);
        m_steps.emplace_back(step);
        m_steps.emplace_back(m_page.excluded ? "excluded pages have no number" : "its number is " + m_page.number);
    }

    void TellPrintOrder() {
        if (m_page.printOrder.empty()) {
            m_steps.emplace_back("no print order stands on the page, so it has no number");
            return;
        }
        m_steps.emplace_back("its print order is " + m_page.printOrder);
        if (!m_page.number.empty()) {
            if (m_page.excluded) m_steps.emplace_back("by print order excluded pages are numbered too");
            m_steps.emplace_back("in the order of all print orders, its number is " + m_page.number);
            return;
        }
        for (const PageEntry& page : m_walk)
            if (page.printOrder == m_page.printOrder) {
                m_steps.emplace_back(page.Description() + " has it before, so this page has no number");
                return;
            }
    }

    const OpenDesign& m_design;
    const PageOptions& m_options;
    const PageEntry& m_page;
    const Pages m_walk;  // by depth
    Orin::IUIDManager m_objects;
    std::vector<std::string> m_steps;
};

ExitCode RunPagesWhy(const PagesWhyOptions& options) {
    const OpenDesign design = ReadDesign(options.design);
    const PageList list =
        ListPages(design, options.pages.config, options.pages.Algorithm(), options.pages.ChildAlgorithm());
    const PageEntry& page = FindPage(list, options.page);
    const Explanation explanation(design, options.pages, page);
    if (options.json) {
        PrintJson({{"number", page.number}, {"name", page.id.name}, {"steps", explanation.Steps()}});
    } else {
        std::cout << Printable((page.number.empty() ? "no number: " : page.number + ": ") + page.Description()) << '\n';
        for (const std::string& step : explanation.Steps())
            std::cout << "  " << Printable(step) << '\n';
    }
    return Done;
}

}  // namespace

void AddPagesWhyCommand(CommandLine& line) {
    const auto options = std::make_shared<PagesWhyOptions>();
    const Syntax command =
        line.Add("pages why", "Tell step by step how a page came by its number",
                 "The page is its number by the order given, or its name (\"quill pages\" tells both).\n"
                 "\n"
                 "Examples:\n"
                 "  quill pages why examples/vibration-recorder.json 29\n"
                 "  quill pages why examples/lamp/lamp.kicad_sch 3 --order print",
                 [options] { return RunPagesWhy(*options); });
    AddDesignArgument(command, options->design);
    command.Option("PAGE", options->page, "number or name of the page").Required();
    AddPageOptions(command, options->pages);
    AddJsonFlag(command, options->json);
}

}  // namespace Quill::Cli
