// Whether a name the user gave can become a file or folder name inside an output folder: the
// project name, the route name and the texture names all end up as parts of paths, and none of
// them may lead a write outside the folder it belongs in or onto a device.
#pragma once

#include <string>
#include <string_view>

namespace railwright::support {

// Why `name` cannot be one part of a path, as the end of a sentence ("it contains the character
// \"/\""); empty when it can.
std::string FileNameFault(std::string_view name);

}  // namespace railwright::support
