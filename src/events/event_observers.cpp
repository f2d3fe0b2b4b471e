#include "events/event_observers.h"

namespace NQuillUtils::NEvents {

EventObserverEx::~EventObserverEx() = default;

void EventObserverEx::OnAddNetQuill(Orin::Index, Orin::Index, const std::string&) {}
void EventObserverEx::OnAddNet(Orin::Index, Orin::Index, const std::string&) {}
void EventObserverEx::OnAddBus(Orin::Index, Orin::Index, const std::string&) {}
void EventObserverEx::OnDeleteGroup(Orin::Index, Orin::Index, const std::string&, const std::string&) {}
void EventObserverEx::OnDeleteNetQuill(Orin::Index, Orin::Index, const std::string&) {}
void EventObserverEx::OnDeleteNet(Orin::Index, Orin::Index, const std::string&) {}
void EventObserverEx::OnDeleteBus(Orin::Index, Orin::Index, const std::string&) {}
void EventObserverEx::OnDeleteBlock(Orin::Index, const std::string&) {}
void EventObserverEx::OnDeleteBlockComp(Orin::Index, Orin::Index, Orin::Index, std::uint32_t) {}
void EventObserverEx::OnBeforeNetQuillSetData(Orin::Index, Orin::Index, Orin::Index, const Orin::NetDataQuill&) {}
void EventObserverEx::OnAfterNetQuillSetData(Orin::Index, Orin::Index, Orin::Index, const Orin::NetDataQuill&) {}
void EventObserverEx::OnBeforeLabelChange(Orin::Index, Orin::Index, const std::string&) {}
void EventObserverEx::OnAfterLabelChange(Orin::Index, Orin::Index, const std::string&) {}
void EventObserverEx::OnBlockNameChange(Orin::Index, const std::string&, const std::string&) {}
void EventObserverEx::OnReadOnlyFlagChange(Orin::Index) {}

EventObserverNavigator::~EventObserverNavigator() = default;

void EventObserverNavigator::OnBeforeRipBus(Orin::Index, Orin::Index, const Orin::ListT<Orin::Index>&) {}
void EventObserverNavigator::OnAfterRipBus(Orin::Index, Orin::Index, const Orin::ListT<Orin::Index>&) {}
void EventObserverNavigator::OnDeleteBus(Orin::Index, Orin::Index, const Orin::ListT<Orin::Index>&) {}
void EventObserverNavigator::OnDeleteBlock(Orin::Index) {}
void EventObserverNavigator::OnDesignRootChange(Orin::Index, const std::string&, const std::string&) {}

}  // namespace NQuillUtils::NEvents
