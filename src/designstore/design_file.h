// Designs kept in files. docs/design-file.md describes the format.
//
// A database that is bound to a file reads from memory as ever; each commit (a transaction, or an edit that stands
// alone) is written to the file before it counts, all or nothing. A commit that succeeded survives a crash of the
// process or of the machine. One that cannot be written fails with StoreFailed and says why (the disk is full, ...); it
// is taken back then, its edits announced as their inverses as after a rollback, so that memory holds what the file
// holds. Where not even that the file does not hold it could be made sure of, the message says so, and all later
// commits fail: the design has to be opened again.
//
// A file is let go when the last handle to the database, its connections and objects is gone. The functions may be
// called from any thread.
#pragma once

#include <string>

#include "designdb/database.h"
#include "designstore/export.h"

namespace Orin::DesignDb {

// What a design file is opened for.
enum class EFileAccess {
    Read,   // commits fail with StoreFailed
    Write,  // for one process at a time
};

// Makes the file `path`, holding what the database holds, and binds the database to it. `design` is the name of the
// design. The file appears when it is complete. On failure there is none, and the database is bound to nothing:
//   AlreadyExists      there is a file of that name, which is left alone, or the database is bound to a file
//   TransactionActive  a client has a transaction open
//   NotConnected       an empty database handle
//   StoreFailed        with the reason: the file cannot be written, or another process is making it
// Edits and readers wait meanwhile.
ORINPISQLITE_EXPORT Result CreateDesignFile(const Database& database, const std::string& path, const String& design);

// Makes a project that holds what the file `path` holds, as Database::Create makes an empty one, and gives the name of
// the design. Opening for reading may be done any number of times beside the writer, and gives the design as it is
// after one of its commits. On failure the outputs are untouched, and so is the file:
//   AlreadyExists    a project of that name lives
//   InvalidArgument  the name is empty
//   StoreFailed      with the reason: no such file, no design file, one of a newer version, a damaged one, or, when it
//                    was to be written, one that another process is writing, whose host and number are given
ORINPISQLITE_EXPORT Result OpenDesignFile(Database& database, const String& project, const std::string& path,
                                          EFileAccess access, String& design);

// Whether the beginning of the file is that of an SQLite database, which design files are and no other form of a design
// is. False as well when it cannot be read.
ORINPISQLITE_EXPORT bool LooksLikeDesignFile(const std::string& path) noexcept;

// Removes what this process has begun to make of design files and not finished: for the handler of a signal that ends
// the process, in which it may be called. The threads that make them must not go on afterwards.
ORINPISQLITE_EXPORT void RemoveUnfinishedDesignFiles() noexcept;

}  // namespace Orin::DesignDb
