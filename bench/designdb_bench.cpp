// The database beside bare containers of plain structs under one uncontended shared mutex that copy their answer, at
// random over 1,000,000 components, in batches that alternate. What it costs to build such a design. And, of the same
// design: two reader threads beside one, an edit that one idle observer hears of beside one that nobody hears of, a
// save point and the first write after it.

#include <algorithm>
#include <mutex>
#include <optional>
#include <random>
#include <shared_mutex>
#include <string>
#include <thread>
#include <unordered_map>
#include <vector>

#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <malloc.h>

#include "bench/measure.h"
#include "designdb/database.h"
#include "designdb/editor.h"

namespace Orin::DesignDb {
namespace {

using Quill::Bench::OurSeconds;
using Quill::Bench::Seconds;
using Quill::Bench::Tell;

constexpr unsigned SheetsOfBlock = 10;
constexpr unsigned CompsOfSheet = 100;

void Need(const Result& result) {
    if (!result) throw result;
}

// Blocks of ten sheets of a hundred components with one attribute each; a tenth of the components is used a second
// time, as an occurrence with an attribute of its own, below one of the root block's components.
struct Design {
    Database database;
    std::unique_ptr<OrinPI> connection;
    ContainerT<const ISnapshot> snapshot;
    IUIDManager objects;
    std::vector<Index> comps, sheets;
    double undoBytes = 0;  // that the transaction held until it was committed

    explicit Design(std::size_t count) {
        static int s_designs = 0;
        Need(Database::Create(database, ("bench " + std::to_string(++s_designs)).c_str()));
        connection = database.Connect("bench");
        Need(connection->GetSnapshotByName(snapshot, WorkingSnapshot));
        Need(snapshot->GetUIDManager(objects));
        Editor editor;
        Need(Editor::Open(editor, snapshot));
        Need(snapshot->BeginTransaction(ETransactionType::Import));
        Index top, config;
        Need(editor.AddBlock({"top"}, top));
        Need(editor.AddConfig({"board", top}, config));
        ContainerT<const IConfig> board;
        ContainerT<const IPath> root;
        Need(snapshot->GetDefaultConfig(board, "board"));
        Need(board->GetRoot(root));
        comps.reserve(count);
        while (comps.size() < count)
            AddBlock(editor, top, *root);
        const struct mallinfo2 open = mallinfo2();
        Need(snapshot->CommitTransaction());
        const struct mallinfo2 done = mallinfo2();
        undoBytes = static_cast<double>(open.uordblks + open.hblkhd - done.uordblks - done.hblkhd);
    }

private:
    void AddBlock(Editor& editor, const Index& top, const IPath& root) {
        Index block, stands, path;
        Need(editor.AddBlock({"b"}, block));
        CompSpec instance;
        instance.childBlock = block;
        Need(editor.AddComp(top, instance, stands));
        ContainerT<const IPath> place;
        Need(root.GetChildPath(place, stands));
        Need(place->GetIndex(path));
        for (unsigned s = 0; s < SheetsOfBlock; ++s) {
            Index sheet;
            Need(editor.AddGroup(block, {std::to_string(s).c_str()}, sheet));
            sheets.push_back(sheet);
            for (unsigned c = 0; c < CompsOfSheet; ++c) {
                Index comp;
                const std::string label = "U" + std::to_string(comps.size());
                Need(editor.AddComp(block, {label.c_str()}, comp));
                Need(editor.SetAttribute(comp, "Ref Designator", label.c_str()));
                Need(editor.AddMember(sheet, comp));
                if (c % 10 == 0) Need(editor.SetAttributeInPath(path, comp, "Ref Designator", label.c_str()));
                comps.push_back(comp);
            }
        }
    }
};

struct Plain {
    std::uint64_t index = 0;
    std::uint64_t block = 0;
    std::string label;
    std::vector<std::pair<std::string, std::string>> attributes;
};

struct Fixture {
    static constexpr std::size_t Count = 1000000;
    Design design{Count};
    std::shared_mutex mutex;
    std::vector<Plain> comps;
    std::unordered_map<std::uint64_t, Plain> byIndex;
    std::unordered_map<std::uint64_t, std::vector<std::uint64_t>> sheets;
    std::vector<ContainerT<const IComp>> handles;

