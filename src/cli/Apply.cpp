// `railwright apply`: one application of the plug-in to a glTF model, with the wizard driven by an
// event script.
#include <fstream>
#include <iterator>
#include <sstream>

#include "cli/Command.h"
#include "cli/PluginRun.h"
#include "support/Utf8Paths.h"
#include "support/WholeFile.h"
#include "ui/script/ScriptedUserInterface.h"

namespace railwright::cli {
namespace {

// The scripted front end, with progress on a terminal.
class CommandLineInterface : public ui::script::ScriptedUserInterface {
public:
    CommandLineInterface(ui::script::EventScript script, std::ostream& err, bool showProgress)
        : ScriptedUserInterface(std::move(script), &err), err_(err), showProgress_(showProgress) {}

    void Progress(std::string_view task, int done, int total, std::string_view item) override {
        if (!showProgress_) {
            return;
        }
        err_ << "\r\x1b[K" << task << " " << done << "/" << total << " " << item;
        if (done >= total) {
            err_ << '\n';
        }
        err_ << std::flush;
    }

    void Explain(std::string_view why) override { err_ << "railwright: " << why << '\n'; }

private:
    std::ostream& err_;
    bool showProgress_;
};

}  // namespace

int Apply(const ApplyOptions& options, Console console) {
    std::ostream& err = console.err;

    // Everything the run needs is checked before anything is written.
    const std::optional<std::string> scriptText =
        support::ReadWholeFile(support::PathFromUtf8(options.script));
    if (!scriptText) {
        err << "railwright: cannot read the script \"" << options.script << "\"\n";
        return kExitUsage;
    }
    ui::script::ParseResult parsed = ui::script::ParseEventScript(*scriptText);
    if (!parsed.script) {
        err << "railwright: the script \"" << options.script << "\" is not usable: "
            << parsed.error << '\n';
        return kExitUsage;
    }
    PluginRun run(options, console);
    if (const int status = run.Open(); status != kExitSuccess) {
        return status;
    }
    const bool showProgress = console.errIsTerminal && !options.quiet;
    CommandLineInterface ui(std::move(*parsed.script), err, showProgress);
    const plugin::ApplyOutcome outcome = run.Run(ui);

    if (!ui.Faults().empty()) {
        for (const std::string& fault : ui.Faults()) {
            err << "railwright: script \"" << options.script << "\": " << fault << '\n';
        }
        err << "railwright: the model was not saved\n";
        return kExitUsage;
    }
    return run.Save(outcome).status;
}

}  // namespace railwright::cli
