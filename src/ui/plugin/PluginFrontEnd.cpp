// The plug-in's front end inside the host. With RAILWRIGHT_EVENT_SCRIPT naming an event script,
// the wizard is driven by that script and every message box is echoed on standard error, as the
// railwright command does; the view is the list of the model's groups, which the script picks in.
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>

#include "host/GroupListViewer.h"
#include "plugin/com/FrontEnd.h"
#include "ui/script/ScriptedUserInterface.h"

namespace railwright::ui::plugin {
namespace {

class ScriptedFrontEnd final : public railwright::plugin::com::FrontEnd {
public:
    explicit ScriptedFrontEnd(script::EventScript script) : ui_(std::move(script), &std::cerr) {
        ui_.SetPicker([this](const support::GroupTarget& group) { return viewer_.Pick(group); });
    }
    ~ScriptedFrontEnd() override {
        for (const std::string& fault : ui_.Faults()) {
            std::cerr << "Railwright: event script: " << fault << '\n';
        }
    }

    support::UserInterface& Ui() override { return ui_; }
    host::Viewer& View() override { return viewer_; }

private:
    host::GroupListViewer viewer_;
    script::ScriptedUserInterface ui_;
};

// The script named by the environment; a script that cannot be used is reported and replaced
// by none, so that the wizard closes as by its close box and nothing is changed.
script::EventScript ScriptFromEnvironment(const wchar_t* path) {
    std::ifstream in(path, std::ios::binary);
    const std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (!in.good() && !in.eof()) {
        std::cerr << "Railwright: cannot read the event script named by RAILWRIGHT_EVENT_SCRIPT\n";
        return {};
    }
    script::ParseResult parsed = script::ParseEventScript(text);
    if (!parsed.script) {
        std::cerr << "Railwright: the event script named by RAILWRIGHT_EVENT_SCRIPT is not usable: "
                  << parsed.error << '\n';
        return {};
    }
    return std::move(*parsed.script);
}

}  // namespace
}  // namespace railwright::ui::plugin

namespace railwright::plugin::com {

std::unique_ptr<FrontEnd> MakeFrontEnd() {
    const wchar_t* script = _wgetenv(L"RAILWRIGHT_EVENT_SCRIPT");
    // FIXME: without a script the wizard is to be shown in the Win32 windows of ui/win32; until
    // they are linked in here it closes at once, as by its close box.
    return std::make_unique<ui::plugin::ScriptedFrontEnd>(
        script != nullptr && *script != L'\0' ? ui::plugin::ScriptFromEnvironment(script)
                                               : ui::script::EventScript{});
}

}  // namespace railwright::plugin::com
