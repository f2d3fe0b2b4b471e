// Reader of the installation's name-map files.
#pragma once

#include <map>
#include <string>

#include "quillutils_export.h"

namespace Quill {

// An ordered map of text to text, filled from map files. A value; one thread at a time.
//
// A map file is a sequence of texts in double quotes, taken in pairs as key and value; everything outside the quotes is
// ignored, and so is what follows a NUL. There is no escape character. A text that is still open at the end of the file
// ends there. The last key of an odd number of texts gets the value "". Anything after the last pair, be it only a line
// end, is read as one more pair of two empty texts; callers of old know that the key "" means nothing.
//
// Paths are tried as they are composed and then with "/" for every backslash. Of a file that cannot be read nothing is
// taken, and nothing is reported.
class QUILLUTILS_EXPORT MapCfgFile {
public:
    // Merges the pairs of the file at `path` into the map; a later pair replaces an earlier one with the same key.
    void load(const std::string& path);

    // Loads TOVE_HOME + "\standard\" + `fileName`.
    void loadFileFromDefaultLocations(const std::string& fileName);

    // Loads the map file of a flow type, named in any letter case: "mapnl.cfg" of NETLIST, "map.cfg" of every other.
    void loadFromDefaultLocations(const std::string& flowType);

    // The same for the schematic flow.
    void loadFromDefaultLocations();

    std::map<std::string, std::string>& getMap() noexcept { return m_map; }
    const std::map<std::string, std::string>& getMap() const noexcept { return m_map; }

private:
    std::map<std::string, std::string> m_map;
};

}  // namespace Quill
