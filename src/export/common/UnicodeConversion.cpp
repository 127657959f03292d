#include "export/common/UnicodeConversion.h"

namespace railwright::exportcommon {

std::string Txt2UniCommandLine(const std::string& toolsFolder, const std::string& shortFile) {
    return support::JoinPath(toolsFolder, "txt2uni.exe") + " " + shortFile;
}

support::RunResult ConvertToUnicode(support::Platform& platform, const std::string& toolsFolder,
                                    const std::string& file) {
    const std::string commandLine =
        Txt2UniCommandLine(toolsFolder, support::ShortPath(platform.files, file));
    support::RunResult result =
        support::RunAndWait(platform, commandLine, false, support::WindowStyle::Hidden, nullptr);
    if (!result.started) {
        throw support::RunTimeError(support::kErrorFileNotFound,
                                    "Unable to start \"" + commandLine + "\"");
    }
    return result;
}

}  // namespace railwright::exportcommon
