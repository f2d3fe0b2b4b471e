#include "cli/events.h"

#include <array>
#include <cstddef>
#include <tuple>
#include <utility>

#include "cli/command.h"
#include "cli/event_fields.h"
#include "cli/json.h"
#include "events/orin_event_dispatcher.h"

namespace Quill::Cli {

namespace {

using NQuillUtils::NEvents::CORINEventDispatcher;
using NQuillUtils::NEvents::EventObserverEx;
using NQuillUtils::NEvents::EventObserverNavigator;
using Orin::ClientObserver;
using Orin::EventObserver;
using Orin::Index;
using Orin::String;
using Text = const std::string&;
using Groups = Orin::ListT<Index>;

// ---- Operations, with the names of their arguments; null for one that means nothing by then ----

template <class Observer, class... Arguments>
struct Operation {
    using Call = void (Observer::*)(Arguments...);

    template <class... Fields>
    constexpr Operation(const char* itsName, Call itsCall, Fields... itsFields)
        : name(itsName), call(itsCall), fields{{itsFields...}} {}

    const char* name;
    Call call;
    std::array<const char*, sizeof...(Arguments)> fields;
};
template <class Observer, class... Arguments, class... Fields>
Operation(const char*, void (Observer::*)(Arguments...), Fields...) -> Operation<Observer, Arguments...>;

// Where an operation that is called leaves its arguments.
class Writer {
public:
    Writer(const char* observer, const EventListeners::Sink& sink, std::exception_ptr& failure)
        : m_observer(observer), m_sink(sink), m_failure(failure) {}

