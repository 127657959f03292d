#include <gtest/gtest.h>

#include <sstream>

#include "host/scene/Scene.h"
#include "plugin/Railwright.h"
#include "support/Fakes.h"
#include "ui/script/ScriptedUserInterface.h"
#include "wizard/WizardScenario.h"

namespace railwright::plugin {
namespace {

using host::scene::Scene;
using host::scene::SceneBuilder;

constexpr size_t kProjectType = 0;
constexpr size_t kProjectSubType = 32;
constexpr size_t kMsts = 37;
constexpr size_t kRailSimulator = 38;
constexpr size_t kToDocuments = 43;
constexpr size_t kRailWorks = 44;
constexpr size_t kVersion = 33;

// Export drivers that record their calls and answer as told.
class RecordingExports : public ExportDrivers {
public:
    bool ExportToMsts(const ExportArguments& arguments) override {
        Record("MSTS", arguments);
        return mstsSucceeds;
    }
    bool ExportRailWorks(const ExportArguments& arguments, bool railWorks) override {
        Record(railWorks ? "RailWorks" : "Rail Simulator", arguments);
        return railWorks ? railWorksSucceeds : railSimulatorSucceeds;
    }

    bool mstsSucceeds = true;
    bool railSimulatorSucceeds = true;
    bool railWorksSucceeds = true;
    std::vector<std::string> calls;
    settings::SettingsFields fields;
    bool toDocuments = false;

private:
    void Record(const std::string& name, const ExportArguments& arguments) {
        calls.push_back(name);
        fields = arguments.fields;
        toDocuments = arguments.exportToDocumentsFolder;
    }
};

// One application of the plug-in to an in-memory model, with the user's actions scripted.
class Application {
public:
    explicit Application(Scene model = SceneBuilder()
                                           .MaterialFields({"Rail Sim", "Tx Alpha", "Alpha Pr"})
                                           .Group("Body")
                                           .At(2, 0, 0)
                                           .Box({-1, 0, -5}, {1, 3, 5}, "body.ace")
                                           .Build())
        : scene(std::move(model)) {
        longs[kVersion] = 818;
        scene.application->SetSimulators({"/sim/msts/train.exe", "/sim/railworks"});
    }

    // A freight car with a title and a name, which Finish accepts once its body is identified
    // as "Main" (kIdentifyMainAndFinish).
    void MakeFinishable(const std::string& settingsText = "Title|name||||||") {
        longs[kProjectType] = 1;
        longs[kProjectSubType] = 2;
        text = settingsText;
    }

    // Applies the plug-in; the wizard replays `events` (JSON objects) and answers `answers`.
    bool Apply(const std::string& events = "", const std::string& answers = "") {
        auto parsed = ui::script::ParseEventScript(R"({ "events": [ )" + events +
                                                   R"( ], "answers": [ )" + answers + " ] }");
        EXPECT_TRUE(parsed.script) << parsed.error;
        ui = std::make_unique<ui::script::ScriptedUserInterface>(*parsed.script, &echo);
        ui->SetPicker(testing::ScenePicker(scene));
        support::Platform platform{files, processes, settings, system, *ui};
        Railwright plugin(platform, *scene.viewer, exports);
        const bool result =
            plugin.Plugin_Apply(scene.scripting, scene.hostContext, 0, singles, longs, text);
        outcome = plugin.LastOutcome();
        return result;
    }

