// The event script reader.
#include "FuzzFiles.h"
#include "ui/script/EventScript.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    (void)railwright::ui::script::ParseEventScript(railwright::fuzz::AsText(data, size));
    return 0;
}
