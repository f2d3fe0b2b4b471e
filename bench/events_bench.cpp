// What the event dispatcher costs; batches of both sides are timed in turn. Nanoseconds are too easily disturbed, so of
// DirectCall the best batch counts, of the others all.

#include <algorithm>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/measure.h"
#include "designdb/database.h"
#include "designdb/editor.h"
#include "events/orin_event_dispatcher.h"
#include "events/orin_notification_data.h"
#include "tests/events/fake_snapshot.h"

namespace NQuillUtils::NEvents {
namespace {

using Orin::EEventsChange;
using Orin::EventObserver;
using Orin::Index;
using Snapshot = Orin::ContainerT<const Orin::ISnapshot>;
using Tests::FakeSnapshot;

void Need(const Orin::Result& result) {
    if (!result) throw result;
}

CORINEventDispatcher& Dispatcher() {
    return *CORINEventDispatcher::Instance();
}

template <class T>
void Keep(const T& value) {
    benchmark::DoNotOptimize(value);
}

using Quill::Bench::OurSeconds;
using Quill::Bench::Seconds;
using Quill::Bench::Tell;

const Index ANet(Orin::EObjectType::Net, 0, 1);

template <class Base>
struct Counting : Base {
    std::uint64_t told = 0;
    void OnAfterChange(const Index&, EEventsChange, bool) override { ++told; }
};

// The observer of a fake snapshot, registered for its lifetime.
template <class Base = EventObserver>
struct Registered {
    Counting<Base> observer;
    FakeSnapshot fake;
    Snapshot snapshot;

    explicit Registered(const Snapshot& behind = {}) : fake(behind), snapshot(fake) {
        if constexpr (std::is_same_v<Base, EventObserverEx>)
            Dispatcher().AddEventObserverEx(&snapshot, &observer, "", 0);
        else if constexpr (std::is_same_v<Base, EventObserverNavigator>)
            Dispatcher().AddEventObserverNavigator(&snapshot, &observer, "", 0);
        else
            Dispatcher().AddEventObserver(&snapshot, &observer, "", 0);
    }
    ~Registered() {
        Dispatcher().RemoveEventObserver(&snapshot, &observer);
        Dispatcher().DispatchEvents();
    }
};

// Hears nothing: its callbacks are the empty ones of the database's base class, in a library as the wrapper's are.
struct Deaf : EventObserver {};

void DirectCall(benchmark::State& state) {
    Registered<> ours;
    Deaf deaf;
    EventObserver* const ways[] = {&ours.observer, &deaf, ours.fake.observer};
    constexpr int Batch = 10000;
    double best[3] = {1, 1, 1};
    for (auto _ : state) {
        for (std::size_t way = 0; way < 3; ++way) {
            EventObserver* volatile hidden = ways[way];  // so that no call is resolved by the compiler
            EventObserver* const observer = hidden;
            best[way] = std::min(best[way], Seconds([&] {
                                     for (int i = 0; i < Batch; ++i)
                                         observer->OnAfterChange(ANet, EEventsChange::Label, false);
                                 }));
        }
    }
    Tell(state, {.work = "what the dispatcher adds to a plain callback",
                 .against = "one virtual call into a library",
                 .operations = Batch,
                 .ours = best[2] - best[0],
                 .yardstick = best[1],
                 .limit = 3});
}

// A block with a net that is drawn, a component that stands for another block, a bus in a sheet, and a marked group.
struct Design {
    Orin::DesignDb::Database database;
    std::unique_ptr<Orin::OrinPI> connection;
    Snapshot snapshot;
    Index block, child, sheet, net, item, comp, bus;

