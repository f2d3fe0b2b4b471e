// What a block of many sheets costs. Every operation is to grow near-linearly with the number of sheets: the time a
// sheet (per_sheet) stays about the same from one size to the next. `writes` counts the sheets that were written.

#include <string>
#include <vector>

#include <benchmark/benchmark.h>

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

void Report(benchmark::State& state) {
    state.counters["per_sheet"] =
        benchmark::Counter(static_cast<double>(state.range(0)),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
    state.SetComplexityN(state.range(0));
}

// Runs `edit` once with its writes counted, so that the timed runs are not slowed by counting.
template <class Edit>
void CountWrites(benchmark::State& state, const Edit& edit) {
    const Orin::DesignDb::Testing::FaultInjector calls;
    edit();
    state.counters["writes"] = calls.Calls("IGroup::SetAttribute");
}

void Sheets_Load(benchmark::State& state) {
    const SheetDesign design = DesignOf(state);
    SheetRange range;
    for (auto _ : state)
        range.Init(design.block);
    Report(state);
}

void Sheets_MoveUp(benchmark::State& state) {
    const SheetDesign design = DesignOf(state);
    SheetRange range;
    range.Init(design.block);
    const SheetRange::Sheet sheet = design.sheets[design.sheets.size() / 2];
    const auto edit = [&] {
        range.CanMoveUp(sheet) ? range.MoveUp(sheet) : range.MoveTo({sheet}, *--range.End(), true);
    };
    CountWrites(state, edit);
    for (auto _ : state)
        edit();
    Report(state);
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
    CountWrites(state, edit);
    for (auto _ : state)
        edit();
    Report(state);
}

// As many fresh names of either kind, and fresh ids, as the block has sheets.
void Sheets_FreshNames(benchmark::State& state) {
    const SheetDesign design = DesignOf(state);
    std::string name;
    for (auto _ : state) {
        state.PauseTiming();
        SheetRange range;
        range.Init(design.block);
        state.ResumeTiming();
        for (int i = 0; i < state.range(0); ++i) {
            range.CreateNewName(name);
            range.CreateNewName("page", name);
            benchmark::DoNotOptimize(range.CreateNewId("1"));
        }
    }
    Report(state);
}

BENCHMARK(Sheets_Load)->Arg(2'500)->Arg(10'000)->Arg(40'000)->Complexity()->Unit(benchmark::kMillisecond);
BENCHMARK(Sheets_MoveUp)->Arg(2'500)->Arg(10'000)->Arg(40'000)->Complexity()->Unit(benchmark::kMillisecond);
BENCHMARK(Sheets_MoveHalf)->Arg(2'500)->Arg(10'000)->Arg(40'000)->Complexity()->Unit(benchmark::kMillisecond);
BENCHMARK(Sheets_FreshNames)->Arg(2'500)->Arg(10'000)->Arg(40'000)->Complexity()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace Quill::Testing
