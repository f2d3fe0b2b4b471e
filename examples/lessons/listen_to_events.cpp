// Lesson: hear on the application's own thread what a worker thread does to the design.
//
// The database calls back on the thread that made a change. The dispatcher stands between: it translates database
// callbacks into schematic events, and calls the application's observers on one thread only, its owner.
#include <iostream>
#include <thread>

#include "events/orin_event_dispatcher.h"
#include "small_design.h"

namespace {

using NQuillUtils::NEvents::CORINEventDispatcher;

// An application overrides what it wants to hear of. No lock is needed here: all calls come on the owner thread.
class Listener : public NQuillUtils::NEvents::EventObserverEx {
public:
    explicit Listener(std::thread::id owner) : m_owner(owner) {}

    void OnAddNet(Orin::Index, Orin::Index, const std::string& label) override { Say("net added", label); }
    void OnAfterLabelChange(Orin::Index, Orin::Index, const std::string& label) override { Say("label is now", label); }
    void OnDeleteNet(Orin::Index, Orin::Index, const std::string& label) override { Say("net deleted", label); }
    void OnBlockNameChange(Orin::Index, const std::string& before, const std::string& after) override {
        Say("block renamed", before + " to " + after);
    }

private:
    void Say(const char* what, const std::string& name) const {
        std::cout << "  " << what << ' ' << name << (std::this_thread::get_id() == m_owner ? "" : " (wrong thread)")
                  << '\n';
    }

    std::thread::id m_owner;
};

// The worker is a client of its own: it connects for itself and shares no handle with the main thread.
void Work(const Orin::DesignDb::Database& database, const Orin::Index& lamp, const Orin::Index& channel) {
    const std::unique_ptr<Orin::OrinPI> connection = database.Connect("worker");
    Orin::ContainerT<const Orin::ISnapshot> snapshot;
    Lessons::Check(connection->GetSnapshotByName(snapshot, Orin::DesignDb::WorkingSnapshot));
    Orin::DesignDb::Editor editor;
    Lessons::Check(Orin::DesignDb::Editor::Open(editor, snapshot));

    Orin::Index net;
    Lessons::Check(editor.AddNet(lamp, {"VCC"}, net));
    Lessons::Check(editor.SetLabel(net, "VDD"));
    Lessons::Check(editor.SetName(channel, "driver"));
    Lessons::Check(editor.DeleteNet(net));
}

}  // namespace

int main() {
    try {
        Lessons::SmallDesign design;

        // Whoever asks for the dispatcher first becomes its owner thread, so an application does it when it starts.
        CORINEventDispatcher& dispatcher = *CORINEventDispatcher::Instance();
        Listener listener(std::this_thread::get_id());
        dispatcher.AddEventObserverEx(&design.snapshot, &listener, "lesson", 1);

        Orin::Result outcome;
        std::thread worker([&] {
            try {
                Work(design.database, design.lamp, design.channel);
            } catch (const Orin::Result& failure) {
                outcome = failure;
            }
        });
        worker.join();  // an application's loop would go on, and dispatch now and then
        Lessons::Check(outcome);

        // The worker has done everything, and nothing has been called: what it did stands in the queue. Each event
        // tells of the moment when it happened, also of the net that is gone by now.
        std::cout << "The worker is done\n";
        dispatcher.DispatchEvents();

        // An observer is borrowed until it is removed.
        dispatcher.RemoveEventObserver(&design.snapshot, &listener);
        dispatcher.DispatchEvents();  // lets go of what the removal left in the queue
        std::cout << "Nothing more is heard\n";
    } catch (const Orin::Result& failure) {
        std::cerr << static_cast<const char*>(failure.GetDescription()) << '\n';
        return 1;
    }
}
