#include "export/msts/MstsTextFile.h"

#include "export/common/UnicodeConversion.h"
#include "export/common/Windows1252.h"
#include "support/SupportingFunctions.h"

namespace railwright::exportmsts {

void MstsTextFile::Line(std::string_view text) {
    bytes_ += exportcommon::ToWindows1252(text);
    bytes_ += "\r\n";
}

void MstsTextFile::Lines(std::initializer_list<std::string_view> lines) {
    for (const std::string_view line : lines) {
        Line(line);
    }
}

void SaveMstsTextFile(support::Platform& platform, const std::string& toolsFolder,
                      const std::string& fileName, std::string_view bytes) {
    platform.files.DeleteFile(fileName);
    if (!platform.files.WriteFile(fileName, bytes)) {
        throw support::RunTimeError(support::kErrorPathFileAccess,
                                    "Unable to write \"" + fileName + "\"");
    }
    // The exit code is not examined: a file the tool could not convert stays 8-bit text.
    (void)exportcommon::ConvertToUnicode(platform, toolsFolder, fileName);
}

}  // namespace railwright::exportmsts