    template <class Description, class... Values>
    void operator()(const Description& operation, const Values&... values) const noexcept {
        try {
            Json arguments = Json::EmptyObject();
            std::size_t at = 0;
            (arguments.Add(operation.fields[at++], FieldOf(values)), ...);
            m_sink({m_observer, operation.name, std::move(arguments)});
        } catch (...) {
            if (!m_failure) m_failure = std::current_exception();
        }
    }

private:
    const char* const m_observer;
    const EventListeners::Sink& m_sink;
    std::exception_ptr& m_failure;
};

// Calls the operation with arguments that are read first.
template <class Observer, class... Arguments>
void Play(const Operation<Observer, Arguments...>& operation, Observer& observer, const Json& arguments) {
    std::tuple<std::decay_t<Arguments>...> values;
    const auto read = [&](const char* field, auto& value) {
        if (field != nullptr) ReadField(Member(arguments, field), value);
    };
    std::apply(
        [&](auto&... value) {
            std::size_t at = 0;
            (read(operation.fields[at++], value), ...);
            (observer.*operation.call)(value...);
        },
        values);
}

template <class Observer>
struct Row {
    const char* name;
    void (*play)(Observer& observer, const Json& arguments);
};

template <const auto& TheOperation, class Observer>
constexpr Row<Observer> RowOf() {
    return {TheOperation.name,
            [](Observer& observer, const Json& arguments) { Play(TheOperation, observer, arguments); }};
}

template <class Observer, std::size_t Count>
bool PlayOneOf(const Row<Observer> (&rows)[Count], Observer& observer, const Event& event) {
    for (const Row<Observer>& row : rows)
        if (event.name == row.name) {
            row.play(observer, event.arguments);
            return true;
        }
    return false;
}

namespace Schematic {

// clang-format off
constexpr Operation AddNetQuill{"OnAddNetQuill", &EventObserverEx::OnAddNetQuill, "object", "block", "label"};
constexpr Operation AddNet{"OnAddNet", &EventObserverEx::OnAddNet, "object", "block", "label"};
constexpr Operation AddBus{"OnAddBus", &EventObserverEx::OnAddBus, "object", "block", "label"};
constexpr Operation DeleteGroup{"OnDeleteGroup", &EventObserverEx::OnDeleteGroup, "group", "owner", "name", "type"};
constexpr Operation DeleteNetQuill{"OnDeleteNetQuill", &EventObserverEx::OnDeleteNetQuill, "object", "block", "label"};
constexpr Operation DeleteNet{"OnDeleteNet", &EventObserverEx::OnDeleteNet, "object", "block", "label"};
constexpr Operation DeleteBus{"OnDeleteBus", &EventObserverEx::OnDeleteBus, "object", "block", "label"};
constexpr Operation DeleteBlock{"OnDeleteBlock", &EventObserverEx::OnDeleteBlock, "block", "name"};
constexpr Operation DeleteBlockComp{"OnDeleteBlockComp", &EventObserverEx::OnDeleteBlockComp, "comp", "block", "child", "instance"};
constexpr Operation BeforeNetQuillSetData{"OnBeforeNetQuillSetData", &EventObserverEx::OnBeforeNetQuillSetData, "object", "net", "block", "data"};
constexpr Operation AfterNetQuillSetData{"OnAfterNetQuillSetData", &EventObserverEx::OnAfterNetQuillSetData, "object", "net", "block", "data"};
constexpr Operation BeforeLabelChange{"OnBeforeLabelChange", &EventObserverEx::OnBeforeLabelChange, "object", "block", "label"};
constexpr Operation AfterLabelChange{"OnAfterLabelChange", &EventObserverEx::OnAfterLabelChange, "object", "block", "label"};
constexpr Operation BlockNameChange{"OnBlockNameChange", &EventObserverEx::OnBlockNameChange, "block", "before", "after"};
constexpr Operation ReadOnlyFlagChange{"OnReadOnlyFlagChange", &EventObserverEx::OnReadOnlyFlagChange, "block"};

constexpr Row<EventObserverEx> Rows[] = {
    RowOf<AddNetQuill, EventObserverEx>(),
    RowOf<AddNet, EventObserverEx>(),
    RowOf<AddBus, EventObserverEx>(),
    RowOf<DeleteGroup, EventObserverEx>(),
    RowOf<DeleteNetQuill, EventObserverEx>(),
    RowOf<DeleteNet, EventObserverEx>(),
    RowOf<DeleteBus, EventObserverEx>(),
    RowOf<DeleteBlock, EventObserverEx>(),
    RowOf<DeleteBlockComp, EventObserverEx>(),
    RowOf<BeforeNetQuillSetData, EventObserverEx>(),
    RowOf<AfterNetQuillSetData, EventObserverEx>(),
    RowOf<BeforeLabelChange, EventObserverEx>(),
    RowOf<AfterLabelChange, EventObserverEx>(),
    RowOf<BlockNameChange, EventObserverEx>(),
    RowOf<ReadOnlyFlagChange, EventObserverEx>(),
};
// clang-format on

class Listener final : public EventObserverEx {
public:
    explicit Listener(const Writer& writer) : m_tell(writer) {}

