// Reads the objects of one state of a design.
#pragma once

#include "designdb/detail/graph.h"
#include "designstore/detail/row_reader.h"

namespace Orin::DesignDb {

// Fills an empty graph with the working design, or with the save point of that number. See LoadProject.
void LoadState(SqliteFile& file, Graph& graph, const PlacesByNumber& places, const FileState& state,
               std::int64_t savePoint);

}  // namespace Orin::DesignDb
