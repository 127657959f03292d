// Texture and buffer URIs: their kinds, percent-decoding, resolving against the model's folder
// and rebasing to another folder. Encoding a path and decoding it again gives the path back.
#include <cstdlib>

#include "FuzzFiles.h"
#include "document/Uri.h"

using namespace railwright::document;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view uri = railwright::fuzz::AsText(data, size);
    (void)IsDataUri(uri);
    (void)HasScheme(uri);
    const std::string decoded = PercentDecode(uri);
    if (PercentDecode(PercentEncodePath(uri)) != uri) {
        std::abort();
    }
    if (IsRelativeReference(uri)) {
        (void)ResolveReference("/models/loco", uri);
        (void)RebaseReference(uri, "/models/loco", "/models/other/place");
    }
    (void)Base64Encode(decoded);
    return 0;
}
