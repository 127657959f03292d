// The parent rules of identification, rule by rule, and the moves with their failure message.
#include <gtest/gtest.h>

#include <string>

#include "host/scene/Scene.h"
#include "identification/Identification.h"
#include "ui/script/ScriptedUserInterface.h"

namespace railwright::identification {
namespace {

using host::scene::Scene;
using host::scene::SceneBuilder;

const std::string kParentMissing =
    "Unable to move group. The intended parent group does not exist. If you have skipped some of "
    "the part identification steps you will need to close this wizard and re-run it.";

// A locomotive whose parts are identified, except the group "Loose", which is about to be.
Scene Locomotive(const std::string& looseParent) {
    SceneBuilder builder("Loco");
    builder.Group("Main")
        .Group("Bogie1", "Main")
        .Group("Bogie2", "Main")
        .Group("Wheels1", "Main")
        .Group("WiperArmLeft1", "Main")
        .Group("PantographBottom1A", "Main")
        .Group("PantographMiddle1A", "PantographBottom1A")
        .Group("PantographBottom2", "Main")
        .Group("PantographBottom1C", "Main")
        .Group("PantographMiddle1C", "PantographBottom1C");
    return builder.Group("Loose", looseParent).Box({0, 0, 0}, {1, 1, 1}).Build();
}

struct Identified {
    std::string parent;
    int32_t moves = 0;
    size_t messages = 0;
};

// Picks "Loose" in the view and identifies it as `groupName`.
Identified Identify(const std::string& groupName, const std::string& looseParent = "") {
    Scene scene = Locomotive(looseParent);
    const auto loose = scene.GroupNamed("Loose");
    scene.viewer->Pick(loose);
    ui::script::ScriptedUserInterface ui{{}};
    bool warningShown = false;
    IdentificationContext context{*scene.scripting, ui, warningShown};
    IdentifySelectedGroup(context, *scene.viewer->Picked(), groupName, "Loco");
    EXPECT_EQ(loose->NameValue(), groupName);
    EXPECT_EQ(scene.viewer->Picked()->Name(), groupName);
    return {loose->ParentNode()->NameValue(), scene.failures->CallCount("SceneGroup.MoveTo"),
            ui.Messages().size()};
}

TEST(ParentRules, EachNameGoesUnderTheParentTheExportersExpect) {
    struct Case {
        std::string name;
        std::string looseParent;
        std::string parent;
    };
    const Case cases[] = {
        {"Main", "", "Loco"},
        {"Main", "Bogie2", "Loco"},
        {"Bogie2", "", "Main"},
        {"Bogie9", "Wheels1", "Main"},
        {"Wheels11", "", "Bogie1"},
        {"Wheels14", "Main", "Bogie1"},
        {"Wheels21", "", "Bogie2"},
        {"Wheels1", "", "Main"},
        {"Wheels4", "Bogie2", "Main"},
        {"Main_Wheel_Link", "", "Wheels1"},
        {"WiperArmRight1", "", "Main"},
        {"WiperBladeLeft1", "", "WiperArmLeft1"},
        {"MirrorRight1", "", "Main"},
        {"PantographBottom3", "", "Main"},
        {"PantographMiddle1A", "", "PantographBottom1A"},
        {"PantographTop1A", "", "PantographMiddle1A"},
        {"PantographTop2", "", "PantographBottom2"},
        // Only A and B mark a three-arm top: the third one skips its middle.
        {"PantographTop1C", "", "PantographBottom1C"},
        {"Piston", "Bogie1", "Main"},
        {"Rod01", "Bogie1", "Bogie1"},
        {"RailwrightPlaceholder-stack1", "Wheels1", "Wheels1"},
    };
    for (const Case& c : cases) {
        const Identified identified = Identify(c.name, c.looseParent);
        EXPECT_EQ(identified.parent, c.parent) << c.name << " from " << c.looseParent;
        EXPECT_EQ(identified.messages, 0u) << c.name;
    }
}

TEST(ParentRules, AGroupInPlaceStaysWithoutAMoveButATopIsMovedAnyway) {
    EXPECT_EQ(Identify("Main").moves, 0);
    EXPECT_EQ(Identify("Wheels12", "Bogie1").moves, 0);
    EXPECT_EQ(Identify("PantographMiddle1A", "PantographBottom1A").moves, 0);
    EXPECT_EQ(Identify("wheels12", "Bogie1").moves, 0);  // names are compared blind to case
    // A top is compared with a misspelt parent name, so it is moved under its own parent.
    const Identified top = Identify("PantographTop1A", "PantographMiddle1A");
    EXPECT_EQ(top.moves, 1);
    EXPECT_EQ(top.parent, "PantographMiddle1A");
}

TEST(MoveGroupUnder, AMissingParentIsReportedOncePerRunAndOnlyABogieMaySilentlyBeMissing) {
    Scene scene = SceneBuilder("Loco").Group("A").Group("B").Group("C").Build();
    ui::script::ScriptedUserInterface ui{{}};
    bool warningShown = false;
    IdentificationContext context{*scene.scripting, ui, warningShown};

    scene.viewer->Pick(scene.GroupNamed("A"));
    MoveSelectedGroupUnder(context, *scene.viewer->Picked(), "Bogie1");
    EXPECT_TRUE(ui.Messages().empty());
    EXPECT_FALSE(warningShown);

    MoveGroupUnder(context, *scene.GroupNamed("B"), "bogie2");  // no exception for bogies here
    ASSERT_EQ(ui.Messages().size(), 1u);
    EXPECT_EQ(ui.Messages()[0].text, kParentMissing);
    EXPECT_EQ(ui.Messages()[0].icon, support::MessageIcon::Exclamation);
    EXPECT_TRUE(warningShown);

    MoveSelectedGroupUnder(context, *scene.viewer->Picked(), "WiperArmLeft1");
    MoveGroupUnder(context, *scene.GroupNamed("C"), "Main");
    EXPECT_EQ(ui.Messages().size(), 1u);
    for (const char* name : {"A", "B", "C"}) {
        EXPECT_EQ(scene.GroupNamed(name)->ParentNode(), scene.model->Root()) << name;
    }

    MoveGroupUnder(context, *scene.GroupNamed("C"), "a");  // the first group so named
    EXPECT_EQ(scene.GroupNamed("C")->ParentNode(), scene.GroupNamed("A"));
}

}  // namespace
}  // namespace railwright::identification
