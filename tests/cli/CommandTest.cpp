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
    Result Apply(const std::string& script, std::vector<std::string> extra = {},
                 const std::string& model = {}) {
        std::vector<std::string> arguments = {"apply",        model.empty() ? Model() : model,
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

// The text of an MSTS text file after txt2uni (UTF-16LE with its mark), all of it ASCII.
std::string AsciiOf(const std::string& unicode) {
    std::string text;
    for (size_t i = 2; i < unicode.size(); i += 2) {
        text += unicode[i];
    }
    return text;
}

// The numbers of the first line of an MSTS text file that matches `pattern`, whose one group
// holds them.
std::vector<float> NumbersOf(const std::string& unicode, const std::string& pattern) {
    const std::string text = AsciiOf(unicode);
    std::smatch match;
    if (!std::regex_search(text, match, std::regex(pattern))) {
        ADD_FAILURE() << "no line matches " << pattern << " in\n" << text;
        return {};
    }
    std::vector<float> numbers;
    std::istringstream words(match[1].str());
    for (float value = 0; words >> value;) {
        numbers.push_back(value);
    }
    return numbers;
}

// A glTF model that is not the same left and right: a body, a tank on its left (glTF's +X), a
// lamp with a spot light at the tank's front top corner, and a marker box further out for the
// head-out placeholder. Nodes: 0 Body (1 Tank, 2 Lamp, 3 HeadOutMarker). The texture is the
// sample's.
std::string LopsidedModel(const fs::path& folder) {
    std::string bin;
    const auto box = [&bin](std::array<float, 3> low, std::array<float, 3> high) {
        const size_t offset = bin.size();
        for (int corner = 0; corner < 8; ++corner) {
            for (int axis = 0; axis < 3; ++axis) {
                const float value = (corner >> axis & 1) != 0 ? high[static_cast<size_t>(axis)]
                                                               : low[static_cast<size_t>(axis)];
                bin.append(reinterpret_cast<const char*>(&value), sizeof value);
            }
        }
        return offset;
    };
    const std::vector<size_t> boxes = {box({-1, 0, -5}, {1, 3, 5}),
                                       box({-1, -0.5f, -0.25f}, {1, 0.5f, 0.25f}),
                                       box({-0.1f, -0.1f, -0.1f}, {0.1f, 0.1f, 0.1f})};
    const size_t indices = bin.size();
    // Two triangles on each face; which way round does not matter here.
    for (const int corner : {0, 1, 3, 0, 3, 2, 4, 6, 7, 4, 7, 5, 0, 4, 5, 0, 5, 1,
                             2, 3, 7, 2, 7, 6, 0, 2, 6, 0, 6, 4, 1, 5, 7, 1, 7, 3}) {
        const auto index = static_cast<uint16_t>(corner);
        bin.append(reinterpret_cast<const char*>(&index), sizeof index);
    }
    testing::PutFile((folder / "lopsided.bin").string(), bin);
    nlohmann::json gltf = {
        {"asset", {{"version", "2.0"}}},
        {"extensionsUsed", {"KHR_lights_punctual"}},
        {"extensions", {{"KHR_lights_punctual", {{"lights", {{{"type", "spot"}, {"spot", nlohmann::json::object()}}}}}}}},
        {"buffers", {{{"uri", "lopsided.bin"}, {"byteLength", bin.size()}}}},
        {"bufferViews", {{{"buffer", 0}, {"byteOffset", 0}, {"byteLength", indices}},
                         {{"buffer", 0}, {"byteOffset", indices}, {"byteLength", 72}}}},
        {"images", {{{"uri", "body.tga"}}}},
        {"textures", {{{"source", 0}}}},
        {"materials", {{{"pbrMetallicRoughness", {{"baseColorTexture", {{"index", 0}}}}}}}},
        {"scene", 0},
        {"scenes", {{{"nodes", {0}}}}},
        {"nodes",
         {{{"name", "Body"}, {"mesh", 0}, {"children", {1, 2, 3}}},
          // A quarter turn about Y: the tank stands 0.5 m wide and 2 m long.
          {{"name", "Tank"}, {"mesh", 1}, {"translation", {1.25, 1.5, 3}},
           {"rotation", {0, 0.70710678, 0, 0.70710678}}},
          {{"name", "Lamp"}, {"translation", {1.5, 2, 4}},
           {"extensions", {{"KHR_lights_punctual", {{"light", 0}}}}}},
          {{"name", "HeadOutMarker"}, {"mesh", 2}, {"translation", {2, 2.8, 3}}}}},
    };
    for (size_t i = 0; i < boxes.size(); ++i) {
        gltf["accessors"].push_back({{"bufferView", 0}, {"byteOffset", boxes[i]},
                                     {"componentType", 5126}, {"count", 8}, {"type", "VEC3"}});
        gltf["meshes"].push_back(
            {{"primitives",
              {{{"attributes", {{"POSITION", i}}}, {"indices", boxes.size()}, {"material", 0}}}}});
    }
    gltf["accessors"].push_back({{"bufferView", 1}, {"componentType", 5123}, {"count", 36},
                                 {"type", "SCALAR"}});
    const fs::path model = folder / "lopsided.gltf";
    testing::PutFile(model.string(), gltf.dump());
    return model.string();
}

TEST_F(SampleRun, ALopsidedModelPutsItsLightAndBoxOnTheSameSideAsItsShape) {
    const std::string model = LopsidedModel(folder_.Path());
    const std::string script = Script(R"({ "events": [
        { "click": "chkMSTS" }, { "click": "cmdNext" },
        { "select": "cboProjectType", "text": "Rail Vehicle" },
        { "select": "cboProjectSubType", "text": "Diesel Engine" }, { "click": "cmdNext" },
        { "type": "txtProjectTitle", "text": "Lopsided" },
        { "type": "txtProjectName", "text": "Lopsided" }, { "click": "cmdNext" },
        { "type": "txtDieselExhaust", "text": "0" }, { "click": "chkViewPoint" },
        { "click": "cmdNext" },
        { "pick": "Body" }, { "pick": "HeadOutMarker" },
        { "click": "cmdNext" }, { "click": "cmdNext" }, { "click": "cmdFinish" } ] })");
    const Result result = Apply(script, {}, model);
    ASSERT_EQ(result.status, kExitSuccess) << result.err;
    const fs::path trainset = fs::path(folder_ / "documents") / "TRAINS" / "TRAINSET" / "LOPSIDED";

    const auto shape = document::shape::testing::ReadShapeFile(
        testing::GetFile((trainset / "lopsided.s").string()));
    ASSERT_EQ(shape.error, "");
    std::array<float, 6> shapeBox = {1e9f, 1e9f, 1e9f, -1e9f, -1e9f, -1e9f};
    for (const auto& triangle : shape.levels.at(0).placed) {
        for (const auto& corner : triangle) {
            for (size_t axis = 0; axis < 3; ++axis) {
                shapeBox[axis] = std::min(shapeBox[axis], corner[axis]);
                shapeBox[axis + 3] = std::max(shapeBox[axis + 3], corner[axis]);
            }
        }
    }
    // The tank, on the model's left, lies at negative X in MSTS's axes.
    const std::array<float, 6> expectedBox = {-1.5f, 0, -5, 1, 3, 5};
    const std::vector<float> sdBox = NumbersOf(
        testing::GetFile((trainset / "lopsided.sd").string()), R"(ESD_Bounding_Box \( ([^)]*)\))");
    ASSERT_EQ(sdBox.size(), 6u);
    for (size_t i = 0; i < 6; ++i) {
        EXPECT_NEAR(shapeBox[i], expectedBox[i], 1e-4) << i;
        EXPECT_NEAR(sdBox[i], shapeBox[i], 1e-4) << i;  // the marker is left out of both
    }

    // The light sits on the tank's corner, a vertex of the shape.
    const std::string eng = testing::GetFile((trainset / "lopsided.eng").string());
    const std::vector<float> light = NumbersOf(eng, R"(Position \( ([^)]*)\))");
    ASSERT_EQ(light.size(), 3u);
    EXPECT_NEAR(light[0], -1.5f, 1e-4);
    const auto isVertex = [&shape](const std::vector<float>& point) {
        for (const auto& triangle : shape.levels.at(0).placed) {
            for (const auto& corner : triangle) {
                if (std::abs(corner[0] - point[0]) < 1e-4f &&
                    std::abs(corner[1] - point[1]) < 1e-4f &&
                    std::abs(corner[2] - point[2]) < 1e-4f) {
                    return true;
                }
            }
        }
        return false;
    };
    EXPECT_TRUE(isVertex(light));
    EXPECT_FALSE(isVertex({-light[0], light[1], light[2]}));
    // The head-out line is never written from its placeholder (the name test never matches).
    EXPECT_EQ(AsciiOf(eng).find("HeadOut"), std::string::npos);
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

TEST_F(SampleRun, AFailedExportSaysWhyBesideItsMessageBox) {
    // An Open Rails content folder: no default trains to copy the cab view and sounds from.
    fs::remove_all(fs::path(folder_ / "msts") / "TRAINS");
    const Result result = Apply(std::string(RAILWRIGHT_SOURCE_DIR) + "/examples/diesel.json");
    EXPECT_EQ(result.status, kExitFailed) << result.err;
    EXPECT_NE(result.err.find("railwright: The MSTS export failed while writing the vehicle "
                              "files, cab view and sounds: Path not found: \""),
              std::string::npos)
        << result.err;
    EXPECT_NE(result.err.find("DASH9"), std::string::npos) << result.err;
    EXPECT_NE(result.err.find("Railwright: critical: The export of your MSTS project failed."),
              std::string::npos)
        << result.err;
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
