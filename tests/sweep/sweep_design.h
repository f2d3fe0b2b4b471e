// The design that the sweep lets operations loose on: small, with something for each of them to read and to write.
#pragma once

#include "tests/support/drawn_design.h"
#include "tests/support/memory_design.h"

namespace Quill::Sweep {

using Orin::Index;
using Type = Orin::EObjectType;
using Tests::Must;

template <class Handle>
Index IndexOf(const Handle& object) {
    Index index;
    Must(object->GetIndex(index));
    return index;
}

// The design of design.json: the block "top" of the configuration of that name, drawn in the editor, with the sheets
// "1", "2" and "3". Sheet "1" shows one of everything, and leads to the block "leaf", which has one sheet, twice. A
// sheet connector labelled SIG is on sheet "1" and in the leaf.
struct SweepDesign : Tests::DrawnObjects {
    SweepDesign() : DrawnObjects(Tests::DrawnDesign::NewProject(), "client") {
        static const std::string s_json = Tests::FileText(QUILL_SWEEP_DESIGN);
        Orin::String name;
        const auto fault = Interchange::ReadDesignJson(s_json, snapshot, name);
        if (fault) throw std::runtime_error(fault->Message());
        Must(Orin::DesignDb::Editor::Open(editor, snapshot));
        Find(blockIndex, sheetIndex, symbolIndex);
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

    // Whether nobody holds a lock or a transaction.
    bool IsFree() const {
        Orin::MutableContainerT<Orin::ISnapshot> all;
        return Orin::LockerT<Orin::ISnapshot>::Lock(otherSnapshot, all) &&
               otherSnapshot->BeginTransaction(Orin::ETransactionType::Edit) && otherSnapshot->RollbackTransaction();
    }

    const Index blockIndex{Type::Block, 0, 1}, leafIndex{Type::Block, 0, 2};
    const Index sheetIndex{Type::Group, 0, 1}, thirdIndex{Type::Group, 0, 4};
    const Index symbolIndex{Type::Comp, 0, 1}, connectorIndex{Type::Comp, 0, 5}, childIndex{Type::Comp, 0, 7};
    const Index ripperIndex{Type::Comp, 0, 10}, busIndex{Type::Bus, 0, 2};
    const Index netIndex{Type::Net, 0, 2}, pieceIndex{Type::NetQuill, 0, 3};
    Orin::DesignDb::Editor editor;
    Orin::IUIDManager objects;
    Orin::ContainerT<const Orin::IGroup> third;
    Orin::ContainerT<const Orin::IComp> child, ripper;
    Orin::ContainerT<const Orin::IBus> bus;
    Orin::ContainerT<const Orin::IPath> rootPath, leafPath;
    std::unique_ptr<Orin::OrinPI> other;
    Orin::ContainerT<const Orin::ISnapshot> otherSnapshot;
};

}  // namespace Quill::Sweep
