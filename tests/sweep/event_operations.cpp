#include <sstream>

#include "events/orin_event_dispatcher.h"
#include "events/orin_notification_data.h"
#include "tests/events/recording.h"
#include "tests/sweep/operation.h"

namespace Quill::Sweep {
namespace {

using namespace NQuillUtils::NEvents;

// What observers were told: the name of each event and its words, without those that are empty, so that what the
// database did not tell is missing.
std::string Told(const Tests::Log& log) {
    std::vector<std::string> words;
    for (const std::string& line : log) {
        std::istringstream stream(line);
        for (std::string word; stream >> word;)
            if (word != "-" && word != "''" && word != "0" && word != "[]0") words.push_back(word);
    }
    return Said(words);
}

void EditNets(SweepDesign& design) {
    Index added;
    Must(design.editor.AddNet(design.leafIndex, {"NEW"}, added));
    Must(design.editor.AddBus(design.leafIndex, {"BUS"}, added));
    Must(design.editor.AddNetQuill(design.sheetIndex, design.netIndex, {}, added));
    Must(design.editor.SetNetQuillData(design.pieceIndex, {}));
    Must(design.editor.SetLabel(design.netIndex, "N8"));
    Must(design.editor.DeleteItem(added));
    Must(design.editor.DeleteNet(design.netIndex));
    Must(design.editor.DeleteBus(design.busIndex));
}

void EditBlocks(SweepDesign& design) {
    Must(design.editor.SetLabel(design.childIndex, "H2"));
    Must(design.editor.SetName(design.leafIndex, "twig"));
    Must(design.editor.SetAttribute(design.thirdIndex, "$$Internal___ReadOnlySheet", "TRUE"));
    Must(design.editor.RemoveAttribute(design.thirdIndex, "$$Internal___ReadOnlySheet"));
    Must(design.editor.DeleteGroup(design.thirdIndex));
    Must(design.editor.DeleteComp(design.childIndex));
    Must(design.editor.DeleteBlock(design.leafIndex));
}

void EditTree(SweepDesign& design) {
    Must(design.editor.RipBus(design.ripperIndex, design.busIndex));
    Must(design.editor.SetAttribute(design.blockIndex, "$$Internal_Design_Name", "pre"));
    Must(design.editor.DeleteBus(design.busIndex));
    Must(design.editor.DeleteGroup(design.thirdIndex));
}

// An observer is registered, told of edits, and taken out.
template <class Observer, class Add>
Operation Observes(const char* names, Add add, void (*edit)(SweepDesign&)) {
    return {.names = names,
            .degraded = "= : <",
            .prepare = [=](SweepDesign& design) {
                const auto observer = std::make_shared<Observer>();
                return Call{[=, &design] {
                                CORINEventDispatcher& dispatcher = *CORINEventDispatcher::Instance();
                                observer->log.clear();
                                (dispatcher.*add)(&design.snapshot, observer.get(), "sweep", 1);
                                edit(design);
                                dispatcher.RemoveEventObserver(&design.snapshot, observer.get());
                                dispatcher.DispatchEvents();
                                return "";
                            },
                            [=] { return Told(observer->log); }};
            },
            .once = true};
}

}  // namespace

std::vector<Family> EventOperations() {
    using Dispatcher = CORINEventDispatcher;
    std::vector<Family> all;
    all.push_back(
        {"NQuillUtils::NEvents::CORINEventDispatcher::",
         {Observes<Tests::Recording<Orin::EventObserver>>("AddEventObserver RemoveEventObserver",
                                                          &Dispatcher::AddEventObserver, EditNets),
          Observes<Tests::RecordingEx>("AddEventObserverEx", &Dispatcher::AddEventObserverEx, EditNets),
          Observes<Tests::RecordingEx>("", &Dispatcher::AddEventObserverEx, EditBlocks),
          Observes<Tests::RecordingNavigator>("AddEventObserverNavigator", &Dispatcher::AddEventObserverNavigator,
                                              EditTree),
          {.names = "AddClientObserver RemoveClientObserver",
           .degraded = "= : <",
           .prepare =
               [](SweepDesign& design) {
                   const auto observer = std::make_shared<Tests::RecordingClient>();
                   return Call{[observer, &design] {
                                   Dispatcher& dispatcher = *Dispatcher::Instance();
                                   observer->log.clear();
                                   dispatcher.AddClientObserver(design.client.get(), observer.get());
                                   Must(design.editor.Notify(
                                       [](Orin::ClientObserver& told) { told.OnErrorTransaction("a", "b"); }));
                                   dispatcher.RemoveClientObserver(design.client.get(), observer.get());
                                   dispatcher.DispatchEvents();
                                   return "";
                               },
                               [observer] { return Told(observer->log); }};
               }},
          // The dispatcher is made and copied by derived classes only.
          {.names = "Instance DispatchEvents GetClientObserver LockEvents UnlockEvents CORINEventDispatcher "
                    "CORINEventDispatcher operator= ~CORINEventDispatcher",
           .prepare = Plain([](SweepDesign&) {
               struct Own : Dispatcher {};
               const Own own;
               Dispatcher& dispatcher = *Dispatcher::Instance();
               dispatcher.LockEvents();
               dispatcher.DispatchEvents();
               dispatcher.UnlockEvents();
               return Said(dispatcher.GetClientObserver() != nullptr);
           })}}});
    all.push_back({"NQuillUtils::NEvents::",
                   {{.names = "EventObserverEx::OnAddNetQuill EventObserverEx::OnAddNet EventObserverEx::OnAddBus "
                              "EventObserverEx::OnDeleteGroup EventObserverEx::OnDeleteNetQuill "
                              "EventObserverEx::OnDeleteNet EventObserverEx::OnDeleteBus "
                              "EventObserverEx::OnDeleteBlock EventObserverEx::OnDeleteBlockComp "
                              "EventObserverEx::OnBeforeNetQuillSetData EventObserverEx::OnAfterNetQuillSetData "
                              "EventObserverEx::OnBeforeLabelChange EventObserverEx::OnAfterLabelChange "
                              "EventObserverEx::OnBlockNameChange EventObserverEx::OnReadOnlyFlagChange "
                              "EventObserverEx::~EventObserverEx",
                     .prepare = Plain([](SweepDesign& design) {
                         struct Own : EventObserverEx {} own;
                         const Index& net = design.netIndex;
                         own.OnAddNetQuill(net, net, "");
                         own.OnAddNet(net, net, "");
                         own.OnAddBus(net, net, "");
                         own.OnDeleteGroup(net, net, "", "");
                         own.OnDeleteNetQuill(net, net, "");
                         own.OnDeleteNet(net, net, "");
                         own.OnDeleteBus(net, net, "");
                         own.OnDeleteBlock(net, "");
                         own.OnDeleteBlockComp(net, net, net, 1);
                         own.OnBeforeNetQuillSetData(net, net, net, {});
                         own.OnAfterNetQuillSetData(net, net, net, {});
                         own.OnBeforeLabelChange(net, net, "");
                         own.OnAfterLabelChange(net, net, "");
                         own.OnBlockNameChange(net, "", "");
                         own.OnReadOnlyFlagChange(net);
                         return "";
                     })},
                    {.names = "EventObserverNavigator::OnBeforeRipBus EventObserverNavigator::OnAfterRipBus "
                              "EventObserverNavigator::OnDeleteBus EventObserverNavigator::OnDeleteBlock "
                              "EventObserverNavigator::OnDesignRootChange "
                              "EventObserverNavigator::~EventObserverNavigator",
                     .prepare = Plain([](SweepDesign& design) {
                         struct Own : EventObserverNavigator {} own;
                         const Index& bus = design.busIndex;
                         own.OnBeforeRipBus(bus, bus, {});
                         own.OnAfterRipBus(bus, bus, {});
                         own.OnDeleteBus(bus, bus, {});
                         own.OnDeleteBlock(bus);
                         own.OnDesignRootChange(bus, "", "");
                         return "";
                     })}}});
    all.push_back({"NQuillUtils::NEvents::ORINNOTIFICATIONDATA::",
                   {{.names = "ORINNOTIFICATIONDATA ORINNOTIFICATIONDATA ORINNOTIFICATIONDATA ORINNOTIFICATIONDATA "
                              "ORINNOTIFICATIONDATA ORINNOTIFICATIONDATA ORINNOTIFICATIONDATA ORINNOTIFICATIONDATA "
                              "ORINNOTIFICATIONDATA ORINNOTIFICATIONDATA ORINNOTIFICATIONDATA "
                              "~ORINNOTIFICATIONDATA operator= Call IsValid",
                     .prepare = Plain([](SweepDesign& design) {
                         using Data = ORINNOTIFICATIONDATA;
                         using Type = Data::Type;
                         const Index& net = design.netIndex;
                         Tests::Recording<Orin::EventObserver> events;
                         Tests::RecordingClient client;
                         std::list<Data> records;
                         records.emplace_back(Type::OnBeforeChange, &events, net, 6, false);
                         records.emplace_back(Type::OnAfterAdd, &events, net, net, 57, false);
                         records.emplace_back(Type::OnLock, &events, net, "a", "b");
                         records.emplace_back(Type::OnMultiLock, &events, Orin::ListT<Index>(), "a", "b");
                         records.emplace_back(Type::OnBeforeTransaction, &events, 7UL);
                         records.emplace_back(Type::OnWorkingModeChange, &client, "", "", 1);
                         records.emplace_back(Type::OnErrorChange, &client, "a", "b", net, 6);
                         records.emplace_back(Type::OnErrorAdd, &client, "a", "b", net, net, 57);
                         records.emplace_back(Type::OnErrorSwap, &client, "a", "b", net, net, net, 1);
                         records.emplace_back(Type::OnErrorUnexpected, &client);
                         records.push_back(records.back());
                         for (Data& record : records)
                             record.Call();
                         records.front() = records.back();
                         return Said(static_cast<int>(events.log.size() + client.log.size()));
                     })}}});
    return all;
}

}  // namespace Quill::Sweep
