#include <iostream>

#include "labels/bus_contents_utils.h"
#include "properties/property_mangler.h"

int main() {
    // The nets of a bus that is made of buses.
    std::cout << Quill::BusContents::Utils::resolve_bus_contents("CPU", {{"CPU", "DATA,CLK"}, {"DATA", "D0,D1"}})
              << '\n';

    // The name under which a design stores what the library keeps for itself, and back.
    std::string stored, plain;
    Quill::Utils::CPropertyMangler::Mangle("CUSTOM_ORDER", Quill::DataModel::PropertyType::Internal, stored);
    Quill::Utils::CPropertyMangler::Unmangle(stored.c_str(), plain);
    std::cout << stored << " holds " << plain << '\n';
}
