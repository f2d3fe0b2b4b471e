// Which net names are in use in each block of a design.
#pragma once

#include <memory>
#include <set>
#include <string>

#include "orin/snapshot.h"
#include "quillutils_export.h"

namespace Quill {

// Follows one snapshot as a client of its own and rebuilds its tables at the first question after a change that can
// affect net names. One thread at a time, the one that owns the connections; the snapshot may be edited from any
// thread meanwhile.
class QUILLUTILS_EXPORT NetsNamesCollector {
public:
    NetsNamesCollector();
    ~NetsNamesCollector();  // detaches

    // Starts to follow the snapshot; the next question rebuilds the tables. What fails is reported through
    // zolt::Logging::FatalError, and the collector stays as far as it got. Detach first: attaching again keeps the
    // newer snapshot only, but goes on listening to the earlier one.
    void AttachObserver(const Orin::ContainerT<const Orin::ISnapshot>& snapshot);

    // Stops following. The tables stay, and answer further questions. Nothing happens when nothing is followed.
    void DetachObserver();

    // Rebuilds the tables now. False, with the tables as they were, when no snapshot is followed or its blocks cannot
    // be listed. Throws the failed Orin::Result when the name or the nets of a block cannot be read; the tables are
    // then incomplete and the next question rebuilds them.
    bool Reload();

    // The labels of the block's nets, "" among them when a net has none; empty for a block without nets and for an
    // unknown one. Rebuilds the tables first when that is due, and throws what Reload throws. Valid until they are
    // rebuilt.
    const std::set<std::string>& GetExistingNames(const Orin::Index& block);

    NetsNamesCollector(const NetsNamesCollector&) = delete;
    NetsNamesCollector& operator=(const NetsNamesCollector&) = delete;

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

}  // namespace Quill
