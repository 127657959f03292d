// `railwright apply`: one application of the plug-in to a glTF model, with the wizard driven by an
// event script.
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <sstream>

#include "cli/Command.h"
#include "cli/PluginRun.h"
#include "support/Utf8Paths.h"
#include "support/WholeFile.h"
#include "ui/script/ScriptedUserInterface.h"
#ifdef _WIN32
#include "ui/win32/Win32UserInterface.h"
#endif

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

#ifdef _WIN32
// The groups of the view's list: every group in Scripting.Group order, indented by its depth.
std::vector<ui::win32::ViewGroup> ViewGroupsOf(host::scene::Scene& scene) {
    std::vector<ui::win32::ViewGroup> groups;
    host::Scripting& scripting = *scene.scripting;
    for (int32_t index = 0; index < scripting.GroupCount(); ++index) {
        const std::shared_ptr<host::SceneGroup> group = scripting.Group(index);
        int depth = 0;
        for (std::shared_ptr<host::SceneGroup> parent = group->Parent();
             parent != nullptr && depth < index; parent = parent->Parent()) {
            ++depth;
        }
        groups.push_back({group->Name(), depth});
    }
    return groups;
}
#endif

}  // namespace

int Apply(const ApplyOptions& options, Console console) {
    std::ostream& err = console.err;

    // Everything the run needs is checked before anything is written.
    ui::script::ParseResult parsed;
    if (!options.script.empty()) {
        const std::optional<std::string> scriptText =
            support::ReadWholeFile(support::PathFromUtf8(options.script));
        if (!scriptText) {
            err << "railwright: cannot read the script \"" << options.script << "\"\n";
            return kExitUsage;
        }
        parsed = ui::script::ParseEventScript(*scriptText);
        if (!parsed.script) {
            err << "railwright: the script \"" << options.script << "\" is not usable: "
                << parsed.error << '\n';
            return kExitUsage;
        }
    }
    PluginRun run(options, console);
    if (const int status = run.Open(); status != kExitSuccess) {
        return status;
    }
    const bool showProgress = console.errIsTerminal && !options.quiet;
    // The front end: the event script, or without one (on Windows) the wizard's own windows.
    std::optional<CommandLineInterface> scripted;
#ifdef _WIN32
    std::optional<ui::win32::Win32UserInterface> windows;
    if (!parsed.script) {
        windows.emplace(&err);
        host::scene::Scene& scene = run.Model().Scene();
        windows->SetViewGroups([&scene] { return ViewGroupsOf(scene); });
    } else
#endif
    {
        scripted.emplace(std::move(*parsed.script), err, showProgress);
    }
    support::ModalUserInterface& ui =
#ifdef _WIN32
        windows ? static_cast<support::ModalUserInterface&>(*windows) :
#endif
                static_cast<support::ModalUserInterface&>(*scripted);
    const plugin::ApplyOutcome outcome = run.Run(ui);

    if (scripted && !scripted->Faults().empty()) {
        for (const std::string& fault : scripted->Faults()) {
            err << "railwright: script \"" << options.script << "\": " << fault << '\n';
        }
        err << "railwright: the model was not saved\n";
        return kExitUsage;
    }
    return run.Save(outcome).status;
}

}  // namespace railwright::cli
