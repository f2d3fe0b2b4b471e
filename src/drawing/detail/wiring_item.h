// Nets and buses as they are drawn.
#pragma once

#include "drawing/picture.h"
#include "orin/orin.h"

namespace Quill::Drawing::detail {

// Without shapes where the view does not draw them. Throw the failed Orin::Result.
Item NetItem(const Orin::IBlockViewQuill& view, const Orin::INet& net);
Item BusItem(const Orin::IBlockViewQuill& view, const Orin::IBus& bus);

}  // namespace Quill::Drawing::detail
