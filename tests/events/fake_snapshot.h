// A snapshot that hands out the observer that was registered with it, so that its callbacks can be made by hand.
#pragma once

#include "orin/observers.h"
#include "orin/snapshot.h"
#include "orin/uid_manager.h"

namespace Tests {

// Answers with success and nothing; the objects are those of `behind`, if any. Stands on the stack of its user.
class FakeSnapshot : public Orin::ISnapshot {
public:
    using String = Orin::String;
    using Result = Orin::Result;

    FakeSnapshot() { AddReference(); }
    explicit FakeSnapshot(const Orin::ContainerT<const ISnapshot>& snapshot) : FakeSnapshot() { behind = snapshot; }

    Orin::ContainerT<const ISnapshot> behind;
    mutable Orin::EventObserver* observer = nullptr;  // the last one that was registered

    Result GetName(String&) const override { return {}; }
    Result GetIndex(Orin::Index&) const override { return {}; }
    Result IsValid() const override { return {}; }
    Result GetAttribute(const String&, String&) const override { return {}; }
    Result SetAttribute(const String&, const String&) override { return {}; }
    Result GetBlock(Orin::ContainerT<const Orin::IBlock>&, const Orin::Index&) const override { return {}; }
    Result GetIterBlocks(Orin::IteratorT<const Orin::IBlock>&) const override { return {}; }
    Result GetIterComps(Orin::IteratorT<const Orin::IComp>&, const Orin::CompTypes&) const override { return {}; }
    Result FindBlock(Orin::ListT<Orin::BlockInfo>&, const String&, const Orin::SearchParams&) const override {
        return {};
    }
    Result GetDefaultConfig(Orin::ContainerT<const Orin::IConfig>&, const String&) const override { return {}; }
    Result GetInfo(Orin::SnapshotInfo&) const override { return {}; }
    Result GetUIDManager(Orin::IUIDManager& objects) const override {
        return behind ? behind->GetUIDManager(objects) : Result();
    }
    Result BeginTransaction(const Orin::ETransactionType&) const override { return {}; }
    Result CommitTransaction() const override { return {}; }
    Result RollbackTransaction() const override { return {}; }
    Result IsTransactionActive(bool&) const override { return {}; }
    Result AddEventObserver(Orin::EventObserver* added) const override {
        observer = added;
        return {};
    }
    Result RemoveEventObserver(Orin::EventObserver*) const override { return {}; }
    Result RemoveAttribute(const String&) override { return {}; }
    Result GetAttributes(Orin::ListAttribute&) const override { return {}; }
    Result GetIterConfigs(Orin::IteratorT<const Orin::IConfig>&) const override { return {}; }

private:
    Orin::Index Identity() const noexcept override { return Orin::Index(); }
    Result AcquireLock(Orin::ELockScope, Orin::RefPtr<Orin::LockToken>&) const override { return {}; }
    void OnUnreferenced() const noexcept override {}
};

}  // namespace Tests
