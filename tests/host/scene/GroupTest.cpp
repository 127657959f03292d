// Groups of the in-memory scene: bounds and positions under nested transforms, moves that keep
// the world pose, scene order, bounding boxes that leave out placeholders, animation keys.
#include <gtest/gtest.h>

#include <numbers>
#include <string>
#include <vector>

#include "host/scene/Scene.h"
#include "host/scene/SceneExpect.h"

namespace railwright::host::scene {
namespace {

using testing::ExpectNear;

constexpr float kRightAngle = std::numbers::pi_v<float> / 2;

// Body: at (10, 0, 0), turned a right angle about Y (x -> -z, z -> x), scaled by 2.
// Wheel under Body at (1, 0, 0) of Body's frame, a cube of half-size 0.5.
// Tender beside them at (0, 0, 5), scaled by 0.5.
// World: Wheel's origin is (10, 0, -2) and its cube (9, -1, -3) to (11, 1, -1).
Scene NestedScene() {
    return SceneBuilder()
        .Group("Body")
        .At(10, 0, 0)
        .Rotated(0, kRightAngle, 0)
        .Scaled(2, 2, 2)
        .Group("Wheel", "Body")
        .At(1, 0, 0)
        .Box({-0.5f, -0.5f, -0.5f}, {0.5f, 0.5f, 0.5f}, "wheel.ace")
        .Group("Tender")
        .At(0, 0, 5)
        .Scaled(0.5f, 0.5f, 0.5f)
        .Build();
}

std::vector<std::string> NamesInSceneOrder(Scene& scene) {
    std::vector<std::string> names;
    for (int32_t i = 0; i < scene.scripting->GroupCount(); ++i) {
        names.push_back(scene.scripting->Group(i)->Name());
    }
    return names;
}

TEST(SceneBounds, FollowNestedTransformsIntoTheFrameOfAnyGroup) {
    Scene scene = NestedScene();
    Node& root = *scene.model->Root();
    Node& body = *scene.GroupNamed("Body");
    Node& wheel = *scene.GroupNamed("Wheel");
    Node& tender = *scene.GroupNamed("Tender");

    ExpectNear(wheel.GetPosition(root, kCurrentPose), {10, 0, -2});
    ExpectNear(wheel.GetBounds(root, kCurrentPose), {9, -1, -3, 11, 1, -1});
    // Body holds no geometry of its own; its bounds are its child's.
    ExpectNear(body.GetBounds(root, kCurrentPose), {9, -1, -3, 11, 1, -1});
    ExpectNear(wheel.GetBounds(body, kCurrentPose), {0.5f, -0.5f, -0.5f, 1.5f, 0.5f, 0.5f});
    ExpectNear(wheel.GetBounds(wheel, kCurrentPose), {-0.5f, -0.5f, -0.5f, 0.5f, 0.5f, 0.5f});
    // Tender's frame: world minus (0, 0, 5), then doubled.
    ExpectNear(wheel.GetBounds(tender, kCurrentPose), {18, -2, -16, 22, 2, -12});
    ExpectNear(wheel.GetPosition(tender, kCurrentPose), {20, 0, -14});
    ExpectNear(root.GetPosition(tender, kCurrentPose), {0, 0, -10});
}

TEST(SceneBounds, AreTheBoxOfTheTurnedVerticesNotOfATurnedBox) {
    // Two points on a rod along X; turned a right angle about Z the rod stands along Y.
    Scene scene = SceneBuilder()
                      .Group("Rod")
                      .Rotated(0, 0, kRightAngle)
                      .Shape("rod", {{0, 0, 0}, {2, 0, 0}})
                      .Build();
    ExpectNear(scene.GroupNamed("Rod")->GetBounds(*scene.model->Root(), kCurrentPose),
               {0, 0, 0, 0, 2, 0});
}

TEST(SceneBounds, AreAllZerosForAGroupWithoutGeometry) {
    Scene scene = NestedScene();
    EXPECT_EQ(scene.GroupNamed("Tender")->GetBounds(*scene.model->Root(), kCurrentPose),
              Bounds{});
}

TEST(SceneBounds, RefuseAFrameScaledToNothing) {
    Scene scene = SceneBuilder().Group("Flat").Scaled(1, 0, 1).Group("Box").Box({0, 0, 0},
                                                                               {1, 1, 1})
                      .Build();
    try {
        scene.GroupNamed("Box")->GetBounds(*scene.GroupNamed("Flat"), kCurrentPose);
        FAIL() << "a frame without an inverse was accepted";
    } catch (const HostError& error) {
        EXPECT_EQ(error.Number(), kHostErrorFailed);
        EXPECT_NE(error.Description().find("\"Flat\""), std::string::npos);
    }
}

TEST(SceneMoveTo, KeepsTheWorldPoseUnderANewParent) {
    Scene scene = NestedScene();
    Node& root = *scene.model->Root();
    Node& wheel = *scene.GroupNamed("Wheel");
    Node& tender = *scene.GroupNamed("Tender");
    const Vector3 position = wheel.GetPosition(root, kCurrentPose);
    const Bounds bounds = wheel.GetBounds(root, kCurrentPose);

    wheel.MoveTo(tender);

    EXPECT_TRUE(wheel.Parent()->IsSameGroup(tender));
    ExpectNear(wheel.GetPosition(root, kCurrentPose), position);
    ExpectNear(wheel.GetBounds(root, kCurrentPose), bounds);
    // The whole model's box did not change either.
    ExpectNear(scene.model->BoundingBox(kCurrentPose, 11, "", 0, 0), bounds);
    // Body is now empty.
    EXPECT_EQ(scene.GroupNamed("Body")->GetBounds(root, kCurrentPose), Bounds{});
}

TEST(SceneMoveTo, CarriesKeysToTheNewParentsFrame) {
    Scene scene = SceneBuilder()
                      .Group("Main")
                      .At(0, 1, 0)
                      .Group("Wheels1", "Main")
                      .Key(1, {0, 0, 2}, {0, 0, 0})
                      .Group("Elsewhere")
                      .At(5, 0, 0)
                      .Rotated(0, 0, kRightAngle)
                      .Build();
    Node& root = *scene.model->Root();
    Node& wheels = *scene.GroupNamed("Wheels1");
    ExpectNear(wheels.GetPosition(root, 1), {0, 1, 2});

    wheels.MoveTo(*scene.GroupNamed("Elsewhere"));

    EXPECT_EQ(wheels.KeyCount(), 1);
    ExpectNear(wheels.GetPosition(root, 1), {0, 1, 2});
}

TEST(SceneMoveTo, RefusesCyclesAndTheRootAndChangesNothing) {
    Scene scene = SceneBuilder().Group("A").Group("B", "A").Group("C", "B").Build();
    Node& a = *scene.GroupNamed("A");
    Node& c = *scene.GroupNamed("C");
    const std::vector<std::string> before = NamesInSceneOrder(scene);

    for (auto [group, target] : {std::pair{&a, &a}, std::pair{&a, &c}}) {
        try {
            group->MoveTo(*target);
            FAIL() << "moved " << group->NameValue() << " under " << target->NameValue();
        } catch (const HostError& error) {
            EXPECT_EQ(error.Number(), kHostErrorInvalidArgument);
        }
    }
    EXPECT_THROW(scene.model->Root()->MoveTo(a), HostError);
    EXPECT_EQ(NamesInSceneOrder(scene), before);
    EXPECT_TRUE(c.Parent()->IsSameGroup(*scene.GroupNamed("B")));
}

TEST(SceneGroupOrder, IsRootThenPreOrderAndFollowsMoves) {
    Scene scene = SceneBuilder("Locomotive")
                      .Group("A")
                      .Group("B", "A")
                      .Group("C", "A")
                      .Group("D")
                      .Group("E", "B")
                      .Build();
    EXPECT_EQ(NamesInSceneOrder(scene),
              (std::vector<std::string>{"Locomotive", "A", "B", "E", "C", "D"}));
    EXPECT_TRUE(scene.scripting->Group(0)->IsSameGroup(*scene.scripting->RootGroup()));

    // A moved group goes last among its new siblings, its subtree with it.
    scene.GroupNamed("B")->MoveTo(*scene.GroupNamed("D"));
    EXPECT_EQ(NamesInSceneOrder(scene),
              (std::vector<std::string>{"Locomotive", "A", "C", "D", "B", "E"}));

    // Moving under the present parent is harmless: nothing moves.
    scene.GroupNamed("C")->MoveTo(*scene.GroupNamed("A"));
    EXPECT_EQ(NamesInSceneOrder(scene),
              (std::vector<std::string>{"Locomotive", "A", "C", "D", "B", "E"}));

    EXPECT_THROW(scene.scripting->Group(6), HostError);
    EXPECT_THROW(scene.scripting->Group(-1), HostError);
}

TEST(SceneGroupOrder, HandsOutTheSameGroupEveryTime) {
    Scene scene = SceneBuilder().Group("A").Build();
    std::shared_ptr<SceneGroup> first = scene.scripting->Group(1);
    std::shared_ptr<SceneGroup> second = scene.scripting->Group(1);
    EXPECT_TRUE(first->IsSameGroup(*second));
    EXPECT_FALSE(first->IsSameGroup(*scene.scripting->RootGroup()));
    first->SetName("Renamed");
    EXPECT_EQ(second->Name(), "Renamed");
}

TEST(SceneBoundingBox, LeavesOutGroupsByPrefixIgnoringCaseWithTheirSubtrees) {
    Scene scene = SceneBuilder()
                      .Group("Main")
                      .Box({-1, 0, -5}, {1, 3, 5})
                      .Group("RailwrightPlaceholder-stack1", "Main")
                      .Box({0, 0, 0}, {1, 10, 1})
                      .Group("Smoke", "RailwrightPlaceholder-stack1")
                      .Box({0, 0, 0}, {1, 20, 1})
                      .Group("railwrightplaceholder-light1")
                      .At(0, 0, 50)
                      .Box({0, 0, 0}, {1, 1, 1})
                      .Group("Railwright")  // shorter than the prefix: kept
                      .Box({-2, 0, 0}, {0, 1, 1})
                      .Build();
    Model& model = *scene.model;

    EXPECT_EQ(model.BoundingBox(kCurrentPose, 11, "RailwrightPlaceholder-", 0, 0),
              (Bounds{-2, 0, -5, 1, 3, 5}));
    EXPECT_EQ(model.BoundingBox(kCurrentPose, 11, "", 0, 0), (Bounds{-2, 0, -5, 1, 20, 51}));
}

TEST(SceneKeys, AreKeptRelativeToTheParentAndReplaceByTime) {
    Scene scene = SceneBuilder()
                      .Group("Main")
                      .At(0, 2, 0)
                      .Rotated(0, 0, kRightAngle)
                      .Group("Wheels1", "Main")
                      .Box({-0.5f, -0.5f, -0.5f}, {0.5f, 0.5f, 0.5f})
                      .Build();
    Node& root = *scene.model->Root();
    Node& main = *scene.GroupNamed("Main");
    Node& wheels = *scene.GroupNamed("Wheels1");

    // Given in the parent's frame: kept exactly.
    wheels.SetKey(main, 1, {0, 0, 1}, {0.785398f, 0, 0});
    wheels.SetKey(main, 2, {0, 0, 2}, {1.570796f, 0, 0});
    wheels.SetKey(main, 1, {0, 0, 3}, {0.5f, 0, 0});
    EXPECT_EQ(wheels.KeyCount(), 2);
    EXPECT_EQ(wheels.Keys(), (std::vector<Key>{{1, {0, 0, 3}, {0.5f, 0, 0}},
                                               {2, {0, 0, 2}, {1.570796f, 0, 0}}}));

    // Given in the root's frame: (1, 2, 3) less Main's (0, 2, 0), turned back a right angle
    // about Z; the root's unturned axes are Main's turned back by the same angle.
    wheels.SetKey(root, 3, {1, 2, 3}, {0, 0, 0});
    ASSERT_EQ(wheels.KeyCount(), 3);
    ExpectNear(wheels.Keys()[2].position, {0, -1, 3});
    ExpectNear(wheels.Keys()[2].rotation, {0, 0, -kRightAngle});
    ExpectNear(wheels.GetPosition(root, 3), {1, 2, 3});
}

TEST(SceneKeys, PoseTheGroupAtTheirTimeOnly) {
    Scene scene = SceneBuilder()
                      .Group("Main")
                      .Group("Wheels1", "Main")
                      .At(0, 1, 0)
                      .Scaled(1, 2, 1)
                      .Shape("spoke", {{0, 0, 0}, {0, 1, 0}})
                      .Build();
    Node& main = *scene.GroupNamed("Main");
    Node& wheels = *scene.GroupNamed("Wheels1");
    // A right angle about X turns the spoke from +Y to +Z; the group's scale of 2 along its own
    // Y stays with it.
    wheels.SetKey(main, 2, {0, 1, 0}, {kRightAngle, 0, 0});

    ExpectNear(wheels.GetBounds(main, 2), {0, 1, 0, 0, 1, 2});
    ExpectNear(wheels.GetBounds(main, kCurrentPose), {0, 1, 0, 0, 3, 0});
    ExpectNear(wheels.GetBounds(main, 5), {0, 1, 0, 0, 3, 0});  // no key at 5: current pose
    ExpectNear(main.GetBounds(main, 2), wheels.GetBounds(main, 2));
}

}  // namespace
}  // namespace railwright::host::scene
