#include "export/common/Windows1252.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace railwright::exportcommon {
namespace {

struct EncodingCase {
    std::string utf8;
    std::string expected;
};

TEST(ToWindows1252, MapsTheCodePageAndWritesAQuestionMarkForAnythingElse) {
    const std::vector<EncodingCase> cases = {
        {"Plain ASCII ( 1 )\r\n", "Plain ASCII ( 1 )\r\n"},
        {"caf\xC3\xA9 \xC3\x97 \xC3\xBF", "caf\xE9 \xD7 \xFF"},                  // Latin-1 range
        {"\xE2\x82\xAC \xE2\x80\x93 \xC5\x92 \xC5\xB8", "\x80 \x96 \x8C \x9F"},  // 0x80 to 0x9F
        {"\xE2\x86\x92 \xF0\x9F\x9A\x82 \xCE\xA9", "? ? ?"},  // arrow, locomotive, omega
        {"\xC2\x81 \xC2\x80", "\x81 ?"},  // C1 controls: the five undefined bytes stand for theirs
        // Malformed UTF-8: a cut sequence, a stray continuation, an overlong "/", a surrogate.
        {"a\xC3", "a?"},
        {"\x80z", "?z"},
        {"\xC0\xAF", "??"},
        {"\xED\xA0\x80", "???"},
    };
    for (const EncodingCase& encoding : cases) {
        EXPECT_EQ(ToWindows1252(encoding.utf8), encoding.expected) << encoding.utf8;
    }
}

TEST(FromWindows1252, GivesTheUnicodeCharacterOfEveryByte) {
    EXPECT_EQ(FromWindows1252('A'), u'A');
    EXPECT_EQ(FromWindows1252(0x80), u'\u20AC');
    EXPECT_EQ(FromWindows1252(0x9F), u'\u0178');
    EXPECT_EQ(FromWindows1252(0x81), u'\u0081');  // undefined in the code page: kept as a control
    EXPECT_EQ(FromWindows1252(0xE9), u'\u00E9');
    // Every byte the encoder writes comes back as the character it stood for.
    for (int byte = 0; byte < 256; ++byte) {
        const char16_t character = FromWindows1252(static_cast<uint8_t>(byte));
        std::string utf8;
        if (character < 0x80) {
            utf8 = std::string(1, static_cast<char>(character));
        } else if (character < 0x800) {
            utf8 = {static_cast<char>(0xC0 | (character >> 6)),
                    static_cast<char>(0x80 | (character & 0x3F))};
        } else {
            utf8 = {static_cast<char>(0xE0 | (character >> 12)),
                    static_cast<char>(0x80 | ((character >> 6) & 0x3F)),
                    static_cast<char>(0x80 | (character & 0x3F))};
        }
        EXPECT_EQ(ToWindows1252(utf8), std::string(1, static_cast<char>(byte))) << "byte " << byte;
    }
}

}  // namespace
}  // namespace railwright::exportcommon
