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
#include "tests/support/visit_recorder.h"
#include "tests/sweep/operation.h"

namespace Quill::Sweep {
namespace {

using namespace Utils;
using Design = SweepDesign;

// A call that writes to one of the design's objects, of which it holds the write access.
template <class T, class Owner, class Run>
Prepare Writing(Orin::ContainerT<const T> Owner::*object, Run run) {
    return [=](Design& design) {
        const auto held = std::make_shared<Orin::MutableContainerT<T>>();
        Must(Orin::LockerT<T>::Lock(design.*object, *held));
        return Call{[=] { return SaidBy(run, *held); }};
    };
}

// Stores `values` in one of the design's objects by the operation `write`.
template <class T, class Owner, class Store, class... Values>
Operation Stores(const char* names, const char* write, Orin::ContainerT<const T> Owner::*object, Store store,
                 Values... values) {
    return {names, write, "thrown #", "=", Writing(object, [=](auto& held) { store(held, values...); })};
}

// Reads by `get(design, output)` into an output that holds something already, and says both.
template <class Output, class Get>
Prepare Into(Output held, Get get) {
    return Plain([=](Design& design) {
        Output output = held;
        const auto result = get(design, output);
        return Said(result, output);
    });
}

// Reads what is stored in one of the design's objects by the function `get`.
template <class T, class Owner, class Output>
Operation Gets(const char* name, const char* degraded, Orin::ContainerT<const T> Owner::*object, Output held,
               bool (*get)(const T&, Output&)) {
    return {name, "", "", degraded,
            Into(held, [=](Design& design, Output& output) { return get(*(design.*object), output); })};
}

template <class View, class... Objects>
Prepare Dates(Objects... objects) {
    return [=](Design& design) {
        Orin::ContainerT<const View> view;
        Must(View::Init(view, *(design.*objects)...));
        return Call{[view] {
            std::string text = "kept";
            CPropertyMangler::GetPropDATETIME(view, text, "%Y");
            return text;
        }};
    };
}

// Failures to list what is to be visited or to lock what was, and of what is not merely absent.
constexpr const char* Walks =
    "IBlockViewQuill::Init ICompViewQuill::Init IGroup::GetListObjects IBlock::GetParentSnapshot "
    "ISnapshot::GetUIDManager IComp::GetIterPins IBlockViewQuill::GetIterNetsQuill IBlockViewQuill::GetIterLines "
    "IBlockViewQuill::GetIterRectangles IBlockViewQuill::GetIterArcs IBlockViewQuill::GetIterCircles "
    "IBlockViewQuill::GetIterTexts ICompViewQuill::GetIterLines ICompViewQuill::GetIterRectangles "
    "ICompViewQuill::GetIterArcs ICompViewQuill::GetIterCircles ICompViewQuill::GetIterTexts IBlock::GetAttributes "
    "IComp::GetAttributes INet::GetAttributes IBus::GetAttributes IGroup::GetAttributes IPin::GetAttributes "
    "LockerT<IGroup>::ShallowLock LockerT<IComp>::ShallowLock LockerT<IBlockViewQuill>::Lock "
    "LockerT<ICompViewQuill>::Lock ?*";

template <class Visitor, class... Objects>
Operation Visits(const char* names, Objects... objects) {
    using Recorder = Tests::VisitRecorder<Visitor>;
    return {names, Walks, "thrown # : ^", "= : <", [=](Design& design) {
                return Sharing(
                    design, std::make_shared<Recorder>(),
                    [=](Recorder& recorder, Design& d) {
                        recorder.visits.clear();
                        recorder.process((d.*objects)...);
                    },
                    [](const Recorder& recorder) { return recorder.visits; });
            }};
}

// What it says besides is the outcome of the next GetNext, and the id.
template <class Kind, int Locked, class... Objects>
Operation Initialises(const char* names, const char* degraded, Objects... objects) {
    using Generator = IdGenerator<Kind, Locked>;
    return {names, Walks, "5 : 2 77|4 : 2 77", degraded, [=](Design& design) {
                return Sharing(
                    design, std::make_shared<Generator>(),
                    [=](Generator& generator, Design& d) { return generator.Init((d.*objects)...).code; },
                    [](Generator& generator) {
                        Kind id(77);
                        const auto code = generator.GetNext(id).code;
                        return Said(code, Index(id.Value()));
                    });
            }};
}

template <int Locked, class... Objects>
Operation StoresId(const char* names, Objects... objects) {
    using Generator = IdGenerator<ObjectId, Locked>;
    return {names, "LockerT<IGroup>::ShallowLock LockerT<IComp>::ShallowLock IGroup::SetAttribute IComp::SetAttribute",
            "thrown #", "=", [=](Design& design) {
                const auto generator = std::make_shared<Generator>();
                generator->Init((design.*objects)...);
                generator->UpdateLast(ObjectId(5000));
                return Call{[=] { return Said(generator->Store().code); }};
            }};
}

template <int Locked>
Family ObjectIds(const char* prefix) {
    // Where nothing is found to be in use, ids start over.
    return {prefix,
            {Initialises<ObjectId, Locked>("Init GetNext", "0 : *", &Design::block, &Design::sheet),
             Initialises<ObjectId, Locked>("Init", "0 : *", &Design::symbol),
             StoresId<Locked>("Store", &Design::block, &Design::sheet), StoresId<Locked>("", &Design::symbol)}};
}

template <int Locked>
Family AttributeIds(const char* prefix) {
    Operation onEmptySheet = Initialises<AttributeId, Locked>("Init", "4 : 2 77", &Design::sheet);
    if (Locked == 1) onEmptySheet.reports = "", onEmptySheet.degraded = "=";  // not supported
    return {prefix,
            {Initialises<AttributeId, Locked>("Init GetNext", "0 : *|4 : 2 77", &Design::block, &Design::sheet),
             Initialises<AttributeId, Locked>("Init", "0 : *", &Design::symbol), onEmptySheet}};
}

// A call on a collector that is to look at the design.
template <class Run, class Look>
Prepare OnCollector(Run run, Look look) {
    return [=](Design& design) {
        const auto collector = std::make_shared<NetsNamesCollector>();
        collector->AttachObserver(design.snapshot);
        return Sharing(design, collector, run, look);
    };
}

}  // namespace

std::vector<Family> DataOperations() {
    using Ops = CommonRollbackOps;
    using Mangler = CPropertyMangler;
    using Reuse = ReuseBlock;
    using Data = QuillInOrin;
    using Stamp = time_stamp;
    using Collector = NetsNamesCollector;
    using Comp = Orin::MutableContainerT<Orin::IComp>;
    using Block = Orin::MutableContainerT<Orin::IBlock>;
    using Names = std::list<std::string>;
    using NameVector = std::vector<std::string>;
    using Map = std::map<int, int>;
    using Signals = Data::BusSignals;
    const std::string kept = "kept";
    const auto storeNames = [](auto& bus, const auto& of) { Data::StoreBusSignalNames(bus, of); };
    const auto follows = [](Collector& collector, auto&...) { return collector.Reload(); };
    const auto names = [](Collector& collector, Design& d) { return collector.GetExistingNames(d.blockIndex); };
    const auto nothing = [](Collector&) { return ""; };
    return {
        {"Quill::Utils::CommonRollbackOps::",
         {{"SetComment", "*", "#", "=", Plain([](Design& d) { return Ops::SetComment(d.snapshot, "after"); })},
          {"SetComment", "*", "#", "=", Plain([](Design& d) { return Ops::SetComment(*d.client, "QUILL", "after"); })},
          {"GetComment", "*", "# kept", "=",
           Into(kept, [](Design& d, std::string& comment) { return Ops::GetComment(d.snapshot, comment); })},
          {"GetComment", "*", "# kept", "=",
           Into(kept, [](Design& d, std::string& comment) { return Ops::GetComment(*d.client, "QUILL", comment); })},
          {"FormatSvptDate FormatRollbackMenu", "", "", "=",
           Plain([](Design&) { return Ops::FormatRollbackMenu("5", "a"); })}}},
        {"Quill::Utils::CPropertyMangler::",
         {{"GetPropDATETIME", "", "", "kept", Dates<Orin::IBlockViewQuill>(&Design::block, &Design::sheet)},
          {"GetPropDATETIME", "", "", "kept", Dates<Orin::ICompViewQuill>(&Design::symbol)},
          {"Mangle Mangle Unmangle Unmangle Unmangle IsPropDATETIME", "", "", "=",
           Plain([](Design&) { return Mangler::IsPropDATETIME(Mangler::Unmangle("$$Internal_@DATETIME")); })}}},
        {"Quill::Utils::ReuseBlock::",
         {{"IsReuseBlock", "", "", "false", Plain([](Design& d) { return Reuse::IsReuseBlock(*d.child); })},
          {"IsReuseBlock", "", "", "false", Plain([](Design& d) { return Reuse::IsReuseBlock(*d.block); })},
          {"IsDynamicReuse", "", "", "false", Plain([](Design& d) { return Reuse::IsDynamicReuse(*d.child); })},
          Gets("IsDynamicReuse", "false ", &Design::child, kept, Reuse::IsDynamicReuse),
          {"IsTopLevelReuseBlock", "", "", "true|false",
           Plain([](Design& d) { return Reuse::IsTopLevelReuseBlock(d.leafIndex, d.snapshot); })},
          // Writes that the database refuses are passed over.
          Stores("SetIsReuseBlock", "", &Design::ripper, [](Comp& comp) { Reuse::SetIsReuseBlock(comp, true); }),
          Stores("", "", &Design::child, [](Comp& comp) { Reuse::SetIsReuseBlock(comp, false); }),
          Stores("SetIsReuseBlock", "", &Design::block, [](Block& block) { Reuse::SetIsReuseBlock(block, false); }),
          Stores("SetIsDynamicReuse", "", &Design::ripper,
                 [](Comp& comp) { Reuse::SetIsDynamicReuse(comp, true, "x"); })}},
        {"Quill::Utils::QuillInOrin::",
         {Gets("GetDesignName", "false kept", &Design::block, kept, Data::GetDesignName),
          Gets("GetBoardBlock", "false 1", &Design::block, Index(1), Data::GetBoardBlock),
          Gets("GetRipperBus", "false 1", &Design::ripper, Index(1), Data::GetRipperBus),
          Gets("GetRipperSignalMap", "false 8=9 ", &Design::ripper, Map{{8, 9}}, Data::GetRipperSignalMap),
          Gets("GetBusSignals", "false 8=9 ", &Design::bus, Signals{{8, Index(9)}}, Data::GetBusSignals),
          Gets("GetBusSignalNames", "false kept ", &Design::bus, Names{kept}, Data::GetBusSignalNames),
          Gets("GetBusSignalNames", "false kept ", &Design::bus, NameVector{kept}, Data::GetBusSignalNames),
          Stores("StoreDesignName", "IBlock::SetAttribute", &Design::block, Data::StoreDesignName, "pre"),
          Stores("StoreBoardBlock", "IBlock::SetAttribute", &Design::block, Data::StoreBoardBlock, Index(5)),
          Stores("StoreRipperBus", "IComp::SetAttribute", &Design::ripper, Data::StoreRipperBus, Index(5)),
          Stores("StoreRipperSignalMap", "IComp::SetAttribute", &Design::ripper, Data::StoreRipperSignalMap,
                 Map{{5, 6}}),
          Stores("StoreBusSignals", "IBus::SetAttribute", &Design::bus, Data::StoreBusSignals, Signals{{5, Index(6)}}),
          Stores("StoreBusSignalNames", "IBus::SetAttribute", &Design::bus, storeNames, Names{"A", "B"}),
          Stores("StoreBusSignalNames", "IBus::SetAttribute", &Design::bus, storeNames, NameVector{"A", "B"}),
          {"GetHierarchicalName",
           "IComp::GetLabel IComp::GetParentBlock IComp::GetInstanceIndex IBlock::GetComp IComp::GetListGroups", " : ",
           "=| : |$I50",  // the name, none, or one without the sheet's id
           Plain([](Design& d) { return Data::GetHierarchicalName(d.leafPath); })}}},
        {"Quill::Utils::time_stamp::",
         {{"read", "", "", "true ",
           Into(kept, [](Design& d, std::string& stamp) { return Stamp::read(*d.sheet, "__BlkDate", stamp); })},
          Gets("read", "true ", &Design::sheet, kept, Stamp::read),
          Gets("read", "true ", &Design::child, kept, Stamp::read),
          {"write", "*", "false", "=",
           Writing(&Design::sheet, [](auto& sheet) { return Stamp::write(*sheet, "__BlkDate", "5"); })},
          {"write", "*", "false", "=", Writing(&Design::sheet, [](auto& sheet) { return Stamp::write(*sheet, ""); })},
          {"write", "*", "false", "=", Writing(&Design::child, [](auto& comp) { return Stamp::write(*comp, "5"); })},
          {"current at is_raw is_less comparator_func", "", "", "=",
           Plain([](Design&) { return Stamp::is_less("5", Stamp::current(Stamp::formatted).c_str()); })}}},
        {"Quill::Utils::",
         {Visits<BlockOrinQuillDataVisitor>(
              "BlockOrinQuillDataVisitor::process BlockOrinQuillDataVisitor::~BlockOrinQuillDataVisitor",
              &Design::block, &Design::sheet),
          Visits<SymbolOrinQuillDataVisitor>(
              "SymbolOrinQuillDataVisitor::process SymbolOrinQuillDataVisitor::~SymbolOrinQuillDataVisitor",
              &Design::symbol)}},
        ObjectIds<0>("Quill::Utils::IdGenerator<ObjectId,0>::"),
        ObjectIds<1>("Quill::Utils::IdGenerator<ObjectId,1>::"),
        AttributeIds<0>("Quill::Utils::IdGenerator<AttributeId,0>::"),
        AttributeIds<1>("Quill::Utils::IdGenerator<AttributeId,1>::"),
        {"Quill::NetsNamesCollector::",
         {{"AttachObserver NetsNamesCollector ~NetsNamesCollector", "*", "logged : true|logged : false", "=",
           [=](Design& design) {
               return Sharing(
                   design, std::make_shared<Collector>(),
                   [](Collector& collector, Design& d) {
                       static std::string s_logged;
                       s_logged.clear();
                       zolt::Logging::SetSink([](const std::string&) { s_logged = "logged"; });
                       collector.DetachObserver();
                       collector.AttachObserver(d.snapshot);
                       zolt::Logging::SetSink({});
                       return s_logged;
                   },
                   follows);
           }},
          {"DetachObserver", "", "", "=",
           OnCollector([](Collector& collector, auto&) { collector.DetachObserver(); }, follows)},
          {"Reload", "ISnapshot::GetIterBlocks IObject::GetName IBlock::GetIterNets", "thrown #|false", "true",
           OnCollector(follows, nothing)},
          {"GetExistingNames", "IObject::GetName IBlock::GetIterNets", "thrown #", "*", OnCollector(names, nothing)}}}};
}

}  // namespace Quill::Sweep
