// The shape writer on the third-party models of the shared corpus: every model the document
// loads becomes a sound shape showing all its triangles, and the trains, named as the wizard
// names their parts, keep their wheels as matrices of their own.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "document/DocumentTesting.h"
#include "document/shape/ShapeTesting.h"
#include "identification/DriveWheelAnimation.h"
#include "ui/script/ScriptedUserInterface.h"

namespace railwright::document::shape {
namespace {

using document::testing::CorpusPath;
using testing::ExpectedTriangles;
using testing::ReadShape;
using testing::SameTriangles;
using testing::Triangle;
using testing::WriteAndRead;

// A coordinate tolerance for a model: float rounding grows with the model's size.
double ToleranceFor(const std::vector<Triangle>& triangles) {
    float largest = 1;
    for (const Triangle& triangle : triangles) {
        for (const auto& corner : triangle) {
            for (const float value : corner) {
                largest = std::max(largest, std::abs(value));
            }
        }
    }
    return 2e-5 * largest;
}

size_t TriangleCount(const host::scene::Model& model) {
    size_t count = 0;
    for (const auto& group : model.GroupOrder()) {
        for (const host::scene::Shape& shape : group->Shapes()) {
            for (const host::scene::TriangleSet& set : shape.triangles) {
                count += set.corners.size() / 3;
            }
        }
    }
    return count;
}

TEST(ShapeCorpus, EveryModelThatLoadsWritesASoundShapeWithAllItsTriangles) {
    std::vector<std::filesystem::path> models;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(CorpusPath(""))) {
        const std::string extension = entry.path().extension().string();
        if (entry.is_regular_file() && (extension == ".gltf" || extension == ".glb")) {
            models.push_back(entry.path());
        }
    }
    std::sort(models.begin(), models.end());
    size_t written = 0;
    size_t withTriangles = 0;
    for (const std::filesystem::path& file : models) {
        LoadResult loaded = Document::Load(file.string());
        if (!loaded.document) {
            continue;
        }
        SCOPED_TRACE(file.string());
        const host::scene::Model& model = *loaded.document->Scene().model;
        const host::scene::Node& root = *model.Root();
        const std::vector<Triangle> expected = ExpectedTriangles(root);
        for (const int32_t setting : {0, 1}) {
            const ReadShape read = WriteAndRead(root, model, {setting}).read;
            if (!read.error.empty() || read.levels.empty()) {
                break;
            }
            EXPECT_EQ(read.levels[0].triangles, TriangleCount(model));
            EXPECT_TRUE(SameTriangles(expected, read.levels[0].placed, ToleranceFor(expected)));
        }
        ++written;
        withTriangles += expected.empty() ? 0 : 1;
    }
    // Most malformed files are refused; the sound models and many edge cases load.
    EXPECT_GT(written, 100u);
    EXPECT_GE(withTriangles, 20u);
}

struct Renaming {
    const char* from;
    const char* to;
};

// Loads a train and names its parts as identification would.
std::unique_ptr<Document> IdentifiedTrain(const char* file, std::initializer_list<Renaming> names) {
    std::unique_ptr<Document> document =
        document::testing::MustLoad(CorpusPath(std::string("quaternius_train/gltf/") + file));
    if (document) {
        for (const Renaming& renaming : names) {
            document->Scene().GroupNamed(renaming.from)->SetName(renaming.to);
        }
    }
    return document;
}

TEST(ShapeCorpus, TheSteamLocomotiveKeepsItsWheelsAndTurnsItsDriveWheels) {
    const std::unique_ptr<Document> train =
        IdentifiedTrain("Locomotive_Front.gltf", {{"RootNode", "Main"},
                                                  {"BigWheels1", "Wheels1"},
                                                  {"BigWheels2", "Wheels2"},
                                                  {"BigWheels3", "Wheels3"},
                                                  {"SmallWheels1", "Wheels11"},
                                                  {"SmallWheels_2", "Wheels12"}});
    ASSERT_TRUE(train);
    host::scene::Scene& scene = train->Scene();
    ui::script::ScriptedUserInterface ui({});
    identification::AnimateDriveWheels(*scene.scripting, ui);

    const auto main = scene.GroupNamed("Main");
    const ReadShape read = WriteAndRead(*main, *scene.model).read;
    EXPECT_EQ(read.matrixNames, (std::vector<std::string>{"MAIN", "WHEELS1", "WHEELS2", "WHEELS3",
                                                          "WHEELS11", "WHEELS12"}));
    EXPECT_EQ(read.hierarchy, (std::vector<int32_t>{-1, 0, 0, 0, 0, 0}));
    const std::vector<Triangle> expected = ExpectedTriangles(*main);
    EXPECT_TRUE(SameTriangles(expected, read.levels.at(0).placed, ToleranceFor(expected)));
    ASSERT_TRUE(read.animated);
    EXPECT_EQ(read.frameCount, 8);
    for (size_t m = 0; m < read.animNodes.size(); ++m) {
        const bool driveWheel = m >= 1 && m <= 3;
        EXPECT_EQ(read.animNodes[m].rotations.size(), driveWheel ? 9u : 0u) << m;
        EXPECT_EQ(read.animNodes[m].positions.size(), driveWheel ? 9u : 0u) << m;
    }
}

TEST(ShapeCorpus, TheCargoWagonIsPlacedExactlyWhateverItsDistanceLevels) {
    const std::unique_ptr<Document> train =
        IdentifiedTrain("CargoTrain_Wagon.gltf", {{"RootNode", "Main"},
                                                  {"Wheels1", "Wheels11"},
                                                  {"Wheels2", "Wheels12"},
                                                  {"Wheels3", "Wheels21"},
                                                  {"Wheels4", "Wheels22"}});
    ASSERT_TRUE(train);
    const host::scene::Scene& scene = train->Scene();
    const auto main = scene.GroupNamed("Main");
    for (const int32_t setting : {0, 2}) {
        const ReadShape read = WriteAndRead(*main, *scene.model, {setting}).read;
        EXPECT_EQ(read.matrixNames, (std::vector<std::string>{"MAIN", "WHEELS11", "WHEELS12",
                                                              "WHEELS21", "WHEELS22"}));
        const std::vector<Triangle> expected = ExpectedTriangles(*main);
        EXPECT_TRUE(SameTriangles(expected, read.levels.at(0).placed, ToleranceFor(expected)));
        EXPECT_FALSE(read.animated);
    }
}

}  // namespace
}  // namespace railwright::document::shape
