// State of the process that outlives every static object.
#pragma once

#include <new>
#include <utility>

namespace Quill::Platform {

// Holds a T that is never destroyed, so that static destructors of any translation unit may still use it. Meant for a
// static local variable, which is built by its first user: static initialisers of any translation unit may use it too.
template <class T>
class Immortal {
public:
    template <class... Args>
    explicit Immortal(Args&&... args) {
        ::new (static_cast<void*>(m_storage)) T(std::forward<Args>(args)...);
    }

    T& Get() noexcept { return *std::launder(reinterpret_cast<T*>(m_storage)); }

    Immortal(const Immortal&) = delete;
    Immortal& operator=(const Immortal&) = delete;

private:
    alignas(T) unsigned char m_storage[sizeof(T)];
};

}  // namespace Quill::Platform
