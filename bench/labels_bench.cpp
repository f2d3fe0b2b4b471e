// Bus labels of a million members, each operation beside one that only writes the members' bytes.
#include <charconv>
#include <cstring>
#include <list>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/measure.h"
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

void WriteMembers(std::vector<char>& bytes) {
    char* out = bytes.data();
    for (int i = 0; i < Count; ++i) {
        std::memcpy(out, "DATA[", 5);
        out = std::to_chars(out + 5, out + 15, i).ptr;
        *out++ = ']';
    }
    benchmark::DoNotOptimize(out);
    benchmark::ClobberMemory();
}

template <class Work>
void BesideWriting(benchmark::State& state, const char* name, double limit, const Work& work) {
    std::vector<char> bytes(std::size_t{Count} * 16);
    double ours = 0, writing = 0;
    for (auto _ : state) {
        const double own = Quill::Bench::OurSeconds(work);
        ours += own;
        writing += Quill::Bench::Seconds([&] { WriteMembers(bytes); });
        state.SetIterationTime(own);
    }
    Quill::Bench::Tell(state, {.work = name,
                               .against = "writing the bytes of the members",
                               .operations = static_cast<double>(state.iterations()),
                               .ours = ours,
                               .yardstick = writing,
                               .limit = limit});
}

void BusLabels_Expand(benchmark::State& state) {
    BesideWriting(state, "expand a bus label of 1,000,000 members", 3, [] {
        BusLabelExpander expander(Label, SquareLimiter);
        std::size_t bytes = 0;
        while (const auto member = expander.Next())
            bytes += member->size();
        benchmark::DoNotOptimize(bytes);
    });
}

void BusLabels_Compress(benchmark::State& state) {
    auto members = Members<std::vector<std::string>>();
    BesideWriting(state, "compress 1,000,000 members", 3,
                  [&] { benchmark::DoNotOptimize(Utils::BuildBusLabel(members, true)); });
}

void BusLabels_RebuildUnchanged(benchmark::State& state) {
    auto members = Members<std::list<std::string>>();
    BesideWriting(state, "rebuild an unchanged label of 1,000,000 members in a list", 0,
                  [&] { benchmark::DoNotOptimize(Utils::BuildBusLabel(Label, members, true, "[]")); });
}

void BusLabels_RebuildChanged(benchmark::State& state) {
    auto members = Members<std::list<std::string>>();
    members.pop_back();
    BesideWriting(state, "rebuild a label that lost one of 1,000,000 members in a list", 0,
                  [&] { benchmark::DoNotOptimize(Utils::BuildBusLabel(Label, members, true, "[]")); });
}

BENCHMARK(BusLabels_Expand)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BusLabels_Compress)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BusLabels_RebuildUnchanged)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BusLabels_RebuildChanged)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace
