// The Windows command-line convention, implemented once for every caller: splitting a command
// line into arguments the way a Windows program's runtime does, and quoting an argument so that
// the split gives it back unchanged.
//
// The rules (those of the C runtime since 2008):
// - Blanks and tabs outside double quotes separate arguments; runs of them count once.
// - A double quote opens or closes a quoted stretch; blanks inside it belong to the argument.
//   Inside a quoted stretch, two double quotes in a row give one literal double quote and the
//   stretch goes on.
// - Backslashes are literal unless a double quote follows them: 2n backslashes and a quote give
//   n backslashes and the quote acts as above; 2n+1 backslashes and a quote give n backslashes
//   and a literal double quote.
// - An argument made only of quotes ("") is an empty argument.
//
// The first argument (the program) follows the same rules. Windows itself reads the program name
// without backslash escapes; the two agree for every path that has no backslash before a quote.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace railwright::support {

// The arguments of a command line, the program first.
std::vector<std::string> SplitCommandLine(std::string_view commandLine);

// The argument as it must appear in a command line so that SplitCommandLine gives it back: as it
// is when it is not empty and holds no blank, tab, line break or double quote, otherwise in
// double quotes with the backslashes before a quote (and before the closing quote) doubled and
// each double quote escaped with a backslash.
std::string QuoteArgument(std::string_view argument);

}  // namespace railwright::support
