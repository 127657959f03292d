// One application of the wizard to an in-memory model, driven by an event script: the scenario
// shape of the wizard's tests.
//
//     WizardScenario scenario;
//     scenario.Run(R"({ "events": [ { "click": "chkTrainz" }, { "click": "cmdNext" } ] })");
//     EXPECT_EQ(scenario.Wizard().CurrentStep(), 1);
//
// The wizard loads from the settings given, replays the script and is closed by its close box
// when the events run out; its controls keep their last state for the test to read.
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <map>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "host/scene/Scene.h"
#include "support/Fakes.h"
#include "support/FontWiz.h"
#include "support/posix/PosixFileSystem.h"
#include "ui/script/EventScript.h"
#include "ui/script/ScriptedUserInterface.h"
#include "wizard/frmWizard.h"

namespace railwright::testing {

// The scripted front end, also noting the notice of every dismissible warning it shows.
class RecordingUserInterface : public ui::script::ScriptedUserInterface {
  public:
    using ScriptedUserInterface::ScriptedUserInterface;

  protected:
    void Closed(const support::DialogModel& dialog) override {
        if (dialog.Name() == "frmWarn") {
            warnings.push_back(dialog.Find("lblWarning")->Caption());
        }
    }

  public:
    std::vector<std::string> warnings;
};

// A model whose material fields the wizard has made before, so that opening it shows nothing.
inline host::scene::Scene PreparedScene() {
    return host::scene::SceneBuilder()
        .MaterialFields({"Rail Sim", "Tx Alpha", "Alpha Pr"})
        .Group("Body")
        .Box({-1, 0, -5}, {1, 3, 5}, "body.ace")
        .Build();
}

// Picks in the view of the scene, as the railwright command does.
inline support::ModalStack::Picker ScenePicker(host::scene::Scene& scene) {
    return [&scene](const support::GroupTarget& group) { return scene.PickGroup(group); };
}

struct StoredSettings {
    std::string text;
    std::vector<float> singles;
    std::vector<int32_t> longs;
};

// Settings of the current layout: version 818, everything else as given.
inline StoredSettings CurrentSettings(std::vector<std::pair<size_t, int32_t>> longs = {}) {
    StoredSettings settings{{},
                            std::vector<float>(settings::kSingleCount, 0.0f),
                            std::vector<int32_t>(settings::kLongCount, 0)};
    settings.longs[settings::kLongSettingsVersion] = settings::kSettingsVersion;
    for (const auto& [index, value] : longs) {
        settings.longs[index] = value;
    }
    return settings;
}

// A model of groups under the top group "Scene", each holding a box; a name written
// "Child<Parent" puts the group under that parent.
inline host::scene::Scene ModelWithGroups(std::initializer_list<std::string> groups) {
    host::scene::SceneBuilder builder;
    builder.MaterialFields({"Rail Sim", "Tx Alpha", "Alpha Pr"});
    for (const std::string& group : groups) {
        const size_t under = group.find('<');
        builder.Group(group.substr(0, under),
                      under == std::string::npos ? "" : group.substr(under + 1));
        builder.Box({0, 0, 0}, {1, 1, 1});
    }
    return builder.Build();
}

// Every group but the top one, by name, with the name of its parent.
inline std::map<std::string, std::string> Hierarchy(const host::scene::Scene& scene) {
    std::map<std::string, std::string> parents;
    for (const auto& group : scene.model->GroupOrder()) {
        if (const auto parent = group->ParentNode()) {
            parents[group->NameValue()] = parent->NameValue();
        }
    }
    return parents;
}

// A stored rail vehicle of this sub-type (its index in the list), titled "Loco" and named "loco",
// exported to Trainz, with these further settings.
inline StoredSettings StoredVehicle(int32_t subType,
                                    std::vector<std::pair<size_t, int32_t>> longs = {}) {
    constexpr int32_t kRailVehicle = 1;
    longs.insert(longs.end(), {{settings::kLongProjectType, kRailVehicle},
                               {settings::kLongProjectSubType, subType},
                               {settings::kLongTrainz, 1}});
    StoredSettings settings = CurrentSettings(std::move(longs));
    settings.text = "Loco|loco|| ||| ";  // as Finish stores it
    return settings;
}

class WizardScenario {
  public:
    explicit WizardScenario(host::scene::Scene scene = PreparedScene())
        : scene_(std::move(scene)) {}

    host::scene::Scene& Scene() { return scene_; }
    MemorySettingsStore& UserSettings() { return userSettings_; }
    FakeSystemInfo& System() { return system_; }
    StoredSettings& Settings() { return settings_; }

