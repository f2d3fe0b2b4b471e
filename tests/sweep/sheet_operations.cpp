#include "sheets/sheet_connectors_cache.h"
#include "sheets/sheet_name.h"
#include "sheets/sheet_range.h"
#include "tests/sweep/operation.h"

namespace Quill::Sweep {
namespace {

std::string Order(const SheetRange& range) {
    std::vector<Index> order;
    for (SheetRange::Iterator it = range.Begin(); it != range.End(); ++it) {
        Must((*it)->GetIndex(order.emplace_back()));
    }
    return Said(order);
}

// A call on a range that holds the sheets "3", "1", "2". What it says besides is the order of the range.
template <class Run>
auto OnRange(Run run) {
    return [run](SweepDesign& design) {
        const auto range = std::make_shared<SheetRange>();
        range->Init(design.block);
        return Call{[run, range, &design] { return run(*range, design); }, [range] { return Order(*range); }};
    };
}

constexpr const char* Writes =
    "ISnapshot::IsTransactionActive ISnapshot::BeginTransaction LockerT<IGroup>::Lock IGroup::SetAttribute "
    "IGroup::SetName ISnapshot::CommitTransaction";

struct ConnectorSymbols : IPinTypeComponentsData {
    std::vector<std::string> GetComponents(int) override { return {"LIB:off.1"}; }
};

std::string Connectors(CSheetConnectorsCache& cache) {
    std::vector<std::string> found;
    cache.forEachSheetConnector([&](const std::string& design, const std::string& label,
                                    const CSheetConnectorData& one) { found.push_back(design + label + one.key); });
    return Said(found);
}

using Seen = std::vector<std::string>;

// A call on a cache that knows the symbols of connectors and is to collect them. What it says besides is what the call
// has seen.
template <class Run>
auto OnCache(Run run) {
    return [run](SweepDesign& design) {
        const auto cache = std::make_shared<CSheetConnectorsCache>();
        const auto seen = std::make_shared<Seen>();
        ConnectorSymbols symbols;
        cache->attachObserver(design.snapshot);
        cache->reloadSheetConnectorsList(&symbols);
        cache->attachObserver(design.snapshot);
        return Call{[=, &design] {
                        seen->clear();
                        return run(*cache, design, *seen);
                    },
                    [=] { return Said(*seen); }};
    };
}

// The same; what it says besides is the connectors that the cache then knows.
template <class Run>
auto Collecting(Run run) {
    return [run](SweepDesign& design) {
        std::shared_ptr<CSheetConnectorsCache*> cache = std::make_shared<CSheetConnectorsCache*>();
        Call call = OnCache([=](CSheetConnectorsCache& own, SweepDesign& made, Seen&) {
            *cache = &own;
            return run(own, made);
        })(design);
        call.look = [cache] { return *cache != nullptr ? Connectors(**cache) : ""; };
        return call;
    };
}

}  // namespace

std::vector<Family> SheetOperations() {
    std::vector<Family> all;
    all.push_back({"Quill::",
                   {{.names = "ReadSheetId",
                     .degraded = "false -1",
                     .prepare = Plain([](SweepDesign& design) {
                         int id = -1;
                         const bool found = ReadSheetId(*design.sheet, id);
                         return Said(found, id);
                     })},
                    {.names = "WriteSheetId",
                     .reports = "IGroup::SetAttribute",
                     .failure = "false",
                     .prepare = [](SweepDesign& design) {
                         Orin::MutableContainerT<Orin::IGroup> sheet;
                         Must(Orin::LockerT<Orin::IGroup>::ShallowLock(design.sheet, sheet));
                         return Call{[sheet] { return Said(WriteSheetId(sheet, 9)); }};
                     }}}});
    using Sheets = std::vector<SheetRange::Sheet>;
    using Range = SheetRange;
    all.push_back(
        {"Quill::SheetRange::",
         {{.names = "Init",
           .reports = "IBlock::GetParentSnapshot IBlock::GetListOwnedGroups",
           .failure = "thrown # : ",
           .degraded = "true : <",
           .prepare = OnRange([](Range& range, SweepDesign& design) { return Said(range.Init(design.block)); }),
           .remembers = true},
          {.names = "Init",
           .reports = "ISnapshot::FindBlock ISnapshot::GetBlock",
           .failure = "thrown # : ~|thrown # : ",
           .prepare = OnRange([](Range& range, SweepDesign& design) { return Said(range.Init(design.snapshot, "lib")); }),
           .isReported = [](const Failures& failures) { return !failures.calls.empty(); }},
          {.names = "IsOrderChanged",
           .degraded = "false",
           .prepare = Plain([](SweepDesign& design) {
               return Said(Range::IsOrderChanged(design.block, design.sheetIndex, Orin::EEventsChange::SetAttribute));
           })},
          {.names = "MoveTo",
           .reports = Writes,
           .failure = "thrown # : ~",
           .degraded = "false : ~",
           .prepare = OnRange([](Range& range, SweepDesign& design) {
               return Said(range.MoveTo({design.third}, design.sheet, true));
           })},
          {.names = "MoveUp",
           .reports = Writes,
           .failure = "thrown # : ~",
           .degraded = "false : ~",
           .prepare = OnRange([](Range& range, SweepDesign& design) { return Said(range.MoveUp(design.sheet)); })},
          {.names = "MoveDown",
           .reports = Writes,
           .failure = "thrown # : ~",
           .degraded = "false : ~",
           .prepare = OnRange([](Range& range, SweepDesign& design) { return Said(range.MoveDown(design.third)); })},
          {.names = "Renumber",
           .reports = Writes,
           .prepare = OnRange([](Range& range, SweepDesign& design) {
               return Said(range.Renumber({design.sheet, design.third}, {"A", 10, 10}));
           })},
          {.names = "ValidateRenumber",
           .degraded = "false",
           .prepare = OnRange([](Range& range, SweepDesign& design) {
               return Said(range.ValidateRenumber({design.sheet}, {"", 1, 1}));
           })},
          {.names = "Find",
           .degraded = "false",
           .prepare = OnRange([](Range& range, SweepDesign& design) {
               return Said(range.Find(design.sheet) != range.End());
           })},
          {.names = "Find",
           .degraded = "=|false",
           .prepare = OnRange([](Range& range, SweepDesign&) { return Said(range.Find("1") != range.End()); })},
          {.names = "Compare",
           .degraded = "true|false",
           .prepare = OnRange([](Range& range, SweepDesign& design) {
               return Said(range.Compare(design.third, design.sheet));
           })},
          {.names = "Sort",
           .degraded = "true|false",
           .prepare = OnRange([](Range& range, SweepDesign& design) {
               Sheets sheets = {design.sheet, design.third};
               range.Sort(sheets);
               return Said(sheets.front().Get() == design.third.Get());
           })},
          {.names = "CanMoveTo",
           .degraded = "true|false",
           .prepare = OnRange([](Range& range, SweepDesign& design) {
               return Said(range.CanMoveTo({design.third}, design.sheet, true));
           })},
          {.names = "CanMoveUp",
           .degraded = "false",
           .prepare = OnRange([](Range& range, SweepDesign& design) { return Said(range.CanMoveUp(design.sheet)); })},
          {.names = "CanMoveDown",
           .degraded = "false",
           .prepare = OnRange([](Range& range, SweepDesign& design) { return Said(range.CanMoveDown(design.sheet)); })},
          {.names = "SheetRange SheetRange operator= ~SheetRange Begin End Count Advance NameAlreadyExists "
                    "CreateNewName CreateNewName CreateNewId",
           .prepare = OnRange([](Range& range, SweepDesign&) {
               Range moved(std::move(range));
               Range::Iterator it = moved.Begin();
               Range::Advance(it, 2, moved.End());
               std::string number, derived;
               moved.CreateNewName(number);
               moved.CreateNewName("1", derived);
               range = Range();
               range = std::move(moved);
               return Said(range.Count(), range.NameAlreadyExists("2"), range.CreateNewId("2") != 0);
           })}}});
    using Cache = CSheetConnectorsCache;
    // The page traverser's failures end the collection, but for those that it passes over: what is not known of the
    // design is not there.
    constexpr const char* Collects = "false : <|true : <";
    constexpr const char* Ends = "ISnapshot::GetUIDManager ISnapshot::GetIterBlocks";
    all.push_back(
        {"Quill::CSheetConnectorsCache::",
         {{.names = "attachObserver CSheetConnectorsCache ~CSheetConnectorsCache",
           .reports = "ISnapshot::GetInfo OrinPI::AttachSubClient OrinPI::GetSnapshotByName ISnapshot::GetUIDManager "
                      "ISnapshot::AddEventObserver",
           .failure = " : ",
           .prepare = Collecting([](Cache& cache, SweepDesign& design) {
               cache.attachObserver(design.snapshot);
               return "";
           })},
          {.names = "detachObserver",
           .prepare = Collecting([](Cache& cache, SweepDesign&) {
               cache.detachObserver();
               return Said(cache.reloadSheetConnectorsCache());
           })},
          {.names = "reloadSheetConnectorsList",
           .reports = Ends,
           .failure = "false",  // what it knows is collected by the next query
           .degraded = Collects,
           .prepare = Collecting([](Cache& cache, SweepDesign&) {
               ConnectorSymbols symbols;
               return Said(cache.reloadSheetConnectorsList(&symbols));
           }),
           .remembers = true},
          {.names = "reloadSheetConnectorsCache",
           .reports = Ends,
           .failure = "false",
           .degraded = Collects,
           .prepare = Collecting([](Cache& cache, SweepDesign&) { return Said(cache.reloadSheetConnectorsCache()); }),
           .remembers = true},
          {.names = "isSheetConnectorSymbol",
           .prepare = OnCache([](Cache& cache, SweepDesign&, Seen&) {
               return Said(cache.isSheetConnectorSymbol("LIB", "off", "1"));
           })},
          {.names = "getNextTargetSheetConnector",
           .reports = Ends,
           .failure = "false : kept,",
           // The next one but one, the connector itself, or nothing.
           .degraded = "=|true : 8:0:7/[6:0:7],|false : [5:0:7],|false : kept,",
           .prepare = OnCache([](Cache& cache, SweepDesign& design, Seen& seen) {
               const CSheetConnectorData kept{{}, {}, "kept"};
               const CSheetConnectorData* next = &kept;
               const bool found = cache.getNextTargetSheetConnector("LIB", "off", "1", "top", "SIG",
                                                                    design.connectorIndex, {}, &next);
               seen = {next->key};
               return Said(found);
           }),
           .remembers = true},
          {.names = "getAllTargetSheetConnectors",
           .reports = Ends,
           .failure = "false : ",
           // Where the connector itself is not known any more, all others are given.
           .degraded = "= : <|false : ",
           .prepare = OnCache([](Cache& cache, SweepDesign& design, Seen& seen) {
               std::list<const CSheetConnectorData*> targets(1);
               const bool found = cache.getAllTargetSheetConnectors("LIB", "off", "1", "top", "SIG",
                                                                    design.connectorIndex, {}, targets);
               for (const CSheetConnectorData* target : targets)
                   seen.push_back(target->key);
               return Said(found);
           }),
           .remembers = true},
          {.names = "forEachSheetConnector",
           .reports = Ends,
           .failure = " : ",
           .degraded = " : <",
           .prepare = OnCache([](Cache& cache, SweepDesign&, Seen& seen) {
               cache.forEachSheetConnector([&](const std::string& design, const std::string& label,
                                               const CSheetConnectorData& one) { seen.push_back(design + label + one.key); });
               return "";
           }),
           .remembers = true}}});
    return all;
}

}  // namespace Quill::Sweep