    Design() {
        static int s_designs = 0;
        Need(Orin::DesignDb::Database::Create(database, ("events " + std::to_string(++s_designs)).c_str()));
        connection = database.Connect("bench");
        Need(connection->GetSnapshotByName(snapshot, Orin::DesignDb::WorkingSnapshot));
        Orin::DesignDb::Editor editor;
        Need(Orin::DesignDb::Editor::Open(editor, snapshot));
        Need(editor.AddBlock({"top"}, block));
        Need(editor.AddBlock({"child"}, child));
        Need(editor.AddGroup(block, {"1"}, sheet));
        Need(editor.AddNet(block, {"RESET"}, net));
        Need(editor.AddNetQuill(sheet, net, {}, item));
        Need(editor.AddComp(block, {.label = "U1", .childBlock = child}, comp));
        Need(editor.AddBus(block, {"A[0:7]"}, bus));
        Need(editor.AddMember(sheet, bus));
        Need(editor.SetAttribute(block, "$$Internal_Design_Name", "board"));
    }
};

template <class Handle>
void ReadIndex(const Handle& object) {
    Index index;
    object->GetIndex(index);
    Keep(index);
}

template <class Handle>
void ReadBlock(const Handle& object) {
    Orin::ContainerT<const Orin::IBlock> block;
    object->GetParentBlock(block);
    ReadIndex(block);
}

template <class Handle>
void ReadLabel(const Handle& object) {
    Orin::String label;
    object->GetLabel(label);
    Keep(label);
}

struct TranslatedCase {
    const char* name;
    bool navigator;
    void (*call)(EventObserver&, const Design&);
    void (*reads)(const Orin::IUIDManager&, const Design&);
};

const TranslatedCase TranslatedCases[] = {
    {"AddNet", false,
     [](EventObserver& o, const Design& d) { o.OnAfterAdd(d.block, d.net, Orin::EEventsAdd::Net, false); },
     [](const Orin::IUIDManager& objects, const Design& d) {
         Orin::ContainerT<const Orin::INet> net;
         objects.GetNet(net, d.net);
         ReadBlock(net);
         ReadLabel(net);
     }},
    {"AddNetQuill", false,
     [](EventObserver& o, const Design& d) { o.OnAfterAdd(d.net, d.item, Orin::EEventsAdd::NetQuill, false); },
     [](const Orin::IUIDManager& objects, const Design& d) {
         Orin::ContainerT<const Orin::INetQuill> item;
         Orin::ContainerT<const Orin::INet> net;
         objects.GetQuillNet(item, d.item);
         item->GetNet(net);
         ReadBlock(net);
         ReadLabel(net);
     }},
    {"DeleteBlock", false,
     [](EventObserver& o, const Design& d) { o.OnBeforeDelete({}, d.block, Orin::EEventsDelete::Block, false); },
     [](const Orin::IUIDManager& objects, const Design& d) {
         Orin::ContainerT<const Orin::IBlock> block;
         Orin::String name;
         objects.GetBlock(block, d.block);
         block->GetName(name);
         Keep(name);
     }},
    {"DeleteBlockComp", false,
     [](EventObserver& o, const Design& d) { o.OnBeforeDelete(d.block, d.comp, Orin::EEventsDelete::Comp, false); },
     [](const Orin::IUIDManager& objects, const Design& d) {
         Orin::ContainerT<const Orin::IComp> comp;
         Orin::ContainerT<const Orin::IBlock> child;
         Index instance;
         objects.GetComp(comp, d.comp);
         ReadBlock(comp);
         comp->GetChildBlock(child);
         ReadIndex(child);
         comp->GetInstanceIndex(instance);
         Keep(instance);
     }},
    {"LabelChange", false,
     [](EventObserver& o, const Design& d) { o.OnBeforeChange(d.comp, EEventsChange::Label, false); },
     [](const Orin::IUIDManager& objects, const Design& d) {
         Orin::ContainerT<const Orin::IComp> comp;
         objects.GetComp(comp, d.comp);
         ReadBlock(comp);
         ReadLabel(comp);
     }},
    {"NetQuillSetData", false,
     [](EventObserver& o, const Design& d) { o.OnAfterChange(d.item, EEventsChange::NetQuillData, false); },
     [](const Orin::IUIDManager& objects, const Design& d) {
         Orin::ContainerT<const Orin::INetQuill> item;
         Orin::ContainerT<const Orin::INet> net;
         Orin::NetDataQuill data;
         objects.GetQuillNet(item, d.item);
         item->GetNet(net);
         ReadIndex(net);
         ReadBlock(net);
         item->GetData(data);
         Keep(data);
     }},
    {"ReadOnlyGroup", false,
     [](EventObserver& o, const Design& d) {
         static const Orin::String Name("$$Internal___ReadOnlySheet");
         o.OnAfterSetAttribute(d.sheet, Name, Name, Orin::EAttributeType::User, 0, false);
     },
     [](const Orin::IUIDManager& objects, const Design& d) {
         Orin::ContainerT<const Orin::IGroup> group;
         Index owner;
         objects.GetGroup(group, d.sheet);
         group->GetOwner(owner);
         Keep(owner);
     }},
    {"RipBus", true, [](EventObserver& o, const Design& d) { o.OnBeforeChange(d.bus, EEventsChange::RipBus, false); },
     [](const Orin::IUIDManager& objects, const Design& d) {
         Orin::ContainerT<const Orin::IBus> bus;
         Orin::ListT<Orin::GroupInfo> groups;
         objects.GetBus(bus, d.bus);
         ReadBlock(bus);
         bus->GetListGroups(groups, Orin::GroupTypes());
         Keep(groups);
     }},
    {"DesignName", true,
     [](EventObserver& o, const Design& d) {
         o.OnBeforeChange(d.block, EEventsChange::SetAttribute, false);
         o.OnAfterChange(d.block, EEventsChange::SetAttribute, false);
     },
     [](const Orin::IUIDManager& objects, const Design& d) {
         static const Orin::String Name("$$Internal_Design_Name");
         Orin::IUIDManager again;
         d.snapshot->GetUIDManager(again);
         for (const Orin::IUIDManager* const reader : {&objects, &std::as_const(again)}) {
             Orin::ContainerT<const Orin::IBlock> block;
             Orin::String value;
             reader->GetBlock(block, d.block);
             block->GetAttribute(Name, value);
             Keep(value);
         }
     }},
};

void Translated(benchmark::State& state) {
    const TranslatedCase& one = TranslatedCases[state.range(0)];
    const Design design;
    Registered<EventObserverEx> ex(design.snapshot);
    Registered<EventObserverNavigator> navigator(design.snapshot);
    EventObserver& observer = one.navigator ? *navigator.fake.observer : *ex.fake.observer;
    constexpr int Batch = 1000;
    double sums[2] = {};
    for (auto _ : state) {
        sums[0] += OurSeconds([&] {
            for (int i = 0; i < Batch; ++i)
                one.call(observer, design);
        });
        sums[1] += Seconds([&] {
            for (int i = 0; i < Batch; ++i) {
                Orin::IUIDManager objects;
                ex.snapshot->GetUIDManager(objects);
                one.reads(objects, design);
            }
        });
    }
    Tell(state, {.work = std::string("translated callback ") + one.name,
                 .against = "the database reads that it needs",
                 .operations = static_cast<double>(state.iterations()) * Batch,
                 .ours = sums[0],
                 .yardstick = sums[1],
                 .limit = 1.5});
}

// As large as the record of a deferred callback.
struct PlainRecord {
    EventObserver* observer;
    Index object;
    char rest[sizeof(ORINNOTIFICATIONDATA) - sizeof(EventObserver*) - sizeof(Index)];
};

struct PlainQueue {
    std::mutex mutex;
    std::list<PlainRecord> records;

