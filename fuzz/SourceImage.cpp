// The TGA and BMP readers of the ACE encoder, and the encoder on what they read. The first byte
// chooses the encoder's options; the rest is the picture file.
#include "FuzzFiles.h"
#include "ace/AceEncoder.h"
#include "ace/SourceImage.h"

using namespace railwright::ace;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 1) {
        return 0;
    }
    const Result<Image> image = DecodeSourceImage({data + 1, size - 1});
    if (!image) {
        return 0;
    }
    // Encoding is linear in the pixels: big pictures only slow the search down.
    if (static_cast<int64_t>(image.Value().width) * image.Value().height > 512 * 512) {
        return 0;
    }
    const AceOptions options{(data[0] & 1) != 0, (data[0] & 2) != 0 ? AceData::Dxt1
                                                                    : AceData::Structured};
    (void)EncodeAceBody(image.Value(), options);
    return 0;
}
