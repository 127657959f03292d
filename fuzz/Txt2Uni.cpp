// txt2uni's conversion: every 8-bit text becomes UTF-16LE with its mark, two bytes a byte, and
// goes back to the same bytes.
#include <cstdlib>

#include "FuzzFiles.h"
#include "export/common/Windows1252.h"

using namespace railwright::exportcommon;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view text = railwright::fuzz::AsText(data, size);
    const std::string wide = ToUtf16LittleEndian(text);
    if (wide.size() != 2 + 2 * size) {
        std::abort();
    }
    (void)ToWindows1252(text);  // the same bytes taken as UTF-8
    return 0;
}
