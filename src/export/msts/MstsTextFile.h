// One MSTS text file built in memory: the lines of a template in file order, held as the 8-bit
// text (Windows-1252) that the file will contain, each line ended by CR LF.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "host/Host.h"
#include "support/Platform.h"

namespace railwright::exportmsts {

// A line holding exactly one space, and a line holding nothing; templates tell them apart.
inline constexpr std::string_view kSpaceLine = " ";
inline constexpr std::string_view kEmptyLine = "";

class MstsTextFile {
  public:
    // Numbers are turned into text by the host the file describes.
    explicit MstsTextFile(host::Scripting& scripting) : scripting_(scripting) {}

    // Appends one line of UTF-8 text; characters outside Windows-1252 are written as '?'.
    void Line(std::string_view text);
    void Lines(std::initializer_list<std::string_view> lines);

    // The host's text of a length in metres, and of any other value (no unit either way).
    std::string Length(float metres) { return scripting_.LengthText(metres); }
    std::string Value(float value) { return scripting_.ValueText(value); }

    host::Scripting& Scripting() { return scripting_; }

    // The file's bytes: every line, each followed by CR LF.
    const std::string& Bytes() const { return bytes_; }

  private:
    host::Scripting& scripting_;
    std::string bytes_;
};

// Writes a finished file from scratch (an old file of that name is deleted first, a failure to
// delete ignored) and has the tools folder's txt2uni.exe convert it to Unicode. A file that cannot
// be written, or a tool that cannot be started, raises support::RunTimeError.
void SaveMstsTextFile(support::Platform& platform, const std::string& toolsFolder,
                      const std::string& fileName, std::string_view bytes);

}  // namespace railwright::exportmsts
