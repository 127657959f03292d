// A stand-in MSTS installation on disk: the program file the locator reports, the three default
// trains with their cab views, sounds, cab textures and waves, and the given routes. Every file
// holds its own name, so that a copy shows where it came from.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "support/posix/TempFolder.h"

namespace railwright::testing {

struct DefaultTrainFiles {
    const char* train;
    std::vector<const char*> cabView;  // in CABVIEW
    std::vector<const char*> sound;    // in SOUND
};

inline const std::vector<DefaultTrainFiles>& DefaultTrains() {
    static const std::vector<DefaultTrainFiles> trains = {
        // A name in lower case still matches "*.ACE"; a text file never does.
        {"SCOTSMAN",
         {"scotsman.cvf", "SCOTCAB.ACE", "gauges.ace", "readme.txt"},
         {"fscotcab.sms", "fscoteng.sms", "whistle.wav", "SteamChuff.WAV"}},
        {"DASH9", {"dash9.cvf", "DASH9CAB.ACE"}, {"d9cab.sms", "d9eng.sms", "horn.wav"}},
        {"ACELA", {"acela.cvf", "ACELACAB.ACE"}, {"acelacab.sms", "acelaeng.sms", "pan.wav"}},
    };
    return trains;
}

// Builds the installation under `root`; the path of its program file (what the locator finds).
inline std::string BuildMstsTree(const std::string& root,
                                 const std::vector<std::string>& routes = {}) {
    std::filesystem::create_directories(root);
    PutFile(root + "/train.exe", "train.exe");
    for (const DefaultTrainFiles& train : DefaultTrains()) {
        const std::string folder = root + "/TRAINS/TRAINSET/" + train.train;
        for (const auto& [subFolder, names] :
             {std::pair{"/CABVIEW/", &train.cabView}, std::pair{"/SOUND/", &train.sound}}) {
            std::filesystem::create_directories(folder + subFolder);
            for (const char* name : *names) {
                PutFile(folder + subFolder + name, name);
            }
        }
    }
    for (const std::string& route : routes) {
        std::filesystem::create_directories(root + "/ROUTES/" + route);
    }
    return root + "/train.exe";
}

}  // namespace railwright::testing
