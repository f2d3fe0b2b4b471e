// What it costs to find the highest id of a sheet of 1,000,000 drawn items, against a bare loop over the same records:
// looking is to take at most 1.5 times as long. And what the next id costs.

#include <algorithm>
#include <memory>
#include <string>

#include <benchmark/benchmark.h>

#include "bench/measure.h"
#include "ids/id_generator.h"
#include "tests/support/drawn_design.h"

namespace Quill::Utils {
namespace {

using namespace Orin;
using Tests::DrawnDesign;
using Tests::Must;

// 250,000 components with data, label and a drawn attribute; 50,000 nets with a piece and a label; 150,000 lines.
const DrawnDesign& MillionItems() {
    static const auto design = [] {
        auto made = std::make_unique<DrawnDesign>();
        DesignDb::Editor& editor = made->editor;
        Must(made->snapshot->BeginTransaction(ETransactionType::Edit));
        const Index& sheet = made->sheetIndex;
        ItemId id = 0;
        Index object, piece;
        for (int i = 0; i < 250'000; ++i) {
            Must(editor.AddComp(made->blockIndex, {"U"}, object));
            Must(editor.SetAttribute(object, "VALUE", "10k"));
            Must(editor.SetCompData(sheet, object, DrawnDesign::Item{++id}));
            Must(editor.SetLabelData(sheet, object, DrawnDesign::Item{++id}));
            Must(editor.SetAttrData(sheet, object, "VALUE", "10k", DrawnDesign::Item{++id}));
            Must(editor.AddMember(sheet, object));
        }
        for (int i = 0; i < 50'000; ++i) {
            Must(editor.AddNet(made->blockIndex, {"N"}, object));
            Must(editor.AddNetQuill(sheet, object, DrawnDesign::Item{++id}, piece));
            Must(editor.SetLabelData(sheet, object, DrawnDesign::Item{++id}));
            Must(editor.AddMember(sheet, object));
        }
        for (int i = 0; i < 150'000; ++i)
            Must(editor.AddLine(sheet, DrawnDesign::Item{++id}, object));
        Must(made->snapshot->CommitTransaction());
        return made;
    }();
    return *design;
}

template <class Object, class Read>
void WalkAttributes(const Object& object, ItemId& highest, const Read& read) {
    ListAttribute attributes;
    Must(object.GetAttributes(attributes));
    for (const Attribute& attribute : attributes) {
        AttrDataQuill data;
        if (read(attribute, data)) highest = std::max(highest, data.objectId);
    }
}

// Reads every record of the sheet, and nothing else, in the plainest way.
ItemId BareWalk(const DrawnDesign& design) {
    ItemId highest = 0;
    const auto take = [&](const Result& result, const auto& data) {
        if (result) highest = std::max(highest, data.objectId);
    };
    ContainerT<const IBlockViewQuill> view;
    Must(IBlockViewQuill::Init(view, *design.block, *design.sheet));
    IUIDManager objects;
    Must(design.snapshot->GetUIDManager(objects));
    ListT<Index> members;
    Must(design.sheet->GetListObjects(members));
    for (const Index& member : members) {
        LabelDataQuill label;
        if (member.GetType() == EObjectType::Comp) {
            ContainerT<const IComp> comp;
            Must(objects.GetComp(comp, member));
            CompDataQuill data;
            take(view->GetCompData(*comp, data), data);
            take(view->GetCompLabel(*comp, label), label);
            WalkAttributes(*comp, highest, [&](const Attribute& attribute, AttrDataQuill& drawn) {
                return view->GetCompAttr(*comp, attribute.name, attribute.value, drawn);
            });
            IteratorT<const IPin> pin;
            Must(comp->GetIterPins(pin));
            for (; pin; ++pin)
                WalkAttributes(*pin, highest, [&](const Attribute& attribute, AttrDataQuill& drawn) {
                    return view->GetPinAttr(*pin, attribute.name, attribute.value, drawn);
                });
        } else {
            ContainerT<const INet> net;
            Must(objects.GetNet(net, member));
            IteratorT<const INetQuill> piece;
            Must(view->GetIterNetsQuill(*net, piece));
            for (; piece; ++piece) {
                NetDataQuill data;
                take(piece->GetData(data), data);
            }
            take(view->GetNetLabel(*net, label), label);
            WalkAttributes(*net, highest, [&](const Attribute& attribute, AttrDataQuill& drawn) {
                return view->GetNetAttr(*net, attribute.name, attribute.value, drawn);
            });
        }
    }
    IteratorT<const ILineQuill> line;
    Must(view->GetIterLines(line));
    for (; line; ++line) {
        LineDataQuill data;
        take(line->GetData(data), data);
    }
    return highest;
}

// Timed in turns and after a first walk, so that both see the machine in the same state.
void ScanAgainstBareWalk(benchmark::State& state) {
    const DrawnDesign& design = MillionItems();
    double bare = 0, scan = 0;
    BareWalk(design);
    for (auto _ : state) {
        ItemId highest = 0;
        bare += Bench::Seconds([&] { highest = BareWalk(design); });
        const double own = Bench::OurSeconds([&] {
            IdGenerator<ObjectId, 0> generator;
            ObjectId id;
            if (!generator.Init(design.block, design.sheet) || !generator.GetNext(id) || id.Value() != highest + 1)
                state.SkipWithError("the walks disagree");
        });
        scan += own;
        state.SetIterationTime(own);
    }
    Bench::Tell(state, {.work = "the highest id of a sheet of 1,000,000 items",
                        .against = "reading the same records",
                        .operations = static_cast<double>(state.iterations()),
                        .ours = scan,
                        .yardstick = bare,
                        .limit = 1.5});
}

// Batches of ids; the generator starts again when it runs out of them.
template <class Id, class Sheet>
void Next(benchmark::State& state, const char* name, const Sheet& sheet) {
    constexpr int Batch = 1000;
    IdGenerator<Id, 0> generator;
    Id id;
    double ours = 0;
    for (auto _ : state) {
        if (!generator.Init(sheet)) state.SkipWithError("no generator");
        const double own = Bench::OurSeconds([&] {
            for (int i = 0; i < Batch; ++i)
                benchmark::DoNotOptimize(generator.GetNext(id));
        });
        ours += own;
        state.SetIterationTime(own);
    }
    const double ids = static_cast<double>(state.iterations()) * Batch;
    Bench::Tell(
        state,
        {.work = name, .against = "100 ns", .operations = ids, .ours = ours, .yardstick = ids * 100e-9, .limit = 1});
}

void NextObjectId(benchmark::State& state) {
    const DrawnDesign design;
    Next<ObjectId>(state, "the next object id", design.symbol);
}
void NextAttributeId(benchmark::State& state) {
    const DrawnDesign design;
    Next<AttributeId>(state, "the next attribute id", design.sheet);
}

BENCHMARK(ScanAgainstBareWalk)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(5);
BENCHMARK(NextObjectId)->UseManualTime()->Iterations(20000);
BENCHMARK(NextAttributeId)->UseManualTime()->Iterations(20000);

}  // namespace
}  // namespace Quill::Utils
