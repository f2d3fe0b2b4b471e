// Uses the library from static initialisers, before any call to it, and then once through each of its libraries.
#include <iostream>
#include <string>
#include <vector>

#include "attributes/attribute_names.h"
#include "config/flow_type_info.h"
#include "designdb/database.h"
#include "events/orin_event_dispatcher.h"
#include "platform/environment.h"
#include "platform/interface_manager.h"
#include "properties/property_mangler.h"
#include "sheets/sheet_name.h"

namespace {

// What static objects of a program find: both services are registered and the constants are there.
struct StaticUser {
    bool dispatcher = Quill::InterfaceManager::instance().getFactory("IORINEventDispatcher") != nullptr;
    bool flows = Quill::InterfaceManager::instance().getFactory("IFlowTypeInfoProvider") != nullptr;
    std::string term = NQuillUtils::NAttributeNames::refDesignator;
    std::string sheet = static_cast<const char*>(Quill::def_sheet_name);
    std::string mangled;
    StaticUser() { Quill::Utils::CPropertyMangler::Mangle("KEY", Quill::DataModel::PropertyType::Internal, mangled); }
} const staticUser;

}  // namespace

int main() {
    std::vector<std::string> folders;
    zolt::env::GetWDIRs(folders);
    Orin::DesignDb::Database database;
    if (!Orin::DesignDb::Database::Create(database, "consumer")) return 2;
    std::cout << staticUser.dispatcher << staticUser.flows << ' ' << staticUser.term << ' ' << staticUser.sheet << ' '
              << staticUser.mangled << ' ' << database.ProjectName().View() << '\n';
}
