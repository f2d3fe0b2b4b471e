#include "attributes/utils_exception.h"

#include <cstddef>
#include <iterator>
#include <string_view>
#include <utility>

#include "attributes/detail/mutex_steps.h"
#include "text/number.h"

namespace OrinUtils {

namespace {

struct CodeTexts {
    std::string_view name;
    std::string_view description;
};

// One row a code, at the code's own place.
constexpr CodeTexts Texts[] = {
    {"NoError", "No error"},
    {"Unknown", "Unknown error"},
    {"NoMemory", "No memory available"},
    {"NoMutex", "No mutex available"},
    {"MutexLockFailed", "Could not lock mutex"},
    {"MutexOperationFailed", "Mutex operation failed"},
    {"NoSemaphore", "No semaphore available"},
    {"SemaphoreWaitFailed", "Could not wait for semaphore"},
    {"SemaphorePostFailed", "Could not post semaphore"},
    {"SemaphoreOperationFailed", "Semaphore operation failed"},
    {"NoThread", "No thread available"},
    {"ThreadWaitFailed", "Could not wait for thread finish"},
};
static_assert(std::size(Texts) == static_cast<std::size_t>(UtilsException::ECode::ThreadWaitFailed) + 1);

constexpr CodeTexts InvalidTexts = {"INVALID", "INVALID"};

const CodeTexts& TextsOf(UtilsException::ECode error) noexcept {
    const auto position = static_cast<std::uint32_t>(error);  // a negative code lies beyond the table, too
    return position < std::size(Texts) ? Texts[position] : InvalidTexts;
}

}  // namespace

UtilsException::UtilsException(ECode error) : m_error(error) {}
UtilsException::UtilsException(ECode error, const std::string& message) : m_error(error), m_message(message) {}
UtilsException::UtilsException(const UtilsException& other) = default;
UtilsException& UtilsException::operator=(const UtilsException& other) = default;
UtilsException::~UtilsException() = default;

UtilsException::ECode UtilsException::GetError() const {
    return m_error;
}

std::string UtilsException::GetErrorText() const {
    return std::string(TextsOf(m_error).description);
}

const std::string& UtilsException::GetMessage() const {
    return m_message;
}

std::string UtilsException::GetDescription() const {
    return GetErrorText() + " (" + GetMessage() + ")";
}

std::string UtilsException::ToString() const {
    std::string text = "Utils Exception: Error[";
    Quill::Text::AppendNumber(text, static_cast<std::int32_t>(m_error));
    text += ',';
    text += TextsOf(m_error).name;
    text += "] Message[";
    text += GetMessage();
    text += ']';
    return text;
}

Mutex::Mutex() : m_mutex(Detail::CreateMutex<Detail::SystemMutexPort>()) {}

Mutex::~Mutex() {
    Destroy();
}

// The analysis knows this object as the capability and sees nothing of the system's mutex inside.
void Mutex::Lock() QUILL_NO_THREAD_SAFETY_ANALYSIS {
    Detail::LockMutex<Detail::SystemMutexPort>(m_mutex);
}

void Mutex::Unlock() QUILL_NO_THREAD_SAFETY_ANALYSIS {
    if (m_mutex != nullptr) static_cast<void>(Quill::Platform::UnlockMutex(*m_mutex));
}

void Mutex::Destroy() noexcept {
    Quill::Platform::NativeMutex* const mutex = std::exchange(m_mutex, nullptr);
    if (mutex == nullptr) return;
    Quill::Platform::DestroyMutex(*mutex);
    Quill::Platform::FreeMutex(mutex);
}

// Whether the mutex is held depends on the flag, which the analysis cannot follow.
ScopedLock::ScopedLock(Mutex* mutex) QUILL_NO_THREAD_SAFETY_ANALYSIS : m_mutex(mutex) {
    if (m_mutex == nullptr) return;
    m_mutex->Lock();
    m_locked = true;
}

ScopedLock::~ScopedLock() QUILL_NO_THREAD_SAFETY_ANALYSIS {
    release();
}

void ScopedLock::release() QUILL_NO_THREAD_SAFETY_ANALYSIS {
    if (m_locked) m_mutex->Unlock();
    m_locked = false;
    m_mutex = nullptr;
}

}  // namespace OrinUtils
