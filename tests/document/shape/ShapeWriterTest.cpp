// The shape writer on scenes built in code: which groups become matrices and where their
// geometry lands, materials, the limits, distance levels, animation, and the file on disk.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <numbers>

#include "document/shape/ShapeTesting.h"
#include "export/ExportFixture.h"
#include "export/GoldenFile.h"
#include "export/common/UnicodeConversion.h"
#include "host/scene/Scene.h"

namespace railwright::document::shape {
namespace {

using host::scene::MaterialProperties;
using host::scene::Scene;
using host::scene::SceneBuilder;
using testing::ExpectedTriangles;
using testing::ReadShape;
using testing::SameTriangles;
using testing::WriteAndRead;

// A vehicle as identification leaves it, with a group to merge (rotated and scaled, holding a
// rod) and a placeholder that holds geometry of its own and below it.
Scene Vehicle() {
    return SceneBuilder("Vehicle")
        .Group("Main")
        .Box({-1.5f, 1, -10}, {1.5f, 4, 10}, "Textures/Body.TGA")
        .Group("Bogie1", "Main")
        .At(0, 0.2f, 6)
        .Box({-1.2f, 0.3f, -2}, {1.2f, 0.9f, 2}, "bogie.tga")
        .Group("Wheels11", "Bogie1")
        .At(0, 0, 1)
        .Box({-0.8f, 0, -0.5f}, {0.8f, 1, 0.5f}, "wheel.tga")
        .Group("Detail", "Main")
        .At(1, 2, 3)
        .Rotated(0.3f, 0.5f, 0.7f)
        .Scaled(2, 1, 0.5f)
        .Box({0, 0, 0}, {1, 1, 1}, "Textures/Body.TGA")
        .Group("rod01", "Detail")
        .At(0.5f, 0, 0)
        .Box({-0.1f, -0.1f, -1}, {0.1f, 0.1f, 1}, "rod.bmp")
        .Group("RailwrightPlaceholder-exhaustsource1", "Main")
        .At(0, 4, 0)
        .Box({0, 0, 0}, {0.2f, 0.2f, 0.2f}, "body.tga")
        .Group("UnderThePlaceholder", "RailwrightPlaceholder-exhaustsource1")
        .Box({0, 0, 0}, {0.2f, 0.2f, 0.2f}, "body.tga")
        .Build();
}

std::array<float, 3> Translation(const ReadShape& read, size_t matrix) {
    const auto& rows = read.matrices[matrix];
    return {rows[9], rows[10], rows[11]};
}

TEST(ShapeWriter, KeepsTheNamedPartsMergesTheRestAndPlacesEveryTriangle) {
    const Scene scene = Vehicle();
    const auto main = scene.GroupNamed("Main");
    const auto written = WriteAndRead(*main, *scene.model);
    const ReadShape& read = written.read;

    EXPECT_EQ(read.matrixNames, (std::vector<std::string>{"MAIN", "BOGIE1", "WHEELS11", "ROD01"}));
    EXPECT_EQ(read.hierarchy, (std::vector<int32_t>{-1, 0, 1, 0}));
    ASSERT_EQ(read.levels.size(), 1u);
    // Five boxes: the placeholder and what lies under it are left out.
    EXPECT_EQ(read.levels[0].triangles, 5u * 12);
    EXPECT_TRUE(SameTriangles(ExpectedTriangles(*main), read.levels[0].placed));
    EXPECT_EQ(read.images,
              (std::vector<std::string>{"body.ace", "bogie.ace", "wheel.ace", "rod.ace"}));
    // Bogies and wheelsets turn about their origin: it sits at the centre of their geometry.
    EXPECT_EQ(Translation(read, 0), (std::array<float, 3>{0, 0, 0}));
    const auto bogie = Translation(read, 1);
    EXPECT_NEAR(bogie[1], 0.8f, 1e-6);
    EXPECT_NEAR(bogie[2], 6.0f, 1e-6);
    const auto wheels = Translation(read, 2);
    EXPECT_NEAR(wheels[1], -0.1f, 1e-6);
    EXPECT_NEAR(wheels[2], 1.0f, 1e-6);
    EXPECT_FALSE(read.animated);
    // Every corner lies within the cull sphere about the origin.
    for (const auto& triangle : read.levels[0].placed) {
        for (const auto& corner : triangle) {
            EXPECT_LE(std::hypot(corner[0], corner[1], corner[2]), read.radius * 1.000001f);
        }
    }
}

TEST(ShapeWriter, ASignalRetainingItsSubObjectsKeepsAMatrixForEveryGroup) {
    const Scene scene = SceneBuilder("Signal")
                            .Group("Main")
                            .Box({-0.1f, 0, -0.1f}, {0.1f, 5, 0.1f}, "post.tga")
                            .Group("Head 1", "Main")
                            .At(0, 5, 0)
                            .Rotated(0, 0.3f, 0)
                            .Box({-0.3f, 0, -0.2f}, {0.3f, 1, 0}, "head.tga")
                            .Group("Lamp", "Head 1")
                            .At(0, 0.5f, 0.05f)
                            .Box({-0.1f, -0.1f, 0}, {0.1f, 0.1f, 0.05f}, "lamp.tga")
                            .Group("Arm", "Main")
                            .At(0.2f, 4, 0)
                            .Box({0, 0, 0}, {1, 0.1f, 0.05f}, "post.tga")
                            .Group("RailwrightPlaceholder-Marker", "Main")
                            .Build();
    const auto main = scene.GroupNamed("Main");
    struct Case {
        bool retained;
        std::vector<std::string> names;
        std::vector<int32_t> hierarchy;
    };
    const Case cases[] = {
        {false, {"MAIN"}, {-1}},
        {true, {"MAIN", "HEAD_1", "LAMP", "ARM"}, {-1, 0, 1, 0}},
    };
    for (const Case& c : cases) {
        const ReadShape read = WriteAndRead(*main, *scene.model, {0, c.retained}).read;
        EXPECT_EQ(read.matrixNames, c.names) << c.retained;
        EXPECT_EQ(read.hierarchy, c.hierarchy) << c.retained;
        ASSERT_EQ(read.levels.size(), 1u);
        EXPECT_TRUE(SameTriangles(ExpectedTriangles(*main), read.levels[0].placed)) << c.retained;
    }
}

TEST(ShapeWriter, KeepsTheSceneAxesAndTurnsTheCornersClockwise) {
    // One triangle whose corners run as a glTF front face's do: the shape swaps two of them.
    host::scene::Shape triangle{{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, nullptr};
    triangle.triangles = {{0, {0, 1, 2}}};
    const Scene scene = SceneBuilder().Group("Main").Mesh("Plate", triangle, {"plate.tga"}).Build();
    const auto written = WriteAndRead(*scene.GroupNamed("Main"), *scene.model);
    ASSERT_EQ(written.read.levels[0].placed.size(), 1u);
    const testing::Triangle expected{{{0, 0, 0}, {0, 1, 0}, {1, 0, 0}}};
    EXPECT_TRUE(SameTriangles({expected}, written.read.levels[0].placed));
}

TEST(ShapeWriter, MaterialsChooseShaderAlphaTestPriorityAndImage) {
    struct Case {
        const char* group;
        MaterialProperties material;
        const char* txAlpha;  // nullptr: the field is left unset
        const char* alphaPriority;
        testing::ReadPrimState expected;
        const char* image;  // nullptr: no texture
    };
    const auto texture = [](const char* file) {
        MaterialProperties properties;
        properties.textureFile = file;
        return properties;
    };
    MaterialProperties lamp = texture("Lamp.PNG");
    lamp.translucencyLevel = 1;
    const Case cases[] = {
        {"Paint",
         texture("C:\\Models\\Body Paint.TGA"),
         "None",
         "0",
         {0, {}, 0, 0, 0},
         "body paint.ace"},
        {"Grille", texture("grille.tga"), "Transparency", "0", {0, {}, 0, 0, 1}, "grille.ace"},
        {"Glass", texture("glass.tga"), "Translucency", "2", {1, {}, 2, 0, 0}, "glass.ace"},
        {"Lamp", lamp, nullptr, nullptr, {1, {}, 0, 0, 0}, "lamp.ace"},
        {"Bare", texture(""), "None", "0", {0, {}, 0, 0, 0}, nullptr},
    };
    SceneBuilder builder;
    builder.MaterialFields({"Rail Sim", "Tx Alpha", "Alpha Pr"}).Group("Main");
    for (const Case& c : cases) {
        builder.Group(c.group, "Main").Box({0, 0, 0}, {1, 1, 1}, c.material);
        if (c.txAlpha != nullptr) {
            builder.MaterialField("Tx Alpha", c.txAlpha).MaterialField("Alpha Pr", c.alphaPriority);
        }
    }
    const Scene scene = builder.Build();
    const auto written = WriteAndRead(*scene.GroupNamed("Main"), *scene.model);
    const ReadShape& read = written.read;
    ASSERT_EQ(read.shaders, (std::vector<std::string>{"TexDiff", "BlendATexDiff"}));
    // One state per material, in the order the materials are met.
    ASSERT_EQ(read.primStates.size(), std::size(cases));
    for (size_t i = 0; i < std::size(cases); ++i) {
        SCOPED_TRACE(cases[i].group);
        const testing::ReadPrimState& state = read.primStates[i];
        EXPECT_EQ(state.shader, cases[i].expected.shader);
        EXPECT_EQ(state.alphaTestMode, cases[i].expected.alphaTestMode);
        EXPECT_EQ(state.zBias, cases[i].expected.zBias);
        if (cases[i].image == nullptr) {
            EXPECT_TRUE(state.textures.empty());
        } else {
            ASSERT_EQ(state.textures.size(), 1u);
            EXPECT_EQ(read.images[static_cast<size_t>(state.textures[0])], cases[i].image);
        }
    }
}

// A mesh of `triangles` separate triangles (three vertices each) or, with `shared`, a fan whose
// triangles share its centre and rim.
host::scene::Shape ManyTriangles(uint32_t triangles, bool shared) {
    host::scene::Shape shape{{}, nullptr};
    host::scene::TriangleSet set;
    if (shared) {
        shape.vertices.push_back({0, 0, 0});
        for (uint32_t i = 0; i <= triangles; ++i) {
            const double angle = 2 * std::numbers::pi * i / (triangles + 1);
            shape.vertices.push_back(
                {static_cast<float>(std::cos(angle)), static_cast<float>(std::sin(angle)), 0});
        }
        for (uint32_t i = 1; i <= triangles; ++i) {
            set.corners.insert(set.corners.end(), {0, i, i + 1});
        }
    } else {
        for (uint32_t i = 0; i < triangles; ++i) {
            const auto x = static_cast<float>(i % 100);
            const auto y = static_cast<float>(i / 100);
            shape.vertices.insert(shape.vertices.end(),
                                  {{x, y, 0}, {x + 0.5f, y, 0}, {x, y + 0.5f, 0}});
            set.corners.insert(set.corners.end(), {3 * i, 3 * i + 1, 3 * i + 2});
        }
    }
    shape.triangles.push_back(std::move(set));
    return shape;
}

TEST(ShapeLimits, MeshesJustOverEachLimitAreSplitWithoutLosingATriangle) {
    struct Case {
        const char* what;
        uint32_t triangles;
        bool shared;
        size_t subObjects;
        size_t drawCalls;
    };
    // A sub-object holds fewer than 15,000 vertices: 5,000 separate triangles need exactly that
    // many. A triangle list holds fewer than 8,000 triangles.
    const Case cases[] = {
        {"vertices", 5000, false, 2, 2},
        {"triangles", 8000, true, 1, 2},
        {"both well under", 1000, false, 1, 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const Scene scene = SceneBuilder()
                                .Group("Main")
                                .Mesh("Mesh", ManyTriangles(c.triangles, c.shared), {"a.tga"})
                                .Build();
        const auto main = scene.GroupNamed("Main");
        const auto written = WriteAndRead(*main, *scene.model);
        const testing::ReadLevel& level = written.read.levels.at(0);
        EXPECT_EQ(level.triangles, c.triangles);
        EXPECT_EQ(level.subObjects, c.subObjects);
        EXPECT_EQ(level.drawCalls, c.drawCalls);
        EXPECT_LT(level.largestSubObject, 15000u);
        EXPECT_LT(level.largestTrilist, 8000u);
        EXPECT_TRUE(SameTriangles(ExpectedTriangles(*main), level.placed));
    }
}

// A body of many small triangles (a finely divided box), a mirror of 0.2 m and wheels of 1 m.
Scene DetailedVehicle() {
    host::scene::Shape body{{}, nullptr};
    host::scene::TriangleSet set;
    constexpr uint32_t kSteps = 60;
    for (uint32_t j = 0; j <= kSteps; ++j) {
        for (uint32_t i = 0; i <= kSteps; ++i) {
            // A gently curved roof, 3 m wide and 6 m long, in steps of 5 cm by 10 cm; its 5 cm
            // of height lie within one cell of either grid.
            const float x = -1.5f + 3.0f * static_cast<float>(i) / kSteps;
            const float z = -3 + 6.0f * static_cast<float>(j) / kSteps;
            body.vertices.push_back({x, 3.9f - 0.02f * x * x, z});
        }
    }
    for (uint32_t j = 0; j < kSteps; ++j) {
        for (uint32_t i = 0; i < kSteps; ++i) {
            const uint32_t a = j * (kSteps + 1) + i;
            const uint32_t b = a + kSteps + 1;
            set.corners.insert(set.corners.end(), {a, b, a + 1, a + 1, b, b + 1});
        }
    }
    body.triangles.push_back(std::move(set));
    return SceneBuilder()
        .Group("Main")
        .Mesh("Roof", body, {"body.tga"})
        .Group("MirrorLeft1", "Main")
        .At(1.6f, 3, 9)
        .Box({0, 0, 0}, {0.1f, 0.2f, 0.05f}, "mirror.tga")
        .Group("Wheels11", "Main")
        .At(0, 0.5f, 7)
        .Box({-0.7f, -0.5f, -0.5f}, {0.7f, 0.5f, 0.5f}, "wheel.tga")
        .Build();
}

TEST(ShapeDistanceLevels, EachSettingWritesItsLevelsFromNearToFar) {
    struct Case {
        int32_t setting;
        std::vector<float> distances;
        const char* name;
    };
    const Case cases[] = {
        {0, {2000}, "none"},
        {1, {200, 600, 2000}, "automatically simplified"},
        {2, {200, 600, 2000}, "standard"},
        {3, {100, 250, 500, 1000, 2000}, "custom"},
        {7, {2000}, "setting 7 is not known: none"},
    };
    const Scene scene = DetailedVehicle();
    const auto main = scene.GroupNamed("Main");
    const std::vector<testing::Triangle> all = ExpectedTriangles(*main);
    for (const Case& c : cases) {
        SCOPED_TRACE(c.setting);
        const auto written = WriteAndRead(*main, *scene.model, {c.setting});
        const ReadShape& read = written.read;
        ASSERT_EQ(read.levels.size(), c.distances.size());
        for (size_t i = 0; i < c.distances.size(); ++i) {
            EXPECT_EQ(read.levels[i].distance, c.distances[i]);
        }
        EXPECT_EQ(written.built.report.distanceLevels, c.name);
        // The nearest level is the whole model; farther ones never hold more.
        EXPECT_TRUE(SameTriangles(all, read.levels[0].placed));
        for (size_t i = 1; i < read.levels.size(); ++i) {
            EXPECT_LE(read.levels[i].triangles, read.levels[i - 1].triangles);
        }
    }
}

TEST(ShapeDistanceLevels, SimplifyingThinsTheBodyAndStandardLevelsDropSmallParts) {
    const Scene scene = DetailedVehicle();
    const auto main = scene.GroupNamed("Main");
    const size_t full = 60 * 60 * 2 + 2 * 12;

    const ReadShape simplified = WriteAndRead(*main, *scene.model, {1}).read;
    EXPECT_EQ(simplified.levels[0].triangles, full);
    // 0.2 m cells over a 3 m by 6 m roof, then 0.6 m cells.
    EXPECT_LT(simplified.levels[1].triangles, full / 4);
    EXPECT_LT(simplified.levels[2].triangles, simplified.levels[1].triangles / 4);
    EXPECT_GT(simplified.levels[2].triangles, 0u);

    const ReadShape standard = WriteAndRead(*main, *scene.model, {2}).read;
    // At 600 m the mirror (0.2 m) is gone; at 2000 m the wheels (1.4 m) stay.
    EXPECT_EQ(standard.levels[1].triangles, full - 12);
    EXPECT_EQ(standard.levels[2].triangles, full - 12);
    // Every level keeps all the matrices and one hierarchy.
    EXPECT_EQ(standard.matrixNames.size(), 3u);
}

// The rotation matrix that the simulator makes of a slerp_rot key, in its own right-handed axes
// acting on row vectors (the key's Z negated, as it reads keys).
std::array<float, 9> SimulatorKeyRotation(const std::array<float, 4>& key) {
    const double x = key[0], y = key[1], z = -key[2], w = key[3];
    return {static_cast<float>(1 - 2 * (y * y + z * z)), static_cast<float>(2 * (x * y + z * w)),
            static_cast<float>(2 * (x * z - y * w)),     static_cast<float>(2 * (x * y - z * w)),
            static_cast<float>(1 - 2 * (x * x + z * z)), static_cast<float>(2 * (y * z + x * w)),
            static_cast<float>(2 * (x * z + y * w)),     static_cast<float>(2 * (y * z - x * w)),
            static_cast<float>(1 - 2 * (x * x + y * y))};
}

// The same for a matrix's rows A, B, C as the simulator converts them.
std::array<float, 9> SimulatorMatrixRotation(const std::array<float, 12>& rows) {
    return {rows[0], rows[1], -rows[2], rows[3], rows[4], -rows[5], -rows[6], -rows[7], rows[8]};
}

TEST(ShapeAnimation, DriveWheelKeysBecomeNodesMatchedToMatricesByIndex) {
    constexpr float kEighthTurn = static_cast<float>(std::numbers::pi / 4);
    SceneBuilder builder;
    builder.Group("Main").Box({-1, 1, -5}, {1, 3, 5}, "body.tga");
    builder.Group("Wheels1", "Main")
        .At(0, 0.8f, 2)
        .Box({-0.7f, -0.8f, -0.8f}, {0.7f, 0.8f, 0.8f}, "wheel.tga");
    for (int t = 0; t <= 8; ++t) {
        builder.Key(static_cast<float>(t), {0, 0.8f, 2},
                    {kEighthTurn * static_cast<float>(t % 8), 0, 0});
    }
    builder.Group("Piston", "Main").At(0.9f, 1, 3).Box({0, 0, 0}, {0.1f, 0.1f, 0.5f}, "body.tga");
    const Scene scene = builder.Build();
    const auto written = WriteAndRead(*scene.GroupNamed("Main"), *scene.model);
    const ReadShape& read = written.read;

    ASSERT_TRUE(read.animated);
    EXPECT_EQ(read.frameCount, 8);
    EXPECT_EQ(read.frameRate, 30);
    ASSERT_EQ(read.animNodes.size(), read.matrixNames.size());
    for (size_t m = 0; m < read.animNodes.size(); ++m) {
        EXPECT_EQ(read.animNodes[m].name, read.matrixNames[m]);
    }
    EXPECT_TRUE(read.animNodes[0].rotations.empty());  // MAIN
    EXPECT_TRUE(read.animNodes[2].rotations.empty());  // PISTON
    const testing::ReadAnimNode& wheels = read.animNodes[1];
    ASSERT_EQ(wheels.rotations.size(), 9u);
    ASSERT_EQ(wheels.positions.size(), 9u);
    // A quarter turn about X, read on row vectors: x of the quaternion changes sign.
    const auto& second = wheels.rotations[1];
    EXPECT_EQ(second.frame, 1);
    EXPECT_NEAR(second.value[0], -std::sin(kEighthTurn / 2), 1e-6);
    EXPECT_NEAR(second.value[3], std::cos(kEighthTurn / 2), 1e-6);
    // The wheel turns about its centre: the position keys stay where the matrix is.
    for (const testing::ReadKey& key : wheels.positions) {
        EXPECT_NEAR(key.value[1], read.matrices[1][10], 1e-6);
        EXPECT_NEAR(key.value[2], read.matrices[1][11], 1e-6);
    }
}

TEST(ShapeAnimation, AKeyAtTheCurrentPoseGivesTheSimulatorTheMatrixItWasWritten) {
    // A door turned every way, keyed at its current pose; whatever the conventions, the
    // simulator must make the same rotation of the key as of the matrix.
    const Scene scene = SceneBuilder()
                            .Group("Main")
                            .Box({-1, 0, -1}, {1, 1, 1}, "body.tga")
                            .Group("Door_A", "Main")
                            .At(1, 0.5f, 0)
                            .Rotated(0.3f, 0.5f, 0.7f)
                            .Box({0, 0, 0}, {0.05f, 2, 1}, "door.tga")
                            .Key(0, {1, 0.5f, 0}, {0.3f, 0.5f, 0.7f})
                            .Key(0.5f, {1, 0.5f, 0}, {0.3f, 1.5f, 0.7f})
                            .Build();
    const auto written = WriteAndRead(*scene.GroupNamed("Main"), *scene.model);
    const ReadShape& read = written.read;
    ASSERT_EQ(read.matrixNames, (std::vector<std::string>{"MAIN", "DOOR_A"}));
    // A key time that is not a whole frame: thirtieths, at thirty times the rate.
    EXPECT_EQ(read.frameRate, 900);
    EXPECT_EQ(read.frameCount, 15);
    const testing::ReadAnimNode& door = read.animNodes[1];
    ASSERT_EQ(door.rotations.size(), 2u);
    EXPECT_EQ(door.rotations[1].frame, 15);
    const auto fromKey = SimulatorKeyRotation(door.rotations[0].value);
    const auto fromMatrix = SimulatorMatrixRotation(read.matrices[1]);
    for (size_t i = 0; i < 9; ++i) {
        EXPECT_NEAR(fromKey[i], fromMatrix[i], 1e-5) << i;
    }
    for (size_t axis = 0; axis < 3; ++axis) {
        EXPECT_NEAR(door.positions[0].value[axis], read.matrices[1][9 + axis], 1e-5);
    }
    EXPECT_TRUE(SameTriangles(ExpectedTriangles(*scene.GroupNamed("Main")), read.levels[0].placed));
}

TEST(ShapeText, OneTexturedTriangleAsWrittenByHand) {
    // On the right of the origin, as glTF's (1, 0, 0) is once loaded.
    host::scene::Shape triangle{{{0, 0, 0}, {-1, 0, 0}, {0, 2, 0}}, nullptr};
    triangle.normals = {{0, 0, 1}, {0, 0, 1}, {0, 0, 1}};
    triangle.texCoords = {{0, 1}, {1, 1}, {0, 0}};
    triangle.triangles = {{0, {0, 1, 2}}};
    const Scene scene =
        SceneBuilder("Plate").Group("Main").Mesh("Plate", triangle, {"Plate.tga"}).Build();
    const auto written = WriteAndRead(*scene.GroupNamed("Main"), *scene.model);
    EXPECT_TRUE(railwright::testing::MatchesGolden(written.text, "shape/triangle.s"));
}

TEST(ShapeFile, IsConvertedToUnicodeWithItsReportBeside) {
    railwright::testing::ExportPlatform platform;
    const railwright::testing::FakeTools tools(platform.temp / "tools");
    const Scene scene = Vehicle();
    const std::string file = platform.temp / "vehicle.s";
    const ShapeWriteResult written =
        WriteShapeFile(platform.platform, *scene.GroupNamed("Main"), file, {});
    ASSERT_TRUE(written.Ok()) << written.error;
    const std::string bytes = railwright::testing::GetFile(file);
    ASSERT_GE(bytes.size(), 2u);
    EXPECT_EQ(bytes.substr(0, 2), "\xFF\xFE");
    const ReadShape read = testing::ReadShapeFile(bytes);
    EXPECT_EQ(read.error, "");
    EXPECT_EQ(written.report.levels.at(0).triangles, read.levels.at(0).triangles);
    EXPECT_EQ(written.report.shapeFile, "vehicle.s");
    EXPECT_EQ(railwright::testing::GetFile(platform.temp / "vehicle-report.txt"),
              ReportText(written.report));

    const std::string nowhere = platform.temp / "no-such-folder/vehicle.s";
    const ShapeWriteResult refused =
        WriteShapeFile(platform.platform, *scene.GroupNamed("Main"), nowhere, {});
    EXPECT_FALSE(refused.Ok());
    EXPECT_NE(refused.error.find(nowhere), std::string::npos) << refused.error;
}

TEST(ShapeFile, IsWhatTxt2UniMakesOfTheShapesText) {
    // A grid of several sub-objects, its text longer than a block, and a texture whose name
    // holds characters of the upper half of the code page.
    host::scene::Shape grid{{}, nullptr};
    host::scene::TriangleSet set;
    constexpr uint32_t kSteps = 180;
    for (uint32_t j = 0; j <= kSteps; ++j) {
        for (uint32_t i = 0; i <= kSteps; ++i) {
            grid.vertices.push_back(
                {static_cast<float>(i) / 7, static_cast<float>(i * j % 11) / 13,
                 static_cast<float>(j) / 3});
        }
    }
    for (uint32_t j = 0; j < kSteps; ++j) {
        for (uint32_t i = 0; i < kSteps; ++i) {
            const uint32_t a = j * (kSteps + 1) + i;
            set.corners.insert(set.corners.end(), {a, a + kSteps + 1, a + 1});
        }
    }
    grid.triangles.push_back(std::move(set));
    const Scene scene =
        SceneBuilder().Group("Main").Mesh("Grid", grid, {"W\u00e4gen \u20ac.tga"}).Build();
    const auto main = scene.GroupNamed("Main");

    railwright::testing::ExportPlatform platform;
    const railwright::testing::FakeTools tools(platform.temp / "tools");
    const std::string file = platform.temp / "grid.s";
    railwright::testing::PutFile(file, "the shape of an earlier run");
    const ShapeWriteResult written = WriteShapeFile(platform.platform, *main, file, {});
    ASSERT_TRUE(written.Ok()) << written.error;

    const BuiltShape built = BuildShape(*main, scene.model->MaterialFields(), {});
    ASSERT_GT(built.data.levels.at(0).subObjects.size(), 1u);
    const std::string text = ShapeText(built.data);
    ASSERT_GT(text.size(), kShapeTextBlock);
    EXPECT_EQ(written.report.textBytes, text.size());
    const std::string converted = platform.temp / "converted.s";
    railwright::testing::PutFile(converted, text);
    (void)exportcommon::ConvertToUnicode(platform.platform, tools.Folder(), converted);
    EXPECT_TRUE(railwright::testing::GetFile(file) == railwright::testing::GetFile(converted));
    EXPECT_FALSE(std::filesystem::exists(file + ".new"));
}

}  // namespace
}  // namespace railwright::document::shape
