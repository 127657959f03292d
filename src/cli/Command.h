// The railwright command:
//
//   railwright apply MODEL --script FILE [--msts DIR] [--railworks DIR] [--rail-simulator DIR]
//                    [--documents DIR] [--tools DIR] [--settings FILE] [--output MODEL] [--quiet]
//                    [--no-cache]
//   railwright wizard MODEL [the options of apply but --script and --quiet] [--port N] [--no-browser]
//   railwright inspect MODEL [--json]
//   railwright --help | --version
//
// Exit status: 0 the wizard finished and every export that ran succeeded; 1 the wizard was
// cancelled or an export failed (or the model could not be saved); 2 bad usage or unreadable
// input, with nothing written.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace railwright::cli {

inline constexpr int kExitSuccess = 0;
inline constexpr int kExitFailed = 1;
inline constexpr int kExitUsage = 2;

struct Console {
    std::ostream& out;
    std::ostream& err;
    bool errIsTerminal = false;
    // The folder of the running program, for the default tools folder.
    std::string programFolder;
};

// Runs the command with its arguments (the program name first) and returns the exit status.
int RunCommand(const std::vector<std::string>& arguments, Console console);

// What apply and wizard share.
struct RunOptions {
    std::string model;
    std::string msts;
    std::string railWorks;
    std::string railSimulator;
    std::string documents;
    std::string tools;
    std::string settings;
    std::string output;
    bool quiet = false;
    bool noCache = false;  // the pictures made of the model's textures go to a temporary folder
};

struct ApplyOptions : RunOptions {
    std::string script;
};

struct WizardOptions : RunOptions {
    int port = 0;  // 0: a free port
    bool noBrowser = false;
};

int Apply(const ApplyOptions& options, Console console);
int Wizard(const WizardOptions& options, Console console);
int Inspect(const std::string& model, bool json, Console console);

// The tools folder the command uses without --tools: the Windows release's "tools" folder beside
// the program, the tools built beside it (../tools-bin) or installed with it
// (../lib/railwright/tools); empty when none exists.
std::string DefaultToolsFolder(const std::string& programFolder);

}  // namespace railwright::cli