    void OnAddNetQuill(Index object, Index block, Text label) override { m_tell(AddNetQuill, object, block, label); }
    void OnAddNet(Index object, Index block, Text label) override { m_tell(AddNet, object, block, label); }
    void OnAddBus(Index object, Index block, Text label) override { m_tell(AddBus, object, block, label); }
    void OnDeleteGroup(Index group, Index owner, Text name, Text type) override {
        m_tell(DeleteGroup, group, owner, name, type);
    }
    void OnDeleteNetQuill(Index object, Index block, Text label) override {
        m_tell(DeleteNetQuill, object, block, label);
    }
    void OnDeleteNet(Index object, Index block, Text label) override { m_tell(DeleteNet, object, block, label); }
    void OnDeleteBus(Index object, Index block, Text label) override { m_tell(DeleteBus, object, block, label); }
    void OnDeleteBlock(Index block, Text name) override { m_tell(DeleteBlock, block, name); }
    void OnDeleteBlockComp(Index comp, Index block, Index child, std::uint32_t instance) override {
        m_tell(DeleteBlockComp, comp, block, child, instance);
    }
    void OnBeforeNetQuillSetData(Index object, Index net, Index block, const Orin::NetDataQuill& data) override {
        m_tell(BeforeNetQuillSetData, object, net, block, data);
    }
    void OnAfterNetQuillSetData(Index object, Index net, Index block, const Orin::NetDataQuill& data) override {
        m_tell(AfterNetQuillSetData, object, net, block, data);
    }
    void OnBeforeLabelChange(Index object, Index block, Text label) override {
        m_tell(BeforeLabelChange, object, block, label);
    }
    void OnAfterLabelChange(Index object, Index block, Text label) override {
        m_tell(AfterLabelChange, object, block, label);
    }
    void OnBlockNameChange(Index block, Text before, Text after) override {
        m_tell(BlockNameChange, block, before, after);
    }
    void OnReadOnlyFlagChange(Index block) override { m_tell(ReadOnlyFlagChange, block); }

private:
    const Writer m_tell;
};

}  // namespace Schematic

namespace Navigator {

// clang-format off
constexpr Operation BeforeRipBus{"OnBeforeRipBus", &EventObserverNavigator::OnBeforeRipBus, "bus", "block", "groups"};
constexpr Operation AfterRipBus{"OnAfterRipBus", &EventObserverNavigator::OnAfterRipBus, "bus", "block", "groups"};
constexpr Operation DeleteBus{"OnDeleteBus", &EventObserverNavigator::OnDeleteBus, "bus", "block", "groups"};
constexpr Operation DeleteBlock{"OnDeleteBlock", &EventObserverNavigator::OnDeleteBlock, "object"};
constexpr Operation DesignRootChange{"OnDesignRootChange", &EventObserverNavigator::OnDesignRootChange, "block", "before", "after"};

constexpr Row<EventObserverNavigator> Rows[] = {
    RowOf<BeforeRipBus, EventObserverNavigator>(),
    RowOf<AfterRipBus, EventObserverNavigator>(),
    RowOf<DeleteBus, EventObserverNavigator>(),
    RowOf<DeleteBlock, EventObserverNavigator>(),
    RowOf<DesignRootChange, EventObserverNavigator>(),
};
// clang-format on

class Listener final : public EventObserverNavigator {
public:
    explicit Listener(const Writer& writer) : m_tell(writer) {}

