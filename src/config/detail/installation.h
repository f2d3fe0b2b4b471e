// The folder in which the product is installed, as the environment names it.
#pragma once

#include <string>

namespace Quill::ConfigDetail {

// The value of TOVE_HOME as it stands, or "".
std::string InstallationRoot();

// The same with "/" for every backslash and small letters for capital ones. Only for texts that are compared and
// shown in that form: on a file system that tells letter case, such a path need not lead anywhere.
std::string NormalisedInstallationRoot();

}  // namespace Quill::ConfigDetail
