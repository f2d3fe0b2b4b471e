// Whole designs as JSON text. docs/design-json.md describes the format.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "orin/orin.h"

namespace Quill::Interchange {

// Why a text is no design.
struct DesignJsonFault {
    std::string pointer;  // JSON pointer of the value at fault; empty for the document as a whole
    std::string reason;

    // "POINTER: reason", or the reason alone for the document as a whole. It may quote the text and so hold any
    // characters.
    std::string Message() const;
};

// Writes the design that the snapshot holds, to be called `name`; `text` is replaced on success and untouched on
// failure. Equal designs give equal texts. While it runs nobody else should edit the snapshot (a lock or a transaction
// sees to that); a design that changes meanwhile gives a text of no one state, or ObjectNotFound.
Orin::Result WriteDesignJson(const Orin::ContainerT<const Orin::ISnapshot>& snapshot, const Orin::String& name,
                             std::string& text);

// Reads a design into a snapshot of the embedded database, which holds none yet, and gives its name. All happens in one
// transaction of the snapshot's client: on a fault, the snapshot and `name` are as before. Nothing is thrown.
[[nodiscard]] std::optional<DesignJsonFault> ReadDesignJson(std::string_view text,
                                                            const Orin::ContainerT<const Orin::ISnapshot>& snapshot,
                                                            Orin::String& name);

}  // namespace Quill::Interchange
