#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <regex>
#include <sstream>

#include "cli/Command.h"
#include "document/Document.h"
#include "document/shape/ShapeReader.h"
#include "support/posix/TempFolder.h"

namespace railwright::cli {
namespace {

namespace fs = std::filesystem;

struct Result {
    int status = -1;
    std::string out;
    std::string err;
};

Result RunRailwright(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "railwright");
    std::ostringstream out;
    std::ostringstream err;
    Result result;
    result.status = RunCommand(arguments, {out, err, false, RAILWRIGHT_TOOLS_BIN_DIR});
    result.out = out.str();
    result.err = err.str();
    return result;
}

// A copy of the sample locomotive, a minimal MSTS folder and a documents folder in a temp folder.
class SampleRun : public ::testing::Test {
protected:
    void SetUp() override {
        const fs::path sample = fs::path(RAILWRIGHT_SOURCE_DIR) / "examples" / "sample";
        for (const auto& entry : fs::directory_iterator(sample)) {
            fs::copy_file(entry.path(), fs::path(folder_.Path()) / entry.path().filename());
        }
        const fs::path dash9 = fs::path(folder_ / "msts") / "TRAINS" / "TRAINSET" / "DASH9";
        fs::create_directories(dash9 / "CABVIEW");
        fs::create_directories(dash9 / "SOUND");
        for (const char* file : {"CABVIEW/dash9.cvf", "CABVIEW/DASH9FRONT.ACE", "SOUND/d9cab.sms",
                                 "SOUND/d9eng.sms", "SOUND/D9HORN.WAV"}) {
            testing::PutFile((dash9 / file).string(), "stand-in");
        }
        testing::PutFile(folder_ / "msts/train.exe", "stand-in");
        fs::create_directories(folder_ / "documents");
    }

    std::string Model() const { return folder_ / "diesel.gltf"; }
    std::string Script(const std::string& json) {
        const std::string path = folder_ / "script.json";
        testing::PutFile(path, json);
        return path;
    }
    Result Apply(const std::string& script, std::vector<std::string> extra = {}) {
        std::vector<std::string> arguments = {"apply",        Model(),
                                              "--script",     script,
                                              "--msts",       folder_ / "msts",
                                              "--documents",  folder_ / "documents",
                                              "--settings",   folder_ / "settings.ini",
                                              "--tools",      RAILWRIGHT_TOOLS_BIN_DIR};
        arguments.insert(arguments.end(), extra.begin(), extra.end());
        return RunRailwright(arguments);
    }

