// In which order a page's hierarchical components are descended into: one interface, five rules.
#pragma once

#include <vector>

#include "orin/design_objects.h"
#include "orin/handles.h"
#include "pages/page_id.h"
#include "quillutils_export.h"

namespace Quill {

class PageObjects;

// A hierarchical component is one of that type whose child block exists; suppliers take no others from a page. What
// the database does not tell counts as absent; suppliers throw nothing but for want of memory.
//
// The concrete suppliers borrow the page objects, which must outlive them. One thread at a time. With `ascending` false
// the whole of `order` is reversed in the end, what it held before included.
class QUILLUTILS_EXPORT CompositeOrderSupplier {
public:
    // Appends the indexes of the page's hierarchical components, in the order in which they are to be visited. `block`
    // owns the page. False when the supplier declines: another supplier is to be asked with the same `order`, which
    // keeps what this one appended.
    virtual bool supplyOrder(const Orin::ContainerT<const Orin::IBlock>& block, const PageID& page,
                             std::vector<Orin::Index>& order) = 0;
    virtual ~CompositeOrderSupplier();

protected:
    CompositeOrderSupplier() = default;
    CompositeOrderSupplier(const CompositeOrderSupplier&) = default;
    CompositeOrderSupplier& operator=(const CompositeOrderSupplier&) = default;
};

// The order of the page's object list. Never declines.
class QUILLUTILS_EXPORT DefaultOrderSupplier : public CompositeOrderSupplier {
public:
    explicit DefaultOrderSupplier(PageObjects& objects) : m_objects(&objects) {}
    bool supplyOrder(const Orin::ContainerT<const Orin::IBlock>& block, const PageID& page,
                     std::vector<Orin::Index>& order) override;

private:
    PageObjects* m_objects;
};

// Sorted by label, byte by byte. Of components with one label only the last in list order is visited: the page numbers
// of existing designs rely on it. Never declines.
class QUILLUTILS_EXPORT NameOrderSupplier : public CompositeOrderSupplier {
public:
    NameOrderSupplier(PageObjects& objects, bool ascending) : m_ascending(ascending), m_objects(&objects) {}
    bool supplyOrder(const Orin::ContainerT<const Orin::IBlock>& block, const PageID& page,
                     std::vector<Orin::Index>& order) override;

private:
    bool m_ascending;
    PageObjects* m_objects;
};

// The same by the components' names.
class QUILLUTILS_EXPORT SymbolOrderSupplier : public CompositeOrderSupplier {
public:
    SymbolOrderSupplier(PageObjects& objects, bool ascending) : m_ascending(ascending), m_objects(&objects) {}
    bool supplyOrder(const Orin::ContainerT<const Orin::IBlock>& block, const PageID& page,
                     std::vector<Orin::Index>& order) override;

private:
    bool m_ascending;
    PageObjects* m_objects;
};

// Sorted by reference designator ("REFDES", in older designs "Ref Designator") as the component bears it at the page's
// place: what stands before the trailing digits byte by byte, then the digits as a number, so that "R2" is before
// "R10" and "R01" equals "R1". Nothing is dropped: components without a designator, and those whose designator equals
// that of an earlier one, stand in front of the sorted ones, in list order. Declines when `order` stays empty.
class QUILLUTILS_EXPORT RefDefOrderSupplier : public CompositeOrderSupplier {
public:
    RefDefOrderSupplier(PageObjects& objects, bool ascending) : m_ascending(ascending), m_objects(&objects) {}
    bool supplyOrder(const Orin::ContainerT<const Orin::IBlock>& block, const PageID& page,
                     std::vector<Orin::Index>& order) override;

private:
    bool m_ascending;
    PageObjects* m_objects;
};

// The order that the sheet's attribute "$$Internal_COMPS_ORDER" stores: component indexes in decimal, each in a field
// of 20 characters; what follows the last whole field is no field. They are given as they are, whatever the page holds.
// Declines when there is no such attribute and at the first field that is no number. A text without a whole field is an
// empty order, so that nothing is visited.
class QUILLUTILS_EXPORT CustomOrderSupplier : public CompositeOrderSupplier {
public:
    CustomOrderSupplier(PageObjects& objects, bool ascending) : m_objects(&objects), m_ascending(ascending) {}
    bool supplyOrder(const Orin::ContainerT<const Orin::IBlock>& block, const PageID& page,
                     std::vector<Orin::Index>& order) override;

private:
    PageObjects* m_objects;
    bool m_ascending;
};

}  // namespace Quill
