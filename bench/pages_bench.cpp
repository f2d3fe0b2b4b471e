// What the pages of a large hierarchy cost. Update is to grow near-linearly with the pages and the length of their
// names, and to stay within three times of SameCalls, a walk that makes the same database calls and drops the answers.
// Iterate, ExcludeHalf and NumberOfEach are to stay below Update. The random holder sorts on the first query, in
// n log n. Connector queries take microseconds, however long the list of their label is.

#include <list>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "orin/views.h"
#include "pages/page_number_supplier.h"
#include "sheets/sheet_connectors_cache.h"
#include "tests/pages/page_design.h"

namespace Quill::Testing {
namespace {

constexpr int CompsOnPage = 10;

// Hierarchies of `pages` pages: the root's sheets, and from each of them the same tree of blocks.
class BenchDesign : public PageDesign {
public:
    BenchDesign(int pages, int depth) {
        switch (depth) {
            case 2: {  // a child of nine sheets below each sheet of the root
                const SheetRange::Block leaf = AddBlock("leaf");
                for (int i = 0; i < 9; ++i)
                    Sheet(leaf, {}, 0);
                Roots(pages / 10, leaf, 1);
                break;
            }
            case 8:  // two children on each page
                Roots(pages / 255, Chain(7, 2), 2);
                break;
            default:  // one page a level
                Roots(pages / depth, Chain(depth - 1, 1), 1);
        }
    }

    // The block on top of `levels` blocks of one sheet, with `children` times the next block on each.
    SheetRange::Block Chain(int levels, int children) {
        SheetRange::Block below;
        for (int level = 0; level < levels; ++level) {
            const SheetRange::Block next = AddBlock("level");
            Sheet(next, below, below ? children : 0);
            below = next;
        }
        return below;
    }

    void Roots(int count, const SheetRange::Block& child, int children) {
        for (int i = 0; i < count; ++i)
            Sheet(block, child, children);
    }