    testing::TempFolder folder_;
};

TEST(Command, AnswersHelpAndVersionAndRefusesBadUsage) {
    const Result help = RunRailwright({"--help"});
    EXPECT_EQ(help.status, kExitSuccess);
    EXPECT_NE(help.out.find("apply"), std::string::npos);
    EXPECT_NE(help.out.find("inspect"), std::string::npos);
    const Result version = RunRailwright({"--version"});
    EXPECT_EQ(version.status, kExitSuccess);
    EXPECT_EQ(version.out.rfind("railwright ", 0), 0u);
    for (const std::vector<std::string>& bad :
         {std::vector<std::string>{}, {"bogus"}, {"apply"}, {"apply", "model.gltf"},
          {"inspect"}, {"inspect", "a.gltf", "--colour"}}) {
        const Result result = RunRailwright(bad);
        EXPECT_EQ(result.status, kExitUsage) << (bad.empty() ? "" : bad[0]);
        EXPECT_NE(result.err.find("railwright: "), std::string::npos);
    }
}

TEST(Command, InspectsAModelAsJson) {
    const Result result =
        RunRailwright({"inspect", std::string(RAILWRIGHT_SOURCE_DIR) + "/examples/sample/diesel.gltf", "--json"});
    ASSERT_EQ(result.status, kExitSuccess) << result.err;
    const auto json = nlohmann::json::parse(result.out);
    ASSERT_EQ(json["groups"].size(), 8u);
    EXPECT_EQ(json["groups"][0]["parent"], -1);
    EXPECT_EQ(json["groups"][1]["name"], "Body");
    EXPECT_EQ(json["groups"][1]["shapes"], 1);
    EXPECT_EQ(json["materials"].size(), 7u);
    for (const char* key : {"groupFields", "materialFields", "settings"}) {
        EXPECT_TRUE(json.contains(key)) << key;
    }
}

TEST(Command, RefusesAModelItCannotReadNamingTheFile) {
    testing::TempFolder folder;
    testing::PutFile(folder / "broken.gltf", "{ \"asset\": ");
    const Result result = RunRailwright({"inspect", folder / "broken.gltf"});
    EXPECT_EQ(result.status, kExitUsage);
    EXPECT_NE(result.err.find("broken.gltf"), std::string::npos) << result.err;
}

TEST_F(SampleRun, WritesTheMstsTrainsetAndSavesTheIdentifiedModel) {
    const Result result =
        Apply(std::string(RAILWRIGHT_SOURCE_DIR) + "/examples/diesel.json", {"--quiet"});
    ASSERT_EQ(result.status, kExitSuccess) << result.err;
    EXPECT_NE(result.err.find("Railwright: information: Your MSTS project has been exported to"),
              std::string::npos)
        << result.err;
    const fs::path trainset = fs::path(folder_ / "documents") / "TRAINS" / "TRAINSET" / "SAMPLEDIESEL";
    for (const char* file :
         {"samplediesel.eng", "samplediesel.sd", "body.ACE", "bogie.ACE", "wheel.ACE",
          "CABVIEW/samplediesel.cvf", "CABVIEW/DASH9FRONT.ACE", "SOUND/sampledieselcab.sms",
          "SOUND/sampledieseleng.sms", "SOUND/D9HORN.WAV"}) {
        EXPECT_TRUE(fs::is_regular_file(trainset / file)) << file;
    }
    // The engine file went through txt2uni.
    const std::string eng = testing::GetFile((trainset / "samplediesel.eng").string());
    ASSERT_GE(eng.size(), 2u);
    EXPECT_EQ(eng.substr(0, 2), std::string("\xFF\xFE"));

    document::LoadResult saved = document::Document::Load(Model());
    ASSERT_TRUE(saved.document) << saved.error;
    host::Scripting& scripting = *saved.document->Scene().scripting;
    std::vector<std::string> names;
    for (int32_t i = 0; i < scripting.GroupCount(); ++i) {
        names.push_back(scripting.Group(i)->Name());
    }
    EXPECT_EQ(names, (std::vector<std::string>{"Sample Diesel", "Main", "Bogie1", "Wheels11",
                                               "Wheels12", "Bogie2", "Wheels21", "Wheels22"}));
    EXPECT_EQ(saved.document->UserDataLongs().at(33), 818);
}

// The report's lines "Level N (to D m): S sub-objects, V vertices, T triangles, C draw calls",
// as numbers.
std::vector<std::array<size_t, 4>> ReportedLevels(const std::string& report) {
    std::vector<std::array<size_t, 4>> levels;
    const std::regex line(R"(Level \d+ \(to [\d.]+ m\): ([\d,]+) sub-objects?, ([\d,]+) vert(?:ex|ices), )"
                          R"(([\d,]+) triangles?, ([\d,]+) draw calls?)");
    const auto number = [](std::string text) {
        text.erase(std::remove(text.begin(), text.end(), ','), text.end());
        return static_cast<size_t>(std::stoull(text));
    };
    for (auto match = std::sregex_iterator(report.begin(), report.end(), line);
         match != std::sregex_iterator(); ++match) {
        levels.push_back({number((*match)[1]), number((*match)[2]), number((*match)[3]),
                          number((*match)[4])});
    }
    return levels;
}

TEST_F(SampleRun, WritesTheShapeInUnicodeWithAReportThatAgreesWithIt) {
    // The sample's script with "Automatically Simplified Distance Levels" chosen on the export
    // preferences page (the page after the picks).
    nlohmann::json script =
        nlohmann::json::parse(testing::GetFile(std::string(RAILWRIGHT_SOURCE_DIR) + "/examples/diesel.json"));
    auto& events = script["events"];
    size_t lastPick = 0;
    for (size_t i = 0; i < events.size(); ++i) {
        lastPick = events[i].contains("pick") ? i : lastPick;
    }
    const nlohmann::json choice = {{"click", "optDistanceLevels"}, {"index", 1}};
    events.insert(events.begin() + static_cast<std::ptrdiff_t>(lastPick + 2), choice);
    const Result result = Apply(Script(script.dump()));
    ASSERT_EQ(result.status, kExitSuccess) << result.err;

    const fs::path trainset = fs::path(folder_ / "documents") / "TRAINS" / "TRAINSET" / "SAMPLEDIESEL";
    const std::string bytes = testing::GetFile((trainset / "samplediesel.s").string());
    ASSERT_GE(bytes.size(), 2u);
    EXPECT_EQ(bytes.substr(0, 2), std::string("\xFF\xFE"));
    const document::shape::testing::ReadShape shape = document::shape::testing::ReadShapeFile(bytes);
    ASSERT_EQ(shape.error, "");
    EXPECT_EQ(shape.matrixNames, (std::vector<std::string>{"MAIN", "BOGIE1", "WHEELS11", "WHEELS12",
                                                           "BOGIE2", "WHEELS21", "WHEELS22"}));
    EXPECT_EQ(shape.hierarchy, (std::vector<int32_t>{-1, 0, 1, 1, 0, 4, 4}));
    EXPECT_EQ(shape.images, (std::vector<std::string>{"body.ace", "bogie.ace", "wheel.ace"}));
    ASSERT_EQ(shape.levels.size(), 3u);

    // The report is printed and written beside the shape, and its counts are the file's.
    const std::string report = testing::GetFile((trainset / "samplediesel-report.txt").string());
    EXPECT_NE(result.out.find(report), std::string::npos) << result.out;
    EXPECT_NE(report.find("Distance levels: automatically simplified"), std::string::npos) << report;
    const auto reported = ReportedLevels(report);
    ASSERT_EQ(reported.size(), shape.levels.size()) << report;
    for (size_t i = 0; i < reported.size(); ++i) {
        const auto& level = shape.levels[i];
        EXPECT_EQ(reported[i], (std::array<size_t, 4>{level.subObjects, level.vertices,
                                                      level.triangles, level.drawCalls}))
            << report;
    }
    document::LoadResult saved = document::Document::Load(Model());
    ASSERT_TRUE(saved.document) << saved.error;
    EXPECT_EQ(saved.document->UserDataLongs().at(30), 1);
}

TEST_F(SampleRun, RefusesAScriptThatCannotBeReplayedAndLeavesTheModelAlone) {
    const std::string before = testing::GetFile(Model());
    struct Case {
        std::string script;
        std::string expected;
    };
    const Case cases[] = {
        {R"({ "events": [ { "click": "chkNoSuchBox" } ] })", "event 1 (click \"chkNoSuchBox\")"},
        {R"({ "events": [ { "click": "chkMSTS" }, { "click": "cmdNext" },
             { "select": "cboProjectType", "text": "Spaceship" } ] })",
         "has no entry \"Spaceship\""},
        {R"({ "events": [ { "click": "chkMSTS" }, { "click": "optSteps", "index": 4 },
             { "pick": "NoSuchGroup" } ] })",
         "the model has no group \"NoSuchGroup\""},
        {R"({ "events": [ { "click": "chkMSTS" }, { "click": "optSteps", "index": 4 },
             { "click": "cmdReset" } ] })",
         "has no answer for the question"},
        {R"({ "events": [ { "flick": "chkMSTS" } ] })", "is not usable"},
    };
    for (const Case& c : cases) {
        const Result result = Apply(Script(c.script));
        EXPECT_EQ(result.status, kExitUsage) << c.script << "\n" << result.err;
        EXPECT_NE(result.err.find(c.expected), std::string::npos) << result.err;
        EXPECT_EQ(testing::GetFile(Model()), before) << c.script;
    }
    EXPECT_FALSE(fs::exists(fs::path(folder_ / "documents") / "TRAINS"));
}

