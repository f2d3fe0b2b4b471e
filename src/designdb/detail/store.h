// What makes a project's designs durable.
#pragma once

#include "orin/result.h"

namespace Orin::DesignDb {

class Client;
class Snapshot;

// Belongs to one project. Each call is durable as a whole when it returns success, and leaves what was stored before
// when it fails; the failure goes to whoever made the change. Calls may come from any thread, those for one snapshot
// one after the other.
class Store {
public:
    virtual ~Store() = default;

    // One commit: an edit that stands alone, a deletion with its contents, a transaction, a restore. All of it is in
    // the snapshot's graph, which is held still during the call, and no other client has built on it. A failure takes
    // it back, but for a transaction, which goes on and can be committed again or rolled back. What has changed since
    // the last commit is told by comparing with a copy of the graph as it was then, which costs what has changed
    // (Table::Compare).
    virtual Result Commit(const Snapshot& snapshot, const Client& author) = 0;

    // A snapshot that is about to enter the project, or to leave it.
    virtual Result Add(const Snapshot& snapshot) = 0;
    virtual Result Remove(const Snapshot& snapshot) = 0;
};

}  // namespace Orin::DesignDb
