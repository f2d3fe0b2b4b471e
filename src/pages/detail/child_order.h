// The order suppliers by the numbers under which callers choose them.
#pragma once

#include <memory>

#include "pages/composite_order_supplier.h"
#include "pages/page_traverser.h"

namespace Quill::detail {

// `objects` must outlive the supplier.
std::unique_ptr<CompositeOrderSupplier> MakeChildOrder(ECompAlgorithm algorithm, PageObjects& objects);

}  // namespace Quill::detail
