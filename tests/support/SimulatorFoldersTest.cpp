#include <gtest/gtest.h>

#include "host/scene/Scene.h"
#include "support/SupportingFunctions.h"
#include "support/posix/PosixFileSystem.h"
#include "support/posix/TempFolder.h"

namespace railwright::support {
namespace {

using host::scene::Scene;
using host::scene::SceneBuilder;

TEST(MstsFolder, IsTheLocatorsProgramFileUpToItsLastSeparator) {
    struct Case {
        std::string mainFile;
        std::string expected;
    };
    const Case cases[] = {
        {"C:\\Games\\MSTS\\train.exe", "C:\\Games\\MSTS\\"},
        {"/opt/msts/train.exe", "/opt/msts/"},
        {"train.exe", ""},
        {"", ""},
    };
    for (const Case& c : cases) {
        Scene scene = Scene::Create();
        scene.application->SetRegistryName("Polyforge");
        scene.application->SetSimulators({c.mainFile, ""});
        EXPECT_EQ(MstsFolder(*scene.hostContext, "D:\\work"), c.expected) << c.mainFile;
        ASSERT_FALSE(scene.application->LocatorCalls().empty());
    }
}

TEST(RailWorksFolder, IsTheLocatorsAnswerAsItStands) {
    Scene scene = Scene::Create();
    scene.application->SetSimulators({"", "D:\\RailWorks"});
    EXPECT_EQ(RailWorksFolder(*scene.hostContext, 0), "D:\\RailWorks");
}

TEST(MstsCompressorPresent, LooksForAcecompWithoutRegardToCase) {
    for (const char* name : {"ACECOMP.EXE", "acecomp.exe", "AceComp.Exe"}) {
        testing::TempFolder msts;
        testing::PutFile(msts / name, "tool");
        posix::PosixFileSystem files;
        Scene scene = Scene::Create();
        scene.application->SetSimulators({msts / "train.exe", ""});
        EXPECT_TRUE(MstsCompressorPresent(*scene.hostContext, files)) << name;
    }
    testing::TempFolder msts;
    testing::PutFile(msts / "acecomp.exe.bak", "not the tool");
    posix::PosixFileSystem files;
    Scene scene = Scene::Create();
    scene.application->SetSimulators({msts / "train.exe", ""});
    EXPECT_FALSE(MstsCompressorPresent(*scene.hostContext, files));
    scene.application->SetSimulators({"", ""});
    EXPECT_FALSE(MstsCompressorPresent(*scene.hostContext, files));
}

TEST(TopLevelAncestorName, IsTheGroupDirectlyUnderTheRoot) {
    Scene scene = SceneBuilder()
                      .Group("Main")
                      .Group("Bogie1", "Main")
                      .Group("Wheels11", "Bogie1")
                      .Group("Loose")
                      .Build();
    EXPECT_EQ(TopLevelAncestorName(*scene.scripting, *scene.GroupNamed("Wheels11")), "Main");
    EXPECT_EQ(TopLevelAncestorName(*scene.scripting, *scene.GroupNamed("Bogie1")), "Main");
    EXPECT_EQ(TopLevelAncestorName(*scene.scripting, *scene.GroupNamed("Main")), "Main");
    EXPECT_EQ(TopLevelAncestorName(*scene.scripting, *scene.GroupNamed("Loose")), "Loose");
}

}  // namespace
}  // namespace railwright::support
