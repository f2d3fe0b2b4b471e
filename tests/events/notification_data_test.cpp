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

// That each callback of a wrapper gives the record of its type is tested with the wrappers.
TEST(NotificationData, ARecordReplaysItsCallbackWithItsArguments) {
    Tests::Recording<Orin::EventObserver> o;
    Tests::RecordingClient c;
    struct Replayed {
        Data record;
        const char* want;
    };
    Replayed cases[] = {
        {{Type::OnBeforeDelete, &o, kFirst, kSecond, 47, true}, "BeforeDelete 5:1 14:2 47 1"},
        {{Type::OnAfterImport, &o, kSecond, 1, false}, "AfterImport 14:2 1 0"},
        {{Type::OnUnLock, &o, kSecond, "a", "b"}, "UnLock 14:2 'a' 'b'"},
        {{Type::OnMultiLock, &o, Orin::ListT<Index>{kFirst, kSecond}, "a", "b"}, "MultiLock [5:1]2 'a' 'b'"},
        {{Type::OnBeforeTransaction, &o, 7UL}, "BeforeTransaction 7 0"},
        {{Type::OnErrorAdd, &c, "p", nullptr, kFirst, kSecond, 57}, "ErrorAdd 'p' '' 5:1 14:2 57"},
        {{Type::OnErrorSwap, &c, "p", "e", kFirst, kSecond, kThird, 1}, "ErrorSwap 'p' 'e' 5:1 14:2 8:3 1"},
        {{static_cast<Type>(17), &o, Orin::ListT<Index>{}, "a", "b"}, "MultiUnLock []0 'a' 'b'"},
        {{static_cast<Type>(20), &o, 0UL}, "AfterTransaction"},
        {{static_cast<Type>(21), &c}, "ErrorAdd '' '' - - 0"},
        {{static_cast<Type>(31), &c, "", "", 2}, "WorkingModeChange 2"},
        {{static_cast<Type>(32), &c}, ""},
        {{Type::OnErrorAdd, static_cast<Orin::ClientObserver*>(nullptr)}, ""},
        {{Type::OnAfterTransaction, static_cast<Orin::EventObserver*>(nullptr), 0UL}, ""},
        {{Type::OnAfterTransaction, &c}, ""},
    };
    for (Replayed& one : cases) {
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
