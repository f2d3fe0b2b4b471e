// What the tests of the database share: projects with clients, and a design written out as text.
#pragma once

#include <map>
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

    Orin::ContainerT<const Orin::IBlock> Block(const Orin::Index& index) const {
        return Get(index, &Orin::IUIDManager::GetBlock);
    }
    Orin::ContainerT<const Orin::IComp> Comp(const Orin::Index& index) const {
        return Get(index, &Orin::IUIDManager::GetComp);
    }
    Orin::ContainerT<const Orin::IGroup> Group(const Orin::Index& index) const {
        return Get(index, &Orin::IUIDManager::GetGroup);
    }
    Orin::ContainerT<const Orin::INet> Net(const Orin::Index& index) const {
        return Get(index, &Orin::IUIDManager::GetNet);
    }
    Orin::ContainerT<const Orin::IBus> Bus(const Orin::Index& index) const {
        return Get(index, &Orin::IUIDManager::GetBus);
    }

private:
    template <class T>
    Orin::ContainerT<const T> Get(const Orin::Index& index,
                                  Orin::Result (Orin::IUIDManager::*get)(Orin::ContainerT<const T>&, const Orin::Index&)
                                      const) const {
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

// A design as text, one line a fact, in the order in which the database lists things.
std::vector<std::string> Facts(const TestClient& client);

}  // namespace Tests
