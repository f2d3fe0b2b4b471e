// The keys of the attributes that the library keeps for itself. They are stored as internal properties, that is with
// the prefix of properties/property_mangler.h. Stored designs carry them letter by letter: three underscores lead the
// keys of net and bus data, two those of marks and dates, none the placeholder.
#pragma once

namespace NQuillUtils::NReservedKeys {

// One key each, without the prefix.
inline constexpr const char* NetsQuillIndices = "___NetsQuillIndices";
inline constexpr const char* NetsQuillNames = "___NetsQuillNames";
inline constexpr const char* Signals = "___Signals";      // of a bus: positions and nets
inline constexpr const char* Bus = "___Bus";              // of a ripper: the bus that it taps
inline constexpr const char* SignalMap = "___SignalMap";  // of a ripper
inline constexpr const char* BlkDate = "__BlkDate";       // the time stamp of a block or symbol
inline constexpr const char* LocalSymbol = "__LocalSymbol";
inline constexpr const char* ReadOnlySheet = "__ReadOnlySheet";
inline constexpr const char* NamePlaceholder = "NAME_PLACEHOLDER";

}  // namespace NQuillUtils::NReservedKeys
