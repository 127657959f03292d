// The per-user settings file of the POSIX store: read as it is, then rewritten with one key
// changed, which must read back as written while another key keeps its value.
#include <cstdlib>

#include "FuzzFiles.h"
#include "support/posix/FileSettingsStore.h"

using railwright::support::posix::FileSettingsStore;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::filesystem::path file = railwright::fuzz::ScratchFolder() / "settings.ini";
    railwright::fuzz::WriteFile(file, railwright::fuzz::AsText(data, size));
    FileSettingsStore store(file.string());
    const std::string top = store.GetSetting("Polyforge", "Railwright", "Top", "-");
    (void)store.GetSetting("Polyforge", "Tips", "ExportLocation", "0");
    const std::string value = "a=b\r\n[c]%" + std::to_string(size);
    store.SaveSetting("Polyforge", "Railwright", "Left", value);
    if (store.GetSetting("Polyforge", "Railwright", "Left", "") != value ||
        store.GetSetting("Polyforge", "Railwright", "Top", "-") != top) {
        std::abort();  // the rewritten file lost or changed a value
    }
    return 0;
}
