// All pages of a design in one sequence, for printing and page numbering.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "orin/orin_pi.h"
#include "orin/snapshot.h"
#include "pages/page_holder.h"
#include "pages/page_id.h"
#include "quillutils_export.h"

namespace Quill {

// What the caller shows the pages for; kept for the caller, nothing depends on it.
enum class EViewMode : int { Logical = 0, Physical = 1 };

// How the pages are numbered. Any other value numbers as PrintOrder does, but its walk enters no page.
enum class EAlgorithm : int {
    DepthFirst = 1,    // a sheet, then everything below it, then the next sheet
    LevelByLevel = 2,  // the root block's sheets, then those one level below, and so on
    PrintOrder = 3,    // by the print order that a page's title component carries
};

// In which order the hierarchical components of a page lead to child blocks (composite_order_supplier.h). Any other
// value counts as Default.
enum class ECompAlgorithm : int {
    Custom = 0,
    Name = 1,  // by label
    Symbol = 2,
    Default = 3,
    Label = 4,  // the same as Name
    RefDes = 5,
    CustomDescending = 6,
    NameDescending = 7,
    SymbolDescending = 8,
    DefaultDescending = 9,  // the same as Default
    LabelDescending = 10,   // the same as NameDescending
    RefDesDescending = 11,
};

// Walks the hierarchy of one configuration: from its root block through each sheet, in the block's sheet order, into
// the child blocks of the sheet's hierarchical components. A page is a sheet of a block at one place of the hierarchy;
// it shows the design as it was at the last update.
//
// Holds read handles to the design. One pointer wide; one thread at a time. Until setAlgorithm was called, every query
// gives an empty value and every other operation does nothing; until update, no page is known.
// What the database cannot tell counts as absent, but for the failures that the constructors and update throw. A
// moved-from traverser can be destroyed or assigned only.
//
// Excluded pages are held, but neither numbered nor iterated, unless they are numbered by print order, which ignores
// exclusion. A page is excluded by "ExcludeFromPrintout" = "TRUE" (in letters of any case) on its sheet or by
// excludePage, and with it everything below it. The walk comes to each place of the hierarchy once: of components that
// an order names twice the second is passed over, and pages below two sheets keep the number that the first gave them.
class QUILLUTILS_EXPORT PageTraverser {
public:
    // The configuration `configName` of the snapshot "QUILL", or of the snapshot given. Throws the failed Orin::Result
    // when the snapshot, the configuration, its root or the root's block is not there.
    PageTraverser(Orin::OrinPI& db, const std::string& configName, EViewMode mode);
    PageTraverser(const Orin::ContainerT<const Orin::ISnapshot>& snapshot, const std::string& configName,
                  EViewMode mode);
    PageTraverser(PageTraverser&&) noexcept;
    PageTraverser& operator=(PageTraverser&&) noexcept;
    ~PageTraverser();

    // Chooses how to number and descend. The pages are given up; the next update finds them again.
    void setAlgorithm(EAlgorithm a, ECompAlgorithm c);

    // Walks the design anew and numbers the pages. What was excluded, included, removed and attached by calls is
    // forgotten. Gives the number of sheets of the root block; pages of child blocks are not counted.
    // Throws the failed Orin::Result when the sheets of a block cannot be listed; no page is known then.
    unsigned update();

    // Not supported: false, and nothing is touched.
    bool setCustomFile(const std::string& file, std::string& error);

    const std::string& configName() const noexcept;
    EViewMode viewMode() const noexcept;

    // ---- The pages: answered as in page_holder.h ----

    PageID firstPage() const;
    PageID nextPage(const PageID& page) const;
    PageID getPage(unsigned position) const;  // counted from 0
    PageID getPageByName(const std::string& name) const;
    unsigned pagesCount() const;
    unsigned pageOrder(const PageID& page) const;  // counted from 1; NoPageNumber when it has none
    bool containsPage(const PageID& page) const;
    std::vector<PageID> heldPages() const;             // level by level: in that order; else in the order of the walk
    std::string pageNumber(const PageID& page) const;  // pageOrder in decimal; "" when it has none

    // ---- Changes, which last until the next update ----

    // Marks the page, or takes its mark away, and does the same to what is below it; then numbers anew. An empty PageID
    // stands for the whole design. A page whose only child blocks are without sheets has nothing recorded below it, not
    // even itself: excluding it marks it and does nothing else, and excluding a page above passes it over.
    void excludePage(const PageID& page);
    void includePage(const PageID& page);
    // Whether the page is marked itself, by its sheet or by excludePage.
    bool isMarkedExcluded(const PageID& page) const;

    // Takes the page and everything below it out. The numbers of the others stay until something numbers anew.
    void removePage(const PageID& page);
    // Enters a page that was removed, or whose sheet is new, in the record of its block occurrence, at the place that
    // the sheet has in the block's order as it is now, and below the page from which the block is reached. The pages
    // below it are not attached with it. It gets its number, and its place in the sequence, with the next update.
    // Nothing happens when the sheet is none of the block at that place.
    void attachPage(const PageID& page);

    // ---- The hierarchy ----

    // The hierarchical components of a sheet as the last visit to it ordered them, with those that an order stored in
    // the design repeats or invents.
    std::vector<Orin::Index> compositeOrder(const Orin::Index& group) const;

    // The numbers of the page and of all pages below it, ascending. Pages without a number are left out.
    std::vector<unsigned> numbersForPage(const PageID& page) const;
    // The numbersForPage of all pages of a block at one place, merged; a number that two of them give is there twice.
    std::vector<unsigned> numbersForBlock(const Orin::Index& block, const Orin::Index& path) const;
    // The lowest and the highest of numbersForBlock, or nothing.
    std::vector<unsigned> rangeForBlock(const Orin::Index& block, const Orin::Index& path) const;
    // Always empty. Callers have come to rely on getting no range for a single page; use numbersForPage.
    std::vector<unsigned> rangeForPage(const PageID& page) const;

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

}  // namespace Quill
