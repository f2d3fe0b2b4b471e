// What the pages of a large hierarchy cost. An update is to grow near-linearly with the pages and the length of their
// names, and to stay within three times of a walk that makes the same database calls and drops the answers. Iterating,
// excluding half and asking for every number are to stay below an update. The random holder sorts on the first query,
// in n log n. Connector queries take microseconds, however long the list of their label is.

#include <list>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/measure.h"
#include "orin/views.h"
#include "pages/page_number_supplier.h"
#include "sheets/sheet_connectors_cache.h"
#include "tests/pages/page_design.h"

namespace Quill::Testing {
namespace {

using Bench::OurSeconds;
using Bench::Seconds;
using Bench::Tell;

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

void Update(benchmark::State& state) {
    const BenchDesign design(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    PageTraverser pages = Updated(design);
    double nameBytes = 0;
    for (PageID page = pages.firstPage(); !page.IsEmpty(); page = pages.nextPage(page))
        nameBytes += static_cast<double>(page.name.size());
    Orin::ContainerT<const Orin::IConfig> config;
    Orin::ContainerT<const Orin::IPath> root;
    Require(design.snapshot->GetDefaultConfig(config, "top"));
    Require(config->GetRoot(root));
    CallAll(design.block, root);  // places are made when they are first asked for
    double ours = 0, calls = 0;
    for (auto _ : state) {
        const double own = OurSeconds([&] { pages.update(); });
        ours += own;
        calls += Seconds([&] { CallAll(design.block, root); });
        state.SetIterationTime(own);
    }
    Tell(state, {.work = "number all pages, depth " + std::to_string(state.range(1)),
                 .against = "the same database calls",
                 .size = static_cast<double>(pages.pagesCount()),
                 .operations = static_cast<double>(state.iterations()),
                 .ours = ours,
                 .yardstick = calls,
                 .limit = 3,
                 .note = std::to_string(static_cast<int>(nameBytes / 1e6)) + " MB of names"});
}

void Shapes(benchmark::internal::Benchmark* bench) {
    for (const int depth : {2, 8, 1'000})
        for (const int pages : {1'000, 10'000, 100'000})
            bench->Args({pages, depth});
    bench->UseManualTime()->Unit(benchmark::kMillisecond);
}

BENCHMARK(Update)->Apply(Shapes)->Args({10'000, 10'000});

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

// The work on 100,000 pages, beside an update of them.
template <class Work>
void BesideUpdate(benchmark::State& state, const char* name, double limit, const Work& work) {
    PageTraverser pages = Updated(TwoHalves()), others = Updated(TwoHalves());
    double ours = 0, update = 0;
    for (auto _ : state) {
        const double own = OurSeconds([&] { work(pages); });
        ours += own;
        update += Seconds([&] { others.update(); });
        state.SetIterationTime(own);
    }
    Tell(state, {.work = name,
                 .against = "an update of 100,000 pages",
                 .operations = static_cast<double>(state.iterations()),
                 .ours = ours,
                 .yardstick = update,
                 .limit = limit});
}

void Iterate(benchmark::State& state) {
    BesideUpdate(state, "iterate over 100,000 pages", 1, [](PageTraverser& pages) {
        for (PageID page = pages.firstPage(); !page.IsEmpty(); page = pages.nextPage(page))
            benchmark::DoNotOptimize(page);
    });
}

void ExcludeHalf(benchmark::State& state) {
    BesideUpdate(state, "exclude and include half of 100,000 pages", 1, [&](PageTraverser& pages) {
        const PageID first = pages.firstPage();
        pages.excludePage(first);
        if (pages.pagesCount() != 50'000) state.SkipWithError("not half of the pages");
        pages.includePage(first);
    });
}

// An update goes before each removal. The names are looked at, since it is they that have to follow.
void RemoveHalf(benchmark::State& state) {
    BesideUpdate(state, "update, then remove half of 100,000 pages", 2, [&](PageTraverser& pages) {
        pages.update();
        benchmark::DoNotOptimize(pages.getPageByName("none"));
        pages.removePage(pages.firstPage());
        if (pages.pagesCount() != 50'000) state.SkipWithError("not half of the pages");
    });
}

void NumberOfEach(benchmark::State& state) {
    std::vector<PageID> all;
    const PageTraverser asked = Updated(TwoHalves());
    for (PageID page = asked.firstPage(); !page.IsEmpty(); page = asked.nextPage(page))
        all.push_back(page);
    BesideUpdate(state, "the number of each of 100,000 pages", 1, [&](PageTraverser& pages) {
        for (const PageID& page : all)
            benchmark::DoNotOptimize(pages.pageOrder(page));
    });
}

BENCHMARK(Iterate)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(ExcludeHalf)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(RemoveHalf)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(NumberOfEach)->UseManualTime()->Unit(benchmark::kMillisecond);

void PrintOrders(benchmark::State& state) {
    const auto count = static_cast<unsigned>(state.range(0));
    double ours = 0;
    for (auto _ : state) {
        const double own = OurSeconds([&] {
            RandomPageHolder holder;
            StringBaseNumberSupplier orders;
            for (unsigned i = 0; i < count; ++i) {
                orders.base = std::to_string(i * 7919ULL % count) + "-" + std::to_string(i);
                holder.addPage({Orin::Index(1), Orin::Index(i + 1), orders.base}, &orders, false);
            }
            benchmark::DoNotOptimize(holder.firstPage());
        });
        ours += own;
        state.SetIterationTime(own);
    }
    Tell(state, {.work = "add pages by print order, and sort them on the first query",
                 .size = static_cast<double>(count),
                 .operations = static_cast<double>(state.iterations()),
                 .ours = ours});
}

BENCHMARK(PrintOrders)->Arg(10'000)->Arg(100'000)->Arg(1'000'000)->UseManualTime()->Unit(benchmark::kMillisecond);

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
    constexpr int Batch = 1'000;
    double ours = 0;
    for (auto _ : state) {
        const double own = OurSeconds([&] {
            for (int i = 0; i < Batch; ++i)
                if (!cache.getNextTargetSheetConnector("LIB", "off", "1", "top", "NET", connector, hierarchy, &next))
                    state.SkipWithError("no target");
        });
        ours += own;
        state.SetIterationTime(own);
    }
    const double queries = static_cast<double>(state.iterations()) * Batch;
    Tell(state, {.work = "the next end of a connector, all of one label",
                 .against = "10 µs",
                 .size = static_cast<double>(count),
                 .operations = queries,
                 .ours = ours,
                 .yardstick = queries * 10e-6,
                 .limit = 1});
}

BENCHMARK(NextConnector)->Arg(1)->Arg(1'000)->UseManualTime();

}  // namespace
}  // namespace Quill::Testing
