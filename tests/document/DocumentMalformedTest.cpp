// Damaged and hostile input: every file of the corpus's malformed folders loads or is refused
// with a message naming the file; what loads also saves, or refuses to, cleanly.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "document/DocumentTesting.h"
#include "document/GltfContainer.h"

namespace railwright::document {
namespace {

using testing::CorpusPath;
using testing::ReadBytes;
using testing::ScratchFolder;
using testing::WriteBytes;

std::vector<std::filesystem::path> FilesUnder(const std::string& folder, bool modelsOnly) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(CorpusPath(folder))) {
        const std::string extension = entry.path().extension().string();
        if (entry.is_regular_file() &&
            (!modelsOnly || extension == ".gltf" || extension == ".glb")) {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

struct Outcome {
    bool loaded = false;
    std::string error;
};

// Loads the file; a refusal must name it. What loads is saved into a scratch folder, which
// must work or be refused with a message as well.
Outcome LoadAndSave(const std::filesystem::path& file, const ScratchFolder& scratch) {
    const std::string path = file.string();
    LoadResult loaded = Document::Load(path);
    if (!loaded.document) {
        EXPECT_EQ(loaded.error.rfind(path + ": ", 0), 0u) << loaded.error;
        EXPECT_GT(loaded.error.size(), path.size() + 2);
        return {false, loaded.error};
    }
    EXPECT_EQ(loaded.error, "");
    const std::string copy = (scratch / ("saved" + file.extension().string())).string();
    const SaveResult saved = loaded.document->SaveAs(copy);
    if (!saved.Ok()) {
        EXPECT_EQ(saved.error.rfind(copy + ": not saved: ", 0), 0u) << saved.error;
    }
    EXPECT_NO_THROW(loaded.document->Inspect());
    return {true, {}};
}

TEST(DocumentMalformed, EveryFileOfTheMalformedFoldersLoadsOrIsRefusedByName) {
    ScratchFolder scratch;
    size_t refused = 0;
    size_t total = 0;
    for (const auto& [folder, modelsOnly] :
         {std::pair{"malformed_assimp", false}, std::pair{"malformed_tinygltf", false},
          std::pair{"malformed_validator", true}}) {
        for (const std::filesystem::path& file : FilesUnder(folder, modelsOnly)) {
            SCOPED_TRACE(file.string());
            refused += LoadAndSave(file, scratch).loaded ? 0 : 1;
            ++total;
        }
    }
    EXPECT_GT(total, 290u);
    EXPECT_GT(refused, total / 3);  // most of these files are broken on purpose
}

TEST(DocumentMalformed, KnownFaultsAreNamed) {
    ScratchFolder scratch;
    struct Case {
        const char* file;
        const char* fault;
    };
    for (const Case& test : {
             Case{"malformed_assimp/RecursiveNodes/RecursiveNodes.gltf", "cycle of nodes"},
             Case{"malformed_assimp/MissingBin/BoxTextured.gltf", "BoxTextured0.bin"},
             Case{"malformed_assimp/BoxWithInfinites-glTF-Binary/BoxWithInfinites.glb",
                  "not finite"},
             Case{"malformed_tinygltf/BoundsChecking/invalid-buffer-view-index.gltf", "bufferView"},
             Case{"malformed_tinygltf/BoundsChecking/invalid-primitive-indices.gltf", "accessor"},
             Case{"malformed_tinygltf/tests/issue-416.gltf", "version \"\""},
             Case{"malformed_assimp/TestNoRootNode/NoScene.gltf", "default scene 0"},
             Case{"malformed_tinygltf/CubeImageUriSpaces", "not a file"},
         }) {
        SCOPED_TRACE(test.file);
        const Outcome outcome = LoadAndSave(CorpusPath(test.file), scratch);
        EXPECT_FALSE(outcome.loaded);
        EXPECT_NE(outcome.error.find(test.fault), std::string::npos) << outcome.error;
    }
}

// The box, with its JSON edited: what the edit breaks is refused, naming the fault.
TEST(DocumentMalformed, EditedBoxesAreRefusedForWhatIsWrong) {
    using Json = nlohmann::ordered_json;
    struct Case {
        const char* name;
        std::function<void(Json&)> edit;
        const char* fault;  // empty: the edited box still loads
    };
    const Case cases[] = {
        {"draco required",
         [](Json& j) {
             j["extensionsUsed"] = {"KHR_draco_mesh_compression"};
             j["extensionsRequired"] = {"KHR_draco_mesh_compression"};
         },
         "its geometry is compressed with KHR_draco_mesh_compression, which cannot be read "
         "here"},
        {"meshopt required",
         [](Json& j) {
             j["extensionsUsed"] = {"EXT_meshopt_compression"};
             j["extensionsRequired"] = {"EXT_meshopt_compression"};
         },
         "its geometry is compressed with EXT_meshopt_compression"},
        {"texture transform required",
         [](Json& j) {
             j["extensionsUsed"] = {"KHR_texture_transform"};
             j["extensionsRequired"] = {"KHR_texture_transform"};
         },
         ""},
        {"a node that is its own child", [](Json& j) { j["nodes"][1]["children"] = {1}; },
         "node 1 is its own child"},
        {"a shared child",
         [](Json& j) {
             j["nodes"].push_back({{"children", {1}}});
         },
         "node 1 is a child of both node 0 and node 2"},
        {"a root that is a child",
         [](Json& j) {
             j["scenes"][0]["nodes"] = {0, 1};
         },
         "lists node 1 as a root"},
        {"a missing mesh", [](Json& j) { j["nodes"][1]["mesh"] = 7; }, "names mesh 7"},
        {"integer positions", [](Json& j) { j["accessors"][2]["componentType"] = 5122; },
         "does not hold floats"},
        {"a sparse index past the end",
         [](Json& j) {
             // One unsigned short index, 99, in a buffer of its own.
             j["buffers"].push_back(
                 {{"byteLength", 2}, {"uri", "data:application/octet-stream;base64,YwA="}});
             j["bufferViews"].push_back({{"buffer", 1}, {"byteLength", 2}});
             j["accessors"][2]["sparse"] = {
                 {"count", 1},
                 {"indices", {{"bufferView", 3}, {"componentType", 5123}}},
                 {"values", {{"bufferView", 1}}}};
         },
         "sparse index 99"},
        {"accessor past its bufferView", [](Json& j) { j["accessors"][2]["count"] = 25; },
         "past the end of bufferView 1"},
        {"a buffer shorter than its file", [](Json& j) { j["buffers"][0]["byteLength"] = 800; },
         "BoxTextured0.bin"},
        {"version 3", [](Json& j) { j["asset"]["version"] = "3.0"; }, "version \"3.0\""},
        {"our longs out of range",
         [](Json& j) {
             j["asset"]["extras"]["railwright"]["longs"] = {1, 4294967296};
         },
         "longs"},
        {"our field values without names",
         [](Json& j) { j["nodes"][1]["extras"]["railwright"]["fields"] = {"x"}; }, "only 0 fields"},
        {"other extras of the user",
         [](Json& j) {
             j["asset"]["extras"] = {{"railwright2", {1, Json::object()}},
                                     {"big", 18446744073709551615u}};
         },
         ""},
    };
    ScratchFolder scratch;
    const std::filesystem::path model = scratch.CopyCorpus("box_textured/glTF", "BoxTextured.gltf");
    const Json original = Json::parse(ReadBytes(model));
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        Json json = original;
        test.edit(json);
        WriteBytes(model, json.dump(1));
        LoadResult loaded = Document::Load(model.string());
        if (std::string(test.fault).empty()) {
            EXPECT_TRUE(loaded.document) << loaded.error;
        } else {
            EXPECT_FALSE(loaded.document);
            EXPECT_EQ(loaded.error.rfind(model.string() + ": ", 0), 0u) << loaded.error;
            EXPECT_NE(loaded.error.find(test.fault), std::string::npos) << loaded.error;
        }
    }
}

TEST(DocumentMalformed, DeepNestingIsRefusedBeforeParsing) {
    ScratchFolder scratch;
    for (const bool binary : {false, true}) {
        SCOPED_TRACE(binary ? "glb" : "gltf");
        const std::string json =
            "{\"asset\": {\"version\": \"2.0\"}, \"extras\": " + std::string(100000, '[') +
            std::string(100000, ']') + "}";
        const std::filesystem::path file = scratch / (binary ? "deep.glb" : "deep.gltf");
        WriteBytes(file, binary ? *JoinGlb(json, nullptr, {}) : json);
        LoadResult loaded = Document::Load(file.string());
        EXPECT_FALSE(loaded.document);
        EXPECT_NE(loaded.error.find("nests"), std::string::npos) << loaded.error;
    }
    // Brackets inside strings do not count.
    WriteBytes(scratch / "text.gltf", "{\"asset\": {\"version\": \"2.0\", \"generator\": \"" +
                                          std::string(1000, '[') + "\\\"\"}}");
    EXPECT_TRUE(Document::Load((scratch / "text.gltf").string()).document);
}

TEST(DocumentMalformed, DamagedContainersAreRefused) {
    const std::string box = ReadBytes(CorpusPath("box_textured/glTF-Binary/BoxTextured.glb"));
    const auto withLength = [](std::string file, uint32_t offset, uint32_t value) {
        for (size_t i = 0; i < 4; ++i) {
            file[offset + i] = static_cast<char>((value >> (8 * i)) & 0xFF);
        }
        return file;
    };
    struct Case {
        const char* name;
        std::string bytes;
        const char* fault;
    };
    const Case cases[] = {
        {"empty", "", "JSON"},
        {"magic only", "glTF", "cut short"},
        {"cut", box.substr(0, box.size() - 100), "length"},
        {"header length too short", withLength(box, 8, static_cast<uint32_t>(box.size() - 4)),
         "claims"},
        {"JSON chunk overruns", withLength(box, 12, static_cast<uint32_t>(box.size())), "claims"},
        {"version 1", withLength(box, 4, 1), "version 1"},
        {"not JSON", "\x89PNG\r\n", "JSON"},
    };
    ScratchFolder scratch;
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        const std::filesystem::path file = scratch / "damaged.glb";
        WriteBytes(file, test.bytes);
        LoadResult loaded = Document::Load(file.string());
        EXPECT_FALSE(loaded.document);
        EXPECT_NE(loaded.error.find(test.fault), std::string::npos) << loaded.error;
    }
}

}  // namespace
}  // namespace railwright::document
