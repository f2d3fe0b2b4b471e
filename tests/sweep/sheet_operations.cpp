#include "sheets/sheet_connectors_cache.h"
#include "sheets/sheet_name.h"
#include "sheets/sheet_range.h"
#include "tests/sweep/operation.h"

namespace Quill::Sweep {
namespace {

using Design = SweepDesign;
using Range = SheetRange;
using Cache = CSheetConnectorsCache;

// A call on a range that holds the sheets "3", "1", "2"; what it says besides is the order of the range.
template <class Run>
Prepare OnRange(Run run) {
    return [run](Design& design) {
        const auto range = std::make_shared<Range>();
        range->Init(design.block);
        return Sharing(design, range, run, [](const Range& of) {
            std::vector<Index> order;
            for (Range::Iterator it = of.Begin(); it != of.End(); ++it)
                Must((*it)->GetIndex(order.emplace_back()));
            return order;
        });
    };
}

struct ConnectorSymbols : IPinTypeComponentsData {
    std::vector<std::string> GetComponents(int) override { return {"LIB:off.1"}; }
};

// A cache that knows the symbols of connectors and is to collect them, and what a call has seen of it.
struct Connectors {
    Cache cache;
    std::vector<std::string> seen;

    void See() {
        seen.clear();
        cache.forEachSheetConnector(
            [this](const std::string& design, const std::string& label, const CSheetConnectorData& one) {
                seen.push_back(design + label + one.key);
            });
    }
};

// What the call says besides is what it has seen, or with `looks` the connectors that the cache then knows.
template <class Run>
Prepare OnCache(bool looks, Run run) {
    return [=](Design& design) {
        const auto connectors = std::make_shared<Connectors>();
        ConnectorSymbols symbols;
        connectors->cache.attachObserver(design.snapshot);
        connectors->cache.reloadSheetConnectorsList(&symbols);
        connectors->cache.attachObserver(design.snapshot);
        return Sharing(
            design, connectors,
            [run](Connectors& state, Design& of) {
                state.seen.clear();
                return run(state.cache, of, state.seen);
            },
            [looks](Connectors& state) {
                if (looks) state.See();
                return state.seen;
            });
    };
}

}  // namespace

std::vector<Family> SheetOperations() {
    constexpr const char* Writes =
        "ISnapshot::IsTransactionActive ISnapshot::BeginTransaction LockerT<IGroup>::Lock IGroup::SetAttribute "
        "IGroup::SetName ISnapshot::CommitTransaction";
    constexpr const char* Unchanged = "thrown # : ~";
    constexpr const char* Ends = "ISnapshot::GetUIDManager ISnapshot::GetIterBlocks";
    constexpr const char* Either = "true|false";
    using Seen = std::vector<std::string>;
    return {
        {"Quill::",
         {{"ReadSheetId GetSheetIdAttrName", "", "", "false -1", Plain([](Design& d) {
               int id = -1;
               const bool found = ReadSheetId(*d.sheet, id);
               return Said(found, id);
           })},
          {"WriteSheetId", "IGroup::SetAttribute", "false", "=",
           [](Design& d) {
               Orin::MutableContainerT<Orin::IGroup> sheet;
               Must(Orin::LockerT<Orin::IGroup>::ShallowLock(d.sheet, sheet));
               return Call{[sheet] { return Said(WriteSheetId(sheet, 9)); }};
           }}}},
        {"Quill::SheetRange::",
         {{"Init", "IBlock::GetParentSnapshot IBlock::GetListOwnedGroups", "thrown # : ", "true : <",
           OnRange([](Range& r, Design& d) { return r.Init(d.block); })},
          {"Init", "*", "thrown # : ~|thrown # : ", "=",  // of the block that is found nothing is kept
           OnRange([](Range& r, Design& d) { return r.Init(d.snapshot, "lib"); })},
          {"IsOrderChanged", "", "", "false", Plain([](Design& d) {
               return Range::IsOrderChanged(d.block, d.sheetIndex, Orin::EEventsChange::SetAttribute);
           })},
          {"MoveTo", Writes, Unchanged, "false : ~",
           OnRange([](Range& r, Design& d) { return r.MoveTo({d.third}, d.sheet, true); })},
          {"MoveUp", Writes, Unchanged, "false : ~", OnRange([](Range& r, Design& d) { return r.MoveUp(d.sheet); })},
          {"MoveDown", Writes, Unchanged, "false : ~",
           OnRange([](Range& r, Design& d) { return r.MoveDown(d.third); })},
          {"Renumber", Writes, Unchanged, "=", OnRange([](Range& r, Design& d) {
               return r.Renumber({d.sheet, d.third}, {"A", 10, 10});
           })},
          {"ValidateRenumber", "", "", "false", OnRange([](Range& r, Design& d) {
               return r.ValidateRenumber({d.sheet}, {"", 1, 1});
           })},
          {"Find", "", "", "false", OnRange([](Range& r, Design& d) { return r.Find(d.sheet) != r.End(); })},
          {"Find", "", "", Either, OnRange([](Range& r, auto&) { return r.Find("1") != r.End(); })},
          {"Compare", "", "", Either, OnRange([](Range& r, Design& d) { return r.Compare(d.third, d.sheet); })},
          {"Sort", "", "", Either, OnRange([](Range& r, Design& d) {
               std::vector<Range::Sheet> sheets = {d.sheet, d.third};
               r.Sort(sheets);
               return sheets[0].Get() == d.third.Get() && sheets[1].Get() == d.sheet.Get();
           })},
          {"CanMoveTo", "", "", Either,
           OnRange([](Range& r, Design& d) { return r.CanMoveTo({d.third}, d.sheet, true); })},
          {"CanMoveUp", "", "", "false", OnRange([](Range& r, Design& d) { return r.CanMoveUp(d.sheet); })},
          {"CanMoveDown", "", "", "false", OnRange([](Range& r, Design& d) { return r.CanMoveDown(d.sheet); })},
          {"SheetRange SheetRange operator= ~SheetRange Begin End Count Advance NameAlreadyExists CreateNewName "
           "CreateNewName CreateNewId",
           "", "", "=", OnRange([](Range& r, auto&) {
               Range moved(std::move(r));
               std::string name;
               moved.CreateNewName(name);
               moved.CreateNewName("1", name);
               r = std::move(moved);
               return r.CreateNewId(name) + r.NameAlreadyExists(name) + r.Count();
           }),
           true}}},
        {"Quill::CSheetConnectorsCache::",
         {{"attachObserver CSheetConnectorsCache ~CSheetConnectorsCache",
           "ISnapshot::GetInfo OrinPI::AttachSubClient OrinPI::GetSnapshotByName ISnapshot::GetUIDManager "
           "ISnapshot::AddEventObserver",
           " : ", "=", OnCache(true, [](Cache& c, Design& d, auto&) { c.attachObserver(d.snapshot); })},
          {"detachObserver", "", "", "=",
           OnCache(true,
                   [](Cache& c, auto&...) {
                       c.detachObserver();
                       return c.reloadSheetConnectorsCache();
                   })},
          // Failures of the page traverser end the collection too, but for those that it passes over.
          {"reloadSheetConnectorsList", Ends, "thrown #", "thrown #|true : <",
           OnCache(true,
                   [](Cache& c, auto&...) {
                       ConnectorSymbols symbols;
                       return c.reloadSheetConnectorsList(&symbols);
                   })},
          {"reloadSheetConnectorsCache", Ends, "thrown #", "thrown #|true : <",
           OnCache(true, [](Cache& c, auto&...) { return c.reloadSheetConnectorsCache(); })},
          {"isSheetConnectorSymbol", "", "", "=",
           OnCache(false, [](Cache& c, auto&...) { return c.isSheetConnectorSymbol("LIB", "off", "1"); })},
          // Besides the next one: the one behind it, the connector itself, or nothing.
          {"getNextTargetSheetConnector", Ends, "false : kept ",
           "=|true : 8:0:7/[6:0:7] |false : [5:0:7] |false : kept ",
           OnCache(false,
                   [](Cache& c, Design& d, Seen& seen) {
                       const CSheetConnectorData kept{{}, {}, "kept"};
                       const CSheetConnectorData* next = &kept;
                       const bool found =
                           c.getNextTargetSheetConnector("LIB", "off", "1", "top", "SIG", d.connectorIndex, {}, &next);
                       seen = {next->key};
                       return found;
                   })},
          {"getAllTargetSheetConnectors", Ends, "false : ", "= : <|false : ",
           OnCache(false,
                   [](Cache& c, Design& d, Seen& seen) {
                       std::list<const CSheetConnectorData*> targets(1);
                       const bool found = c.getAllTargetSheetConnectors("LIB", "off", "1", "top", "SIG",
                                                                        d.connectorIndex, {}, targets);
                       for (const CSheetConnectorData* target : targets)
                           seen.push_back(target->key);
                       return found;
                   })},
          {"forEachSheetConnector", Ends, " : ", " : <", OnCache(false, [](Cache& c, Design&, Seen& seen) {
               c.forEachSheetConnector(
                   [&](const auto&, const auto&, const CSheetConnectorData& one) { seen.push_back(one.key); });
           })}}}};
}

}  // namespace Quill::Sweep