    Fixture() : handles(Count) {
        for (std::size_t i = 0; i < Count; ++i) {
            const std::string label = "U" + std::to_string(i);
            const std::uint64_t index = design.comps[i].Value();
            comps.push_back({index, 1, label, {{"Ref Designator", label}}});
            byIndex[index] = {index, 1, label, {}};
            sheets[design.sheets[i / CompsOfSheet].Value()].push_back(index);
            Need(design.objects.GetComp(handles[i], design.comps[i]));
        }
    }
    static Fixture& Get() {
        static Fixture fixture;
        return fixture;
    }
};

// Times batches of both operations in turn, each on a random number below `limit`.
template <class Ours, class Theirs>
void Compare(benchmark::State& state, const char* name, std::size_t limit, Ours&& ours, Theirs&& theirs) {
    constexpr int Batch = 512;
    std::mt19937 random(1);
    std::uniform_int_distribution<std::size_t> any(0, limit - 1);
    double sums[2] = {};
    std::vector<std::size_t> at(Batch);
    const auto batch = [&](auto& operation) {
        for (const std::size_t position : at)
            operation(position);
    };
    const auto choose = [&] {
        for (std::size_t& position : at)
            position = any(random);
    };
    for (auto _ : state) {
        choose();
        const double our = OurSeconds([&] { batch(ours); });
        sums[0] += our;
        choose();
        sums[1] += Seconds([&] { batch(theirs); });
        state.SetIterationTime(our);
    }
    Tell(state, {.work = name,
                 .against = "plain structs under a shared mutex",
                 .operations = static_cast<double>(state.iterations()) * Batch,
                 .ours = sums[0],
                 .yardstick = sums[1],
                 .limit = 3});
}

void ReadAttribute(benchmark::State& state) {
    Fixture& f = Fixture::Get();
    const String name("Ref Designator");
    const std::string plainName("Ref Designator");
    Compare(
        state, "read an attribute, among 1,000,000 components", Fixture::Count,
        [&](std::size_t i) {
            String value;
            benchmark::DoNotOptimize(f.handles[i]->GetAttribute(name, value, EAttributeType::User));
            benchmark::DoNotOptimize(value);
        },
        [&](std::size_t i) {
            const std::shared_lock lock(f.mutex);
            for (const auto& [key, value] : f.comps[i].attributes)
                if (key == plainName) {
                    std::string copy = value;
                    benchmark::DoNotOptimize(copy);
                }
        });
}

void ResolveIndex(benchmark::State& state) {
    Fixture& f = Fixture::Get();
    Compare(
        state, "resolve an index, among 1,000,000 components", Fixture::Count,
        [&](std::size_t i) {
            ContainerT<const IComp> comp;
            benchmark::DoNotOptimize(f.design.objects.GetComp(comp, f.design.comps[i]));
            benchmark::DoNotOptimize(comp);
        },
        [&](std::size_t i) {
            const std::shared_lock lock(f.mutex);
            Plain copy = f.byIndex.find(f.design.comps[i].Value())->second;
            benchmark::DoNotOptimize(copy);
        });
}

void ListSheet(benchmark::State& state) {
    Fixture& f = Fixture::Get();
    std::vector<ContainerT<const IGroup>> handles(f.design.sheets.size());
    for (std::size_t i = 0; i < handles.size(); ++i)
        Need(f.design.objects.GetGroup(handles[i], f.design.sheets[i]));
    Compare(
        state, "list the objects of a sheet, among 10,000 sheets", handles.size(),
        [&](std::size_t i) {
            ListT<Index> members;
            benchmark::DoNotOptimize(handles[i]->GetListObjects(members));
            benchmark::DoNotOptimize(members);
        },
        [&](std::size_t i) {
            const std::shared_lock lock(f.mutex);
            std::vector<std::uint64_t> copy = f.sheets.find(f.design.sheets[i].Value())->second;
            benchmark::DoNotOptimize(copy);
        });
}

// Reads of two threads at once, each through a client of its own, to those of one in the same time: at least 1.6.
void TwoReaders(benchmark::State& state) {
    Fixture& f = Fixture::Get();
    constexpr std::size_t Reads = 200000;
    const auto read = [&](unsigned seed) {
        const std::unique_ptr<OrinPI> connection = f.design.database.Connect("reader");
        ContainerT<const ISnapshot> snapshot;
        IUIDManager objects;
        Need(connection->GetSnapshotByName(snapshot, WorkingSnapshot));
        Need(snapshot->GetUIDManager(objects));
        const String name("Ref Designator");
        std::mt19937 random(seed);
        for (std::size_t i = 0; i < Reads; ++i) {
            ContainerT<const IComp> comp;
            String value;
            benchmark::DoNotOptimize(objects.GetComp(comp, f.design.comps[random() % Fixture::Count]));
            benchmark::DoNotOptimize(comp->GetAttribute(name, value, EAttributeType::User));
        }
    };
    double sums[2] = {};
    unsigned seed = 0;
    for (auto _ : state) {
        sums[0] += Seconds([&] { read(++seed); });
        double others = 0;
        std::thread other([&] { others = Seconds([&] { read(seed + 1); }); });
        const double own = Seconds([&] { read(seed + 2); });
        other.join();
        seed += 2;
        const double both = std::max(own, others);
        sums[1] += both;
        state.SetIterationTime(both);
    }
    Tell(state, {.work = "two threads that read at once",
                 .against = "one after the other",
                 .operations = static_cast<double>(state.iterations()),
                 .ours = sums[1],
                 .yardstick = 2 * sums[0],
                 .limit = 1 / 1.6});
}

class Idle final : public EventObserver {};

void ObservedEdit(benchmark::State& state) {
    Fixture& f = Fixture::Get();
    Editor editor;
    Need(Editor::Open(editor, f.design.snapshot));
    const String name("Ref Designator"), value("U");
    constexpr int Batch = 512;
    std::mt19937 random(1);
    double sums[2] = {};
    const auto edit = [&] {
        return Seconds([&] {
            for (int i = 0; i < Batch; ++i)
                Need(editor.SetAttribute(f.design.comps[random() % Fixture::Count], name, value));
        });
    };
    for (auto _ : state) {
        Idle idle;
        sums[0] += edit();
        Need(f.design.snapshot->AddEventObserver(&idle));
        const double observed = edit();
        Need(f.design.snapshot->RemoveEventObserver(&idle));
        sums[1] += observed;
        state.SetIterationTime(observed);
    }
    Tell(state, {.work = "an edit with an observer that does nothing",
                 .against = "the edit without",
                 .operations = static_cast<double>(state.iterations()) * Batch,
                 .ours = sums[1],
                 .yardstick = sums[0],
                 .limit = 1.5});
}

// The note tells the first write to a chunk that the save point shares, and the next one.
void MakeSavePoint(benchmark::State& state) {
    Fixture& f = Fixture::Get();
    Editor editor;
    Need(Editor::Open(editor, f.design.snapshot));
    std::mt19937 random(1);
    double copies = 0, first = 0, second = 0;
    for (auto _ : state) {
        const double copy = OurSeconds([&] { Need(editor.MakeSavePoint("saved")); });
        copies += copy;
        state.SetIterationTime(copy);
        const Index comp = f.design.comps[random() % Fixture::Count];
        first += Seconds([&] { Need(editor.SetLabel(comp, "x")); });
        second += Seconds([&] { Need(editor.SetLabel(comp, "y")); });
        Need(f.design.database.RemoveSnapshot("saved"));
    }
    const auto copied = static_cast<double>(state.iterations());
    Tell(state, {.work = "a save point of 1,000,000 components",
                 .against = "10 ms",
                 .operations = copied,
                 .ours = copies,
                 .yardstick = copied * 10e-3,
                 .limit = 1,
                 .note = fmt::format("first write after it {:.1f} µs, the next {:.1f} µs", first / copied * 1e6,
                                     second / copied * 1e6)});
}

// Bytes of the finished design, its share of the chunks and the occurrences included.
void Build(benchmark::State& state) {
    const auto count = static_cast<std::size_t>(state.range(0));
    double bytes = 0, undo = 0, ours = 0;
    for (auto _ : state) {
        const struct mallinfo2 before = mallinfo2();
        std::optional<Design> design;
        ours += OurSeconds([&] { design.emplace(count); });
        state.SetIterationTime(ours);
        const struct mallinfo2 after = mallinfo2();
        undo = design->undoBytes;
        const std::size_t own = design->comps.capacity() * sizeof(Index) + design->sheets.capacity() * sizeof(Index);
        bytes = static_cast<double>(after.uordblks + after.hblkhd - before.uordblks - before.hblkhd - own);
    }
    const auto comps = static_cast<double>(count);
    Tell(state,
         {.work = "build a design of components in one transaction",
          .size = comps,
          .ours = ours,
          .note = fmt::format("{:.0f} bytes a component, {:.0f} more until the commit", bytes / comps, undo / comps)});
}

BENCHMARK(Build)->Arg(100000)->Arg(1000000)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadAttribute)->UseManualTime();
BENCHMARK(ResolveIndex)->UseManualTime();
BENCHMARK(ListSheet)->UseManualTime();
BENCHMARK(TwoReaders)->UseManualTime()->Iterations(10)->Unit(benchmark::kMillisecond);
BENCHMARK(MakeSavePoint)->UseManualTime()->Iterations(50)->Unit(benchmark::kMillisecond);
// Last, since it leaves the heap in pieces.
BENCHMARK(ObservedEdit)->UseManualTime();

}  // namespace
}  // namespace Orin::DesignDb
