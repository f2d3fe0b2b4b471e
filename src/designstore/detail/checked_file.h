// Opening of design files that may be anything.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "designstore/detail/sqlite.h"

namespace Orin::DesignDb {

// An absolute name, so that SQLite takes none for a URI.
std::string AbsoluteName(const std::string& path);

// Whether the file begins as SQLite databases do.
bool HasSqliteHeader(const std::string& path) noexcept;

// Refuses what is no design file of a version that is known, before SQLite sees it, which writes to some files at once:
// it finishes what another program left half done.
void CheckHeader(const std::string& path);

// Opens a file without the right to change it and begins to read one state of it: a design file, undamaged as far as
// SQLite can tell. Its header was checked. Refuses everything else with a StoreFault, and leaves the file as it is.
std::unique_ptr<SqliteFile> OpenChecked(const std::string& path);

// Keeps a connection from what no design file needs.
void Restrain(SqliteFile& file);

}  // namespace Orin::DesignDb
