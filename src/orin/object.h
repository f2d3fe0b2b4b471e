// The common base of everything that the database hands out, and the counted pointer that holds it.
#pragma once

#include <atomic>
#include <cstdint>
#include <utility>

#include "orin/export.h"
#include "orin/index.h"
#include "orin/result.h"
#include "orin/string.h"

namespace Orin {

template <class T>
class LockerT;

// Holds one reference to an object that counts its references itself (AddReference, DropReference).
template <class T>
class RefPtr {
public:
    constexpr RefPtr() noexcept = default;
    explicit RefPtr(T* object) noexcept : m_object(object) {
        if (m_object != nullptr) m_object->AddReference();
    }
    RefPtr(const RefPtr& other) noexcept : RefPtr(other.m_object) {}
    RefPtr(RefPtr&& other) noexcept : m_object(std::exchange(other.m_object, nullptr)) {}
    template <class U>
    RefPtr(RefPtr<U> other) noexcept : m_object(other.Detach()) {}
    RefPtr& operator=(RefPtr other) noexcept {
        std::swap(m_object, other.m_object);
        return *this;
    }
    ~RefPtr() {
        if (m_object != nullptr) m_object->DropReference();
    }

    // Takes over a reference that the caller holds.
    static RefPtr Adopt(T* object) noexcept {
        RefPtr result;
        result.m_object = object;
        return result;
    }
    // Gives the reference to the caller.
    T* Detach() noexcept { return std::exchange(m_object, nullptr); }
    void Reset() noexcept { *this = RefPtr(); }

    T* Get() const noexcept { return m_object; }
    T* operator->() const noexcept { return m_object; }
    T& operator*() const noexcept { return *m_object; }
    explicit operator bool() const noexcept { return m_object != nullptr; }

private:
    T* m_object = nullptr;
};

// The reference count of an object, from any thread. What happens when the last reference goes is the object's affair.
class ORINPI_EXPORT Counted {
public:
    void AddReference() const noexcept { m_references.fetch_add(1, std::memory_order_relaxed); }
    void DropReference() const noexcept {
        if (m_references.fetch_sub(1, std::memory_order_acq_rel) == 1) OnUnreferenced();
    }
    // Adds a reference unless the last one is gone already; for tables that hold objects weakly.
    bool TryAddReference() const noexcept {
        std::uint32_t count = m_references.load(std::memory_order_relaxed);
        while (count != 0)
            if (m_references.compare_exchange_weak(count, count + 1, std::memory_order_relaxed)) return true;
        return false;
    }

    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;

protected:
    Counted() noexcept = default;
    virtual ~Counted();
    virtual void OnUnreferenced() const noexcept { delete this; }

private:
    mutable std::atomic<std::uint32_t> m_references{0};
};

// What a client holds while it has write access: dropping the last reference gives the access up.
class ORINPI_EXPORT LockToken : public Counted {};

struct ObjectAccess;  // the database's own way to an object's identity

// What a lock covers.
enum class ELockScope {
    Whole,    // the object and its contents; of a group: its attributes, members and view records
    Shallow,  // the object's own attributes
};

// An object of the design as one client sees it. Objects are reached through handles (orin/handles.h) and belong to the
// database; a handle keeps the object's face usable, not its existence in the design, which IsValid tells.
// Every query that fails leaves its outputs untouched. Any thread may call.
class ORINPI_EXPORT IObject {
protected:
    virtual ~IObject();

public:
    // The name: of a group the sheet's name, of a block or component its own. NoValue for objects that have none.
    virtual Result GetName(String& name) const = 0;
    virtual Result GetIndex(Index& index) const = 0;
    // Succeeds as long as the object exists in the design; ObjectNotFound after it was deleted.
    virtual Result IsValid() const = 0;

    void AddReference() const noexcept { m_references.fetch_add(1, std::memory_order_relaxed); }
    void DropReference() const noexcept {
        if (m_references.fetch_sub(1, std::memory_order_acq_rel) == 1) OnUnreferenced();
    }
    bool TryAddReference() const noexcept;

    IObject(const IObject&) = delete;
    IObject& operator=(const IObject&) = delete;

protected:
    IObject() noexcept = default;

private:
    template <class T>
    friend class LockerT;
    friend struct ObjectAccess;

    // What GetIndex gives, for the database's own use.
    virtual Index Identity() const noexcept = 0;
    // Write access for this object's client; `token` is filled on success only. AccessDenied when another client
    // holds the object, what contains it, or (for Whole) something inside it.
    virtual Result AcquireLock(ELockScope scope, RefPtr<LockToken>& token) const = 0;
    virtual void OnUnreferenced() const noexcept = 0;

    mutable std::atomic<std::uint32_t> m_references{0};
};

}  // namespace Orin
