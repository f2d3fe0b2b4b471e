#include "cli/event_clock.h"

#include <condition_variable>
#include <deque>
#include <mutex>

#include "cli/design_lookup.h"
#include "events/orin_event_dispatcher.h"

namespace Quill::Cli {

namespace {

using NQuillUtils::NEvents::CORINEventDispatcher;
using Orin::Index;
using Orin::ListT;
using Orin::String;
using Steady = std::chrono::steady_clock;

struct Mark {
    std::size_t line = 0;
    Steady::time_point time = {};
};

}  // namespace

// The observers are two in one: of the database's callbacks, and of the working mode, which says nothing in a database
// of its own and so is free to carry the marks.
class EventClock::Impl final : public Orin::EventObserver, public Orin::ClientObserver {
public:
    Impl(const Orin::DesignDb::Database& database, const ScriptRun& run)
        : m_run(run), m_client(database.Connect("clock")) {
        Need(m_client->GetSnapshotByName(m_snapshot, Orin::DesignDb::WorkingSnapshot));
        Need(Orin::DesignDb::Editor::Open(m_editor, m_snapshot));
        Need(m_snapshot->AddEventObserver(this));
        CORINEventDispatcher::Instance()->AddClientObserver(m_client.get(), this);
    }
    ~Impl() override {
        m_snapshot->RemoveEventObserver(this);
        CORINEventDispatcher::Instance()->RemoveClientObserver(m_client.get(), this);
        CORINEventDispatcher::Instance()->DispatchEvents();
    }

    const Mark& Current() const { return m_current; }

    bool Wait() {
        // What follows a mark is queued behind it, and nobody tells of that: it is looked for at the latest then.
        constexpr auto Longest = std::chrono::milliseconds(1);
        std::unique_lock lock(m_mutex);
        m_changed.wait_for(lock, Longest, [this] { return m_ended || !m_marks.empty(); });
        return !m_ended;
    }
    void End() {
        const std::lock_guard lock(m_mutex);
        m_ended = true;
        m_changed.notify_one();
    }

    void OnWorkingModeChange(Orin::EClientWorkingMode) override {
        const std::lock_guard lock(m_mutex);
        m_current = m_marks.front();
        m_marks.pop_front();
    }

    void OnBeforeAdd(const Index&, const Index&, Orin::EEventsAdd, bool) override { Send(); }
    void OnBeforeDelete(const Index&, const Index&, Orin::EEventsDelete, bool) override { Send(); }
    void OnBeforeDeleteAll(const Index&, Orin::EEventsDeleteAll, bool) override { Send(); }
    void OnBeforeChange(const Index&, Orin::EEventsChange, bool) override { Send(); }
    void OnBeforeQuillDataChange(const Index&, const Index&, Orin::EEventsQuillDataChange, bool) override { Send(); }
    void OnBeforeConnectivityChange(const Index&, const Index&, Orin::EEventsConnectivityChange, bool) override {
        Send();
    }
    void OnBeforeImport(const Index&, Orin::EEventsImport, bool) override { Send(); }
    void OnAfterAdd(const Index&, const Index&, Orin::EEventsAdd, bool) override { Send(); }
    void OnAfterDelete(const Index&, const Index&, Orin::EEventsDelete, bool) override { Send(); }
    void OnAfterDeleteAll(const Index&, Orin::EEventsDeleteAll, bool) override { Send(); }
    void OnAfterChange(const Index&, Orin::EEventsChange, bool) override { Send(); }
    void OnAfterQuillDataChange(const Index&, const Index&, Orin::EEventsQuillDataChange, bool) override { Send(); }
    void OnAfterConnectivityChange(const Index&, const Index&, Orin::EEventsConnectivityChange, bool) override {
        Send();
    }
    void OnAfterImport(const Index&, Orin::EEventsImport, bool) override { Send(); }
    void OnAfterSetAttribute(const Index&, const String&, const String&, Orin::EAttributeType, int, bool) override {
        Send();
    }
    void OnAfterRemoveAttribute(const Index&, const String&, Orin::EAttributeType, int, bool) override { Send(); }
    void OnLock(const Index&, const String&, const String&) override { Send(); }
    void OnUnLock(const Index&, const String&, const String&) override { Send(); }
    void OnMultiLock(const ListT<Index>&, const String&, const String&) override { Send(); }
    void OnMultiUnLock(const ListT<Index>&, const String&, const String&) override { Send(); }
    using Orin::EventObserver::OnBeforeTransaction;
    void OnBeforeTransaction(unsigned, bool&) override { Send(); }
    void OnBeforeRollbackTransaction() override { Send(); }
    void OnAfterTransaction() override { Send(); }

private:
    void Send() {
        {
            const std::lock_guard lock(m_mutex);
            m_marks.push_back({m_run.Line(), Steady::now()});
            m_changed.notify_one();
        }
        Need(m_editor.Notify(
            [](Orin::ClientObserver& observer) { observer.OnWorkingModeChange(Orin::EClientWorkingMode::Connected); }));
    }

    const ScriptRun& m_run;
    const std::unique_ptr<Orin::OrinPI> m_client;
    Orin::ContainerT<const Orin::ISnapshot> m_snapshot;
    Orin::DesignDb::Editor m_editor;

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Mark> m_marks;  // those that are queued
    bool m_ended = false;

    Mark m_current;
};

EventClock::EventClock(const Orin::DesignDb::Database& database, const ScriptRun& run)
    : m_impl(std::make_unique<Impl>(database, run)) {}
EventClock::~EventClock() = default;

std::size_t EventClock::Line() const {
    return m_impl->Current().line;
}

std::chrono::nanoseconds EventClock::Waited() const {
    return Steady::now() - m_impl->Current().time;
}

bool EventClock::Wait() {
    return m_impl->Wait();
}

void EventClock::End() {
    m_impl->End();
}

}  // namespace Quill::Cli