    // Installs MSTS in `folder` (its main program file is train.exe there) and RailWorks.
    void InstallSimulators(const std::string& mstsFolder, const std::string& railWorksFolder) {
        scene_.application->SetSimulators({mstsFolder + "/train.exe", railWorksFolder});
    }

    // Opens the wizard on the settings and replays the script; the script must parse.
    void Run(std::string_view scriptJson) {
        ui::script::ParseResult parsed = ui::script::ParseEventScript(scriptJson);
        ASSERT_TRUE(parsed.script) << parsed.error;
        echo_.str({});
        ui_ = std::make_unique<RecordingUserInterface>(*parsed.script, &echo_);
        ui_->SetPicker(ScenePicker(scene_));
        platform_ = std::make_unique<support::Platform>(
            support::Platform{files_, processes_, userSettings_, system_, *ui_});
        fonts_ = std::make_unique<support::FontWiz>(system_);
        wizard_ = std::make_unique<wizard::frmWizard>(
            *platform_, *fonts_,
            wizard::WizardHost{*scene_.scripting, *scene_.hostContext, *scene_.viewer});
        wizard_->SetOptions(settings_.text, settings_.singles, settings_.longs);
        wizard_->SetSceneGraph(scene_.model);
        ui_->ShowModal(*wizard_);
    }

    // Runs a script made of these events, written as JSON objects, answering its questions with
    // `answers` ("Yes", "No") in order.
    void RunEvents(const std::vector<std::string>& events,
                   const std::vector<std::string>& answers = {}) {
        std::string json = R"({ "events": [ )";
        for (size_t i = 0; i < events.size(); ++i) {
            json += (i == 0 ? "" : ", ") + events[i];
        }
        json += R"( ], "answers": [ )";
        for (size_t i = 0; i < answers.size(); ++i) {
            json += (i == 0 ? "\"" : ", \"") + answers[i] + "\"";
        }
        Run(json + " ] }");
    }

    wizard::frmWizard& Wizard() { return *wizard_; }
    RecordingUserInterface& Ui() { return *ui_; }
    support::Control& Control(std::string_view name, int index = -1) {
        support::Control* control = wizard_->Find(name, index);
        if (control == nullptr) {
            throw std::invalid_argument("the wizard has no control " + std::string(name) + " " +
                                        std::to_string(index));
        }
        return *control;
    }

    // Every message box of the run, as the script's echo writes them.
    std::vector<std::string> Messages() const {
        std::vector<std::string> lines;
        std::istringstream echo(echo_.str());
        for (std::string line; std::getline(echo, line);) {
            lines.push_back(line);
        }
        return lines;
    }
    const std::vector<std::string>& Faults() const { return ui_->Faults(); }

    // Saves the controls into the wizard's settings and hands them back as the plug-in would.
    StoredSettings Save() {
        EXPECT_TRUE(wizard_->SaveSettings());
        StoredSettings saved = settings_;
        wizard_->GetOptions(saved.text, saved.singles, saved.longs);
        return saved;
    }

  private:
    host::scene::Scene scene_;
    StoredSettings settings_{{}, {}, {}};
    support::posix::PosixFileSystem files_;
    FakeProcesses processes_;
    MemorySettingsStore userSettings_;
    FakeSystemInfo system_;
    std::ostringstream echo_;
    std::unique_ptr<RecordingUserInterface> ui_;
    std::unique_ptr<support::Platform> platform_;
    std::unique_ptr<support::FontWiz> fonts_;
    std::unique_ptr<wizard::frmWizard> wizard_;
};

// JSON event texts.
inline std::string Click(std::string_view control) {
    return R"({ "click": ")" + std::string(control) + R"(" })";
}
inline std::string Click(std::string_view control, int index) {
    return R"({ "click": ")" + std::string(control) + R"(", "index": )" + std::to_string(index) +
           " }";
}
inline std::string Select(std::string_view control, std::string_view entry) {
    return R"({ "select": ")" + std::string(control) + R"(", "text": ")" + std::string(entry) +
           R"(" })";
}
inline std::string Type(std::string_view control, std::string_view text) {
    return R"({ "type": ")" + std::string(control) + R"(", "text": ")" + std::string(text) +
           R"(" })";
}
inline std::string Pick(std::string_view group) {
    return R"({ "pick": ")" + std::string(group) + R"(" })";
}
inline std::string Type(std::string_view control, int index, std::string_view text) {
    return R"({ "type": ")" + std::string(control) + R"(", "index": )" + std::to_string(index) +
           R"(, "text": ")" + std::string(text) + R"(" })";
}

// An echo line of an exclamation box, as the user sees it.
inline std::string Exclamation(std::string_view text) {
    return "Railwright: exclamation: " + std::string(text);
}

}  // namespace railwright::testing
