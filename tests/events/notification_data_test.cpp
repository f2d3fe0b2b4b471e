#include <utility>

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

struct Provider final : NQuillUtils::NEvents::IInvalidClientProvider {
    std::list<Orin::EventObserver*> events;
    std::list<Orin::ClientObserver*> clients;
    const std::list<Orin::EventObserver*>& GetInvalidEventObservers() const override { return events; }
    const std::list<Orin::ClientObserver*>& GetInvalidClientObservers() const override { return clients; }
};

// That each callback of a wrapper gives the record of its type, with its arguments, is tested with the wrappers.
TEST(NotificationData, ARecordReplaysTheCallbackOfItsNumberIfItHasAnObserver) {
    Tests::Recording<Orin::EventObserver> o;
    Tests::RecordingClient c;
    std::pair<Data, const char*> cases[] = {
        {{Type::OnErrorAdd, &c, "p", nullptr, kFirst, kSecond, 57}, "ErrorAdd 'p' '' 5:1 14:2 57"},
        {{static_cast<Type>(17), &o, Orin::ListT<Index>{}, "a", "b"}, "MultiUnLock []0 'a' 'b'"},
        {{static_cast<Type>(20), &o, 0UL}, "AfterTransaction"},
        {{static_cast<Type>(21), &c}, "ErrorAdd '' '' - - 0"},
        {{static_cast<Type>(31), &c, "", "", 2}, "WorkingModeChange 2"},
        {{static_cast<Type>(32), &c}, ""},
        {{Type::OnErrorAdd, static_cast<Orin::ClientObserver*>(nullptr)}, ""},
        {{Type::OnAfterTransaction, static_cast<Orin::EventObserver*>(nullptr), 0UL}, ""},
        {{Type::OnAfterTransaction, &c}, ""},
    };
    for (auto& [record, want] : cases) {
        SCOPED_TRACE(want);
        o.log.clear();
        c.log.clear();
        record.Call();
        Log told = o.log;
        told.insert(told.end(), c.log.begin(), c.log.end());
        EXPECT_EQ(told, *want ? Log{want} : Log{});
    }
}

TEST(NotificationData, ValidityAsksTheListOfItsOwnKind) {
    Tests::Recording<Orin::EventObserver> o;
    Tests::RecordingClient c;
    for (const bool listsClient : {true, false}) {
        Provider provider;
        if (listsClient) provider.clients = {&c};
        if (!listsClient) provider.events = {nullptr, &o};
        EXPECT_EQ(Data(Type::OnAfterTransaction, &o, 0UL).IsValid(&provider), listsClient);
        EXPECT_NE(Data(Type::OnErrorAdd, &c).IsValid(&provider), listsClient);
        EXPECT_EQ(Data(static_cast<Type>(32), &c).IsValid(&provider), listsClient) << "asks for its event observer";
    }
}

}  // namespace