    void OnBeforeRipBus(Index bus, Index block, const Groups& groups) override {
        m_tell(BeforeRipBus, bus, block, groups);
    }
    void OnAfterRipBus(Index bus, Index block, const Groups& groups) override {
        m_tell(AfterRipBus, bus, block, groups);
    }
    void OnDeleteBus(Index bus, Index block, const Groups& groups) override { m_tell(DeleteBus, bus, block, groups); }
    void OnDeleteBlock(Index object) override { m_tell(DeleteBlock, object); }
    void OnDesignRootChange(Index block, Text before, Text after) override {
        m_tell(DesignRootChange, block, before, after);
    }

private:
    const Writer m_tell;
};

}  // namespace Navigator

namespace Database {

// clang-format off
constexpr Operation BeforeAdd{"OnBeforeAdd", &EventObserver::OnBeforeAdd, "parent", "object", "kind", "undo"};
constexpr Operation BeforeDelete{"OnBeforeDelete", &EventObserver::OnBeforeDelete, "parent", "object", "kind", "undo"};
constexpr Operation BeforeDeleteAll{"OnBeforeDeleteAll", &EventObserver::OnBeforeDeleteAll, "object", "kind", "undo"};
constexpr Operation BeforeChange{"OnBeforeChange", &EventObserver::OnBeforeChange, "object", "kind", "undo"};
constexpr Operation BeforeQuillDataChange{"OnBeforeQuillDataChange", &EventObserver::OnBeforeQuillDataChange, "parent", "object", "kind", "undo"};
constexpr Operation BeforeConnectivityChange{"OnBeforeConnectivityChange", &EventObserver::OnBeforeConnectivityChange, "parent", "object", "kind", "undo"};
constexpr Operation BeforeImport{"OnBeforeImport", &EventObserver::OnBeforeImport, "object", "kind", "undo"};
constexpr Operation AfterAdd{"OnAfterAdd", &EventObserver::OnAfterAdd, "parent", "object", "kind", "undo"};
constexpr Operation AfterDelete{"OnAfterDelete", &EventObserver::OnAfterDelete, "parent", "object", "kind", "undo"};
constexpr Operation AfterDeleteAll{"OnAfterDeleteAll", &EventObserver::OnAfterDeleteAll, "object", "kind", "undo"};
constexpr Operation AfterChange{"OnAfterChange", &EventObserver::OnAfterChange, "object", "kind", "undo"};
constexpr Operation AfterQuillDataChange{"OnAfterQuillDataChange", &EventObserver::OnAfterQuillDataChange, "parent", "object", "kind", "undo"};
constexpr Operation AfterConnectivityChange{"OnAfterConnectivityChange", &EventObserver::OnAfterConnectivityChange, "parent", "object", "kind", "undo"};
constexpr Operation AfterImport{"OnAfterImport", &EventObserver::OnAfterImport, "object", "kind", "undo"};
constexpr Operation Lock{"OnLock", &EventObserver::OnLock, "object", "project", "client"};
constexpr Operation UnLock{"OnUnLock", &EventObserver::OnUnLock, "object", "project", "client"};
constexpr Operation MultiLock{"OnMultiLock", &EventObserver::OnMultiLock, "objects", "project", "client"};
constexpr Operation MultiUnLock{"OnMultiUnLock", &EventObserver::OnMultiUnLock, "objects", "project", "client"};
constexpr Operation BeforeTransaction{"OnBeforeTransaction", static_cast<void (EventObserver::*)(unsigned, bool&)>(&EventObserver::OnBeforeTransaction), "transaction", nullptr};
constexpr Operation BeforeRollbackTransaction{"OnBeforeRollbackTransaction", &EventObserver::OnBeforeRollbackTransaction};
constexpr Operation AfterTransaction{"OnAfterTransaction", &EventObserver::OnAfterTransaction};

constexpr Row<EventObserver> Rows[] = {
    RowOf<BeforeAdd, EventObserver>(),
    RowOf<BeforeDelete, EventObserver>(),
    RowOf<BeforeDeleteAll, EventObserver>(),
    RowOf<BeforeChange, EventObserver>(),
    RowOf<BeforeQuillDataChange, EventObserver>(),
    RowOf<BeforeConnectivityChange, EventObserver>(),
    RowOf<BeforeImport, EventObserver>(),
    RowOf<AfterAdd, EventObserver>(),
    RowOf<AfterDelete, EventObserver>(),
    RowOf<AfterDeleteAll, EventObserver>(),
    RowOf<AfterChange, EventObserver>(),
    RowOf<AfterQuillDataChange, EventObserver>(),
    RowOf<AfterConnectivityChange, EventObserver>(),
    RowOf<AfterImport, EventObserver>(),
    RowOf<Lock, EventObserver>(),
    RowOf<UnLock, EventObserver>(),
    RowOf<MultiLock, EventObserver>(),
    RowOf<MultiUnLock, EventObserver>(),
    RowOf<BeforeTransaction, EventObserver>(),
    RowOf<BeforeRollbackTransaction, EventObserver>(),
    RowOf<AfterTransaction, EventObserver>(),
};
// clang-format on

class Listener final : public EventObserver {
public:
    explicit Listener(const Writer& writer) : m_tell(writer) {}

