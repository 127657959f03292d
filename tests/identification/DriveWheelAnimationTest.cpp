// The drive wheel animation on an in-memory steam engine: where the keys put the wheelsets and the
// main wheel link at each key time, read back through the scene's own transforms.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "host/scene/Scene.h"
#include "identification/DriveWheelAnimation.h"
#include "ui/script/ScriptedUserInterface.h"

namespace railwright::identification {
namespace {

using host::Vector3;
using host::scene::Scene;
using host::scene::SceneBuilder;

constexpr float kTolerance = 1e-4f;

// An engine whose first drive wheelset carries the link; the markers are empty groups whose
// positions show where points of their parents go.
Scene Engine() {
    return SceneBuilder("Engine")
        .Group("Main")
        .Box({-1, 0, -5}, {1, 3, 5})
        .Group("Wheels11", "Main")
        .At(0, 0.5f, 3.5f)
        .Box({-0.8f, -0.5f, -0.5f}, {0.8f, 0.5f, 0.5f})
        .Group("Wheels1", "Main")
        .At(0, 0.9f, 1)
        .Box({-0.8f, -0.9f, -0.9f}, {0.8f, 0.9f, 0.9f})
        .Group("Spoke", "Wheels1")
        .At(0.7f, 0.6f, -0.2f)
        .Group("Main_Wheel_Link", "Wheels1")
        .At(0.9f, 0.4f, 0.6f)  // reaching out behind the wheel
        .Box({-0.05f, -0.05f, -1.2f}, {0.05f, 0.05f, 1.2f})
        .Group("LinkPin", "Main_Wheel_Link")
        .At(0, 0.2f, 0.5f)
        .Group("wheels2", "Main")
        .At(0, 0.9f, -1)
        .Box({-0.8f, -0.7f, -0.9f}, {0.8f, 1.1f, 0.9f})  // centre above the origin
        .Group("Wheels21", "Main")
        .At(0, 0.5f, -3.5f)
        .Box({-0.8f, -0.5f, -0.5f}, {0.8f, 0.5f, 0.5f})
        .Build();
}

Vector3 Minus(Vector3 a, Vector3 b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
Vector3 Plus(Vector3 a, Vector3 b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
Vector3 Centre(const host::Bounds& b) {
    return {(b.minX + b.maxX) / 2, (b.minY + b.maxY) / 2, (b.minZ + b.maxZ) / 2};
}
// Turned about the X axis by t x 45 degrees.
Vector3 TurnedAboutX(Vector3 v, int t) {
    const double angle = t * std::numbers::pi / 4;
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    return {v.x, static_cast<float>(v.y * c - v.z * s), static_cast<float>(v.y * s + v.z * c)};
}

void ExpectNear(Vector3 actual, Vector3 expected, const std::string& what) {
    EXPECT_NEAR(actual.x, expected.x, kTolerance) << what;
    EXPECT_NEAR(actual.y, expected.y, kTolerance) << what;
    EXPECT_NEAR(actual.z, expected.z, kTolerance) << what;
}

Vector3 PositionIn(Scene& scene, const char* group, const char* frame, float time) {
    return scene.GroupNamed(group)->GetPosition(*scene.GroupNamed(frame), time);
}

TEST(DriveWheelAnimation, EachKeyTurnsAWheelsetAboutTheCentreOfItsBounds) {
    Scene scene = Engine();
    const Vector3 pivot1 = Centre(
        scene.GroupNamed("Wheels1")->GetBounds(*scene.GroupNamed("Main"), host::kCurrentPose));
    const Vector3 pivot2 = Centre(
        scene.GroupNamed("wheels2")->GetBounds(*scene.GroupNamed("Main"), host::kCurrentPose));
    const Vector3 spoke = PositionIn(scene, "Spoke", "Main", host::kCurrentPose);
    const Vector3 origin1 = PositionIn(scene, "Wheels1", "Main", host::kCurrentPose);
    const Vector3 origin2 = PositionIn(scene, "wheels2", "Main", host::kCurrentPose);

    ui::script::ScriptedUserInterface ui{{}};
    AnimateDriveWheels(*scene.scripting, ui);
    EXPECT_TRUE(ui.Messages().empty());

    for (const char* name : {"Wheels1", "wheels2", "Main_Wheel_Link"}) {
        EXPECT_EQ(scene.GroupNamed(name)->Keys().size(), 9u) << name;  // times 0 to 8
    }
    for (const char* name : {"Main", "Wheels11", "Wheels21", "Spoke", "LinkPin"}) {
        EXPECT_TRUE(scene.GroupNamed(name)->Keys().empty()) << name;
    }
    for (int t = 0; t <= 8; ++t) {
        const auto time = static_cast<float>(t);
        const std::string at = "t = " + std::to_string(t);
        ExpectNear(PositionIn(scene, "Spoke", "Main", time),
                   Plus(pivot1, TurnedAboutX(Minus(spoke, pivot1), t)), "Spoke, " + at);
        ExpectNear(PositionIn(scene, "Wheels1", "Main", time),
                   Plus(pivot1, TurnedAboutX(Minus(origin1, pivot1), t)), "Wheels1, " + at);
        ExpectNear(PositionIn(scene, "wheels2", "Main", time),
                   Plus(pivot2, TurnedAboutX(Minus(origin2, pivot2), t)), "wheels2, " + at);
    }
    // One turn ends where it began: the closing key is the starting pose itself.
    const host::scene::Key closing = scene.GroupNamed("Wheels1")->Keys().back();
    EXPECT_EQ(closing.time, 8.0f);
    EXPECT_EQ(closing.position, (Vector3{0, 0.9f, 1}));
    EXPECT_EQ(closing.rotation, (Vector3{0, 0, 0}));
}

TEST(DriveWheelAnimation, TheLinkIsCarriedRoundKeepingItsAttitude) {
    Scene scene = Engine();
    const Vector3 wheelPivot = Centre(
        scene.GroupNamed("Wheels1")->GetBounds(*scene.GroupNamed("Main"), host::kCurrentPose));
    const Vector3 linkPivot =
        Centre(scene.GroupNamed("Main_Wheel_Link")
                   ->GetBounds(*scene.GroupNamed("Main"), host::kCurrentPose));
    const Vector3 link = PositionIn(scene, "Main_Wheel_Link", "Main", host::kCurrentPose);
    const Vector3 pin = PositionIn(scene, "LinkPin", "Main", host::kCurrentPose);

    ui::script::ScriptedUserInterface ui{{}};
    AnimateDriveWheels(*scene.scripting, ui);

    for (int t = 0; t <= 8; ++t) {
        const auto time = static_cast<float>(t);
        const std::string at = "t = " + std::to_string(t);
        // Every point of the link moves as its centre does, round the wheel's centre.
        const Vector3 shift =
            Minus(Plus(wheelPivot, TurnedAboutX(Minus(linkPivot, wheelPivot), t)), linkPivot);
        ExpectNear(PositionIn(scene, "Main_Wheel_Link", "Main", time), Plus(link, shift),
                   "link, " + at);
        ExpectNear(PositionIn(scene, "LinkPin", "Main", time), Plus(pin, shift), "pin, " + at);
    }
}

TEST(DriveWheelAnimation, TheAxleStaysPutAndTheLinkKeepsItsAttitudeAtEveryKey) {
    Scene scene = Engine();
    // The origin of "Wheels1" is the centre of its own box: its axle.
    const Vector3 axle = PositionIn(scene, "Wheels1", "Main", host::kCurrentPose);
    const auto link = scene.GroupNamed("Main_Wheel_Link");
    const host::scene::Mat3 attitude = link->WorldAt(host::kCurrentPose).linear;

    ui::script::ScriptedUserInterface ui{{}};
    AnimateDriveWheels(*scene.scripting, ui);

    for (int t = 0; t <= 8; ++t) {
        const auto time = static_cast<float>(t);
        const std::string at = "t = " + std::to_string(t);
        ExpectNear(PositionIn(scene, "Wheels1", "Main", time), axle, "axle, " + at);
        const host::scene::Mat3 turned = link->WorldAt(time).linear;
        for (size_t i = 0; i < turned.e.size(); ++i) {
            EXPECT_NEAR(turned.e[i], attitude.e[i], kTolerance) << "link, " << at;
        }
    }
}

TEST(DriveWheelAnimation, AFailingHostEndsTheAnimationKeepingTheKeysSet) {
    Scene scene = Engine();
    scene.failures->FailOperation("SceneGroup.SetKey", 12);
    ui::script::ScriptedUserInterface ui{{}};
    AnimateDriveWheels(*scene.scripting, ui);
    EXPECT_EQ(scene.GroupNamed("Wheels1")->Keys().size(), 9u);
    // Scene order: Wheels1, then its link, then wheels2.
    EXPECT_EQ(scene.GroupNamed("Main_Wheel_Link")->Keys().size(), 3u);
    EXPECT_TRUE(scene.GroupNamed("wheels2")->Keys().empty());
    ASSERT_EQ(ui.Messages().size(), 1u);
    EXPECT_EQ(ui.Messages()[0].icon, support::MessageIcon::Critical);
    EXPECT_NE(ui.Messages()[0].text.find("SceneGroup.SetKey failed."), std::string::npos)
        << ui.Messages()[0].text;
}

}  // namespace
}  // namespace railwright::identification
