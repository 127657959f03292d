// The scripting facade of the in-memory scene: number texts, turning points, the view area,
// lights and collision boxes.
#include <gtest/gtest.h>

#include <charconv>
#include <cstdint>
#include <cstring>
#include <limits>
#include <numbers>
#include <random>
#include <string>

#include "host/scene/Scene.h"
#include "host/scene/SceneExpect.h"

namespace railwright::host::scene {
namespace {

using testing::ExpectNear;

TEST(SceneNumberText, WritesShortestFixedText) {
    const struct {
        float value;
        const char* text;
    } cases[] = {
        {27.0f, "27"},
        {96.25f, "96.25"},
        {0.5f, "0.5"},
        {1000000.0f, "1000000"},
        {-1.5f, "-1.5"},
        {0.1f, "0.1"},  // not 0.100000001490116...
        {2.7f, "2.7"},
        {1e-7f, "0.0000001"},
        // Whole numbers are written in full: every text of them is as short as the exact one.
        {123456792.0f, "123456792"},
        {3e10f, "30000001024"},
        {0.0f, "0"},
        {-0.0f, "0"},
        {std::numeric_limits<float>::infinity(), "inf"},
    };
    Scene scene = Scene::Create();
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(scene.scripting->ValueText(c.value), c.text);
        EXPECT_EQ(scene.scripting->LengthText(c.value), c.text);
    }
}

TEST(SceneNumberText, ReadsBackAsTheSameFloat) {
    std::mt19937 random(818);
    std::uniform_int_distribution<uint32_t> bits;
    for (int i = 0; i < 20000; ++i) {
        const uint32_t pattern = bits(random);
        float value = 0;
        std::memcpy(&value, &pattern, sizeof value);
        if (!std::isfinite(value) || value == 0) {
            continue;
        }
        const std::string text = NumberText(value);
        ASSERT_EQ(text.find_first_of("eE"), std::string::npos) << text;
        float back = 0;
        const auto parsed = std::from_chars(text.data(), text.data() + text.size(), back);
        ASSERT_EQ(parsed.ptr, text.data() + text.size()) << text;
        ASSERT_EQ(back, value) << text;
        if (text.find('.') != std::string::npos) {
            ASSERT_NE(text.back(), '0') << text;
        }
    }
}

TEST(SceneRotateAboutAxis, TurnsAnticlockwiseAboutAnyAxisThroughTheOrigin) {
    const float quarter = std::numbers::pi_v<float> / 2;
    const struct {
        Vector3 point;
        Vector3 axis;
        float angle;
        Vector3 expected;
    } cases[] = {
        {{0, 1, 0}, {1, 0, 0}, quarter, {0, 0, 1}},
        {{0, 1, 0}, {-1, 0, 0}, quarter, {0, 0, -1}},
        {{1, 0, 0}, {0, 0, 5}, quarter, {0, 1, 0}},  // the axis need not be a unit vector
        {{1, 2, 3}, {0, 1, 0}, std::numbers::pi_v<float>, {-1, 2, -3}},
        // A third of a turn about the diagonal carries each axis onto the next.
        {{1, 0, 0}, {1, 1, 1}, 2 * std::numbers::pi_v<float> / 3, {0, 1, 0}},
        {{4, 5, 6}, {0, 1, 0}, 0, {4, 5, 6}},
    };
    Scene scene = Scene::Create();
    for (const auto& c : cases) {
        ExpectNear(scene.scripting->RotateAboutAxis(c.point, c.axis, c.angle), c.expected);
    }
    EXPECT_THROW(scene.scripting->RotateAboutAxis({1, 0, 0}, {0, 0, 0}, quarter), HostError);
}

TEST(SceneViewArea, StartsAtTheLowCornerOfTheModelWithItsLargestExtent) {
    Scene scene = SceneBuilder()
                      .Group("Body")
                      .Box({-1, 0, -5}, {1, 3, 5})
                      .Group("Chimney", "Body")
                      .At(0, 3, 4)
                      .Box({-0.25f, 0, -0.25f}, {0.25f, 1, 0.25f})
                      .Build();
    const ViewArea area = scene.scripting->GetViewArea();
    EXPECT_EQ(area.x, -1);
    EXPECT_EQ(area.y, 0);
    EXPECT_EQ(area.z, -5);
    EXPECT_EQ(area.size, 10);
    EXPECT_EQ(area.extra, 0);

    const ViewArea empty = Scene::Create().scripting->GetViewArea();
    EXPECT_EQ(empty.size, 0);
    EXPECT_EQ(empty.x, 0);
}

TEST(SceneLightsAndCollisionBoxes, ComeInOrderAndRefuseOtherIndexes) {
    const Light headlight{LightKind::Ordinary, 1, 1, 0.8f, {0, 2, 6}, {0, 0, 1}};
    const Light glow{LightKind::Glow, 1, 0, 0, {0, 3, -6}, {0, 0, -1}};
    const CollisionBox box{{0, 0, 0}, {0, 1, 0}, {-1, 0, -5, 1, 3, 5}};
    Scene scene = SceneBuilder().Light(headlight).Light(glow).CollisionBox(box).Build();
    Scripting& scripting = *scene.scripting;

    ASSERT_EQ(scripting.LightCount(), 2);
    EXPECT_EQ(scripting.GetLight(1).kind, LightKind::Glow);
    EXPECT_EQ(scripting.GetLight(0).position, headlight.position);
    ASSERT_EQ(scripting.CollisionBoxCount(), 1);
    EXPECT_EQ(scripting.GetCollisionBox(0).box, box.box);
    EXPECT_EQ(scripting.GetCollisionBox(0).groupOrigin, box.groupOrigin);

    for (const auto& call : {std::function<void()>([&] { scripting.GetLight(2); }),
                             std::function<void()>([&] { scripting.GetLight(-1); }),
                             std::function<void()>([&] { scripting.GetCollisionBox(1); })}) {
        try {
            call();
            ADD_FAILURE() << "an index out of range was accepted";
        } catch (const HostError& error) {
            EXPECT_EQ(error.Number(), kHostErrorInvalidArgument);
            EXPECT_FALSE(error.Description().empty());
        }
    }
}

TEST(SceneScripting, RecordsFlagsAndMode) {
    Scene scene = Scene::Create();
    scene.scripting->SetFlags(8);
    scene.scripting->SetMode(1);
    EXPECT_EQ(scene.scripting->Calls(), (std::vector<std::string>{"SetFlags 8", "SetMode 1"}));
}

}  // namespace
}  // namespace railwright::host::scene
