#include "support/CommandLine.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace railwright::support {
namespace {

struct SplitCase {
    std::string commandLine;
    std::vector<std::string> arguments;
};

TEST(CommandLineSplit, FollowsTheWindowsRuntimeRules) {
    const SplitCase cases[] = {
        // The runtime's own examples.
        {R"("a b c" d e)", {"a b c", "d", "e"}},
        {R"("ab\"c" "\\" d)", {R"(ab"c)", R"(\)", "d"}},
        {R"(a\\\b d"e f"g h)", {R"(a\\\b)", "de fg", "h"}},
        {R"(a\\\"b c d)", {R"(a\"b)", "c", "d"}},
        {R"(a\\\\"b c" d e)", {R"(a\\b c)", "d", "e"}},
        {R"(a"b"" c d)", {R"(ab" c d)"}},
        // Two quotes inside a quoted stretch give one and the stretch goes on.
        {R"("a""b c")", {R"(a"b c)"}},
        {R"("""")", {R"(")"}},
        // Empty arguments, blanks and tabs.
        {"", {}},
        {" \t  ", {}},
        {R"("")", {""}},
        {R"(a "" b)", {"a", "", "b"}},
        {"  lead\t\ttrail  ", {"lead", "trail"}},
        {"a\nb", {"a\nb"}},
        // Unterminated quotes and trailing backslashes.
        {R"(x "open to the end)", {"x", "open to the end"}},
        {R"(x\ y\\)", {R"(x\)", R"(y\\)"}},
        {R"("dir\\" next)", {R"(dir\)", "next"}},
        // A tool's command line as the texture conversion builds it.
        {R"(C:\Tools\MakeACE.exe C:\MODELS~1\tex.tga "C:\Out Dir\tex.ACE" -trans -zlib)",
         {R"(C:\Tools\MakeACE.exe)", R"(C:\MODELS~1\tex.tga)", R"(C:\Out Dir\tex.ACE)", "-trans",
          "-zlib"}},
        {R"("/opt/rw tools/RWAceTool.exe" "/tmp/in.tga" -o "/out/a b.ace" -noCompress)",
         {"/opt/rw tools/RWAceTool.exe", "/tmp/in.tga", "-o", "/out/a b.ace", "-noCompress"}},
    };
    for (const SplitCase& testCase : cases) {
        EXPECT_EQ(SplitCommandLine(testCase.commandLine), testCase.arguments)
            << "command line: " << testCase.commandLine;
    }
}

TEST(CommandLineQuote, QuotesOnlyWhatNeedsIt) {
    const std::pair<std::string, std::string> cases[] = {
        {"plain", "plain"},
        {R"(C:\Tools\x.exe)", R"(C:\Tools\x.exe)"},
        {R"(trailing\)", R"(trailing\)"},
        {"", R"("")"},
        {"a b", R"("a b")"},
        {"tab\there", "\"tab\there\""},
        {R"(C:\Out Dir\)", R"("C:\Out Dir\\")"},
        {R"(say "hi")", R"("say \"hi\"")"},
        {R"(a\"b)", R"("a\\\"b")"},
        {R"(a\\ b)", R"("a\\ b")"},
    };
    for (const auto& [argument, quoted] : cases) {
        EXPECT_EQ(QuoteArgument(argument), quoted) << "argument: " << argument;
    }
}

TEST(CommandLineQuote, SplitGivesQuotedArgumentsBack) {
    const std::vector<std::string> tricky = {
        "",         " ",       "\"",       "\\",        "\\\\\"",    "a b\\",
        "\\\"\\\\", "\"\"",    "x\\\\ y",  "tab\there", "new\nline", "C:\\Program Files\\",
        "\\\\\\",   "end\\\"", "ünï cödé", "--exit=3",  "a\"\"b",    "\" \\ \"",
    };
    std::string commandLine;
    for (const std::string& argument : tricky) {
        EXPECT_EQ(SplitCommandLine(QuoteArgument(argument)), std::vector<std::string>{argument})
            << "argument: " << argument;
        commandLine += QuoteArgument(argument) + " ";
    }
    EXPECT_EQ(SplitCommandLine(commandLine), tricky);
}

}  // namespace
}  // namespace railwright::support
