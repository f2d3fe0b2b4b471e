#include "pages/composite_order_supplier.h"
#include "pages/page_objects.h"
#include "pages/page_traverser.h"
#include "tests/sweep/operation.h"

namespace Quill::Sweep {
namespace {

// The order in which a supplier leads down from sheet "1".
template <class Supplier, class... Ascending>
Operation Supplies(const char* names, const char* degraded, Ascending... ascending) {
    return {.names = names, .degraded = degraded, .prepare = [=](SweepDesign& design) {
                const auto order = std::make_shared<std::vector<Index>>();
                Index path;
                Must(design.rootPath->GetIndex(path));
                return Call{[=, &design] {
                                order->clear();
                                PageObjects objects(design.objects);
                                Supplier supplier(objects, ascending...);
                                return Said(supplier.supplyOrder(design.block, {path, design.sheetIndex, ""}, *order));
                            },
                            [=] { return Said(*order); }};
            }};
}

// The sheets of the pages, as far as the database told them.
std::string Pages(const PageTraverser& pages) {
    std::vector<Index> groups;
    for (const PageID& page : pages.heldPages())
        if (!page.group.IsEmpty()) groups.push_back(page.group);
    return Said(groups);
}

template <class Run>
auto OnPages(EAlgorithm algorithm, ECompAlgorithm order, Run run) {
    return [=](SweepDesign& design) {
        const auto pages = std::make_shared<PageTraverser>(design.snapshot, "top", EViewMode::Logical);
        pages->setAlgorithm(algorithm, order);
        pages->update();
        return Call{[=, &design] { return run(*pages, design); }, [=] { return Pages(*pages); }};
    };
}

// A block whose sheets can be listed neither in order nor otherwise ends the walk; everything else is passed over.
Operation Updates(const char* names, EAlgorithm algorithm, ECompAlgorithm order) {
    return {.names = names,
            .failure = "thrown # : ",
            .degraded = "= : <|fewer : <",
            .prepare = OnPages(algorithm, order,
                               [](PageTraverser& pages, SweepDesign&) { return pages.update() == 3 ? "3" : "fewer"; }),
            .isReported =
                [](const Failures& failures) {
                    return failures.Count("IBlock::GetListOwnedGroups") != 0 &&
                           failures.Count("IBlock::GetListOwnedGroups") + failures.Count("IBlock::GetParentSnapshot") >
                               1;
                },
            .remembers = true};
}

PageID LastOf(const PageTraverser& pages) {
    return pages.heldPages().back();
}

}  // namespace

std::vector<Family> PageOperations() {
    std::vector<Family> all;
    constexpr const char* Begins =
        "OrinPI::GetSnapshotByName ISnapshot::GetUIDManager ISnapshot::GetDefaultConfig IConfig::GetRoot "
        "IPath::GetBlock";
    all.push_back(
        {"Quill::",
         {Supplies<DefaultOrderSupplier>("DefaultOrderSupplier::supplyOrder", "true : <"),
          Supplies<NameOrderSupplier>("NameOrderSupplier::supplyOrder", "true : <", true),
          Supplies<SymbolOrderSupplier>("SymbolOrderSupplier::supplyOrder", "true : <", false),
          Supplies<RefDefOrderSupplier>("RefDefOrderSupplier::supplyOrder", "true : <|false : ", true),
          Supplies<CustomOrderSupplier>("CustomOrderSupplier::supplyOrder", "false : ", false)}});
    all.push_back(
        {"Quill::PageTraverser::",
         {{.names = "PageTraverser",
           .reports = Begins,
           .prepare = Plain([](SweepDesign& design) {
               return PageTraverser(*design.client, "top", EViewMode::Physical).configName();
           })},
          {.names = "PageTraverser",
           .reports = Begins,
           .prepare = Plain([](SweepDesign& design) {
               return PageTraverser(design.snapshot, "top", EViewMode::Physical).configName();
           })},
          Updates("update", EAlgorithm::DepthFirst, ECompAlgorithm::Default),
          Updates("", EAlgorithm::LevelByLevel, ECompAlgorithm::NameDescending),
          Updates("", EAlgorithm::PrintOrder, ECompAlgorithm::RefDes),
          Updates("", EAlgorithm::DepthFirst, ECompAlgorithm::Custom),
          {.names = "attachPage",
           .prepare = OnPages(EAlgorithm::DepthFirst, ECompAlgorithm::Default,
                              [](PageTraverser& pages, SweepDesign&) {
                                  const PageID first = pages.firstPage();
                                  pages.removePage(first);
                                  pages.attachPage(first);
                                  return Said(pages.containsPage(first));
                              }),
           .remembers = true},
          {.names = "PageTraverser operator= ~PageTraverser setAlgorithm setCustomFile configName viewMode firstPage "
                    "nextPage getPage getPageByName pagesCount pageOrder containsPage heldPages pageNumber "
                    "excludePage includePage isMarkedExcluded removePage compositeOrder numbersForPage numbersForBlock "
                    "rangeForBlock rangeForPage",
           .prepare = OnPages(
               EAlgorithm::DepthFirst, ECompAlgorithm::Default, [](PageTraverser& pages, SweepDesign& design) {
                   PageTraverser moved(std::move(pages));
                   pages = std::move(moved);
                   const PageID first = pages.firstPage(), last = LastOf(pages);
                   pages.excludePage(first);
                   const bool marked = pages.isMarkedExcluded(first);
                   pages.includePage(first);
                   std::string error;
                   return Said(marked, pages.setCustomFile("", error), pages.nextPage(first).name,
                               pages.getPage(0).name, pages.getPageByName(first.name).group, pages.pagesCount(),
                               pages.pageOrder(last), pages.pageNumber(last), pages.containsPage(last),
                               pages.compositeOrder(design.sheetIndex), pages.numbersForPage(first),
                               pages.numbersForBlock(design.blockIndex, first.path),
                               pages.rangeForBlock(design.blockIndex, first.path), pages.rangeForPage(first));
               })}}});
    return all;
}

}  // namespace Quill::Sweep