    void OnBeforeAdd(const Index& parent, const Index& object, Orin::EEventsAdd kind, bool undo) override {
        m_tell(BeforeAdd, parent, object, kind, undo);
    }
    void OnBeforeDelete(const Index& parent, const Index& object, Orin::EEventsDelete kind, bool undo) override {
        m_tell(BeforeDelete, parent, object, kind, undo);
    }
    void OnBeforeDeleteAll(const Index& object, Orin::EEventsDeleteAll kind, bool undo) override {
        m_tell(BeforeDeleteAll, object, kind, undo);
    }
    void OnBeforeChange(const Index& object, Orin::EEventsChange kind, bool undo) override {
        m_tell(BeforeChange, object, kind, undo);
    }
    void OnBeforeQuillDataChange(const Index& parent, const Index& object, Orin::EEventsQuillDataChange kind,
                                 bool undo) override {
        m_tell(BeforeQuillDataChange, parent, object, kind, undo);
    }
    void OnBeforeConnectivityChange(const Index& parent, const Index& object, Orin::EEventsConnectivityChange kind,
                                    bool undo) override {
        m_tell(BeforeConnectivityChange, parent, object, kind, undo);
    }
    void OnBeforeImport(const Index& object, Orin::EEventsImport kind, bool undo) override {
        m_tell(BeforeImport, object, kind, undo);
    }
    void OnAfterAdd(const Index& parent, const Index& object, Orin::EEventsAdd kind, bool undo) override {
        m_tell(AfterAdd, parent, object, kind, undo);
    }
    void OnAfterDelete(const Index& parent, const Index& object, Orin::EEventsDelete kind, bool undo) override {
        m_tell(AfterDelete, parent, object, kind, undo);
    }
    void OnAfterDeleteAll(const Index& object, Orin::EEventsDeleteAll kind, bool undo) override {
        m_tell(AfterDeleteAll, object, kind, undo);
    }
    void OnAfterChange(const Index& object, Orin::EEventsChange kind, bool undo) override {
        m_tell(AfterChange, object, kind, undo);
    }
    void OnAfterQuillDataChange(const Index& parent, const Index& object, Orin::EEventsQuillDataChange kind,
                                bool undo) override {
        m_tell(AfterQuillDataChange, parent, object, kind, undo);
    }
    void OnAfterConnectivityChange(const Index& parent, const Index& object, Orin::EEventsConnectivityChange kind,
                                   bool undo) override {
        m_tell(AfterConnectivityChange, parent, object, kind, undo);
    }
    void OnAfterImport(const Index& object, Orin::EEventsImport kind, bool undo) override {
        m_tell(AfterImport, object, kind, undo);
    }
    void OnLock(const Index& object, const String& project, const String& client) override {
        m_tell(Lock, object, project, client);
    }
    void OnUnLock(const Index& object, const String& project, const String& client) override {
        m_tell(UnLock, object, project, client);
    }
    void OnMultiLock(const Groups& objects, const String& project, const String& client) override {
        m_tell(MultiLock, objects, project, client);
    }
    void OnMultiUnLock(const Groups& objects, const String& project, const String& client) override {
        m_tell(MultiUnLock, objects, project, client);
    }
    using EventObserver::OnBeforeTransaction;
    void OnBeforeTransaction(unsigned transaction, bool&) override { m_tell(BeforeTransaction, transaction); }
    void OnBeforeRollbackTransaction() override { m_tell(BeforeRollbackTransaction); }
    void OnAfterTransaction() override { m_tell(AfterTransaction); }

private:
    const Writer m_tell;
};

}  // namespace Database

namespace Client {

// clang-format off
constexpr Operation ErrorAdd{"OnErrorAdd", &ClientObserver::OnErrorAdd, "project", "error", "parent", "object", "kind"};
constexpr Operation ErrorDelete{"OnErrorDelete", &ClientObserver::OnErrorDelete, "project", "error", "parent", "object", "kind"};
constexpr Operation ErrorDeleteAll{"OnErrorDeleteAll", &ClientObserver::OnErrorDeleteAll, "project", "error", "object", "kind"};
constexpr Operation ErrorChange{"OnErrorChange", &ClientObserver::OnErrorChange, "project", "error", "object", "kind"};
constexpr Operation ErrorQuillDataChange{"OnErrorQuillDataChange", &ClientObserver::OnErrorQuillDataChange, "project", "error", "parent", "object", "kind"};
constexpr Operation ErrorConnectivityChange{"OnErrorConnectivityChange", &ClientObserver::OnErrorConnectivityChange, "project", "error", "parent", "object", "kind"};
constexpr Operation ErrorSwap{"OnErrorSwap", &ClientObserver::OnErrorSwap, "project", "error", "parent", "first", "second", "kind"};
constexpr Operation ErrorImport{"OnErrorImport", &ClientObserver::OnErrorImport, "project", "error", "object", "kind"};
constexpr Operation ErrorTransaction{"OnErrorTransaction", &ClientObserver::OnErrorTransaction, "project", "error"};
constexpr Operation ErrorUnexpected{"OnErrorUnexpected", &ClientObserver::OnErrorUnexpected, "project", "error"};
constexpr Operation WorkingModeChange{"OnWorkingModeChange", &ClientObserver::OnWorkingModeChange, "mode"};

constexpr Row<ClientObserver> Rows[] = {
    RowOf<ErrorAdd, ClientObserver>(),
    RowOf<ErrorDelete, ClientObserver>(),
    RowOf<ErrorDeleteAll, ClientObserver>(),
    RowOf<ErrorChange, ClientObserver>(),
    RowOf<ErrorQuillDataChange, ClientObserver>(),
    RowOf<ErrorConnectivityChange, ClientObserver>(),
    RowOf<ErrorSwap, ClientObserver>(),
    RowOf<ErrorImport, ClientObserver>(),
    RowOf<ErrorTransaction, ClientObserver>(),
    RowOf<ErrorUnexpected, ClientObserver>(),
    RowOf<WorkingModeChange, ClientObserver>(),
};
// clang-format on

class Listener final : public ClientObserver {
public:
    explicit Listener(const Writer& writer) : m_tell(writer) {}

