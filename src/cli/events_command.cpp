// quill events: what an application would hear of edits.
#include <exception>
#include <iostream>
#include <thread>

#include <fmt/format.h>

#include "cli/command.h"
#include "cli/console.h"
#include "cli/design_lookup.h"
#include "cli/event_clock.h"
#include "cli/event_record.h"
#include "cli/json.h"
#include "cli/open_design.h"
#include "cli/whole_file.h"
#include "events/orin_event_dispatcher.h"

namespace Quill::Cli {

namespace {

using NQuillUtils::NEvents::CORINEventDispatcher;

struct EventsOptions {
    std::string design;
    std::string edits;
    std::string record;
    std::string replay;
    bool all = false;
    bool noTimes = false;
    bool json = false;
};

// The value of an argument; in quotation marks where its end would not be seen.
std::string ValueText(const Json& value) {
    const auto* const text = value.If<std::string>();
    if (text == nullptr) return value.Text();
    return text->empty() || text->find_first_of(" ,") != std::string::npos ? '"' + *text + '"' : *text;
}

// "object net:12, block block:1, label OUT"
std::string Details(const Json& arguments) {
    std::string details;
    for (const auto& [name, value] : *arguments.If<Json::Object>()) {
        if (!details.empty()) details += ", ";
        details += name + " " + ValueText(value);
    }
    return details;
}

void Print(const std::vector<HeardEvent>& events, const EventsOptions& options) {
    if (options.json) {
        for (const HeardEvent& event : events)
            PrintJson(AsJson(event, !options.noTimes), Json::OneLine);
        return;
    }
    std::vector<Table::Column> columns{{"Line", Table::Align::Right}};
    if (!options.noTimes) columns.push_back({"Waited (ms)", Table::Align::Right});
    columns.insert(columns.end(), {{"Observer"}, {"Event"}, {"Arguments"}});
    Table table(columns);
    for (const HeardEvent& heard : events) {
        std::vector<std::string> row{fmt::format("{}", heard.line)};
        if (!options.noTimes) row.push_back(fmt::format("{:.3f}", static_cast<double>(heard.waited.count()) / 1000));
        row.insert(row.end(), {heard.event.observer, heard.event.name, Details(heard.event.arguments)});
        table.AddRow(row);
    }
    std::cout << table.Render(HasColours());
}

// What the steps of the script raise in the design. `failure` is filled when a step fails.
std::vector<HeardEvent> Listen(OpenDesign& design, const EventsOptions& options, const std::vector<ScriptStep>& steps,
                               std::exception_ptr& failure) {
    const std::unique_ptr<Orin::OrinPI> client = design.database.Connect("edits");
    Orin::ContainerT<const Orin::ISnapshot> edited;
    Need(client->GetSnapshotByName(edited, Orin::DesignDb::WorkingSnapshot));
    ScriptRun run(options.edits, edited);
    EventClock clock(design.database, run);

    std::vector<HeardEvent> heard;
    EventListeners listeners([&](Event event) {
        const auto waited = std::chrono::duration_cast<std::chrono::microseconds>(clock.Waited());
        heard.push_back({std::move(event), clock.Line(), waited});
    });
    listeners.Attach(design.snapshot, *design.client, options.all);
    std::thread editing([&] {
        try {
            run.Execute(steps);
        } catch (...) {
            failure = std::current_exception();
        }
        clock.End();
    });
    CORINEventDispatcher& dispatcher = *CORINEventDispatcher::Instance();
    while (clock.Wait())
        dispatcher.DispatchEvents();
    editing.join();
    dispatcher.DispatchEvents();
    listeners.Detach();
    listeners.Check();
    return heard;
}

ExitCode Follow(const EventsOptions& options) {
    const std::vector<ScriptStep> steps = ParseEditScript(options.edits, ReadWholeFile(options.edits));
    OpenDesign read = ReadDesign(options.design);
    OpenDesign design = read.isStored ? CopyOf(read) : std::move(read);
    std::exception_ptr failure;
    const std::vector<HeardEvent> heard = Listen(design, options, steps, failure);
    Print(heard, options);
    if (failure) {
        std::cout.flush();
        std::rethrow_exception(failure);
    }
    if (!options.record.empty()) WriteRecord(options.record, design.name, heard);
    return Done;
}

ExitCode Replay(const EventsOptions& options) {
    std::vector<HeardEvent> heard;
    const HeardEvent* current = nullptr;
    EventListeners listeners([&](Event event) { heard.push_back({std::move(event), current->line, current->waited}); });
    ReadRecord(options.replay, [&](const HeardEvent& kept) {
        current = &kept;
        listeners.Play(kept.event);
    });
    listeners.Check();
    Print(heard, options);
    return Done;
}

ExitCode RunEvents(const EventsOptions& options) {
    if (!options.replay.empty()) return Replay(options);
    if (options.edits.empty()) throw CommandError("DESIGN and EDITS are required, or --replay");
    return Follow(options);
}

}  // namespace

void AddEventsCommand(CommandLine& line) {
    const auto options = std::make_shared<EventsOptions>();
    const Syntax command = line.Add(
        "events", "Show which events an application would hear of edits",
        "A second thread carries out the edit script EDITS (docs/edit-script.md) on the design in memory; the\n"
        "main thread dispatches the events and shows each with the line that raised it and the time that it\n"
        "waited. DESIGN itself stays as it is. When a line fails, its transaction is taken back and the exit\n"
        "code is 2; what is shown is what happened.\n"
        "\n"
        "Examples:\n"
        "  quill events board.qdb rename.edits\n"
        "  quill events board.qdb rename.edits --all --json --record rename.events\n"
        "  quill events --replay rename.events",
        [options] { return RunEvents(*options); });
    const Parameter design =
        command.Option("DESIGN", options->design, "design file (.qdb), JSON, or the root schematic of a KiCad design");
    const Parameter edits = command.Option("EDITS", options->edits, "edit script");
    command.Flag("--all", options->all, "also the callbacks of the database and of the connection");
    command.Flag("--no-times", options->noTimes, "without the times, which differ from run to run");
    const Parameter record = command.Option("--record", options->record, "file to keep the events in");
    command.Option("--replay", options->replay, "record whose events the observers are to hear again")
        .Excludes(design)
        .Excludes(edits)
        .Excludes(record);
    AddJsonFlag(command, options->json);
}

}  // namespace Quill::Cli
