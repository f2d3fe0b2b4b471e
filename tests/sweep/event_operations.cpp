#include "events/orin_event_dispatcher.h"
#include "tests/events/recording.h"
#include "tests/sweep/operation.h"

namespace Quill::Sweep {
namespace {

using Design = SweepDesign;
using Dispatcher = NQuillUtils::NEvents::CORINEventDispatcher;

// The name of each event and its words, without those that are empty: what the database did not tell is missing.
std::string Told(const Tests::Log& log) {
    std::string told;
    for (const std::string& line : log) {
        std::istringstream stream(line);
        for (std::string word; stream >> word;)
            if (word != "-" && word != "''" && word != "0" && word != "[]0") told += word + ' ';
    }
    return told;
}

void EditNets(Design& d) {
    Index added;
    Must(d.editor.AddNet(d.leafIndex, {"NEW"}, added));
    Must(d.editor.AddBus(d.leafIndex, {"BUS"}, added));
    Must(d.editor.AddNetQuill(d.sheetIndex, d.netIndex, {}, added));
    Must(d.editor.SetNetQuillData(d.pieceIndex, {}));
    Must(d.editor.SetLabel(d.netIndex, "N8"));
    Must(d.editor.DeleteItem(added));
    Must(d.editor.DeleteNet(d.netIndex));
    Must(d.editor.DeleteBus(d.busIndex));
}

void EditBlocks(Design& d) {
    Must(d.editor.SetLabel(d.childIndex, "H2"));
    Must(d.editor.SetName(d.leafIndex, "twig"));
    Must(d.editor.SetAttribute(d.thirdIndex, "$$Internal___ReadOnlySheet", "TRUE"));
    Must(d.editor.RemoveAttribute(d.thirdIndex, "$$Internal___ReadOnlySheet"));
    Must(d.editor.DeleteGroup(d.thirdIndex));
    Must(d.editor.DeleteComp(d.childIndex));
    Must(d.editor.DeleteBlock(d.leafIndex));
}

void EditTree(Design& d) {
    Must(d.editor.RipBus(d.ripperIndex, d.busIndex));
    Must(d.editor.SetAttribute(d.blockIndex, "$$Internal_Design_Name", "pre"));
    Must(d.editor.DeleteBus(d.busIndex));
    Must(d.editor.DeleteGroup(d.thirdIndex));
}

void TellClients(Design& d) {
    Must(d.editor.Notify([](Orin::ClientObserver& told) { told.OnErrorTransaction("a", "b"); }));
}

// An observer is registered, told of edits, and taken out.
template <class Observer, class Add, class Remove>
Operation Observes(const char* names, Add add, void (*edit)(Design&), Remove remove) {
    return {names,
            "",
            "",
            "= : <",
            [=](Design& design) {
                return Sharing(
                    design, std::make_shared<Observer>(),
                    [=](Observer& observer, Design& d) {
                        Dispatcher& dispatcher = *Dispatcher::Instance();
                        add(dispatcher, d, observer);
                        edit(d);
                        remove(dispatcher, d, observer);
                        dispatcher.DispatchEvents();
                    },
                    [](const Observer& observer) { return Told(observer.log); });
            },
            true};
}

template <class Observer, class Add>
Operation ObservesDesign(const char* names, Add add, void (*edit)(Design&)) {
    return Observes<Observer>(
        names, [add](Dispatcher& by, Design& d, Observer& told) { (by.*add)(&d.snapshot, &told, "sweep", 1); }, edit,
        [](Dispatcher& by, Design& d, Observer& told) { by.RemoveEventObserver(&d.snapshot, &told); });
}

}  // namespace

std::vector<Family> EventOperations() {
    using Plainly = Tests::Recording<Orin::EventObserver>;
    using Client = Tests::RecordingClient;
    return {
        {"NQuillUtils::NEvents::CORINEventDispatcher::",
         {ObservesDesign<Plainly>("AddEventObserver RemoveEventObserver", &Dispatcher::AddEventObserver, EditNets),
          ObservesDesign<Tests::RecordingEx>("AddEventObserverEx", &Dispatcher::AddEventObserverEx, EditNets),
          ObservesDesign<Tests::RecordingEx>("", &Dispatcher::AddEventObserverEx, EditBlocks),
          ObservesDesign<Tests::RecordingNavigator>("AddEventObserverNavigator", &Dispatcher::AddEventObserverNavigator,
                                                    EditTree),
          Observes<Client>(
              "AddClientObserver RemoveClientObserver",
              [](Dispatcher& by, Design& d, Client& told) { by.AddClientObserver(d.client.get(), &told); }, TellClients,
              [](Dispatcher& by, Design& d, Client& told) { by.RemoveClientObserver(d.client.get(), &told); }),
          {"Instance DispatchEvents GetClientObserver LockEvents UnlockEvents CORINEventDispatcher "
           "CORINEventDispatcher operator= ~CORINEventDispatcher",
           "", "", "=", Plain([](Design&) {
               struct Own : Dispatcher {};
               const Own own;
               Dispatcher::Instance()->LockEvents();
               Dispatcher::Instance()->DispatchEvents();
               Dispatcher::Instance()->UnlockEvents();
               return Dispatcher::Instance()->GetClientObserver() != nullptr;
           }),
           true}}}};
}

}  // namespace Quill::Sweep