    void Push(EventObserver* observer, const Index& object) {
        const std::lock_guard lock(mutex);
        records.push_back({observer, object, {}});
    }
    void Dispatch() {
        std::list<PlainRecord> taken;
        {
            const std::lock_guard lock(mutex);
            taken.swap(records);
        }
        for (const PlainRecord& record : taken)
            record.observer->OnAfterChange(record.object, EEventsChange::Label, false);
    }
};

// `threads` push `items` each while this thread drains.
template <class Push, class Drain>
void Run(int threads, int items, const std::uint64_t& told, const Push& push, const Drain& drain) {
    const std::uint64_t end = told + static_cast<std::uint64_t>(threads) * static_cast<std::uint64_t>(items);
    std::vector<std::thread> producers;
    for (int thread = 0; thread < threads; ++thread)
        producers.emplace_back([&] {
            for (int i = 0; i < items; ++i)
                push();
        });
    while (told != end) {
        const std::uint64_t before = told;
        drain();
        if (told == before) std::this_thread::yield();
    }
    for (std::thread& producer : producers)
        producer.join();
}

void Deferred(benchmark::State& state) {
    const auto threads = static_cast<int>(state.range(0));
    const int items = 200000 / threads;
    Registered<> ours;
    PlainQueue plain;
    double sums[2] = {};
    for (auto _ : state) {
        sums[0] += OurSeconds(
            [&] {
                Run(
                    threads, items, ours.observer.told,
                    [&] { ours.fake.observer->OnAfterChange(ANet, EEventsChange::Label, false); },
                    [] { Dispatcher().DispatchEvents(); });
            },
            CLOCK_MONOTONIC);
        sums[1] += Seconds(
            [&] {
                Run(
                    threads, items, ours.observer.told, [&] { plain.Push(&ours.observer, ANet); },
                    [&] { plain.Dispatch(); });
            },
            CLOCK_MONOTONIC);
    }
    Tell(state, {.work = "deferred callback, threads that push: " + std::to_string(threads),
                 .against = "a list behind a mutex",
                 .operations = static_cast<double>(state.iterations()) * 200000,
                 .ours = sums[0],
                 .yardstick = sums[1],
                 .limit = 2});
}

void QueueFor(FakeSnapshot& fake, std::int64_t items) {
    std::thread([&] {
        for (std::int64_t i = 0; i < items; ++i)
            fake.observer->OnAfterChange(ANet, EEventsChange::Label, false);
    }).join();
}

void Drain(benchmark::State& state) {
    constexpr int Items = 1000000;
    Registered<> ours;
    PlainQueue plain;
    double sums[2] = {};
    for (auto _ : state) {
        QueueFor(ours.fake, Items);
        sums[0] += OurSeconds([] { Dispatcher().DispatchEvents(); });
        std::thread([&] {
            for (int i = 0; i < Items; ++i)
                plain.Push(&ours.observer, ANet);
        }).join();
        sums[1] += Seconds([&] { plain.Dispatch(); });
    }
    Tell(state, {.work = "drain one of 1,000,000 items",
                 .against = "a list behind a mutex",
                 .operations = static_cast<double>(state.iterations()) * Items,
                 .ours = sums[0],
                 .yardstick = sums[1],
                 .limit = 2});
}

// `seconds` is the time of all iterations together.
void TellGrowth(benchmark::State& state, const char* name, double seconds) {
    Tell(state, {.work = name,
                 .size = static_cast<double>(state.range(0)),
                 .operations = static_cast<double>(state.iterations()),
                 .ours = seconds});
}

void RemoveOne(benchmark::State& state) {
    double ours = 0;
    for (auto _ : state) {
        Registered<> one;
        QueueFor(one.fake, state.range(0));
        const double own = OurSeconds([&] {
            Dispatcher().RemoveEventObserver(&one.snapshot, &one.observer);
            Dispatcher().DispatchEvents();
        });
        ours += own;
        state.SetIterationTime(own);
    }
    TellGrowth(state, "remove an observer with items queued for it", ours);
}

template <class OneEventForEach>
void AddAndRemoveMany(benchmark::State& state, const char* name, Snapshot snapshot, const OneEventForEach& tell) {
    std::vector<Counting<EventObserver>> observers(static_cast<std::size_t>(state.range(0)));
    double ours = 0;
    for (auto _ : state) {
        const double own = OurSeconds([&] {
            for (EventObserver& observer : observers) {
                Dispatcher().AddEventObserver(&snapshot, &observer, "", 0);
                tell();
            }
            for (EventObserver& observer : observers)
                Dispatcher().RemoveEventObserver(&snapshot, &observer);
            Dispatcher().DispatchEvents();
        });
        ours += own;
        state.SetIterationTime(own);
    }
    TellGrowth(state, name, ours);
}

void ManyObservers(benchmark::State& state) {
    FakeSnapshot fake;
    AddAndRemoveMany(state, "add and remove observers, an item queued for each", fake, [&] {
        // The block's renaming queues an item on this thread as well.
        fake.observer->OnBeforeChange(Index(Orin::EObjectType::Block, 0, 1), EEventsChange::Name, false);
    });
}

void EngineObservers(benchmark::State& state) {
    AddAndRemoveMany(state, "add and remove observers of the database", Design().snapshot, [] {});
}

BENCHMARK(DirectCall);
BENCHMARK(Translated)->DenseRange(0, static_cast<int>(std::size(TranslatedCases)) - 1);
BENCHMARK(Deferred)->Arg(1)->Arg(4)->Arg(8)->UseRealTime()->MinTime(2)->Unit(benchmark::kMillisecond);
BENCHMARK(Drain)->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(RemoveOne)->Arg(10000)->Arg(1000000)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(ManyObservers)->Arg(1000)->Arg(10000)->Arg(100000)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(EngineObservers)->Arg(1000)->Arg(10000)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace NQuillUtils::NEvents
