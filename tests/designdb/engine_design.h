// What the tests of the database share: projects with clients, and a design written out as text.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "designdb/database.h"
#include "designdb/editor.h"

namespace Tests {

// One client with its own handles and editor.
struct TestClient {
    std::unique_ptr<Orin::OrinPI> connection;
    Orin::ContainerT<const Orin::ISnapshot> snapshot;
    Orin::DesignDb::Editor editor;
    Orin::IUIDManager objects;

    TestClient(const Orin::DesignDb::Database& database, const char* name,
               const char* design = Orin::DesignDb::WorkingSnapshot)
        : connection(database.Connect(name)) {
        EXPECT_TRUE(connection->GetSnapshotByName(snapshot, design));
        EXPECT_TRUE(Orin::DesignDb::Editor::Open(editor, snapshot));
        EXPECT_TRUE(snapshot->GetUIDManager(objects));
    }

    auto Block(const Orin::Index& index) const { return Get(index, &Orin::IUIDManager::GetBlock); }
    auto Comp(const Orin::Index& index) const { return Get(index, &Orin::IUIDManager::GetComp); }
    auto Group(const Orin::Index& index) const { return Get(index, &Orin::IUIDManager::GetGroup); }
    auto Net(const Orin::Index& index) const { return Get(index, &Orin::IUIDManager::GetNet); }

private:
    template <class T>
    using Getter = Orin::Result (Orin::IUIDManager::*)(Orin::ContainerT<const T>&, const Orin::Index&) const;
    template <class T>
    Orin::ContainerT<const T> Get(const Orin::Index& index, Getter<T> get) const {
        Orin::ContainerT<const T> object;
        (objects.*get)(object, index);
        return object;
    }
};

inline Orin::DesignDb::Database NewDatabase() {
    static int s_count = 0;
    Orin::DesignDb::Database database;
    EXPECT_TRUE(Orin::DesignDb::Database::Create(database, ("project " + std::to_string(++s_count)).c_str()));
    return database;
}

inline std::string Text(const Orin::Index& index) {
    return std::to_string(index.Top()) + ":" + std::to_string(index.Middle()) + ":" + std::to_string(index.Low());
}

using Strings = std::vector<std::string>;

// A design as text, one line a fact, in the order in which the database lists things.
Strings Facts(const TestClient& client);

// Two clients of a design with a block that holds one object of most kinds.
struct SharedBlock : testing::Test {
    Orin::DesignDb::Database database = NewDatabase();
    TestClient client{database, "one"}, other{database, "other"};
    Orin::DesignDb::Editor& editor = client.editor;
    Orin::Index block, comp, pin, net, net2, group;

    SharedBlock() {
        EXPECT_TRUE(editor.AddBlock({"block"}, block) && editor.AddComp(block, {"U1"}, comp));
        EXPECT_TRUE(editor.AddPin(comp, {"1"}, pin) && editor.AddGroup(block, {"1"}, group));
        EXPECT_TRUE(editor.AddNet(block, {"N"}, net) && editor.AddNet(block, {"M"}, net2));
    }
    Orin::Result Begin() const { return client.snapshot->BeginTransaction(Orin::ETransactionType::Edit); }
    Orin::Result RollBack() const { return client.snapshot->RollbackTransaction(); }
};

}  // namespace Tests
