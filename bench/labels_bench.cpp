// Bus labels of a million members. The limit of each operation is three times the time of BusLabels_WriteMembers, which
// only writes the members' bytes.
#include <charconv>
#include <cstring>
#include <list>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "labels/bus_contents_utils.h"
#include "labels/bus_label_expander.h"

namespace {

using namespace Quill::BusContents;

constexpr int Count = 1'000'000;
constexpr char Label[] = "DATA[0:999999]";

template <class Container>
Container Members() {
    Container members;
    BusLabelExpander expander(Label, SquareLimiter);
    while (const auto member = expander.Next())
        members.emplace_back(*member);
    return members;
}

void BusLabels_WriteMembers(benchmark::State& state) {
    std::vector<char> bytes(std::size_t{Count} * 16);
    for (auto _ : state) {
        char* out = bytes.data();
        for (int i = 0; i < Count; ++i) {
            std::memcpy(out, "DATA[", 5);
            out = std::to_chars(out + 5, out + 15, i).ptr;
            *out++ = ']';
        }
        benchmark::DoNotOptimize(out);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * Count);
}
BENCHMARK(BusLabels_WriteMembers)->Unit(benchmark::kMillisecond);

void BusLabels_Expand(benchmark::State& state) {
    for (auto _ : state) {
        BusLabelExpander expander(Label, SquareLimiter);
        std::size_t bytes = 0;
        while (const auto member = expander.Next())
            bytes += member->size();
        benchmark::DoNotOptimize(bytes);
    }
    state.SetItemsProcessed(state.iterations() * Count);
}
BENCHMARK(BusLabels_Expand)->Unit(benchmark::kMillisecond);

void BusLabels_Compress(benchmark::State& state) {
    auto members = Members<std::vector<std::string>>();
    for (auto _ : state)
        benchmark::DoNotOptimize(Utils::BuildBusLabel(members, true));
    state.SetItemsProcessed(state.iterations() * Count);
}
BENCHMARK(BusLabels_Compress)->Unit(benchmark::kMillisecond);

void BusLabels_RebuildUnchanged(benchmark::State& state) {
    auto members = Members<std::list<std::string>>();
    for (auto _ : state)
        benchmark::DoNotOptimize(Utils::BuildBusLabel(Label, members, true, "[]"));
    state.SetItemsProcessed(state.iterations() * Count);
}
BENCHMARK(BusLabels_RebuildUnchanged)->Unit(benchmark::kMillisecond);

void BusLabels_RebuildChanged(benchmark::State& state) {
    auto members = Members<std::list<std::string>>();
    members.pop_back();
    for (auto _ : state)
        benchmark::DoNotOptimize(Utils::BuildBusLabel(Label, members, true, "[]"));
    state.SetItemsProcessed(state.iterations() * Count);
}
BENCHMARK(BusLabels_RebuildChanged)->Unit(benchmark::kMillisecond);

}  // namespace
