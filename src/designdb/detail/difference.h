// What tells two states of a design apart, as edits.
#pragma once

#include <vector>

#include "designdb/detail/event.h"
#include "designdb/detail/graph.h"

namespace Orin::DesignDb {

// The events of edits that lead from one state to the other: deletions with contents first, additions with containers
// first, then changes of objects that are in both. As with the deleting and undeleting of one object, what an object
// bears and what it is connected to comes and goes with it and has no events of its own. Records that the states share
// are not looked at. `design` is the index of the design as a whole.
std::vector<Event> Difference(const Graph& before, const Graph& after, const Index& design);

}  // namespace Orin::DesignDb