TEST_F(SampleRun, RefusesAProjectNameThatWouldWriteOutsideTheOutputFolder) {
    std::string script = testing::GetFile(std::string(RAILWRIGHT_SOURCE_DIR) + "/examples/diesel.json");
    const std::string name = R"("text": "SampleDiesel")";
    ASSERT_NE(script.find(name), std::string::npos);
    for (const auto& [given, reason] :
         {std::pair{R"(../../escape)", "it contains the character \"/\""},
          std::pair{"NUL", "Windows reserves \"NUL\" for a device"}}) {
        std::string edited = script;
        edited.replace(edited.find(name), name.size(), "\"text\": \"" + std::string(given) + "\"");
        const Result result = Apply(Script(edited));
        EXPECT_EQ(result.status, kExitFailed) << result.err;
        EXPECT_NE(result.err.find("Railwright: exclamation: The project name \"" + std::string(given) +
                                  "\" cannot be used: " + reason + ". Please choose another name."),
                  std::string::npos)
            << result.err;
    }
    EXPECT_FALSE(fs::exists(fs::path(folder_ / "documents") / "TRAINS"));
    EXPECT_FALSE(fs::exists(fs::path(folder_.Path()).parent_path() / "escape"));
}

TEST_F(SampleRun, RefusesATextureWhoseConvertedFileWouldOpenADevice) {
    std::string model = testing::GetFile(Model());
    const std::string uri = R"("uri": "body.tga")";
    ASSERT_NE(model.find(uri), std::string::npos);
    model.replace(model.find(uri), uri.size(), R"("uri": "aux.tga")");
    testing::PutFile(Model(), model);
    fs::rename(folder_ / "body.tga", folder_ / "aux.tga");
    const Result result =
        Apply(std::string(RAILWRIGHT_SOURCE_DIR) + "/examples/diesel.json");
    EXPECT_EQ(result.status, kExitFailed) << result.err;
    EXPECT_NE(result.err.find("The texture \"aux.tga\" cannot be converted: Windows reserves "
                              "\"AUX\" for a device. Please rename the texture file."),
              std::string::npos)
        << result.err;
    EXPECT_FALSE(fs::exists(fs::path(folder_ / "documents") / "TRAINS"));
}

TEST_F(SampleRun, ACancelledWizardSavesNothing) {
    const std::string before = testing::GetFile(Model());
    const Result result = Apply(Script(R"({ "events": [ { "click": "cmdCancel" } ] })"));
    EXPECT_EQ(result.status, kExitFailed) << result.err;
    EXPECT_EQ(testing::GetFile(Model()), before);
}

TEST_F(SampleRun, RefusesAMissingScriptOrSimulatorFolder) {
    EXPECT_EQ(Apply(folder_ / "no-such-script.json").status, kExitUsage);
    const Result result = RunRailwright({"apply", Model(), "--script",
                               std::string(RAILWRIGHT_SOURCE_DIR) + "/examples/diesel.json",
                               "--msts", folder_ / "no-such-folder"});
    EXPECT_EQ(result.status, kExitUsage);
    EXPECT_NE(result.err.find("--msts"), std::string::npos) << result.err;
}

}  // namespace
}  // namespace railwright::cli