    void OnErrorAdd(const String& project, const String& error, const Index& parent, const Index& object,
                    Orin::EEventsAdd kind) override {
        m_tell(ErrorAdd, project, error, parent, object, kind);
    }
    void OnErrorDelete(const String& project, const String& error, const Index& parent, const Index& object,
                       Orin::EEventsDelete kind) override {
        m_tell(ErrorDelete, project, error, parent, object, kind);
    }
    void OnErrorDeleteAll(const String& project, const String& error, const Index& object,
                          Orin::EEventsDeleteAll kind) override {
        m_tell(ErrorDeleteAll, project, error, object, kind);
    }
    void OnErrorChange(const String& project, const String& error, const Index& object,
                       Orin::EEventsChange kind) override {
        m_tell(ErrorChange, project, error, object, kind);
    }
    void OnErrorQuillDataChange(const String& project, const String& error, const Index& parent, const Index& object,
                                Orin::EEventsQuillDataChange kind) override {
        m_tell(ErrorQuillDataChange, project, error, parent, object, kind);
    }
    void OnErrorConnectivityChange(const String& project, const String& error, const Index& parent, const Index& object,
                                   Orin::EEventsConnectivityChange kind) override {
        m_tell(ErrorConnectivityChange, project, error, parent, object, kind);
    }
    void OnErrorSwap(const String& project, const String& error, const Index& parent, const Index& first,
                     const Index& second, Orin::EEventsSwap kind) override {
        m_tell(ErrorSwap, project, error, parent, first, second, kind);
    }
    void OnErrorImport(const String& project, const String& error, const Index& object,
                       Orin::EEventsImport kind) override {
        m_tell(ErrorImport, project, error, object, kind);
    }
    void OnErrorTransaction(const String& project, const String& error) override {
        m_tell(ErrorTransaction, project, error);
    }
    void OnErrorUnexpected(const String& project, const String& error) override {
        m_tell(ErrorUnexpected, project, error);
    }
    void OnWorkingModeChange(Orin::EClientWorkingMode mode) override { m_tell(WorkingModeChange, mode); }

private:
    const Writer m_tell;
};

}  // namespace Client

}  // namespace

class EventListeners::Impl {
public:
    explicit Impl(Sink sink) : m_sink(std::move(sink)) {}

