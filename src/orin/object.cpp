#include "orin/object.h"

#include "orin/views.h"

namespace Orin {

Counted::~Counted() = default;

IObject::~IObject() = default;

bool IObject::TryAddReference() const noexcept {
    std::uint32_t count = m_references.load(std::memory_order_relaxed);
    while (count != 0)
        if (m_references.compare_exchange_weak(count, count + 1, std::memory_order_relaxed)) return true;
    return false;
}

Result IBlockViewQuill::Init(ContainerT<const IBlockViewQuill>& view, const IBlock& block, const IGroup& group) {
    return block.OpenView(view, group);
}

Result ICompViewQuill::Init(ContainerT<const ICompViewQuill>& view, const IComp& comp) {
    return comp.OpenView(view);
}

}  // namespace Orin
