// The library's own data in the design: internal attributes of database objects, read and written by one rule.
#pragma once

#include "orin/handles.h"
#include "properties/property_mangler.h"

namespace Quill::Utils {

// Designs written before names were mangled carry some keys bare.
enum class BareKey { Ignored, Accepted };

// Reads what is stored under the mangled `key`; only if that cannot be read and bare keys are accepted, what is stored
// under `key` itself. True with `value` replaced when the attribute exists; otherwise, for whatever reason, false with
// `value` as it was. `family` is the attribute type of a component, nothing for other objects.
template <class Object, class... Family>
bool ReadInternal(const Object& object, const char* key, BareKey bareKey, Orin::String& value, Family... family) {
    const Orin::String mangled = CPropertyMangler::Mangle(key, DataModel::PropertyType::Internal);
    if (object.GetAttribute(mangled, value, family...)) return true;
    return bareKey == BareKey::Accepted && object.GetAttribute(key, value, family...);
}

// Stores `value` under the mangled `key`, unless exactly that stands there already: then nothing is written. A bare key
// stays as it is. The result is that of the write, or success when none was needed.
template <class Object, class... Family>
Orin::Result StoreInternal(const Orin::MutableContainerT<Object>& object, const char* key, const Orin::String& value,
                           Family... family) {
    if (!object) return object.IsValid();
    const Orin::String mangled = CPropertyMangler::Mangle(key, DataModel::PropertyType::Internal);
    Orin::String current;
    if (object->GetAttribute(mangled, current, family...) && current == value) return {};
    return object->SetAttribute(mangled, value, family...);
}

}  // namespace Quill::Utils
