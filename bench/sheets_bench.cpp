// What a block of many sheets costs. Every operation is to grow near-linearly with the number of sheets.

#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/measure.h"
#include "designdb/testing/fault_injector.h"
#include "tests/sheets/sheet_design.h"

namespace Quill::Testing {
namespace {

// A block whose sheets stand in their stored order.
SheetDesign DesignOf(benchmark::State& state) {
    std::vector<SheetSpec> specs;
    for (int i = 1; i <= state.range(0); ++i) {
        const std::string number = std::to_string(i);
        specs.push_back({number, number, number});
    }
    return SheetDesign(specs);
}

// Runs `work`, which changes the design when `writes` are of interest: they are counted once, in a run of its own.
template <class Work>
void Measure(benchmark::State& state, const char* name, const Work& work, bool writes) {
    std::string note;
    if (writes) {
        const Orin::DesignDb::Testing::FaultInjector calls;
        work();
        note = std::to_string(calls.Calls("IGroup::SetAttribute")) + " sheets written";
    }
    double ours = 0;
    for (auto _ : state) {
        const double own = Bench::OurSeconds(work);
        ours += own;
        state.SetIterationTime(own);
    }
    Bench::Tell(state, {.work = name,
                        .size = static_cast<double>(state.range(0)),
                        .operations = static_cast<double>(state.iterations()),
                        .ours = ours,
                        .note = note});
}

void Sheets_Load(benchmark::State& state) {
    const SheetDesign design = DesignOf(state);
    SheetRange range;
    Measure(
        state, "load the sheets of a block", [&] { range.Init(design.block); }, false);
}

void Sheets_MoveUp(benchmark::State& state) {
    const SheetDesign design = DesignOf(state);
    SheetRange range;
    range.Init(design.block);
    const SheetRange::Sheet sheet = design.sheets[design.sheets.size() / 2];
    const auto edit = [&] {
        range.CanMoveUp(sheet) ? range.MoveUp(sheet) : range.MoveTo({sheet}, *--range.End(), true);
    };
    Measure(state, "move a sheet up", edit, true);
}

// The second half of the sheets is put before the first one, so that every sheet is written.
void Sheets_MoveHalf(benchmark::State& state) {
    const SheetDesign design = DesignOf(state);
    SheetRange range;
    range.Init(design.block);
    const auto edit = [&] {
        std::vector<SheetRange::Sheet> moved;
        SheetRange::Iterator it = range.Begin();
        SheetRange::Advance(it, range.Count() / 2, range.End());
        for (; it != range.End(); ++it)
            moved.push_back(*it);
        range.MoveTo(moved, *range.Begin(), false);
    };
    Measure(state, "move half of the sheets", edit, true);
}

// As many fresh names of either kind, and fresh ids, as the block has sheets.
void Sheets_FreshNames(benchmark::State& state) {
    const SheetDesign design = DesignOf(state);
    std::string name;
    double ours = 0;
    for (auto _ : state) {
        SheetRange range;
        range.Init(design.block);
        const double own = Bench::OurSeconds([&] {
            for (int i = 0; i < state.range(0); ++i) {
                range.CreateNewName(name);
                range.CreateNewName("page", name);
                benchmark::DoNotOptimize(range.CreateNewId("1"));
            }
        });
        ours += own;
        state.SetIterationTime(own);
    }
    Bench::Tell(state, {.work = "as many fresh names and ids as the block has sheets",
                        .size = static_cast<double>(state.range(0)),
                        .operations = static_cast<double>(state.iterations()),
                        .ours = ours});
}

BENCHMARK(Sheets_Load)->Arg(2'500)->Arg(10'000)->Arg(40'000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(Sheets_MoveUp)->Arg(2'500)->Arg(10'000)->Arg(40'000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(Sheets_MoveHalf)->Arg(2'500)->Arg(10'000)->Arg(40'000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(Sheets_FreshNames)->Arg(2'500)->Arg(10'000)->Arg(40'000)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace Quill::Testing
