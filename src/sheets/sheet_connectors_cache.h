// Where a sheet connector leads: the connectors of one label on all pages of a design.
#pragma once

#include <functional>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include "orin/handles.h"
#include "orin/index.h"
#include "orin/list.h"
#include "orin/snapshot.h"
#include "quillutils_export.h"

namespace Quill {

// One connector as it occurs on one page. Owned by the cache.
struct CSheetConnectorData {
    Orin::Index index;                   // the component
    Orin::ListT<Orin::Index> hierarchy;  // the way to the page: the hierarchical components, root first
    // Tells occurrences apart: "low:middle:top/" of each index of the way, "[low:middle:top]" of the own.
    std::string key;
};

// Tells which library components serve as what on sheets; implemented by the application.
class QUILLUTILS_EXPORT IPinTypeComponentsData {
public:
    virtual ~IPinTypeComponentsData();

    // The symbol keys, "library:cell.variant", of the components of a pin type.
    virtual std::vector<std::string> GetComponents(int pinType) = 0;
};

// Connectors with one label on different sheets of one design are joined. The cache knows those of all designs of a
// snapshot: a design is a block of the schematic kind that is the root of the configuration of the block's own name.
// What it knows is collected page by page, in page order and without the pages that are excluded from printing, by the
// first query after something made it stale: attaching, new symbol keys, or a database event that adds, relabels,
// renames or deletes a connector. Queries take the same time however many connectors there are, but for the answer's
// own length.
//
// Pointers to connectors are valid until the cache is collected again, which any query may do, attached or destroyed.
// One thread at a time; database events may come on any thread. Nothing throws but the two reloads, and for want of
// memory; a query finds nothing while the design cannot be read.
class QUILLUTILS_EXPORT CSheetConnectorsCache {
public:
    // The pin type of sheet connectors.
    static constexpr int SheetConnectorPinType = 7;

    CSheetConnectorsCache();
    CSheetConnectorsCache(const CSheetConnectorsCache&) = delete;
    CSheetConnectorsCache& operator=(const CSheetConnectorsCache&) = delete;
    ~CSheetConnectorsCache();  // detaches

    // Becomes a client of its own of the snapshot's project and observes the snapshot, in place of the one before, of
    // which nothing stays. When the database refuses, the cache is detached; nothing else tells.
    void attachObserver(const Orin::ContainerT<const Orin::ISnapshot>& snapshot);
    // What was collected stays as it is and answers queries.
    void detachObserver();

    // Takes over which symbols are sheet connectors, then collects. Null leaves the symbols as they are; `data` is
    // borrowed for the call. The result is that of the form below.
    bool reloadSheetConnectorsList(IPinTypeComponentsData* data);
    // Collects. False when no snapshot is attached, with everything as it was. Throws the failed Result when the design
    // cannot be read; then nothing is known and the cache stays stale.
    bool reloadSheetConnectorsCache();

    bool isSheetConnectorSymbol(const std::string& library, const std::string& cell, const std::string& variant);

    // The connector behind the one given, in page order, around from the last to the first. `designPath` names the
    // design by its last part, behind "/" or "\". True when it is another occurrence. When it is the same, because the
    // connector stands alone, the result is false and `next` is set all the same; `next` is untouched when the path is
    // empty, the symbol is no connector, or the design, the label or the occurrence is not known.
    bool getNextTargetSheetConnector(const std::string& library, const std::string& cell, const std::string& variant,
                                     const std::string& designPath, const std::string& label,
                                     const Orin::Index& connector, const Orin::ListT<Orin::Index>& hierarchy,
                                     const CSheetConnectorData** next);

    // All connectors of the label but the one given, in page order; all of them when that one is not known. False, with
    // `targets` empty, when the label is not known or one of the other conditions above fails.
    bool getAllTargetSheetConnectors(const std::string& library, const std::string& cell, const std::string& variant,
                                     const std::string& designPath, const std::string& label,
                                     const Orin::Index& connector, const Orin::ListT<Orin::Index>& hierarchy,
                                     std::list<const CSheetConnectorData*>& targets);

    // Hands all connectors to `visit`: by design, then by label, both byte by byte, then in page order. `visit` calls
    // no operation of the cache.
    using Visitor =
        std::function<void(const std::string& design, const std::string& label, const CSheetConnectorData& connector)>;
    void forEachSheetConnector(const Visitor& visit);

private:
    class CImpl;
    std::unique_ptr<CImpl> m_impl;
};

}  // namespace Quill
