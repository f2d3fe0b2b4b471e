#include <gtest/gtest.h>

#include "events/orin_notification_data.h"
#include "tests/events/recording.h"

namespace {

using Data = NQuillUtils::NEvents::ORINNOTIFICATIONDATA;
using Type = Data::Type;
using Orin::Index;
using Tests::Log;

const Index kFirst(Orin::EObjectType::Block, 0, 1);
const Index kSecond(Orin::EObjectType::Net, 0, 2);
const Index kThird(Orin::EObjectType::Pin, 0, 3);

struct Provider final : NQuillUtils::NEvents::IInvalidClientProvider {
    std::list<Orin::EventObserver*> events;
    std::list<Orin::ClientObserver*> clients;
    const std::list<Orin::EventObserver*>& GetInvalidEventObservers() const override { return events; }
    const std::list<Orin::ClientObserver*>& GetInvalidClientObservers() const override { return clients; }
};

TEST(NotificationData, EachTypeReplaysItsCallbackWithItsArguments) {
    Tests::Recording<Orin::EventObserver> o;
    Tests::RecordingClient c;
    struct Case {
        Data record;
        const char* want;
    };
    Case cases[] = {
        {{Type::OnBeforeAdd, &o, kFirst, kSecond, 57, true}, "BeforeAdd 5:1 14:2 57 undo"},
        {{Type::OnBeforeDelete, &o, kFirst, kSecond, 47, false}, "BeforeDelete 5:1 14:2 47"},
        {{Type::OnBeforeDeleteAll, &o, kSecond, 1, false}, "BeforeDeleteAll 14:2 1"},
        {{Type::OnBeforeChange, &o, kSecond, 23, false}, "BeforeChange 14:2 23"},
        {{Type::OnBeforeQuillDataChange, &o, kFirst, kSecond, 2, false}, "BeforeData 5:1 14:2 2"},
        {{Type::OnBeforeConnectivityChange, &o, kFirst, kSecond, 3, false}, "BeforeConnectivity 5:1 14:2 3"},
        {{Type::OnBeforeImport, &o, kSecond, 1, false}, "BeforeImport 14:2 1"},
        {{Type::OnAfterAdd, &o, kFirst, kSecond, 57, false}, "AfterAdd 5:1 14:2 57"},
        {{Type::OnAfterDelete, &o, kFirst, kSecond, 47, false}, "AfterDelete 5:1 14:2 47"},
        {{Type::OnAfterDeleteAll, &o, kSecond, 2, false}, "AfterDeleteAll 14:2 2"},
        {{Type::OnAfterChange, &o, kSecond, 23, true}, "AfterChange 14:2 23 undo"},
        {{Type::OnAfterQuillDataChange, &o, kFirst, kSecond, 2, false}, "AfterData 5:1 14:2 2"},
        {{Type::OnAfterConnectivityChange, &o, kFirst, kSecond, 3, false}, "AfterConnectivity 5:1 14:2 3"},
        {{Type::OnAfterImport, &o, kSecond, 1, false}, "AfterImport 14:2 1"},
        {{Type::OnLock, &o, kSecond, "a", "b"}, "Lock 14:2 a b"},
        {{Type::OnUnLock, &o, kSecond, "a", "b"}, "UnLock 14:2 a b"},
        {{Type::OnMultiLock, &o, Orin::ListT<Index>{kFirst, kSecond}, "a", "b"}, "MultiLock 2 a b"},
        {{Type::OnMultiUnLock, &o, Orin::ListT<Index>{kFirst}, "a", "b"}, "MultiUnLock 1 a b"},
        {{Type::OnBeforeTransaction, &o, 7UL}, "Transaction 7"},
        {{Type::OnBeforeRollbackTransaction, &o, 0UL}, "Rollback"},
        {{Type::OnAfterTransaction, &o, 0UL}, "AfterTransaction"},
        {{Type::OnErrorAdd, &c, "p", nullptr, kFirst, kSecond, 57}, "Add 5:1 14:2 57 p "},
        {{Type::OnErrorChange, &c, "p", "e", kSecond, 23}, "Change 14:2 23 p e"},
        {{Type::OnErrorSwap, &c, "p", "e", kFirst, kSecond, kThird, 1}, "Swap 5:1 14:2 8:3 1 p e"},
        {{Type::OnErrorTransaction, &c, "p", "e", 0}, "Transaction p e"},
        {{Type::OnErrorUnexpected, &c, "p", "e", 0}, "Unexpected p e"},
        {{Type::OnWorkingModeChange, &c, "", "", 2}, "Mode 2"},
        {{static_cast<Type>(32), &c}, ""},
        {{Type::OnErrorAdd, static_cast<Orin::ClientObserver*>(nullptr)}, ""},
        {{Type::OnAfterTransaction, static_cast<Orin::EventObserver*>(nullptr), 0UL}, ""},
        {{Type::OnAfterTransaction, &c}, ""},
    };
    for (Case& one : cases) {
        SCOPED_TRACE(one.want);
        o.log.clear();
        c.log.clear();
        one.record.Call();
        Log told = o.log;
        told.insert(told.end(), c.log.begin(), c.log.end());
        EXPECT_EQ(told, *one.want ? Log{one.want} : Log{});
    }
}

TEST(NotificationData, ValidityAsksTheListOfItsOwnKind) {
    Tests::Recording<Orin::EventObserver> o;
    Tests::RecordingClient c;
    const Data event(Type::OnAfterTransaction, &o, 0UL);
    const Data client(Type::OnErrorAdd, &c);
    const Data odd(static_cast<Type>(32), &c);  // asks for its event observer, of which it has none
    Provider provider;
    provider.clients = {&c};
    EXPECT_TRUE(event.IsValid(&provider));
    EXPECT_FALSE(client.IsValid(&provider));
    EXPECT_TRUE(odd.IsValid(&provider));
    provider.clients.clear();
    provider.events = {nullptr, &o};
    EXPECT_FALSE(event.IsValid(&provider));
    EXPECT_TRUE(client.IsValid(&provider));
    EXPECT_FALSE(odd.IsValid(&provider));
}

}  // namespace
