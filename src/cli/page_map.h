// How the pages of a design lead to each other: down into child blocks, up again, and across by sheet connectors.
#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

#include "cli/open_design.h"
#include "cli/page_list.h"
#include "drawing/sheet_picture.h"

namespace Quill::Cli {

inline constexpr std::size_t NoPlace = static_cast<std::size_t>(-1);

// Pages and connectors are known by their positions.
struct MappedPage {
    std::size_t parent = NoPlace;         // the page from which this one is reached first
    Orin::Index through;                  // the hierarchical component there
    std::vector<std::size_t> below;       // pages that have this one as their parent, in page order
    std::vector<std::size_t> connectors;  // by label
};

struct MappedConnector {
    std::string label;
    Orin::Index comp;
    std::size_t page = NoPlace;
    std::size_t next = NoPlace;           // the connector that it leads to; NoPlace when it stands alone
    std::vector<std::size_t> otherPages;  // the first few after its own, around from the last to the first
    bool hasMore = false;                 // than those few
};

// The pages of a configuration in the walk by depth, which is how they are numbered. The design must not change while
// the map lives.
class PageMap {
public:
    // Throws a CommandError, or the failed Orin::Result.
    PageMap(const OpenDesign& design, const std::string& config);

    const std::vector<MappedPage>& Pages() const noexcept { return m_pages; }
    const PageEntry& Entry(std::size_t page) const { return m_list.pages[page]; }
    bool IsNumbered(std::size_t page) const { return !Entry(page).number.empty(); }
    const std::vector<MappedConnector>& Connectors() const noexcept { return m_connectors; }
    // The page with that number or name (page_list.h).
    std::size_t Find(const std::string& numberOrName) const;

    // "Page 3", or what a page without a number is called instead.
    std::string Heading(std::size_t page) const;
    // "sheet 1 of channel at /Left".
    std::string Place(std::size_t page) const;

    // The file of a page that has a number, for links between the pages.
    std::string FileOf(std::size_t page) const;
    // Where a link to an object of a page leads.
    std::string LinkTo(std::size_t page, const Orin::Index& object) const;

    // Components that lead to other pages say so and are links.
    Drawing::Picture PictureOf(std::size_t page);

    // The objects of a page's sheet of one kind, in the sheet's order.
    std::vector<Orin::Index> MembersOf(std::size_t page, Orin::EObjectType kind) const;
    const Orin::IUIDManager& Objects() const noexcept { return m_objects; }

private:
    Drawing::Pointers PointersOf(std::size_t page) const;
    void Descend();
    void AddConnectors(const OpenDesign& design, const std::string& config);
    std::vector<std::size_t> PagesAt(const Orin::IPath& path, const Orin::Index& comp) const;
    std::string NumbersOf(const std::vector<std::size_t>& pages, bool hasMore) const;

    PageList m_list;
    std::vector<MappedPage> m_pages;
    std::vector<MappedConnector> m_connectors;
    std::unordered_map<Orin::Index, std::vector<std::size_t>> m_pagesOf;  // by place in the hierarchy
    Orin::IUIDManager m_objects;
    Drawing::SheetArtist m_artist;
};

}  // namespace Quill::Cli