    Scene scene;
    std::vector<float> singles = std::vector<float>(6, 0.0f);
    std::vector<int32_t> longs = std::vector<int32_t>(46, 0);
    std::string text;
    RecordingExports exports;
    testing::NoFileSystem files;
    testing::FakeProcesses processes;
    testing::MemorySettingsStore settings;
    testing::FakeSystemInfo system;
    std::ostringstream echo;
    std::unique_ptr<ui::script::ScriptedUserInterface> ui;
    ApplyOutcome outcome;
};

const std::string kIdentifyMainAndFinish =
    R"({ "click": "optSteps", "index": 4 }, { "pick": "Body" }, { "click": "cmdFinish" })";

const std::vector<std::string> kNotifications = {"Redraw 1", "RefreshPanel SysProperties",
                                                 "SetStatus 100"};

TEST(PluginIdentity, NamesItselfAndAcceptsAnySelection) {
    Application application;
    ui::script::ScriptedUserInterface ui{{}};
    support::Platform platform{application.files, application.processes, application.settings,
                               application.system, ui};
    Railwright plugin(platform, *application.scene.viewer, application.exports);
    EXPECT_EQ(plugin.Plugin_Name(), "Railwright");
    EXPECT_EQ(plugin.Plugin_PluginClass(), 1);
    EXPECT_EQ(plugin.Plugin_Icon(), nullptr);
    EXPECT_FALSE(plugin.Plugin_Author().empty());
    Validation validation{1, 2, 3, 4, 5, 6};
    plugin.Plugin_GetValidation(validation);
    EXPECT_EQ(validation, (Validation{1, 2, 3, 4, 5, 6}));
}

TEST(PluginApply, CancelWritesNothingBackButStillNotifiesTheHost) {
    Application application;
    application.longs[kMsts] = 1;
    application.longs[5] = 4;
    application.singles[0] = 96.5f;
    application.text = "Title|name||||||";
    const std::vector<int32_t> longsBefore = application.longs;
    EXPECT_TRUE(application.Apply(R"({ "click": "cmdCancel" })"));
    EXPECT_TRUE(application.exports.calls.empty());
    EXPECT_FALSE(application.outcome.wizardFinished);
    EXPECT_EQ(application.longs, longsBefore);
    EXPECT_EQ(application.singles[0], 96.5f);
    EXPECT_EQ(application.text, "Title|name||||||");
    EXPECT_EQ(application.scene.application->Calls(), kNotifications);
}

TEST(PluginApply, ResizesShortAndLongSettingsArraysKeepingTheirValues) {
    Application application;
    application.singles = {1.5f, 2.5f};
    application.longs = std::vector<int32_t>(50, 7);
    application.longs[kVersion] = 818;
    application.Apply();
    EXPECT_EQ(application.singles, (std::vector<float>{1.5f, 2.5f, 0, 0, 0, 0}));
    ASSERT_EQ(application.longs.size(), 46u);
    EXPECT_EQ(application.longs[45], 7);
}

TEST(PluginApply, CentresTheViewOnTheFirstGroupWithGeometry) {
    Application application(SceneBuilder()
                                .MaterialFields({"Rail Sim", "Tx Alpha", "Alpha Pr"})
                                .Group("Empty")
                                .At(9, 9, 9)
                                .Group("Body")
                                .At(2, 1, 0)
                                .Box({-1, 0, -5}, {1, 3, 5}, "body.ace")
                                .Build());
    application.Apply();
    const auto& calls = application.scene.viewer->Calls();
    ASSERT_FALSE(calls.empty());
    EXPECT_EQ(calls.front(), "Attach");
    EXPECT_NE(std::find(calls.begin(), calls.end(), "LookAtPoint 2 1 0"), calls.end());
    // Back on the view area's centre at its base height: the area of the model's bounds
    // (x from 1 to 3, y from 1 to 4, z from -5 to 5) is 10 wide from its lowest corner.
    EXPECT_EQ(application.scene.viewer->Point(), (host::Vector3{1 + 5.0f, 1, -5 + 5.0f}));
}

TEST(PluginApply, OpensTheWizardEvenWhenNoGroupHoldsGeometry) {
    Application application(SceneBuilder()
                                .MaterialFields({"Rail Sim", "Tx Alpha", "Alpha Pr"})
                                .Group("Empty")
                                .Build());
    application.Apply(R"({ "click": "cmdCancel" })");
    EXPECT_EQ(application.ui->EventsLeft(), 0u);
    EXPECT_TRUE(application.ui->Messages().empty()) << application.echo.str();
    EXPECT_EQ(application.scene.application->Calls(), kNotifications);
}

TEST(PluginApply, RunsTheChosenExportsInOrderWhileEachSucceeds) {
    struct Case {
        int32_t msts, railSimulator, railWorks;
        bool mstsSucceeds, railSimulatorSucceeds;
        std::vector<std::string> expected;
    };
    const Case cases[] = {
        {1, 1, 1, true, true, {"MSTS", "Rail Simulator", "RailWorks"}},
        {1, 1, 1, false, true, {"MSTS"}},
        {1, 1, 1, true, false, {"MSTS", "Rail Simulator"}},
        {0, 1, 1, true, true, {"Rail Simulator", "RailWorks"}},
        {0, 0, 1, true, true, {"RailWorks"}},
        {1, 0, 0, false, true, {"MSTS"}},
        {0, 0, 0, true, true, {}},
    };
    for (const Case& c : cases) {
        Application application;
        application.longs[kMsts] = c.msts;
        application.longs[kRailSimulator] = c.railSimulator;
        application.longs[kRailWorks] = c.railWorks;
        application.exports.mstsSucceeds = c.mstsSucceeds;
        application.exports.railSimulatorSucceeds = c.railSimulatorSucceeds;
        application.MakeFinishable();
        application.Apply(R"({ "click": "chkTrainz" }, )" + kIdentifyMainAndFinish);
        EXPECT_TRUE(application.ui->Messages().empty()) << application.echo.str();
        EXPECT_EQ(application.exports.calls, c.expected)
            << c.msts << c.railSimulator << c.railWorks << c.mstsSucceeds << "\n"
            << application.echo.str();
        EXPECT_TRUE(application.outcome.wizardFinished);
        EXPECT_EQ(application.outcome.exportsSucceeded,
                  (c.msts == 0 || c.mstsSucceeds) &&
                      (c.expected.size() < 2 || c.railSimulator == 0 || c.railSimulatorSucceeds));
        EXPECT_EQ(application.scene.application->Calls(), kNotifications);
    }
}

TEST(PluginApply, HandsTheExportsTheSettingsFieldsAndTheDocumentsFlag) {
    Application application;
    application.longs[kMsts] = 1;
    application.longs[kToDocuments] = 1;
    application.MakeFinishable("Title|name||Description|||Procedures");
    application.Apply(kIdentifyMainAndFinish);
    ASSERT_EQ(application.exports.calls, std::vector<std::string>{"MSTS"})
        << application.echo.str();
    EXPECT_EQ(application.exports.fields,
              (settings::SettingsFields{"Title", "name", "Description", "Procedures"}));
    EXPECT_TRUE(application.exports.toDocuments);
    // The exports see the model as Finish left it.
    const auto main = application.scene.GroupNamed("Main");
    EXPECT_EQ(main->ParentNode(), application.scene.model->Root());
    EXPECT_EQ(application.scene.model->Root()->NameValue(), "Title");
}

TEST(PluginApply, AFinishThatFailsItsChecksExportsNothing) {
    Application application;
    application.longs[kMsts] = 1;
    application.MakeFinishable("|name||||||");
    const std::vector<int32_t> longsBefore = application.longs;
    application.Apply(kIdentifyMainAndFinish);
    EXPECT_EQ(application.echo.str(), "Railwright: exclamation: A project title is required.\n");
    EXPECT_TRUE(application.exports.calls.empty());
    EXPECT_EQ(application.longs, longsBefore);
    EXPECT_EQ(application.scene.application->Calls(), kNotifications);
}

TEST(PluginApply, NothingEscapesWhenEveryHostOperationFails) {
    Application application;
    application.longs[kMsts] = 1;
    application.scene.failures->FailEveryOperation(true);
    EXPECT_TRUE(application.Apply(R"({ "click": "cmdFinish" })"));
    EXPECT_TRUE(application.exports.calls.empty());
    // The failure is reported, not hidden.
    ASSERT_FALSE(application.ui->Messages().empty());
    EXPECT_EQ(application.ui->Messages().front().icon, support::MessageIcon::Critical);
}

TEST(PluginApply, NotifiesTheHostWhenTheModelCannotBeReached) {
    for (const char* operation :
         {"Scripting.RootGroup", "Scripting.GetViewArea", "Scripting.Group", "Viewer.Attach"}) {
        Application application;
        application.scene.failures->FailOperation(operation);
        EXPECT_TRUE(application.Apply(R"({ "click": "cmdCancel" })"));
        EXPECT_EQ(application.scene.application->Calls(), kNotifications) << operation;
        EXPECT_FALSE(application.ui->Messages().empty()) << operation;
    }
}

}  // namespace
}  // namespace railwright::plugin
