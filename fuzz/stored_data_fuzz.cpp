// Any texts as what the library keeps in attributes: what is read is stored again as something that reads the same.
#include <list>
#include <map>

#include "designdata/quill_in_orin.h"
#include "designdb/editor.h"
#include "fuzz/fuzz.h"
#include "ids/id_generator.h"
#include "labels/time_stamp.h"
#include "pages/page_traverser.h"
#include "properties/property_mangler.h"
#include "properties/reuse_block.h"
#include "sheets/sheet_range.h"

namespace {

using Fuzz::Require;
using Quill::Utils::CPropertyMangler;
using Quill::Utils::QuillInOrin;

void Must(const Orin::Result& result) {
    Require(static_cast<bool>(result));
}

// A block with two sheets, a component that leads nowhere, and a bus.
struct Stored : Fuzz::Design {
    Stored() {
        Orin::Index config;
        Must(Orin::DesignDb::Editor::Open(editor, snapshot));
        Must(editor.AddBlock({"top", Orin::EBlockType::Schematic}, block));
        Must(editor.AddConfig({"top", block}, config));
        for (Orin::Index& sheet : sheets)
            Must(editor.AddGroup(block, {"s"}, sheet));
        Must(editor.AddComp(block, {.label = "U", .types = Orin::ECompType::Hierarchical, .childBlock = block}, comp));
        Must(editor.AddMember(sheets[0], comp));
        Must(editor.AddBus(block, {"B"}, bus));
        Must(snapshot->GetUIDManager(objects));
        Must(objects.GetBlock(blockHandle, block));
        Must(objects.GetComp(compHandle, comp));
        Must(objects.GetBus(busHandle, bus));
    }
    void Set(const Orin::Index& object, const char* key, const std::string& value,
             Orin::EAttributeType type = Orin::EAttributeType::User) {
        Must(editor.SetAttribute(object, CPropertyMangler::Mangle(key, Quill::DataModel::PropertyType::Internal),
                                 value.c_str(), type));
    }

    Orin::DesignDb::Editor editor;
    Orin::Index block, sheets[2], comp, bus;
    Orin::IUIDManager objects;
    Orin::ContainerT<const Orin::IBlock> blockHandle;
    Orin::ContainerT<const Orin::IComp> compHandle;
    Orin::ContainerT<const Orin::IBus> busHandle;
};

// What is read, stored and read again is the same.
template <class Handle, class Value, class Get, class Store>
void CheckRoundTrip(const Handle& object, Value value, Get get, Store store) {
    Require(get(*object, value));
    std::remove_const_t<Value> again{};
    typename std::conditional_t<std::is_same_v<Handle, Orin::ContainerT<const Orin::IBus>>,
                                Orin::MutableContainerT<Orin::IBus>, Orin::MutableContainerT<Orin::IComp>>
        writable;
    if constexpr (std::is_same_v<Handle, Orin::ContainerT<const Orin::IBus>>)
        Must(Orin::LockerT<Orin::IBus>::Lock(object, writable));
    else
        Must(Orin::LockerT<Orin::IComp>::Lock(object, writable));
    store(writable, value);
    Require(get(*object, again) && again == value);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::string> texts = Fuzz::Lines(Fuzz::Text(data, size), 8);
    Stored design;
    design.Set(design.comp, "___Bus", texts[0], Orin::EAttributeType::Link);
    design.Set(design.comp, "___SignalMap", texts[1], Orin::EAttributeType::Link);
    design.Set(design.bus, "___Signals", texts[2]);
    design.Set(design.bus, "___SignalNames", texts[3]);
    design.Set(design.sheets[0], "CUSTOM_ORDER", texts[4]);
    design.Set(design.sheets[1], "ID", texts[4]);
    design.Set(design.sheets[0], "LastIdUsed", texts[5]);
    design.Set(design.sheets[0], "COMPS_ORDER", texts[6]);
    design.Set(design.block, "ReuseBlock", texts[7]);
    design.Set(design.block, "BoardUid", texts[0]);

    using Map = std::map<int, int>;
    using Names = std::list<std::string>;
    CheckRoundTrip(design.compHandle, Orin::Index(), QuillInOrin::GetRipperBus, QuillInOrin::StoreRipperBus);
    CheckRoundTrip(design.compHandle, Map(), QuillInOrin::GetRipperSignalMap, QuillInOrin::StoreRipperSignalMap);
    CheckRoundTrip(design.busHandle, QuillInOrin::BusSignals(), QuillInOrin::GetBusSignals,
                   QuillInOrin::StoreBusSignals);
    CheckRoundTrip(
        design.busHandle, Names(),
        [](const Orin::IBus& bus, Names& names) { return QuillInOrin::GetBusSignalNames(bus, names); },
        [](const Orin::MutableContainerT<Orin::IBus>& bus, const Names& names) {
            QuillInOrin::StoreBusSignalNames(bus, names);
        });
    Orin::Index board;
    Require(QuillInOrin::GetBoardBlock(*design.blockHandle, board));
    static_cast<void>(Quill::Utils::ReuseBlock::IsReuseBlock(*design.blockHandle));

    Quill::SheetRange range;
    Require(range.Init(design.blockHandle) && range.Count() == 2);
    std::string name;
    range.CreateNewName(name);
    static_cast<void>(range.CreateNewId(texts[4]));
    Orin::ContainerT<const Orin::IGroup> sheet;
    Must(design.objects.GetGroup(sheet, design.sheets[0]));
    range.MoveTo({sheet}, *range.Begin(), false);

    Quill::Utils::IdGenerator<Quill::Utils::ObjectId, 0> generator;
    Require(static_cast<bool>(generator.Init(design.blockHandle, sheet)));
    Quill::Utils::ObjectId id;
    Require(static_cast<bool>(generator.GetNext(id)) && id.Value() > 0 && id.Value() <= Quill::Utils::ReservedId);

    Quill::PageTraverser pages(design.snapshot, "top", Quill::EViewMode::Logical);
    pages.setAlgorithm(Quill::EAlgorithm::DepthFirst, Quill::ECompAlgorithm::Custom);
    Require(pages.update() == 2);

    Quill::DataModel::PropertyType type = Quill::DataModel::PropertyType::Regular;
    static_cast<void>(CPropertyMangler::Unmangle(texts[0].c_str(), type));
    std::string plain, mangled;
    CPropertyMangler::Mangle(texts[0].c_str(), Quill::DataModel::PropertyType::Constraint, mangled);
    CPropertyMangler::Unmangle(mangled.c_str(), plain);
    Require(plain == texts[0].c_str());
    return 0;
}
