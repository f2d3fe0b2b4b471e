#include "pages/page_number_supplier.h"

namespace Quill {

PageNumberSupplier::~PageNumberSupplier() = default;

void OrdinalNumberSupplier::reset() {
    next = 1;
}

void StringBaseNumberSupplier::reset() {}

}  // namespace Quill
