// What the export tests share: the real POSIX platform over a temp folder, a tools folder of
// stand-in conversion programs that record how they were started, and readable views of the
// messages shown and of the files written.
#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "support/Fakes.h"
#include "support/SupportingFunctions.h"
#include "support/posix/PosixFileSystem.h"
#include "support/posix/PosixProcesses.h"
#include "support/posix/TempFolder.h"
#include "ui/script/ScriptedUserInterface.h"

namespace railwright::testing {

// The project types as the settings store them (UserDataLongs 0).
namespace stored {
inline constexpr int32_t kRailNetwork = 0;
inline constexpr int32_t kRailVehicle = 1;
inline constexpr int32_t kScenery = 2;
}  // namespace stored

// The stand-in for every conversion program: records its command line through record_args into
// calls/<sequence>-<program> (its file's name), then, unless <program>.fail exists beside it (exit 1, nothing
// written), writes its output file. MakeACE writes its output afresh; acecomp appends to the file
// it compresses, so that a file shows which programs worked on it.
inline constexpr std::string_view kFakeToolScript = R"(#!/bin/sh
here=$(dirname "$0")
tool=$(basename "$0")
count=$(ls "$here/calls" | wc -l); count=$((count))
RECORD_ARGS_FILE="$here/calls/$(printf '%03d' "$count")-$tool" "$RECORD_ARGS" "$0" "$@" || exit 125
if [ -e "$here/$tool.fail" ]; then exit 1; fi
out=
lower=$(printf '%s' "$tool" | tr 'A-Z' 'a-z')
case "$lower" in
  makeace.exe) printf '%s\n' "$tool" > "$2"; exit 0 ;;
  acecomp.exe) out=$2 ;;
  toace.exe) for a in "$@"; do case "$a" in /OUT=*) out=${a#/OUT=} ;; esac; done ;;
  rwacetool.exe) prev=; for a in "$@"; do [ "$prev" = "-o" ] && out=$a; prev=$a; done ;;
esac
printf '%s\n' "$tool" >> "$out"
)";

// A tools folder holding the stand-ins and the real txt2uni.
class FakeTools {
  public:
    static constexpr std::string_view kConverters[] = {"MakeACE.exe", "acecomp.exe", "ToAce.exe",
                                                       "RWAceTool.exe"};

    explicit FakeTools(std::string folder) : folder_(std::move(folder)) {
        std::filesystem::create_directories(folder_ + "/calls");
        std::string script(kFakeToolScript);
        const std::string marker = "\"$RECORD_ARGS\"";
        script.replace(script.find(marker), marker.size(),
                       "'" + std::string(RAILWRIGHT_RECORD_ARGS) + "'");
        for (const std::string_view tool : kConverters) {
            const std::string path = folder_ + "/" + std::string(tool);
            PutFile(path, script);
            chmod(path.c_str(), 0755);
        }
        std::filesystem::copy_file(RAILWRIGHT_TXT2UNI, folder_ + "/txt2uni.exe");
    }

    // TOOLS of the command lines: the folder with a trailing separator.
    std::string Folder() const { return folder_ + "/"; }
    std::string Path(std::string_view tool) const { return folder_ + "/" + std::string(tool); }

    void Remove(std::string_view tool) const { std::filesystem::remove(Path(tool)); }
    // Makes the program end with exit code 1 without writing anything.
    void Fail(std::string_view tool) const { PutFile(Path(tool) + ".fail", ""); }

    struct Call {
        std::string tool;
        std::vector<std::string> argv;  // as the program received them, its own path first
        bool operator==(const Call&) const = default;
    };

    // The recorded runs, in the order they happened.
    std::vector<Call> Calls() const {
        std::vector<std::string> records;
        for (const auto& entry : std::filesystem::directory_iterator(folder_ + "/calls")) {
            records.push_back(entry.path().filename().string());
        }
        std::sort(records.begin(), records.end());
        std::vector<Call> calls;
        for (const std::string& record : records) {
            std::ifstream file(folder_ + "/calls/" + record);
            Call call{record.substr(record.find('-') + 1), {}};
            std::string line;
            std::getline(file, line);  // record_args's own name
            while (std::getline(file, line)) {
                call.argv.push_back(line);
            }
            calls.push_back(std::move(call));
        }
        return calls;
    }

    std::vector<std::string> ToolsRun() const {
        std::vector<std::string> tools;
        for (const Call& call : Calls()) {
            tools.push_back(call.tool);
        }
        return tools;
    }

  private:
    std::string folder_;
};

// The real platform over a temp folder, with a scripted user interface that records every box.
// Boxes are answered, and dialogs driven, by `script`.
struct ExportPlatform {
    explicit ExportPlatform(ui::script::EventScript script = {}) : ui(std::move(script)) {}

    TempFolder temp;
    support::posix::PosixFileSystem files{temp / "aliases"};
    support::posix::PosixProcesses processes;
    MemorySettingsStore settings;
    FakeSystemInfo system;
    ui::script::ScriptedUserInterface ui;
    support::Platform platform{files, processes, settings, system, ui};
};

// Every box shown, as its one-line echo ("Railwright: <icon>: <text>").
inline std::vector<std::string> ShownMessages(const ui::script::ScriptedUserInterface& ui) {
    std::vector<std::string> lines;
    for (const ui::script::ShownMessage& message : ui.Messages()) {
        lines.push_back(ui::script::EchoLine(message.text, message.icon));
    }
    return lines;
}

// The files under `folder`, as paths relative to it, sorted.
inline std::vector<std::string> FileTree(const std::string& folder) {
    std::vector<std::string> files;
    if (!std::filesystem::is_directory(folder)) {
        return files;
    }
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file()) {
            files.push_back(std::filesystem::relative(entry.path(), folder).string());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

// ASCII text as UTF-16LE, to look for inside a converted file.
inline std::string Wide(std::string_view ascii) {
    std::string bytes;
    for (const char c : ascii) {
        bytes += c;
        bytes += '\0';
    }
    return bytes;
}

// What txt2uni makes of an ASCII text: UTF-16LE with a byte order mark.
inline std::string Utf16(std::string_view ascii) {
    return "\xFF\xFE" + Wide(ascii);
}

}  // namespace railwright::testing
