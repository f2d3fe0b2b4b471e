// What keeps a design durable. Stores are libraries of their own, which is why some of the engine's insides are
// exported.
#pragma once

#include <vector>

#include "designdb/database.h"
#include "designdb/detail/path_table.h"
#include "designdb/detail/touches.h"

namespace Orin::DesignDb {

// One commit: an edit that stands alone, a deletion with its contents, a transaction, a restore. Borrows all.
struct ChangeSet {
    const String& snapshot;  // the working one or a save point; of a save point only the design's attributes change
    const Graph& graph;      // as it is after the commit, held still
    const Touches& touches;
    const String& client;  // whose commit it is
};

// A save point of the working design.
struct SavedState {
    String name;
    Graph graph;               // its attributes are those that the save point bears itself
    ListAttribute attributes;  // that the design had
};

// All that a project holds.
struct ProjectContent {
    PathTable& places;
    Graph& working;
    std::vector<SavedState>& savePoints;  // oldest first
};

// Belongs to one project. Each call is durable as a whole when it returns success, and leaves what was stored before
// when it fails; the engine takes the change back then. Calls may come from any thread. Commits of one snapshot come
// one after the other, and none comes while that snapshot is removed; what is about different snapshots, the working
// design among them, may come at the same time.
class ORINPI_EXPORT Store : public Counted {
public:
    // Fills the content of a new project, in which nothing is. What a failure leaves there is not used.
    virtual Result Load(const ProjectContent& content) = 0;

    virtual Result Commit(const ChangeSet& changes) = 0;

    // A save point that is about to enter the project, or to leave it. `working` is the working design as it is now,
    // held still.
    virtual Result Add(const SavedState& savePoint, const Graph& working) = 0;
    virtual Result Remove(const String& savePoint) = 0;
};

// Names all that differs between two states of a design. Records that they share are not looked at.
ORINPI_EXPORT void TouchDifference(const Graph& before, const Graph& after, Touches& touches);

// Makes a project as Database::Create does, holding what the store loads, and binds it to the store: every commit goes
// there from then on. The project keeps the store.
ORINPI_EXPORT Result CreateStored(Database& database, const String& project, const RefPtr<Store>& store);

// Saves all of a project.
class ORINPI_EXPORT StoreWriter {
public:
    virtual Result Write(const ProjectContent& content, RefPtr<Store>& store) = 0;

protected:
    ~StoreWriter() = default;
};

// Binds a project that is bound to no store to the one that the writer gives, with every commit kept out meanwhile.
// AlreadyExists when it is bound, TransactionActive while a client has a transaction open, InvalidArgument for a
// project with snapshots that are no save points of the working one; otherwise what the writer gives. The project stays
// unbound on failure.
ORINPI_EXPORT Result BindStored(const Database& database, StoreWriter& writer);

}  // namespace Orin::DesignDb
