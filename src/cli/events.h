// The events that an application hears, as data: to show them, to keep them, and to play them again.
#pragma once

#include <exception>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "cli/json.h"
#include "orin/orin.h"

namespace Quill::Cli {

// One call of an observer.
struct Event {
    std::string observer;  // "schematic", "navigator", "database" or "client"
    std::string name;      // of the operation
    Json arguments;        // by their names; indexes as docs/design-json.md has them, bytes as they are
};

// An observer of each kind, which write down what they are called with. All operations are for the thread that owns
// the dispatcher.
class EventListeners {
public:
    using Sink = std::function<void(Event)>;

    // `sink` is called with each event. What it throws is kept until Check, since nothing leaves an observer.
    explicit EventListeners(Sink sink);
    EventListeners(const EventListeners&) = delete;
    EventListeners& operator=(const EventListeners&) = delete;
    ~EventListeners();

    // Registers the schematic observers with the dispatcher, and those of the database's own callbacks where `all`.
    // Both arguments are borrowed until Detach, and Detach comes before the end of this object.
    void Attach(Orin::ContainerT<const Orin::ISnapshot>& snapshot, Orin::OrinPI& client, bool all);
    // What is queued then is not heard any more.
    void Detach();

    // Calls the operation as it was called once. Throws a CommandError, with nothing called, when there is no such
    // operation or an argument is missing or of another kind.
    void Play(const Event& event);

    // Throws what the sink threw first.
    void Check() const;

private:
    class Impl;
    std::unique_ptr<Impl> m_impl;
};

}  // namespace Quill::Cli
