// The design that the sweep lets operations loose on: small, with something for each of them to read and to write.
#pragma once

#include <string>

#include "tests/support/drawn_design.h"

namespace Quill::Sweep {

using Orin::EAttributeType;
using Orin::EGroupType;
using Orin::Index;
using Tests::Must;

template <class Handle>
Index IndexOf(const Handle& object) {
    Index index;
    Must(object->GetIndex(index));
    return index;
}

// The block "top" of the configuration of that name, drawn in the editor, with the sheets "1", "2" and "3". Sheet "1"
// shows one of everything, and leads to the block "leaf", which has one sheet, twice. A sheet connector labelled SIG is
// on sheet "1" and in the leaf.
struct SweepDesign : Tests::DrawnDesign {
    SweepDesign() {
        DrawSheet();
        DrawSymbol();
        using Orin::ECompType;
        const Orin::BlockTypes drawn = Orin::BlockTypes(Orin::EBlockType::Schematic) | Orin::EBlockType::Drawn;
        Index config, lib, connectorSymbol;
        Must(editor.SetBlockTypes(blockIndex, drawn));
        Must(editor.AddConfig({"top", blockIndex}, config));
        Must(editor.AddGroup(blockIndex, {"3"}, thirdIndex));
        Must(editor.AddBlock({"leaf", drawn}, leafIndex));
        Must(editor.AddGroup(leafIndex, {"x"}, leafSheetIndex));
        Must(editor.AddBlock({"lib", Orin::EBlockType::Symbol}, lib));
        Must(editor.AddComp(lib, {"", "off.1"}, connectorSymbol));
        Orin::DesignDb::CompSpec connector{.label = "SIG", .partition = "LIB", .definition = connectorSymbol};
        AddTo(sheetIndex, blockIndex, connector, connectorIndex);
        AddTo(leafSheetIndex, leafIndex, connector, leafConnectorIndex);
        const Orin::CompTypes hierarchical(ECompType::Hierarchical);
        AddTo(sheetIndex, blockIndex, {"H", "h", hierarchical, "", {}, leafIndex}, childIndex);
        AddTo(sheetIndex, blockIndex, {"G", "g", hierarchical, "", {}, leafIndex}, otherChildIndex);
        Index title;
        AddTo(sheetIndex, blockIndex, {"", "", Orin::CompTypes(ECompType::Border) | ECompType::Titled}, title);
        Must(editor.AddBus(blockIndex, {"DATA"}, busIndex));
        Must(editor.AddNet(blockIndex, {"N7"}, netIndex));
        Must(editor.AddNetQuill(sheetIndex, netIndex, {}, pieceIndex));
        Must(editor.AddMember(sheetIndex, busIndex));
        AddTo(sheetIndex, blockIndex, {"R", "", ECompType::Ripper}, ripperIndex);

        const auto internal = [this](const Index& object, const char* key, const char* value,
                                     EAttributeType type = EAttributeType::User) {
            Must(editor.SetAttribute(object, (std::string("$$Internal_") + key).c_str(), value, type));
        };
        Must(editor.SetAttribute(title, "$$NotCommonProperty_@PRINTORDER", "7"));
        Must(editor.SetAttribute(childIndex, "REFDES", "R10"));
        Must(editor.SetAttribute(otherChildIndex, "Ref Designator", "R2"));
        internal(thirdIndex, "CUSTOM_ORDER", "1");
        internal(sheetIndex, "CUSTOM_ORDER", "2");
        internal(leafSheetIndex, "ID", "4");
        const std::string second = std::to_string(otherChildIndex.Value()), first = std::to_string(childIndex.Value());
        internal(sheetIndex, "COMPS_ORDER",
                 (std::string(20 - second.size(), ' ') + second + std::string(20 - first.size(), ' ') + first).c_str());
        internal({}, "SVPT_COMMENT", "before");
        internal(blockIndex, "Design_Name", "amp");
        internal(blockIndex, "BoardUid", "77");
        internal(blockIndex, "ReuseBlock", "TRUE");
        internal(childIndex, "ReuseBlock", "TRUE", EAttributeType::System);
        internal(childIndex, "DynamicReuse", "twice", EAttributeType::System);
        internal(ripperIndex, "___Bus", "78", EAttributeType::Link);
        internal(ripperIndex, "___SignalMap", "1,2", EAttributeType::Link);
        internal(busIndex, "___Signals", "3,79");
        internal(busIndex, "___SignalNames", "D0,D1");
        internal(sheetIndex, "__BlkDate", "1700000000");
        internal(childIndex, "__BlkDate", "1700000001", EAttributeType::System);
        Must(editor.SetModificationTime(sheetIndex, 1700000000));
        Must(editor.SetModificationTime(symbolIndex, 1700000000));

        Must(snapshot->GetUIDManager(objects));
        Must(objects.GetGroup(third, thirdIndex));
        Must(objects.GetComp(child, childIndex));
        Must(objects.GetComp(ripper, ripperIndex));
        Must(objects.GetBus(bus, busIndex));
        Orin::ContainerT<const Orin::IConfig> root;
        Must(snapshot->GetDefaultConfig(root, "top"));
        Must(root->GetRoot(rootPath));
        Must(rootPath->GetChildPath(leafPath, childIndex));

        other = database.Connect("other");
        Must(other->GetSnapshotByName(otherSnapshot, Orin::DesignDb::WorkingSnapshot));
    }

    void AddTo(const Index& page, const Index& owner, const Orin::DesignDb::CompSpec& spec, Index& comp) {
        Must(editor.AddComp(owner, spec, comp));
        Must(editor.AddMember(page, comp));
        Must(editor.SetCompData(page, comp, Item{50}));
    }

    // Whether nobody holds a lock or a transaction.
    bool IsFree() const {
        Orin::MutableContainerT<Orin::ISnapshot> all;
        return Orin::LockerT<Orin::ISnapshot>::Lock(otherSnapshot, all) &&
               otherSnapshot->BeginTransaction(Orin::ETransactionType::Edit) && otherSnapshot->RollbackTransaction();
    }

    Index thirdIndex, leafIndex, leafSheetIndex, connectorIndex, leafConnectorIndex, childIndex, otherChildIndex;
    Index busIndex, netIndex, pieceIndex, ripperIndex;
    Orin::IUIDManager objects;
    Orin::ContainerT<const Orin::IGroup> third;
    Orin::ContainerT<const Orin::IComp> child, ripper;
    Orin::ContainerT<const Orin::IBus> bus;
    Orin::ContainerT<const Orin::IPath> rootPath, leafPath;
    std::unique_ptr<Orin::OrinPI> other;
    Orin::ContainerT<const Orin::ISnapshot> otherSnapshot;
};

}  // namespace Quill::Sweep
