// A client's connection to the design database.
#pragma once

#include <memory>

#include "orin/handles.h"
#include "orin/snapshot.h"

namespace Orin {

class ClientObserver;

// One client of one project, as the database keeps it: an identity that owns locks, observers and a transaction.
// Implemented by the database; applications use OrinPI.
class ORINPI_EXPORT Connection : public Counted {
public:
    virtual Result GetSnapshotByName(ContainerT<const ISnapshot>& snapshot, const String& name) const = 0;
    virtual Result AddClientObserver(ClientObserver* observer) const = 0;
    virtual Result RemoveClientObserver(ClientObserver* observer) const = 0;
    // Gives up the client's locks and observers and rolls back its transactions. Its handles go on reading.
    virtual void Close() const noexcept = 0;
};

// A project that clients can be attached to by its name. Implemented by the database, which enters its projects into
// the process-wide directory; all of it may be used from any thread.
class ORINPI_EXPORT Project : public Counted {
public:
    virtual Result Attach(RefPtr<const Connection>& connection, const String& client) = 0;

    // Enters the project; the directory borrows it. AlreadyExists when another one bears the name.
    static Result Enter(const String& name, Project& project);
    // Takes the project out. Nothing happens when `name` stands for another one.
    static void Remove(const String& name, const Project& project) noexcept;
    // The project of that name, or null.
    static RefPtr<Project> Find(const String& name);
};

// What an application and the library hold of the database. A default-made object is not connected: every operation
// but AttachSubClient gives NotConnected. Sub-clients stack: the operations act for the one attached last, and
// detaching it goes back to the one before. One thread at a time.
class ORINPI_EXPORT OrinPI {
public:
    OrinPI() noexcept;
    explicit OrinPI(RefPtr<const Connection> connection);
    virtual ~OrinPI();  // closes what is attached, last first

    OrinPI(const OrinPI&) = delete;
    OrinPI& operator=(const OrinPI&) = delete;

    // The snapshot of that name as this client sees it; "QUILL" names the working design.
    Result GetSnapshotByName(ContainerT<const ISnapshot>& snapshot, const String& name);

    // Observers are borrowed until they are removed or the client goes. InvalidArgument for null, AlreadyExists for one
    // that is registered.
    Result AddClientObserver(ClientObserver* observer);
    // ObjectNotFound for one that is not registered. Does not wait for a callback that another thread is making.
    Result RemoveClientObserver(ClientObserver* observer);

    // Becomes a client of its own, called `client`, of the project; UnknownProject when there is none of that name,
    // OutOfMemory.
    Result AttachSubClient(const String& project, const String& client);
    // Closes the sub-client attached last; NotConnected when there is none.
    Result DetachSubClient();

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;  // null until something is attached
};

}  // namespace Orin
