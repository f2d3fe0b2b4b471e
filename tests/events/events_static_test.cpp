// Linked with the library's code as members of a static library: nothing here names the dispatcher's factory, and it
// must be there all the same.
#include <cstdlib>

#include <gtest/gtest.h>

#include "events/orin_event_dispatcher.h"
#include "platform/interface_manager.h"
#include "tests/events/fake_snapshot.h"

namespace {

using namespace NQuillUtils::NEvents;

Quill::InterfaceFactory* Registered() {
    return Quill::InterfaceManager::instance().getFactory("IORINEventDispatcher");
}

// A static object of a user of the service, which wants it at both ends of its own life.
struct StaticUser {
    bool foundAtStart = Registered() != nullptr;
    ~StaticUser() {
        if (!Registered()) std::_Exit(3);
    }
} const staticUser;

// Made before every other static object of the program and destroyed after them.
struct AtTheEnd {
    ~AtTheEnd() {
        if (Registered()) std::_Exit(4);
    }
};
__attribute__((init_priority(101))) const AtTheEnd atTheEnd;

}  // namespace

TEST(StaticEventDispatcher, TheFactoryIsThereForStaticObjectsAndGoneAfterThem) {
    // What comes after main is checked above, by the exit code.
    EXPECT_TRUE(staticUser.foundAtStart);
    ASSERT_NE(Registered(), nullptr);
    auto* const service = static_cast<IORINEventDispatcher*>(Registered()->internalCreate());
    EXPECT_STREQ(service->interfaceName(), "IORINEventDispatcher");
    Tests::FakeSnapshot fake;
    Orin::ContainerT<const Orin::ISnapshot> snapshot(fake);
    struct : Orin::EventObserver {
    } observer;
    service->AddEventObserver(&snapshot, &observer, "", 0);
    EXPECT_NE(fake.observer, nullptr) << "the service reaches the dispatcher";
    service->RemoveEventObserver(&snapshot, &observer);
    Registered()->internalRelease(service);
}