    void Attach(Orin::ContainerT<const Orin::ISnapshot>& snapshot, Orin::OrinPI& client, bool all) {
        CORINEventDispatcher& dispatcher = *CORINEventDispatcher::Instance();
        m_snapshot = &snapshot;
        m_client = &client;
        dispatcher.AddEventObserverEx(m_snapshot, &m_schematic, "quill", 0);
        dispatcher.AddEventObserverNavigator(m_snapshot, &m_navigator, "quill", 0);
        if (!all) return;
        dispatcher.AddEventObserver(m_snapshot, &m_database, "quill", 0);
        dispatcher.AddClientObserver(m_client, &m_clientListener);
    }

    void Detach() {
        CORINEventDispatcher& dispatcher = *CORINEventDispatcher::Instance();
        dispatcher.RemoveEventObserver(m_snapshot, &m_schematic);
        dispatcher.RemoveEventObserver(m_snapshot, &m_navigator);
        dispatcher.RemoveEventObserver(m_snapshot, &m_database);
        dispatcher.RemoveClientObserver(m_client, &m_clientListener);
        dispatcher.DispatchEvents();
    }

    void Play(const Event& event) {
        bool isKnown = false;
        if (event.observer == SchematicName) isKnown = PlayOneOf<EventObserverEx>(Schematic::Rows, m_schematic, event);
        if (event.observer == NavigatorName)
            isKnown = PlayOneOf<EventObserverNavigator>(Navigator::Rows, m_navigator, event);
        if (event.observer == DatabaseName) isKnown = PlayOneOf<EventObserver>(Database::Rows, m_database, event);
        if (event.observer == ClientName) isKnown = PlayOneOf<ClientObserver>(Client::Rows, m_clientListener, event);
        if (!isKnown) throw CommandError("There is no event " + event.name + " of the observer " + event.observer);
    }

    void Check() const {
        if (m_failure) std::rethrow_exception(m_failure);
    }

private:
    static constexpr const char* SchematicName = "schematic";
    static constexpr const char* NavigatorName = "navigator";
    static constexpr const char* DatabaseName = "database";
    static constexpr const char* ClientName = "client";

    const Sink m_sink;
    std::exception_ptr m_failure;
    Schematic::Listener m_schematic{Writer(SchematicName, m_sink, m_failure)};
    Navigator::Listener m_navigator{Writer(NavigatorName, m_sink, m_failure)};
    Database::Listener m_database{Writer(DatabaseName, m_sink, m_failure)};
    Client::Listener m_clientListener{Writer(ClientName, m_sink, m_failure)};
    Orin::ContainerT<const Orin::ISnapshot>* m_snapshot = nullptr;
    Orin::OrinPI* m_client = nullptr;
};

EventListeners::EventListeners(Sink sink) : m_impl(std::make_unique<Impl>(std::move(sink))) {}
EventListeners::~EventListeners() = default;

void EventListeners::Attach(Orin::ContainerT<const Orin::ISnapshot>& snapshot, Orin::OrinPI& client, bool all) {
    m_impl->Attach(snapshot, client, all);
}

void EventListeners::Detach() {
    m_impl->Detach();
}

void EventListeners::Play(const Event& event) {
    m_impl->Play(event);
}

void EventListeners::Check() const {
    m_impl->Check();
}

}  // namespace Quill::Cli
