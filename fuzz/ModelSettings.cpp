// The settings and custom fields in a model's extras through a whole application of the plug-in
// (ModelSettingsInput.h).
#include "ModelSettingsInput.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    (void)railwright::fuzz::RunModelSettingsInput(data, size);
    return 0;
}
