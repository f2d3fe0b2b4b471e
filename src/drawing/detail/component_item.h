// Components as they are drawn.
#pragma once

#include "drawing/sheet_picture.h"

namespace Quill::Drawing::detail {

// The component `comp` of the block at `place`, as drawn on `view`. `pointer` may be null. Without shapes where the
// view does not draw it. Throws the failed Orin::Result.
Item ComponentItem(const Orin::IPath& place, const Orin::IBlockViewQuill& view, const Orin::IComp& comp,
                   SymbolCatalogue& symbols, const Pointer* pointer);

}  // namespace Quill::Drawing::detail
