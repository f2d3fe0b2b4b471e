#include "pages/composite_order_supplier.h"
#include "pages/page_objects.h"
#include "pages/page_traverser.h"
#include "tests/sweep/operation.h"

namespace Quill::Sweep {
namespace {

using Design = SweepDesign;

// What it says besides is the order in which the supplier leads down from sheet "1".
template <class Supplier, class... Ascending>
Operation Supplies(const char* names, const char* degraded, Ascending... ascending) {
    return {names, "", "", degraded, [=](Design& design) {
                return Sharing(
                    design, std::make_shared<std::vector<Index>>(),
                    [=, path = IndexOf(design.rootPath)](std::vector<Index>& order, Design& d) {
                        PageObjects objects(d.objects);
                        order.clear();
                        return Supplier(objects, ascending...).supplyOrder(d.block, {path, d.sheetIndex, ""}, order);
                    },
                    [](const std::vector<Index>& order) { return order; });
            }};
}

// What it says besides is the sheets of the pages, as far as the database told them.
template <class Run>
Prepare OnPages(EAlgorithm algorithm, ECompAlgorithm order, Run run) {
    return [=](Design& design) {
        const auto pages = std::make_shared<PageTraverser>(design.snapshot, "top", EViewMode::Logical);
        pages->setAlgorithm(algorithm, order);
        pages->update();
        return Sharing(design, pages, run, [](const PageTraverser& of) {
            std::vector<Index> groups;
            for (const PageID& page : of.heldPages())
                if (!page.group.IsEmpty()) groups.push_back(page.group);
            return groups;
        });
    };
}

// A block whose sheets can be listed neither in their order nor otherwise ends the walk.
Operation Updates(const char* names, EAlgorithm algorithm, ECompAlgorithm order) {
    return {names,
            "",
            "thrown # : ",
            "true : <|false : <",
            OnPages(algorithm, order, [](PageTraverser& pages, Design&) { return pages.update() == 3; }),
            false,
            [](std::map<std::string, int>& failed) {
                const int lists = failed["IBlock::GetListOwnedGroups"];
                return lists != 0 && lists + failed["IBlock::GetParentSnapshot"] > 1;
            }};
}

}  // namespace

std::vector<Family> PageOperations() {
    return {
        {"Quill::",
         {Supplies<DefaultOrderSupplier>("DefaultOrderSupplier::supplyOrder", "true : <"),
          Supplies<NameOrderSupplier>("NameOrderSupplier::supplyOrder", "true : <", true),
          Supplies<SymbolOrderSupplier>("SymbolOrderSupplier::supplyOrder", "true : <", false),
          Supplies<RefDefOrderSupplier>("RefDefOrderSupplier::supplyOrder", "true : <|false : ", true),
          Supplies<CustomOrderSupplier>("CustomOrderSupplier::supplyOrder", "false : ", false)}},
        {"Quill::PageTraverser::",
         {{"PageTraverser", "*", "thrown #", "=",
           Plain([](Design& d) { return PageTraverser(*d.client, "top", EViewMode::Physical).configName(); })},
          {"PageTraverser", "*", "thrown #", "=",
           Plain([](Design& d) { return PageTraverser(d.snapshot, "top", EViewMode::Physical).configName(); })},
          Updates("update", EAlgorithm::DepthFirst, ECompAlgorithm::Default),
          Updates("", EAlgorithm::LevelByLevel, ECompAlgorithm::NameDescending),
          Updates("", EAlgorithm::PrintOrder, ECompAlgorithm::RefDes),
          Updates("", EAlgorithm::DepthFirst, ECompAlgorithm::Custom),
          // It shows at the next update only.
          {"attachPage", "", "", "=",
           OnPages(EAlgorithm::DepthFirst, ECompAlgorithm::Default,
                   [](PageTraverser& pages, Design&) {
                       const PageID first = pages.firstPage();
                       pages.removePage(first);
                       pages.attachPage(first);
                       return pages.containsPage(first);
                   }),
           true},
          {"PageTraverser operator= ~PageTraverser setAlgorithm setCustomFile configName viewMode firstPage nextPage "
           "getPage getPageByName pagesCount pageOrder containsPage heldPages pageNumber excludePage includePage "
           "isMarkedExcluded removePage compositeOrder numbersForPage numbersForBlock rangeForBlock rangeForPage",
           "", "", "=",
           OnPages(EAlgorithm::DepthFirst, ECompAlgorithm::Default,
                   [](PageTraverser& pages, Design& d) {
                       PageTraverser moved(std::move(pages));
                       pages = std::move(moved);
                       const PageID first = pages.firstPage();
                       pages.excludePage(first);
                       pages.includePage(first);
                       return pages.numbersForBlock(d.blockIndex, first.path).size() == pages.pagesCount() &&
                              pages.pageNumber(pages.nextPage(first)) == "2" &&
                              pages.rangeForBlock(d.blockIndex, first.path).size() ==
                                  pages.compositeOrder(d.sheetIndex).size();
                   }),
           true}}}};
}

}  // namespace Quill::Sweep
