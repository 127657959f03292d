#include "support/CommandLine.h"

namespace railwright::support {
namespace {

bool IsSeparator(char c) {
    return c == ' ' || c == '\t';
}

}  // namespace

std::vector<std::string> SplitCommandLine(std::string_view commandLine) {
    std::vector<std::string> arguments;
    std::string current;
    bool inArgument = false;
    bool inQuotes = false;
    size_t i = 0;
    while (i < commandLine.size()) {
        const char c = commandLine[i];
        if (!inQuotes && IsSeparator(c)) {
            if (inArgument) {
                arguments.push_back(std::move(current));
                current.clear();
                inArgument = false;
            }
            ++i;
            continue;
        }
        inArgument = true;
        if (c == '\\') {
            size_t count = 0;
            while (i + count < commandLine.size() && commandLine[i + count] == '\\') {
                ++count;
            }
            const bool quoteFollows =
                i + count < commandLine.size() && commandLine[i + count] == '"';
            if (!quoteFollows) {
                current.append(count, '\\');
                i += count;
            } else {
                current.append(count / 2, '\\');
                i += count;
                if (count % 2 == 1) {
                    current += '"';
                    ++i;
                }
                // With an even count the quote is read by the next round as a quote.
            }
        } else if (c == '"') {
            if (inQuotes && i + 1 < commandLine.size() && commandLine[i + 1] == '"') {
                current += '"';
                i += 2;
            } else {
                inQuotes = !inQuotes;
                ++i;
            }
        } else {
            current += c;
            ++i;
        }
    }
    if (inArgument) {
        arguments.push_back(std::move(current));
    }
    return arguments;
}

std::string QuoteArgument(std::string_view argument) {
    if (!argument.empty() && argument.find_first_of(" \t\r\n\v\"") == std::string_view::npos) {
        return std::string(argument);
    }
    std::string quoted = "\"";
    size_t i = 0;
    while (true) {
        size_t backslashes = 0;
        while (i < argument.size() && argument[i] == '\\') {
            ++backslashes;
            ++i;
        }
        if (i == argument.size()) {
            // Doubled, so that the closing quote stays a quote.
            quoted.append(backslashes * 2, '\\');
            break;
        }
        if (argument[i] == '"') {
            quoted.append(backslashes * 2 + 1, '\\');
        } else {
            quoted.append(backslashes, '\\');
        }
        quoted += argument[i];
        ++i;
    }
    quoted += '"';
    return quoted;
}

}  // namespace railwright::support
