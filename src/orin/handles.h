// Handles: how the objects of a design are held, locked and iterated.
#pragma once

#include <type_traits>
#include <utility>

#include "orin/object.h"

namespace Orin {

// A read-only handle, one pointer wide. Copying it allocates nothing and looks nothing up; the object's face stays
// usable while a handle names it, and IsValid tells whether the object still exists in the design. One handle is used
// by one thread at a time, as all classes of this file; copies of it may be used by others.
template <class T>
class ContainerT {
    static_assert(std::is_const_v<T>, "a handle that can write is a MutableContainerT");

public:
    ContainerT() noexcept = default;
    ContainerT(T& object) noexcept : m_object(&object) {}
    explicit ContainerT(RefPtr<T> object) noexcept : m_object(std::move(object)) {}
    template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*> && !std::is_same_v<U, T>>>
    ContainerT(const ContainerT<U>& other) noexcept : m_object(other.Get()) {}

    // Of a handle that is not empty.
    T* operator->() const noexcept { return m_object.Get(); }
    T& operator*() const noexcept { return *m_object; }

    T* Get() const noexcept { return m_object.Get(); }
    explicit operator bool() const noexcept { return static_cast<bool>(m_object); }

    // Succeeds when the handle names an object that exists; ObjectNotFound for an empty handle.
    Result IsValid() const { return m_object ? m_object->IsValid() : Result(EErrorCode::ObjectNotFound); }

    // Empties the handle.
    Result Release() noexcept {
        m_object.Reset();
        return {};
    }

private:
    RefPtr<T> m_object;
};

// A write handle. It is filled by LockerT alone; copies share one write access, which is given up when the last of
// them is released, refilled or destroyed.
template <class T>
class MutableContainerT {
    static_assert(!std::is_const_v<T>, "a handle that only reads is a ContainerT");

public:
    MutableContainerT() noexcept = default;

    // Of a handle that is not empty.
    T* operator->() const noexcept { return m_object.Get(); }
    T& operator*() const noexcept { return *m_object; }

    T* Get() const noexcept { return m_object.Get(); }
    explicit operator bool() const noexcept { return static_cast<bool>(m_object); }
    operator ContainerT<const T>() const noexcept {
        return m_object ? ContainerT<const T>(*m_object) : ContainerT<const T>();
    }

    Result IsValid() const { return m_object ? m_object->IsValid() : Result(EErrorCode::ObjectNotFound); }

    // Empties the handle and gives up its share of the write access.
    Result Release() noexcept {
        m_object.Reset();
        m_token.Reset();
        return {};
    }

private:
    friend class LockerT<T>;

    RefPtr<T> m_object;
    RefPtr<LockToken> m_token;
};

class ISnapshot;
class IBlock;
class IComp;
class IGroup;
class IBus;
class IBlockViewQuill;
class ICompViewQuill;

// Acquires write access. One client may lock an object again that it holds; the access lasts until its last handle is
// gone. AccessDenied (201), with `to` untouched, when another client holds the object; ObjectNotFound for an empty or
// dead handle. A success gives up what `to` held before.
template <class T>
class LockerT {
    static_assert(std::is_same_v<T, ISnapshot> || std::is_same_v<T, IBlock> || std::is_same_v<T, IComp> ||
                      std::is_same_v<T, IGroup> || std::is_same_v<T, IBus> || std::is_same_v<T, IBlockViewQuill> ||
                      std::is_same_v<T, ICompViewQuill>,
                  "objects of this class are locked through what contains them");

public:
    // The object and its contents.
    static Result Lock(const ContainerT<const T>& from, MutableContainerT<T>& to) {
        return Acquire(from, ELockScope::Whole, to);
    }

    // The object's own attributes.
    static Result ShallowLock(const ContainerT<const T>& from,
                              MutableContainerT<T>& to) requires(std::is_same_v<T, IComp> ||
                                                                 std::is_same_v<T, IGroup>) {
        return Acquire(from, ELockScope::Shallow, to);
    }

private:
    static Result Acquire(const ContainerT<const T>& from, ELockScope scope, MutableContainerT<T>& to) {
        if (!from) return EErrorCode::ObjectNotFound;
        RefPtr<LockToken> token;
        const IObject& object = *from;
        Result result = object.AcquireLock(scope, token);
        if (result) {
            // The face is shared by readers and writers; the token is what makes this handle a writer's.
            to.m_object = RefPtr<T>(const_cast<T*>(from.Get()));
            to.m_token = std::move(token);
        }
        return result;
    }
};

// Where an iteration takes its objects from; implemented by the database.
class ORINPI_EXPORT IterationSource : public Counted {
public:
    // The next object that exists, or null at the end. Objects that are deleted while the iteration runs are passed
    // over; whether it yields those that are added meanwhile is open. Throws std::bad_alloc without moving on.
    virtual RefPtr<const IObject> Next() = 0;
    // The number of objects of the whole iteration, as things stand now.
    virtual Result GetCount(int& count) const = 0;
    // A source that goes on independently from the same place.
    virtual RefPtr<IterationSource> Clone() const = 0;
};

// An iteration, filled by a GetIter... operation; itself a handle to its current element. A default-made one is at its
// end. The element may be deleted while the iteration stands on it; advancing then works as always. Advancing and
// copying throw std::bad_alloc for want of memory.
//
//     IteratorT<const INet> net;
//     for (Result found = block->GetIterNets(net); found && net; ++net) ...
template <class T>
class IteratorT : public ContainerT<T> {
public:
    IteratorT() noexcept = default;
    explicit IteratorT(RefPtr<IterationSource> source) : m_source(std::move(source)) { ++*this; }
    IteratorT(const IteratorT& other)
        : ContainerT<T>(other), m_source(other.m_source ? other.m_source->Clone() : RefPtr<IterationSource>()) {}
    IteratorT(IteratorT&&) noexcept = default;
    IteratorT& operator=(IteratorT other) noexcept {
        ContainerT<T>::operator=(other);
        m_source = std::move(other.m_source);
        return *this;
    }
    ~IteratorT() = default;

    // Moves to the next element; at the end, and beyond it, the iteration is empty. Where memory for the next element
    // is wanting, std::bad_alloc is thrown and the iteration stands where it stood: an iteration that ended early would
    // pass for a whole one.
    IteratorT& operator++() {
        RefPtr<const IObject> next;
        if (m_source) next = m_source->Next();
        ContainerT<T>::operator=(ContainerT<T>(RefPtr<T>::Adopt(static_cast<T*>(next.Detach()))));
        return *this;
    }

    // Succeeds while an element is current.
    Result IsValid() const { return *this ? Result() : Result(EErrorCode::ObjectNotFound); }
    using ContainerT<T>::operator bool;

    // The number of elements of the whole iteration; 0 for a default-made one.
    Result GetCount(int& count) const {
        if (m_source) return m_source->GetCount(count);
        count = 0;
        return {};
    }

private:
    RefPtr<IterationSource> m_source;
};

}  // namespace Orin
