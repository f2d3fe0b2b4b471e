// The index of an object that may be missing.
#pragma once

#include "orin/handles.h"
#include "orin/index.h"

namespace Quill::Utils {

// Empty for an empty handle, and when the database does not tell.
template <class T>
Orin::Index IndexOf(const Orin::ContainerT<T>& object) {
    Orin::Index index;
    if (object) static_cast<void>(object->GetIndex(index));
    return index;
}

}  // namespace Quill::Utils
