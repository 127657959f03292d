// Starts the built ACE tools the way the exporters do: a Windows-style command line handed to
// the platform's process launcher, polled until it ends, with its standard error kept.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace railwright::ace::testing {

// The build's tools folder, with a trailing separator: TOOLS of the command lines.
std::string ToolsFolder();

struct ToolRun {
    bool started = false;
    int32_t exitCode = -1;
    std::string errors;  // what the tool wrote on standard error
};

ToolRun RunTool(const std::string& commandLine);

// The exporters' command lines: TOOLS "MakeACE.exe " IN " " DQ OUT DQ and the switches (each
// with its leading blank); TOOLS "acecomp.exe " FILE " " FILE.
std::string MakeAceCommandLine(const std::string& input, const std::string& output,
                               const std::string& switches);
std::string AceCompCommandLine(const std::string& file);

std::vector<uint8_t> FileBytes(const std::string& path);

// The names in a folder, sorted.
std::vector<std::string> FolderEntries(const std::string& folder);

}  // namespace railwright::ace::testing
