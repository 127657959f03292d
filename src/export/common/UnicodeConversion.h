// The Unicode conversion of the MSTS text files: the tools folder's txt2uni.exe rewrites an 8-bit
// (Windows-1252) text file in place as UTF-16LE with a byte order mark, the form the simulator
// reads.
#pragma once

#include <string>

#include "support/Platform.h"
#include "support/SupportingFunctions.h"

namespace railwright::exportcommon {

// The command line: the tools folder, "txt2uni.exe ", and the file as given (its short form).
std::string Txt2UniCommandLine(const std::string& toolsFolder, const std::string& shortFile);

// Runs txt2uni on `file` and waits for it to end. Throws support::RunTimeError (file not found)
// when the tool cannot be started; otherwise returns what the run reported, whose exit code the
// MSTS writers leave unexamined.
support::RunResult ConvertToUnicode(support::Platform& platform, const std::string& toolsFolder,
                                    const std::string& file);

}  // namespace railwright::exportcommon
