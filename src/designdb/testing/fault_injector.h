// Makes operations of the database fail on demand, and counts them. For tests.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "orin/orin.h"

namespace Orin::DesignDb::Testing {

// One rule: which calls fail, and with what.
struct Fault {
    std::string operation;    // class and operation, such as "IGroup::SetAttribute"; empty means every operation
    Index object = {};        // only calls on this object; empty means any
    unsigned call = 1;        // the first matching call that fails, counted from 1 from the installing on
    bool persistent = false;  // also every matching call after that
    EErrorCode code = EErrorCode::StoreFailed;
};

// Watches every operation of every database of the process, from its construction to its destruction. At most one
// exists at a time. Operations are named by interface class and operation ("IBlock::GetAttribute",
// "LockerT<IGroup>::ShallowLock", "IUIDManager::GetComp", "IBlockViewQuill::Init", "OrinPI::GetSnapshotByName"); the
// overloads of a name count as one. "Store::Commit", "Store::Add" and "Store::Remove" are the moments in which a
// commit, a new snapshot or the removal of one is made durable; they are meant only by name. A failed call has no
// effect. Any thread; while no injector exists an operation pays for one load and branch.
class ORINPI_EXPORT FaultInjector {
public:
    FaultInjector();
    ~FaultInjector();
    FaultInjector(const FaultInjector&) = delete;
    FaultInjector& operator=(const FaultInjector&) = delete;

    // Adds a rule; several may be in force.
    void Inject(const Fault& fault);
    // Takes all rules away; the counts stay.
    void Clear();

    // The number of calls of that operation since construction or the last ResetCounts; of all when it is empty.
    unsigned Calls(std::string_view operation = {}) const;
    void ResetCounts();
    // The operations of the calls that a rule made fail, in the order of the calls.
    std::vector<std::string> Failed() const;
};

}  // namespace Orin::DesignDb::Testing