    Orin::Index Sheet(const SheetRange::Block& owner, const SheetRange::Block& child, int children) {
        const std::string number = std::to_string(++m_sheets);
        const Orin::Index sheet = IndexOf(AddSheet(owner, {number, number, number}));
        for (int i = 0; i < CompsOnPage; ++i) {
            if (i < children)
                AddChild(owner, sheet, "$" + std::to_string(i), child);
            else
                AddComp(owner, sheet, {.label = "R", .types = Orin::ECompType::Part});
        }
        return sheet;
    }

private:
    int m_sheets = 0;
};

PageTraverser Updated(const PageDesign& design, EAlgorithm algorithm = EAlgorithm::DepthFirst) {
    PageTraverser pages = design.Traverser();
    pages.setAlgorithm(algorithm, ECompAlgorithm::Default);
    pages.update();
    return pages;
}

void Update(benchmark::State& state) {
    const BenchDesign design(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    PageTraverser pages = Updated(design);
    double nameBytes = 0;
    for (PageID page = pages.firstPage(); !page.IsEmpty(); page = pages.nextPage(page))
        nameBytes += static_cast<double>(page.name.size());
    for (auto _ : state)
        pages.update();
    state.counters["pages"] = pages.pagesCount();
    state.counters["name_MB"] = nameBytes / 1e6;
}

// The calls of a traverser's walk, with nothing made of what they give.
void CallAll(const SheetRange::Block& block, const Orin::ContainerT<const Orin::IPath>& path) {
    Orin::Index index;
    Orin::String text;
    Orin::CompTypes types;
    Orin::ContainerT<const Orin::IComp> comp;
    Orin::ContainerT<const Orin::ISnapshot> snapshot;
    Orin::ListT<Orin::GroupInfo> groups;
    Orin::GroupTypes sheetTypes(Orin::EGroupType::Sheet);
    sheetTypes |= Orin::EGroupType::GeneratedSheet;
    Require(path->GetIndex(index));
    Require(block->GetIndex(index));
    Require(block->GetParentSnapshot(snapshot));
    Require(block->GetListOwnedGroups(groups, sheetTypes));
    std::vector<SheetRange::Sheet> sheets(groups.Count());
    for (unsigned i = 0; i < groups.Count(); ++i) {
        Require(block->GetGroup(sheets[i], std::as_const(groups)[i].index));
        Require(sheets[i]->GetAttribute("$$Internal_CUSTOM_ORDER", text));
        Require(sheets[i]->GetAttribute("$$Internal_ID", text));
    }
    if (path->GetParentComp(comp)) Require(comp->GetLabel(text));
    for (const SheetRange::Sheet& sheet : sheets) {
        Orin::ListT<Orin::Index> objects;
        std::vector<Orin::Index> children;
        SheetRange::Sheet same;
        Require(sheet->GetIndex(index));
        Require(sheet->GetName(text));
        benchmark::DoNotOptimize(sheet->GetAttribute("ExcludeFromPrintout", text));
        Require(block->GetGroup(same, index));
        Require(same->GetIndex(index));
        Require(same->GetListObjects(objects));
        for (const Orin::Index& object : std::as_const(objects)) {
            SheetRange::Block child;
            Require(block->GetComp(comp, object));
            Require(comp->GetType(types));
            if (types.Contains(Orin::ECompType::Hierarchical) && comp->GetChildBlock(child) && child.IsValid())
                children.push_back(object);
        }
        for (const Orin::Index& object : children) {
            SheetRange::Block child;
            Orin::ContainerT<const Orin::IPath> below;
            Require(block->GetComp(comp, object));
            Require(comp->GetChildBlock(child));
            Require(child.IsValid());
            Require(path->GetChildPath(below, object));
            CallAll(child, below);
        }
    }
}

void SameCalls(benchmark::State& state) {
    const BenchDesign design(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    Orin::ContainerT<const Orin::IConfig> config;
    Orin::ContainerT<const Orin::IPath> root;
    Require(design.snapshot->GetDefaultConfig(config, "top"));
    Require(config->GetRoot(root));
    CallAll(design.block, root);  // places are made when they are first asked for
    for (auto _ : state)
        CallAll(design.block, root);
}

void Shapes(benchmark::internal::Benchmark* bench) {
    for (const int depth : {2, 8, 1'000})
        for (const int pages : {1'000, 10'000, 100'000})
            bench->Args({pages, depth});
    bench->Unit(benchmark::kMillisecond);
}

BENCHMARK(Update)->Apply(Shapes)->Args({10'000, 10'000});
BENCHMARK(SameCalls)->Apply(Shapes);

// Two sheets of the root with half of 100,000 pages below each.
const BenchDesign& TwoHalves() {
    static const BenchDesign design = [] {
        BenchDesign halves(0, 2);
        const SheetRange::Block half = halves.AddBlock("half");
        for (int i = 0; i < 49'999; ++i)
            halves.Sheet(half, {}, 0);
        halves.Roots(2, half, 1);
        return halves;
    }();
    return design;
}

void UpdateHalves(benchmark::State& state) {
    PageTraverser pages = Updated(TwoHalves());
    for (auto _ : state)
        pages.update();
}

void Iterate(benchmark::State& state) {
    const PageTraverser pages = Updated(TwoHalves());
    for (auto _ : state)
        for (PageID page = pages.firstPage(); !page.IsEmpty(); page = pages.nextPage(page))
            benchmark::DoNotOptimize(page);
}

void ExcludeHalf(benchmark::State& state) {
    PageTraverser pages = Updated(TwoHalves());
    const PageID first = pages.firstPage();
    for (auto _ : state) {
        pages.excludePage(first);
        if (pages.pagesCount() != 50'000) state.SkipWithError("not half of the pages");
        pages.includePage(first);
    }
}

// An update goes before each removal; the whole is to stay below twice UpdateHalves. The names are looked at, since it
// is they that have to follow.
void RemoveHalf(benchmark::State& state) {
    PageTraverser pages = Updated(TwoHalves());
    for (auto _ : state) {
        pages.update();
        benchmark::DoNotOptimize(pages.getPageByName("none"));
        pages.removePage(pages.firstPage());
        if (pages.pagesCount() != 50'000) state.SkipWithError("not half of the pages");
    }
}

void NumberOfEach(benchmark::State& state) {
    const PageTraverser pages = Updated(TwoHalves());
    std::vector<PageID> all;
    for (PageID page = pages.firstPage(); !page.IsEmpty(); page = pages.nextPage(page))
        all.push_back(page);
    for (auto _ : state)
        for (const PageID& page : all)
            benchmark::DoNotOptimize(pages.pageOrder(page));
}

BENCHMARK(UpdateHalves)->Unit(benchmark::kMillisecond);
BENCHMARK(Iterate)->Unit(benchmark::kMillisecond);
BENCHMARK(ExcludeHalf)->Unit(benchmark::kMillisecond);
BENCHMARK(RemoveHalf)->Unit(benchmark::kMillisecond);
BENCHMARK(NumberOfEach)->Unit(benchmark::kMillisecond);

void PrintOrders(benchmark::State& state) {
    const auto count = static_cast<unsigned>(state.range(0));
    for (auto _ : state) {
        RandomPageHolder holder;
        StringBaseNumberSupplier orders;
        for (unsigned i = 0; i < count; ++i) {
            orders.base = std::to_string(i * 7919ULL % count) + "-" + std::to_string(i);
            holder.addPage({Orin::Index(1), Orin::Index(i + 1), orders.base}, &orders, false);
        }
        benchmark::DoNotOptimize(holder.firstPage());
    }
    state.SetComplexityN(state.range(0));
}

BENCHMARK(PrintOrders)->Arg(10'000)->Arg(100'000)->Arg(1'000'000)->Complexity()->Unit(benchmark::kMillisecond);

struct ConnectorSymbols : IPinTypeComponentsData {
    std::vector<std::string> GetComponents(int) override { return {"LIB:off.1"}; }
};

// A thousand times as many occurrences as range(0), all with one label.
void NextConnector(benchmark::State& state) {
    BenchDesign design(0, 2);
    Orin::Index library, symbol, connector;
    Require(design.editor.AddBlock({"lib", Orin::EBlockType::Symbol}, library));
    Require(design.editor.AddComp(library, {.label = "", .name = "off.1"}, symbol));
    const SheetRange::Block leaf = design.AddBlock("leaf");
    const Orin::Index sheet = design.Sheet(leaf, {}, 0);
    for (int i = 0; i < 1'000; ++i)
        connector = design.AddComp(leaf, sheet, {.label = "NET", .partition = "LIB", .definition = symbol});
    design.Roots(static_cast<int>(state.range(0)), leaf, 1);
    ConnectorSymbols symbols;
    CSheetConnectorsCache cache;
    cache.attachObserver(design.snapshot);
    cache.reloadSheetConnectorsList(&symbols);

    const CSheetConnectorData* next = nullptr;
    std::size_t count = 0;
    Orin::ListT<Orin::Index> hierarchy;
    cache.forEachSheetConnector([&](const std::string&, const std::string&, const CSheetConnectorData& found) {
        ++count;
        if (found.index == connector) hierarchy = found.hierarchy;
    });
    for (auto _ : state)
        if (!cache.getNextTargetSheetConnector("LIB", "off", "1", "top", "NET", connector, hierarchy, &next))
            state.SkipWithError("no target");
    state.counters["connectors"] = static_cast<double>(count);
}

BENCHMARK(NextConnector)->Arg(1)->Arg(1'000);

}  // namespace
}  // namespace Quill::Testing
