#include "cli/page_map.h"

#include <algorithm>

#include "cli/command.h"
#include "cli/console.h"
#include "cli/design_lookup.h"
#include "cli/sheet_connectors.h"

namespace Quill::Cli {

namespace {

using Drawing::Pointer;
using Orin::ContainerT;
using Orin::ECompType;
using Orin::EObjectType;
using Orin::Index;

// So many pages are named where a component leads to several.
constexpr std::size_t NamedPages = 4;

constexpr char Across[] = "\xE2\x86\x92 ";
constexpr char Up[] = "\xE2\x86\x91 ";
constexpr char Down[] = "\xE2\x86\x93 ";
constexpr char More[] = ", \xE2\x80\xA6";

}  // namespace

PageMap::PageMap(const OpenDesign& design, const std::string& config) : m_artist(design.snapshot) {
    Need(design.snapshot->GetUIDManager(m_objects));
    m_list = ListPages(design, config, EAlgorithm::DepthFirst, ECompAlgorithm::Default);
    m_pages.resize(m_list.pages.size());
    for (std::size_t page = 0; page < m_pages.size(); ++page)
        m_pagesOf[Entry(page).id.path].push_back(page);
    Descend();
    AddConnectors(design, config);
}

std::vector<Index> PageMap::MembersOf(std::size_t page, EObjectType kind) const {
    ContainerT<const Orin::IGroup> sheet;
    Orin::ListT<Index> members;
    Need(m_objects.GetGroup(sheet, Entry(page).id.group));
    Need(sheet->GetListObjects(members));
    std::vector<Index> found;
    for (const Index& member : std::as_const(members))
        if (member.GetType() == kind) found.push_back(member);
    return found;
}

// The pages to which the component leads down.
std::vector<std::size_t> PageMap::PagesAt(const Orin::IPath& path, const Index& comp) const {
    ContainerT<const Orin::IPath> child;
    if (!path.GetChildPath(child, comp)) return {};
    const auto found = m_pagesOf.find(IndexOf(*child));
    return found == m_pagesOf.end() ? std::vector<std::size_t>() : found->second;
}

void PageMap::Descend() {
    for (std::size_t page = 0; page < m_pages.size(); ++page) {
        ContainerT<const Orin::IPath> path;
        Need(m_objects.GetPath(path, Entry(page).id.path));
        for (const Index& comp : MembersOf(page, EObjectType::Comp))
            for (const std::size_t below : PagesAt(*path, comp)) {
                if (m_pages[below].parent != NoPlace) continue;
                m_pages[below].parent = page;
                m_pages[below].through = comp;
            }
    }
    for (std::size_t page = 0; page < m_pages.size(); ++page)
        if (m_pages[page].parent != NoPlace) m_pages[m_pages[page].parent].below.push_back(page);
}

void PageMap::AddConnectors(const OpenDesign& design, const std::string& config) {
    if (!SheetConnectors::AreKnown(design, config)) {
        Say("The configuration does not bear the name of its root block, so its sheet connectors lead nowhere");
        return;
    }
    std::unordered_map<std::string, std::size_t> numbered;
    for (std::size_t page = 0; page < m_pages.size(); ++page)
        if (IsNumbered(page)) numbered.emplace(Entry(page).number, page);
    const SheetConnectors connectors(design, config);
    for (const ConnectorEntry& entry : connectors.All()) {
        const auto page = numbered.find(entry.page);
        if (page == numbered.end()) continue;
        m_pages[page->second].connectors.push_back(m_connectors.size());
        m_connectors.push_back({entry.label, entry.data.index, page->second, NoPlace, {}, false});
    }
    // Those of one label stand together, in page order.
    std::vector<std::size_t> pages;
    for (std::size_t first = 0, last = 0; first < m_connectors.size(); first = last) {
        pages.clear();
        for (; last < m_connectors.size() && m_connectors[last].label == m_connectors[first].label; ++last)
            if (pages.empty() || pages.back() != m_connectors[last].page) pages.push_back(m_connectors[last].page);
        if (last - first == 1) continue;
        std::size_t own = 0;
        for (std::size_t i = first; i < last; ++i) {
            MappedConnector& connector = m_connectors[i];
            connector.next = i + 1 < last ? i + 1 : first;
            if (pages[own] != connector.page) ++own;
            for (std::size_t step = 1; step < pages.size() && !connector.hasMore; ++step) {
                const std::size_t page = pages[(own + step) % pages.size()];
                if (page == connector.page) continue;
                connector.hasMore = connector.otherPages.size() == NamedPages;
                if (!connector.hasMore) connector.otherPages.push_back(page);
            }
        }
    }
}

std::size_t PageMap::Find(const std::string& numberOrName) const {
    return static_cast<std::size_t>(&FindPage(m_list, numberOrName) - m_list.pages.data());
}

std::string PageMap::Heading(std::size_t page) const {
    return IsNumbered(page) ? "Page " + Entry(page).number : "Excluded page";
}

std::string PageMap::Place(std::size_t page) const {
    const PageEntry& entry = Entry(page);
    return "sheet " + entry.sheet + " of " + entry.block + " at " + WayText(entry.way);
}

std::string PageMap::FileOf(std::size_t page) const {
    return "page-" + Entry(page).number + ".html";
}

std::string PageMap::LinkTo(std::size_t page, const Index& object) const {
    return FileOf(page) + '#' + Drawing::AnchorOf(object);
}

std::string PageMap::NumbersOf(const std::vector<std::size_t>& pages, bool hasMore) const {
    std::string numbers;
    for (const std::size_t page : pages)
        numbers += (numbers.empty() ? "" : ", ") + Entry(page).number;
    return hasMore ? numbers + More : numbers;
}

Drawing::Pointers PageMap::PointersOf(std::size_t page) const {
    Drawing::Pointers pointers;
    const auto add = [&](const Index& comp, const char* arrow, const std::string& numbers, const std::string& href) {
        Pointer& pointer = pointers[comp];
        pointer.title = (numbers.find(',') == numbers.npos ? "leads to page " : "leads to pages ") + numbers;
        pointer.mark = arrow + numbers;
        pointer.href = href;
    };
    const MappedPage& mapped = m_pages[page];
    ContainerT<const Orin::IPath> path;
    Need(m_objects.GetPath(path, Entry(page).id.path));
    for (const std::size_t position : mapped.connectors) {
        const MappedConnector& connector = m_connectors[position];
        Pointer& pointer = pointers[connector.comp];
        pointer.title = "stands alone";
        if (connector.next == NoPlace) continue;
        const MappedConnector& next = m_connectors[connector.next];
        add(connector.comp, Across, NumbersOf(connector.otherPages, connector.hasMore), LinkTo(next.page, next.comp));
        if (!connector.otherPages.empty()) continue;
        pointer.title = "again on this page";
        pointer.mark.clear();
    }
    for (const Index& index : MembersOf(page, EObjectType::Comp)) {
        ContainerT<const Orin::IComp> comp;
        Orin::CompTypes types;
        if (!m_objects.GetComp(comp, index) || !comp->GetType(types)) continue;
        std::vector<std::size_t> below = PagesAt(*path, index);
        below.erase(std::remove_if(below.begin(), below.end(), [this](std::size_t at) { return !IsNumbered(at); }),
                    below.end());
        if (!below.empty()) {
            const std::string link = FileOf(below.front());
            const bool hasMore = below.size() > NamedPages;
            below.resize(std::min(below.size(), NamedPages));
            add(index, Down, NumbersOf(below, hasMore), link);
        } else if (types.Contains(ECompType::Connector) && pointers.count(index) == 0 && mapped.parent != NoPlace &&
                   IsNumbered(mapped.parent)) {
            // A connector that leads to no other sheet of its label leads to the parent block.
            add(index, Up, Entry(mapped.parent).number, LinkTo(mapped.parent, mapped.through));
        } else if (!types.Contains(ECompType::Connector) && !types.Contains(ECompType::Hierarchical)) {
            continue;
        }
        pointers[index].anchor = Drawing::AnchorOf(index);
    }
    return pointers;
}

Drawing::Picture PageMap::PictureOf(std::size_t page) {
    const PageEntry& entry = Entry(page);
    ContainerT<const Orin::IPath> path;
    ContainerT<const Orin::IGroup> sheet;
    Need(m_objects.GetPath(path, entry.id.path));
    Need(m_objects.GetGroup(sheet, entry.id.group));
    return m_artist.Draw(path, sheet, {Heading(page), Place(page), "name " + entry.id.name}, PointersOf(page));
}

}  // namespace Quill::Cli
