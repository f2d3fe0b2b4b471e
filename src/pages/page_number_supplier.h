// The state that goes along with each page as it is handed to a page holder: what the page is numbered by.
#pragma once

#include <string>

#include "quillutils_export.h"

namespace Quill {

// Advanced by the walk from page to page. One thread at a time, as all of this file.
class QUILLUTILS_EXPORT PageNumberSupplier {
public:
    virtual ~PageNumberSupplier();

    // Makes ready for a new walk.
    virtual void reset() = 0;

protected:
    PageNumberSupplier() = default;
    PageNumberSupplier(const PageNumberSupplier&) = default;
    PageNumberSupplier& operator=(const PageNumberSupplier&) = default;
};

// A running number.
class QUILLUTILS_EXPORT OrdinalNumberSupplier : public PageNumberSupplier {
public:
    explicit OrdinalNumberSupplier(unsigned first) : next(first) {}
    void reset() override;  // to 1, whatever the first number was

    unsigned next;
};

// The print order of the page that is added next; assigned before each page.
class QUILLUTILS_EXPORT StringBaseNumberSupplier : public PageNumberSupplier {
public:
    void reset() override;  // does nothing

    std::string base;
};

}  // namespace Quill
