// A design with one object of each kind that carries stored data, for tests that read and write such data.
#pragma once

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "designdb/database.h"
#include "designdb/editor.h"

namespace Tests {

// Write handles are held by `client`, so other clients find everything locked.
class SmallDesign : public testing::Test {
protected:
    SmallDesign() {
        EXPECT_TRUE(Orin::DesignDb::Database::Create(database, "small"));
        client = database.Connect("client");
        EXPECT_TRUE(client->GetSnapshotByName(snapshot, Orin::DesignDb::WorkingSnapshot));
        EXPECT_TRUE(Orin::DesignDb::Editor::Open(editor, snapshot));
        EXPECT_TRUE(editor.AddBlock({"top"}, blockIndex));
        EXPECT_TRUE(editor.AddGroup(blockIndex, {"1"}, sheetIndex));
        EXPECT_TRUE(editor.AddComp(blockIndex, {"U1"}, compIndex));
        EXPECT_TRUE(editor.AddBus(blockIndex, {"A[0:7]"}, busIndex));
        Orin::IUIDManager objects;
        EXPECT_TRUE(snapshot->GetUIDManager(objects));
        EXPECT_TRUE(objects.GetBlock(block, blockIndex) && Orin::LockerT<Orin::IBlock>::Lock(block, writableBlock));
        EXPECT_TRUE(objects.GetGroup(sheet, sheetIndex) && Orin::LockerT<Orin::IGroup>::Lock(sheet, writableSheet));
        EXPECT_TRUE(objects.GetComp(comp, compIndex) && Orin::LockerT<Orin::IComp>::Lock(comp, writableComp));
        EXPECT_TRUE(objects.GetBus(bus, busIndex) && Orin::LockerT<Orin::IBus>::Lock(bus, writableBus));
    }

    // The value of an attribute, "none" when there is none. `family` is a component's attribute type.
    template <class Handle, class... Family>
    static std::string Value(const Handle& object, const char* name, Family... family) {
        Orin::String value;
        return object->GetAttribute(name, value, family...) ? static_cast<const char*>(value) : "none";
    }

    Orin::DesignDb::Database database;
    std::unique_ptr<Orin::OrinPI> client;
    Orin::ContainerT<const Orin::ISnapshot> snapshot;
    Orin::DesignDb::Editor editor;
    Orin::Index blockIndex, sheetIndex, compIndex, busIndex;
    Orin::ContainerT<const Orin::IBlock> block;
    Orin::ContainerT<const Orin::IGroup> sheet;
    Orin::ContainerT<const Orin::IComp> comp;
    Orin::ContainerT<const Orin::IBus> bus;
    Orin::MutableContainerT<Orin::IBlock> writableBlock;
    Orin::MutableContainerT<Orin::IGroup> writableSheet;
    Orin::MutableContainerT<Orin::IComp> writableComp;
    Orin::MutableContainerT<Orin::IBus> writableBus;
};

}  // namespace Tests
