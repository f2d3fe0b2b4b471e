// Marks of reuse blocks: prepared design content that is placed as a whole.
#pragma once

#include <string>

#include "orin/design_objects.h"
#include "orin/snapshot.h"
#include "quillutils_export.h"

namespace Quill::Utils {

// Static operations only. Nothing throws: what cannot be read counts as not marked, and a write that the database
// refuses is passed over. Marks are internal properties; a component keeps them among its system attributes.
class QUILLUTILS_EXPORT ReuseBlock {
public:
    // Whether the mark reads "TRUE", in any letter case.
    static bool IsReuseBlock(const Orin::IComp& comp);
    // Sets the mark to "TRUE" or removes it.
    static void SetIsReuseBlock(Orin::MutableContainerT<Orin::IComp>& comp, bool on);

    // Whether there is the mark of dynamic reuse, with whatever text; `value` becomes its text, "" when there is none.
    static bool IsDynamicReuse(const Orin::IComp& comp, std::string& value);
    static bool IsDynamicReuse(const Orin::IComp& comp);
    // Sets the mark with its text, or removes it.
    static void SetIsDynamicReuse(Orin::MutableContainerT<Orin::IComp>& comp, bool on, const std::string& value);

    // As for a component. When the mark is not there, that of older designs counts: the same key unmangled.
    static bool IsReuseBlock(const Orin::IBlock& block);
    // Sets the mark to "TRUE", without a write when it reads exactly so, or removes it. The mark of older designs is
    // never touched, so a block that bears it stays a reuse block when this one is removed.
    static void SetIsReuseBlock(Orin::MutableContainerT<Orin::IBlock>& block, bool on);

    // Whether a hierarchical component at the top of the design stands for the block. Marks play no part.
    static bool IsTopLevelReuseBlock(const Orin::Index& block, const Orin::ContainerT<const Orin::ISnapshot>& snapshot);
};

}  // namespace Quill::Utils
