// A function that the application may put in place of the library's own behaviour.
#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "platform/annotated_mutex.h"

namespace Quill::Platform {

// Holds one std::function, empty at first. Any thread may exchange it while others call what they got: a call under way
// keeps its function alive, and no lock is held during the call.
template <class Function>
class Hook {
public:
    void Set(Function function) {
        auto fresh = function ? std::make_shared<const Function>(std::move(function)) : nullptr;
        {
            const MutexLock lock(m_mutex);
            m_function.swap(fresh);
        }
        // The earlier function dies here, outside the lock: its destructor may be the application's code.
    }

    // Null when none is installed.
    std::shared_ptr<const Function> Get() const {
        const MutexLock lock(m_mutex);
        return m_function;
    }

private:
    mutable Mutex m_mutex;
    std::shared_ptr<const Function> m_function QUILL_GUARDED_BY(m_mutex);
};

}  // namespace Quill::Platform
