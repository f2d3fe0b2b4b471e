// The embedded design database: projects in memory that clients attach to.
#pragma once

#include <functional>
#include <memory>

#include "orin/orin.h"

namespace Orin::DesignDb {

class DatabaseAccess;
class ProjectCore;

// Name of the working design among a project's snapshots. The others are save points, or designs that AddSnapshot
// began.
inline constexpr const char* WorkingSnapshot = "QUILL";

// One project: a design database with its snapshots. A Database is a handle to it, cheap to copy; the project lives as
// long as a handle, a connection or a handle to one of its objects does, and can be attached to by its name meanwhile.
// Operations may be called from any thread; one handle object is used by one thread at a time. Those of an empty handle
// give NotConnected.
class ORINPI_EXPORT Database {
public:
    Database() noexcept;
    Database(const Database&) noexcept;
    Database(Database&&) noexcept;
    Database& operator=(Database) noexcept;
    ~Database();

    // Makes a project with an empty working snapshot. AlreadyExists when a project of that name lives,
    // InvalidArgument for an empty name.
    static Result Create(Database& database, const String& project);

    // The living project of that name; UnknownProject when there is none.
    static Result Open(Database& database, const String& project);

    explicit operator bool() const noexcept;
    String ProjectName() const;

    // A connection that acts as a client called `client`; several clients may bear one name. Null for an empty handle.
    std::unique_ptr<OrinPI> Connect(const String& client) const;

    // ---- Snapshots. Each operation gives OutOfMemory, with nothing changed, where memory is wanting. ----

    // The names of all snapshots, the working one first, then in the order in which they were made.
    Result ListSnapshots(ListT<String>& names) const;

    // Makes an empty snapshot. AlreadyExists when the project has one of that name, InvalidArgument for an empty name.
    // Save points are made and restored by an Editor.
    Result AddSnapshot(const String& name) const;

    // Takes a save point or another snapshot out of the project; its objects are gone for every handle that is left,
    // and its name is free. InvalidArgument for the working snapshot, ObjectNotFound for a name that no snapshot bears,
    // AccessDenied while anybody holds a lock or a transaction on it.
    Result RemoveSnapshot(const String& name) const;

    // ---- Client observers ----

    // Calls `call` with every client observer of the project in the order of registration, on this thread: how a tool
    // tells all clients of a backup, a working mode or an error of its own. What an observer throws is caught, and the
    // next one is called. Observers that are removed meanwhile are not called. See also Editor::Notify.
    Result Notify(const std::function<void(ClientObserver&)>& call) const;

private:
    friend class DatabaseAccess;
    RefPtr<ProjectCore> m_core;
};

}  // namespace Orin::DesignDb
