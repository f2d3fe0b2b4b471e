#include "attributes/common_rollback_ops.h"
#include "designdata/block_orin_quill_data_visitor.h"
#include "designdata/net_names_collector.h"
#include "designdata/quill_in_orin.h"
#include "designdata/symbol_orin_quill_data_visitor.h"
#include "ids/id_generator.h"
#include "labels/time_stamp.h"
#include "orin/views.h"
#include "platform/logging.h"
#include "properties/property_mangler.h"
#include "properties/reuse_block.h"
#include "tests/sweep/operation.h"

namespace Quill::Sweep {
namespace {

using namespace Utils;

// A call that writes to one of the design's objects, of which it holds the write access.
template <class T, class Owner, class Run>
auto Writing(Orin::ContainerT<const T> Owner::*object, Run run) {
    return [=](SweepDesign& design) {
        const auto held = std::make_shared<Orin::MutableContainerT<T>>();
        Must(Orin::LockerT<T>::Lock(design.*object, *held));
        return Call{[=] { return run(*held); }};
    };
}

// Reads into an output that holds something already, by `get(design, output)`.
template <class Output, class Get>
Operation Reads(const char* names, const char* degraded, Output held, Get get) {
    return {.names = names, .degraded = degraded, .prepare = Plain([=](SweepDesign& design) {
                Output output = held;
                const bool found = get(design, output);
                return Said(found, output);
            })};
}

// Stores something in one of the design's objects; `write` is the operation that does it.
template <class T, class Owner, class Store>
Operation Stores(const char* names, const char* write, Orin::ContainerT<const T> Owner::*object, Store store) {
    return {.names = names, .reports = write, .prepare = Writing(object, [store](auto& held) {
                store(held);
                return "";
            })};
}

// As the names of the record types, and no more: what is in them is none of the sweep's business.
template <class Visitor>
struct BlockVisits : Visitor {
    void visit(const Orin::GroupDataQuill&) override { seen.emplace_back("group"); }
    void visit(const Orin::LabelDataQuill&) override { seen.emplace_back("label"); }
    void visit(const Orin::AttrDataQuill&) override { seen.emplace_back("attr"); }
    void visit(const Orin::TextDataQuill&) override { seen.emplace_back("text"); }
    void visit(const Orin::CircleDataQuill&) override { seen.emplace_back("circle"); }
    void visit(const Orin::ArcDataQuill&) override { seen.emplace_back("arc"); }
    void visit(const Orin::RectDataQuill&) override { seen.emplace_back("rect"); }
    void visit(const Orin::LineDataQuill&) override { seen.emplace_back("line"); }
    void visit(const Orin::BusDataQuill&) override { seen.emplace_back("bus"); }
    void visit(const Orin::NetDataQuill&) override { seen.emplace_back("net"); }
    void visit(const Orin::CompDataQuill&) override { seen.emplace_back("comp"); }
    std::vector<std::string> seen;
};
template <class Visitor>
struct SymbolVisits : Visitor {
    void visit(const Orin::LabelDataQuill&) override { seen.emplace_back("label"); }
    void visit(const Orin::AttrDataQuill&) override { seen.emplace_back("attr"); }
    void visit(const Orin::TextDataQuill&) override { seen.emplace_back("text"); }
    void visit(const Orin::CircleDataQuill&) override { seen.emplace_back("circle"); }
    void visit(const Orin::ArcDataQuill&) override { seen.emplace_back("arc"); }
    void visit(const Orin::RectDataQuill&) override { seen.emplace_back("rect"); }
    void visit(const Orin::LineDataQuill&) override { seen.emplace_back("line"); }
    void visit(const Orin::PinDataQuill&) override { seen.emplace_back("pin"); }
    std::vector<std::string> seen;
};

// A failure to list what is to be visited, or to lock what was.
constexpr const char* Lists =
    "IBlockViewQuill::Init ICompViewQuill::Init IGroup::GetListObjects IBlock::GetParentSnapshot "
    "ISnapshot::GetUIDManager IComp::GetIterPins IBlockViewQuill::GetIterNetsQuill IBlockViewQuill::GetIterLines "
    "IBlockViewQuill::GetIterRectangles IBlockViewQuill::GetIterArcs IBlockViewQuill::GetIterCircles "
    "IBlockViewQuill::GetIterTexts ICompViewQuill::GetIterLines ICompViewQuill::GetIterRectangles "
    "ICompViewQuill::GetIterArcs ICompViewQuill::GetIterCircles ICompViewQuill::GetIterTexts IBlock::GetAttributes "
    "IComp::GetAttributes INet::GetAttributes IBus::GetAttributes IGroup::GetAttributes IPin::GetAttributes "
    "LockerT<IGroup>::ShallowLock LockerT<IComp>::ShallowLock LockerT<IBlockViewQuill>::Lock "
    "LockerT<ICompViewQuill>::Lock";

template <class Visits, class Process>
Operation Walks(const char* names, Process process) {
    return {.names = names,
            .reports = Lists,
            .judges = "*",
            .failure = "thrown # : <",
            .degraded = "= : <",
            .prepare = [process](SweepDesign& design) {
                const auto visits = std::make_shared<Visits>();
                return Call{[process, visits, &design] {
                                visits->seen.clear();
                                process(*visits, design);
                                return "";
                            },
                            [visits] { return Said(visits->seen); }};
            }};
}

// Init, then the next id; a failed Init has none.
template <class Kind, int Locked, class Init>
Operation Initialises(const char* names, Init init) {
    return {.names = names,
            .reports = Lists,
            .judges = "*",
            .failure = "5 : 2 77|4 : 2 77",
            // Where nothing is found to be in use ids start over; only attribute ids need that of the sheet.
            .degraded = "0 : *|4 : 2 77",
            .prepare = [init](SweepDesign& design) {
                const auto generator = std::make_shared<IdGenerator<Kind, Locked>>();
                return Call{[=, &design] { return Said(static_cast<int>(init(*generator, design).code)); },
                            [=] {
                                Kind id(77);
                                const int code = static_cast<int>(generator->GetNext(id).code);
                                return Said(code, Index(id.Value()));
                            }};
            },
            .isReported = {}};
}

template <int Locked, class Init>
Operation StoresId(const char* names, const char* reports, const char* degraded, Init init) {
    return {.names = names, .reports = reports, .degraded = degraded, .prepare = [init](SweepDesign& design) {
                const auto generator = std::make_shared<IdGenerator<ObjectId, Locked>>();
                init(*generator, design);
                generator->UpdateLast(ObjectId(5000));
                return Call{[generator] { return Said(static_cast<int>(generator->Store().code)); }};
            }};
}

template <class Generator>
auto OnSheet() {
    return [](Generator& generator, SweepDesign& design) { return generator.Init(design.block, design.sheet); };
}
template <class Generator>
auto OnSymbol() {
    return [](Generator& generator, SweepDesign& design) { return generator.Init(design.symbol); };
}

template <int Locked>
Family ObjectIds(const char* prefix) {
    using Generator = IdGenerator<ObjectId, Locked>;
    constexpr bool ByLock = Locked == 1;
    return {prefix,
            {Initialises<ObjectId, Locked>("Init GetNext", OnSheet<Generator>()),
             Initialises<ObjectId, Locked>("Init", OnSymbol<Generator>()),
             StoresId<Locked>("Store",
                              ByLock ? "IGroup::SetAttribute" : "LockerT<IGroup>::ShallowLock IGroup::SetAttribute",
                              "0", OnSheet<Generator>()),
             StoresId<Locked>("", ByLock ? "IComp::SetAttribute" : "LockerT<IComp>::ShallowLock IComp::SetAttribute",
                              "0", OnSymbol<Generator>())}};
}

template <int Locked>
Family AttributeIds(const char* prefix) {
    using Generator = IdGenerator<AttributeId, Locked>;
    return {prefix,
            {Initialises<AttributeId, Locked>("Init GetNext", OnSheet<Generator>()),
             Initialises<AttributeId, Locked>("Init", OnSymbol<Generator>()),
             {.names = "Init",
              .degraded = Locked == 1 ? "=" : "4",
              .prepare = Plain([](SweepDesign& design) {
                  return Said(static_cast<int>(Generator().Init(design.sheet).code));
              })}}};
}

// A call on a collector that is to look at the design.
template <class Run, class Look>
auto OnCollector(Run run, Look look) {
    return [=](SweepDesign& design) {
        const auto collector = std::make_shared<NetsNamesCollector>();
        collector->AttachObserver(design.snapshot);
        return Call{[=, &design] { return run(*collector, design); }, [=, &design] { return look(*collector, design); }};
    };
}

}  // namespace

std::vector<Family> DataOperations() {
    std::vector<Family> all;
    all.push_back(
        {"Quill::Utils::CommonRollbackOps::",
         {{.names = "SetComment",
           .reports = "LockerT<ISnapshot>::Lock ISnapshot::SetAttribute",
           .failure = "#",
           .prepare = Plain([](SweepDesign& design) {
               return Said(CommonRollbackOps::SetComment(design.snapshot, "after"));
           })},
          {.names = "SetComment",
           .reports = "OrinPI::GetSnapshotByName LockerT<ISnapshot>::Lock ISnapshot::SetAttribute",
           .failure = "#",
           .prepare = Plain([](SweepDesign& design) {
               return Said(CommonRollbackOps::SetComment(*design.client, "QUILL", "after"));
           })},
          {.names = "GetComment",
           .reports = "ISnapshot::GetAttribute",
           .failure = "# kept",
           .prepare = Plain([](SweepDesign& design) {
               std::string comment = "kept";
               const Orin::Result result = CommonRollbackOps::GetComment(design.snapshot, comment);
               return Said(result, comment);
           })},
          {.names = "GetComment",
           .reports = "OrinPI::GetSnapshotByName ISnapshot::GetAttribute",
           .failure = "# kept",
           .prepare = Plain([](SweepDesign& design) {
               std::string comment = "kept";
               const Orin::Result result = CommonRollbackOps::GetComment(*design.client, "QUILL", comment);
               return Said(result, comment);
           })},
          {.names = "FormatSvptDate FormatRollbackMenu", .prepare = Plain([](SweepDesign&) {
               return CommonRollbackOps::FormatSvptDate("") + CommonRollbackOps::FormatRollbackMenu("", "a");
           })}}});

    all.push_back(
        {"Quill::Utils::CPropertyMangler::",
         {{.names = "GetPropDATETIME",
           .degraded = "kept",
           .prepare =
               [](SweepDesign& design) {
                   Orin::ContainerT<const Orin::IBlockViewQuill> view;
                   Must(Orin::IBlockViewQuill::Init(view, *design.block, *design.sheet));
                   return Call{[view] {
                       std::string text = "kept";
                       CPropertyMangler::GetPropDATETIME(view, text, "%Y");
                       return text;
                   }};
               }},
          {.names = "GetPropDATETIME",
           .degraded = "kept",
           .prepare =
               [](SweepDesign& design) {
                   Orin::ContainerT<const Orin::ICompViewQuill> view;
                   Must(Orin::ICompViewQuill::Init(view, *design.symbol));
                   return Call{[view] {
                       std::string text = "kept";
                       CPropertyMangler::GetPropDATETIME(view, text, "%Y");
                       return text;
                   }};
               }},
          {.names = "Mangle Mangle Unmangle Unmangle Unmangle IsPropDATETIME", .prepare = Plain([](SweepDesign&) {
               std::string name;
               DataModel::PropertyType type;
               CPropertyMangler::Mangle("a", DataModel::PropertyType::Internal, name);
               CPropertyMangler::Unmangle(name.c_str(), name);
               return Said(name, CPropertyMangler::IsPropDATETIME(name), CPropertyMangler::Unmangle("a", type),
                           CPropertyMangler::Unmangle("b"));
           })}}});

    using Reuse = ReuseBlock;
    using Comp = Orin::MutableContainerT<Orin::IComp>;
    using Block = Orin::MutableContainerT<Orin::IBlock>;
    using Bus = Orin::MutableContainerT<Orin::IBus>;
    const auto isMarked = [](const char* names, auto ask) {
        return Operation{.names = names, .degraded = "false|=", .prepare = Plain([ask](SweepDesign& design) {
                             return Said(ask(design));
                         })};
    };
    all.push_back(
        {"Quill::Utils::ReuseBlock::",
         {isMarked("IsReuseBlock", [](SweepDesign& design) { return Reuse::IsReuseBlock(*design.child); }),
          isMarked("IsReuseBlock", [](SweepDesign& design) { return Reuse::IsReuseBlock(*design.block); }),
          isMarked("IsDynamicReuse", [](SweepDesign& design) { return Reuse::IsDynamicReuse(*design.child); }),
          isMarked("IsTopLevelReuseBlock",
                   [](SweepDesign& design) { return Reuse::IsTopLevelReuseBlock(design.leafIndex, design.snapshot); }),
          Reads("IsDynamicReuse", "false ", std::string("kept"),
                [](SweepDesign& design, std::string& value) { return Reuse::IsDynamicReuse(*design.child, value); }),
          // Writes that the database refuses are passed over.
          Stores("SetIsReuseBlock", "", &SweepDesign::ripper, [](Comp& comp) { Reuse::SetIsReuseBlock(comp, true); }),
          Stores("", "", &SweepDesign::child, [](Comp& comp) { Reuse::SetIsReuseBlock(comp, false); }),
          Stores("SetIsReuseBlock", "", &SweepDesign::block,
                 [](Block& block) { Reuse::SetIsReuseBlock(block, false); }),
          Stores("SetIsDynamicReuse", "", &SweepDesign::ripper,
                 [](Comp& comp) { Reuse::SetIsDynamicReuse(comp, true, "x"); })}});

    using Data = QuillInOrin;
    using Names = std::list<std::string>;
    using NameVector = std::vector<std::string>;
    using Map = std::map<int, int>;
    all.push_back(
        {"Quill::Utils::QuillInOrin::",
         {Reads("GetDesignName", "false kept", std::string("kept"),
                [](SweepDesign& design, std::string& name) { return Data::GetDesignName(*design.block, name); }),
          Reads("GetBoardBlock", "false 1", Index(1),
                [](SweepDesign& design, Index& board) { return Data::GetBoardBlock(*design.block, board); }),
          Reads("GetRipperBus", "false 1", Index(1),
                [](SweepDesign& design, Index& bus) { return Data::GetRipperBus(*design.ripper, bus); }),
          Reads("GetRipperSignalMap", "false 8=9,", Map{{8, 9}},
                [](SweepDesign& design, Map& map) { return Data::GetRipperSignalMap(*design.ripper, map); }),
          Reads("GetBusSignals", "false 8=9,", Data::BusSignals{{8, Index(9)}},
                [](SweepDesign& design, Data::BusSignals& signals) { return Data::GetBusSignals(*design.bus, signals); }),
          Reads("GetBusSignalNames", "false kept,", Names{"kept"},
                [](SweepDesign& design, Names& names) { return Data::GetBusSignalNames(*design.bus, names); }),
          Reads("GetBusSignalNames", "false kept,", NameVector{"kept"},
                [](SweepDesign& design, NameVector& names) { return Data::GetBusSignalNames(*design.bus, names); }),
          Stores("StoreDesignName", "IBlock::SetAttribute", &SweepDesign::block,
                 [](Block& block) { Data::StoreDesignName(block, "pre"); }),
          Stores("StoreBoardBlock", "IBlock::SetAttribute", &SweepDesign::block,
                 [](Block& block) { Data::StoreBoardBlock(block, Index(5)); }),
          Stores("StoreRipperBus", "IComp::SetAttribute", &SweepDesign::ripper,
                 [](Comp& comp) { Data::StoreRipperBus(comp, Index(5)); }),
          Stores("StoreRipperSignalMap", "IComp::SetAttribute", &SweepDesign::ripper,
                 [](Comp& comp) { Data::StoreRipperSignalMap(comp, {{5, 6}}); }),
          Stores("StoreBusSignals", "IBus::SetAttribute", &SweepDesign::bus,
                 [](Bus& bus) { Data::StoreBusSignals(bus, {{5, Index(6)}}); }),
          Stores("StoreBusSignalNames", "IBus::SetAttribute", &SweepDesign::bus,
                 [](Bus& bus) { Data::StoreBusSignalNames(bus, Names{"A", "B"}); }),
          Stores("StoreBusSignalNames", "IBus::SetAttribute", &SweepDesign::bus,
                 [](Bus& bus) { Data::StoreBusSignalNames(bus, NameVector{"A", "B"}); }),
          {.names = "GetHierarchicalName",
           // No name, the name, or the name without the sheet's id.
           .degraded = " : |=|$I50",
           .prepare = Plain([](SweepDesign& design) { return Data::GetHierarchicalName(design.leafPath); })}}});

    using Stamp = time_stamp;
    all.push_back(
        {"Quill::Utils::time_stamp::",
         {Reads("read", "true ", std::string("kept"),
                [](SweepDesign& design, std::string& stamp) { return Stamp::read(*design.sheet, "__BlkDate", stamp); }),
          Reads("read", "true ", std::string("kept"),
                [](SweepDesign& design, std::string& stamp) { return Stamp::read(*design.sheet, stamp); }),
          Reads("read", "true ", std::string("kept"),
                [](SweepDesign& design, std::string& stamp) { return Stamp::read(*design.child, stamp); }),
          {.names = "write",
           .reports = "IGroup::SetAttribute",
           .failure = "false",
           .prepare = Writing(&SweepDesign::sheet,
                              [](auto& sheet) { return Said(Stamp::write(*sheet, "__BlkDate", "5")); })},
          {.names = "write",
           .reports = "IGroup::RemoveAttribute",
           .failure = "false",
           .prepare = Writing(&SweepDesign::sheet, [](auto& sheet) { return Said(Stamp::write(*sheet, "")); })},
          {.names = "write",
           .reports = "IComp::SetAttribute",
           .failure = "false",
           .prepare = Writing(&SweepDesign::child, [](auto& comp) { return Said(Stamp::write(*comp, "5")); })},
          {.names = "current at is_raw is_less comparator_func", .prepare = Plain([](SweepDesign&) {
               const std::string at = Stamp::at(0, Stamp::formatted);
               return Said(Stamp::is_less(at.c_str(), Stamp::current(Stamp::raw).c_str()), Stamp::is_raw(at),
                           Stamp::comparator_func(at, at));
           })}}});

    all.push_back({"Quill::Utils::",
                   {Walks<BlockVisits<BlockOrinQuillDataVisitor>>(
                        "BlockOrinQuillDataVisitor::process BlockOrinQuillDataVisitor::~BlockOrinQuillDataVisitor",
                        [](auto& visits, SweepDesign& design) { visits.process(design.block, design.sheet); }),
                    Walks<SymbolVisits<SymbolOrinQuillDataVisitor>>(
                        "SymbolOrinQuillDataVisitor::process SymbolOrinQuillDataVisitor::~SymbolOrinQuillDataVisitor",
                        [](auto& visits, SweepDesign& design) { visits.process(design.symbol); })}});

    all.push_back(ObjectIds<0>("Quill::Utils::IdGenerator<ObjectId,0>::"));
    all.push_back(ObjectIds<1>("Quill::Utils::IdGenerator<ObjectId,1>::"));
    all.push_back(AttributeIds<0>("Quill::Utils::IdGenerator<AttributeId,0>::"));
    all.push_back(AttributeIds<1>("Quill::Utils::IdGenerator<AttributeId,1>::"));

    using Collector = NetsNamesCollector;
    const auto follows = [](Collector& collector, SweepDesign&) { return Said(collector.Reload()); };
    const auto names = [](Collector& collector, SweepDesign& design) {
        return Said(collector.GetExistingNames(design.blockIndex));
    };
    all.push_back(
        {"Quill::NetsNamesCollector::",
         {{.names = "AttachObserver NetsNamesCollector ~NetsNamesCollector",
           .reports = "IObject::IsValid ISnapshot::GetInfo OrinPI::AttachSubClient OrinPI::GetSnapshotByName "
                      "ISnapshot::AddEventObserver",
           .failure = "logged : true|logged : false",
           .prepare = [=](SweepDesign& design) {
               const auto collector = std::make_shared<Collector>();
               return Call{[=, &design] {
                               static bool s_logged;
                               s_logged = false;
                               zolt::Logging::SetSink([](const std::string&) { s_logged = true; });
                               collector->DetachObserver();
                               collector->AttachObserver(design.snapshot);
                               zolt::Logging::SetSink({});
                               return Said(s_logged ? "logged" : "");
                           },
                           [=, &design] { return follows(*collector, design); }};
           }},
          {.names = "DetachObserver",
           .prepare = OnCollector(
               [](Collector& collector, SweepDesign&) {
                   collector.DetachObserver();
                   return "";
               },
               follows)},
          {.names = "Reload",
           .reports = "ISnapshot::GetIterBlocks IObject::GetName IBlock::GetIterNets",
           .failure = "thrown #|false",
           .degraded = "true : *",
           .prepare = OnCollector(follows, names),
           .remembers = true},
          {.names = "GetExistingNames",
           .reports = "IObject::GetName IBlock::GetIterNets",
           .degraded = "* : *",
           .prepare = OnCollector(names, names),
           .remembers = true}}});
    return all;
}

}  // namespace Quill::Sweep
