#include "properties/reuse_block.h"

#include "properties/stored_attribute.h"
#include "text/ascii.h"

namespace Quill::Utils {

namespace {

constexpr const char* ReuseKey = "ReuseBlock";
constexpr const char* DynamicKey = "DynamicReuse";
constexpr const char* Set = "TRUE";
constexpr Orin::EAttributeType CompFamily = Orin::EAttributeType::System;

// Unlike the block's, a component's mark is written whether or not it stands there already.
void WriteMark(const Orin::MutableContainerT<Orin::IComp>& comp, const char* key, bool on, const char* value) {
    if (!comp) return;
    const Orin::String name = CPropertyMangler::Mangle(key, DataModel::PropertyType::Internal);
    static_cast<void>(on ? comp->SetAttribute(name, value, CompFamily) : comp->RemoveAttribute(name, CompFamily));
}

}  // namespace

bool ReuseBlock::IsReuseBlock(const Orin::IComp& comp) {
    Orin::String value;
    return ReadInternal(comp, ReuseKey, BareKey::Ignored, value, CompFamily) && Text::EqualNoCase(value.View(), Set);
}

void ReuseBlock::SetIsReuseBlock(Orin::MutableContainerT<Orin::IComp>& comp, bool on) {
    WriteMark(comp, ReuseKey, on, Set);
}

bool ReuseBlock::IsDynamicReuse(const Orin::IComp& comp, std::string& value) {
    value.clear();
    Orin::String text;
    if (!ReadInternal(comp, DynamicKey, BareKey::Ignored, text, CompFamily)) return false;
    value = text.View();
    return true;
}

bool ReuseBlock::IsDynamicReuse(const Orin::IComp& comp) {
    std::string value;
    return IsDynamicReuse(comp, value);
}

void ReuseBlock::SetIsDynamicReuse(Orin::MutableContainerT<Orin::IComp>& comp, bool on, const std::string& value) {
    WriteMark(comp, DynamicKey, on, value.c_str());
}

bool ReuseBlock::IsReuseBlock(const Orin::IBlock& block) {
    Orin::String value;
    return ReadInternal(block, ReuseKey, BareKey::Accepted, value) && Text::EqualNoCase(value.View(), Set);
}

void ReuseBlock::SetIsReuseBlock(Orin::MutableContainerT<Orin::IBlock>& block, bool on) {
    if (!block) return;
    if (on)
        static_cast<void>(StoreInternal(block, ReuseKey, Set));
    else
        static_cast<void>(
            block->RemoveAttribute(CPropertyMangler::Mangle(ReuseKey, DataModel::PropertyType::Internal)));
}

bool ReuseBlock::IsTopLevelReuseBlock(const Orin::Index& block,
                                      const Orin::ContainerT<const Orin::ISnapshot>& snapshot) {
    Orin::IteratorT<const Orin::IComp> comp;
    if (!snapshot || !snapshot->GetIterComps(comp, Orin::ECompType::Hierarchical)) return false;
    for (; comp; ++comp) {
        Orin::ContainerT<const Orin::IBlock> child;
        Orin::Index index;
        if (comp->GetChildBlock(child) && child->GetIndex(index) && index == block.Value()) return true;
    }
    return false;
}

}  // namespace Quill::Utils
