#include "orin/handles.h"

#include <deque>

#include <gtest/gtest.h>

#include "orin/orin.h"

namespace {

using Orin::EErrorCode;
using Orin::Result;

// A group that is its index alone. Counts its write accesses and notices when nobody holds it.
class Group final : public Orin::IGroup {
public:
    explicit Group(std::uint64_t index) : m_index(index) {}

    mutable int locks = 0;
    bool refuse = false;
    mutable bool let = false;  // the last handle is gone

    Result GetIndex(Orin::Index& index) const override {
        index = m_index;
        return {};
    }
    Result GetName(Orin::String&) const override { return EErrorCode::NoValue; }
    Result IsValid() const override { return {}; }
    Result GetAttribute(const Orin::String&, Orin::String&) const override { return EErrorCode::AttributeNotFound; }
    Result SetAttribute(const Orin::String&, const Orin::String&) override { return {}; }
    Result RemoveAttribute(const Orin::String&) override { return {}; }
    Result GetAttributes(Orin::ListAttribute&) const override { return {}; }
    Result GetListObjects(Orin::ListT<Orin::Index>&) const override { return {}; }
    Result GetOwner(Orin::Index&) const override { return EErrorCode::NoValue; }
    Result GetType(Orin::EGroupType&) const override { return {}; }
    Result SetName(const Orin::String&) override { return {}; }

private:
    struct Token final : Orin::LockToken {
        explicit Token(int& locks) : m_locks(locks) { ++m_locks; }
        ~Token() override { --m_locks; }
        int& m_locks;
    };

    Result AcquireLock(Orin::ELockScope, Orin::RefPtr<Orin::LockToken>& token) const override {
        if (refuse) return EErrorCode::AccessDenied;
        token = Orin::RefPtr<Orin::LockToken>(new Token(locks));
        return {};
    }
    void OnUnreferenced() const noexcept override { let = true; }

    Orin::Index m_index;
};

using Handle = Orin::ContainerT<const Orin::IGroup>;
using WriteHandle = Orin::MutableContainerT<Orin::IGroup>;
using Locker = Orin::LockerT<Orin::IGroup>;

TEST(Handles, KeepTheFaceUntilTheLastOneGoes) {
    Group group(7);
    {
        Handle first(group);
        Handle copy = first;
        EXPECT_TRUE(first.Release() && !first);
        EXPECT_FALSE(group.let);
        EXPECT_EQ(&*copy, &group);
        first = std::move(copy);
        EXPECT_FALSE(group.let);
    }
    EXPECT_TRUE(group.let);
}

TEST(Handles, CopiesShareOneWriteAccess) {
    Group group(7);
    const Handle handle(group);
    WriteHandle first;
    ASSERT_TRUE(Locker::Lock(handle, first));
    WriteHandle copy = first;
    EXPECT_EQ(group.locks, 1);
    first.Release();
    EXPECT_EQ(group.locks, 1) << "the copy still writes";
    EXPECT_EQ(Handle(copy).Get(), &group);
    copy = WriteHandle();
    EXPECT_EQ(group.locks, 0);

    ASSERT_TRUE(Locker::ShallowLock(handle, first));
    ASSERT_TRUE(Locker::Lock(handle, first));
    EXPECT_EQ(group.locks, 1) << "refilling gives up what was held";
}

TEST(Handles, ALockThatFailsLeavesTheWriteHandleAsItWas) {
    Group held(7), refused(8);
    refused.refuse = true;
    WriteHandle writable;
    ASSERT_TRUE(Locker::Lock(Handle(held), writable));
    EXPECT_EQ(Locker::Lock(Handle(refused), writable).GetErrorCode(), 201);
    EXPECT_EQ(Locker::Lock(Handle(), writable).GetErrorCode(), 200);
    EXPECT_EQ(writable.Get(), &held);
    EXPECT_EQ(held.locks, 1);
}

// Yields the groups of a list, front to back.
class Source final : public Orin::IterationSource {
public:
    explicit Source(std::deque<Group*> groups) : m_groups(std::move(groups)) {}

    Orin::RefPtr<const Orin::IObject> Next() override {
        if (m_groups.empty()) return {};
        const Orin::RefPtr<const Orin::IObject> next(m_groups.front());
        m_groups.pop_front();
        return next;
    }
    Result GetCount(int& count) const override {
        count = 2;
        return {};
    }
    Orin::RefPtr<IterationSource> Clone() const override { return Orin::RefPtr<IterationSource>(new Source(m_groups)); }

private:
    std::deque<Group*> m_groups;
};

TEST(Iterator, IsAHandleToItsElementAndItsCopiesGoTheirOwnWay) {
    Group first(1), second(2);
    Orin::IteratorT<const Orin::IGroup> iterator(Orin::RefPtr<Orin::IterationSource>(new Source({&first, &second})));
    int count = 0;
    EXPECT_TRUE(iterator.GetCount(count) && count == 2);
    EXPECT_TRUE(iterator && iterator.Get() == &first);

    Orin::IteratorT<const Orin::IGroup> copy = iterator;
    ++iterator;
    EXPECT_EQ(iterator.Get(), &second);
    EXPECT_EQ(copy.Get(), &first);
    const Handle element = iterator;
    ++iterator;
    EXPECT_TRUE(!iterator && !iterator.IsValid());
    EXPECT_FALSE(++iterator) << "beyond the end";
    EXPECT_EQ(element.Get(), &second) << "a handle taken from an iteration outlives it";
    EXPECT_EQ((++copy).Get(), &second);

    Orin::IteratorT<const Orin::IGroup> none;
    EXPECT_TRUE(!none && !++none && none.GetCount(count) && count == 0);
}

}  // namespace
