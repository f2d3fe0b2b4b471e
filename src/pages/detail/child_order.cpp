#include "pages/detail/child_order.h"

namespace Quill::detail {

namespace {

template <class Supplier>
std::unique_ptr<CompositeOrderSupplier> Make(PageObjects& objects, bool ascending) {
    return std::make_unique<Supplier>(objects, ascending);
}

struct ChildOrder {
    ECompAlgorithm algorithm;
    std::unique_ptr<CompositeOrderSupplier> (*make)(PageObjects& objects, bool ascending);
    bool ascending;
};

// Those that are not listed descend in database order.
constexpr ChildOrder ChildOrders[] = {
    {ECompAlgorithm::Custom, Make<CustomOrderSupplier>, true},
    {ECompAlgorithm::Name, Make<NameOrderSupplier>, true},
    {ECompAlgorithm::Symbol, Make<SymbolOrderSupplier>, true},
    {ECompAlgorithm::Label, Make<NameOrderSupplier>, true},
    {ECompAlgorithm::RefDes, Make<RefDefOrderSupplier>, true},
    {ECompAlgorithm::CustomDescending, Make<CustomOrderSupplier>, false},
    {ECompAlgorithm::NameDescending, Make<NameOrderSupplier>, false},
    {ECompAlgorithm::SymbolDescending, Make<SymbolOrderSupplier>, false},
    {ECompAlgorithm::LabelDescending, Make<NameOrderSupplier>, false},
    {ECompAlgorithm::RefDesDescending, Make<RefDefOrderSupplier>, false},
};

}  // namespace

std::unique_ptr<CompositeOrderSupplier> MakeChildOrder(ECompAlgorithm algorithm, PageObjects& objects) {
    for (const ChildOrder& order : ChildOrders)
        if (order.algorithm == algorithm) return order.make(objects, order.ascending);
    return std::make_unique<DefaultOrderSupplier>(objects);
}

}  // namespace Quill::detail
