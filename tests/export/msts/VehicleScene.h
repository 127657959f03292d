// The model the engine and wagon file tests describe: a body whose box, placeholders left out, is
// 3 m wide, 4 m high and 20.25 m long with its centre 2 m up; optional wheel groups; a placeholder
// for every role the writers look for, each outside the body so that it would show in the box;
// and the given lights.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "export/msts/VehicleFiles.h"
#include "host/scene/Scene.h"

namespace railwright::exportmsts::testing {

struct VehicleScene {
    // The name of the front wheelset group, 0.75 m high; empty for none.
    std::string frontWheels = "Wheels11";
    // A steam engine's first drive wheelset, "Wheels1", 1.5 m high.
    bool driveWheels = false;
    std::vector<host::Light> lights{};
};

inline host::scene::Scene BuildVehicleScene(const VehicleScene& description) {
    host::scene::SceneBuilder builder;
    builder.Group("Main").Box({-1.5f, 0, -10}, {1.5f, 4, 10.25f});
    if (!description.frontWheels.empty()) {
        builder.Group(description.frontWheels, "Main")
            .At(0, 0.5f, 6)
            .Box({-0.7f, -0.375f, -0.5f}, {0.7f, 0.375f, 0.5f});
    }
    if (description.driveWheels) {
        builder.Group("Wheels1", "Main")
            .At(0, 0.75f, -3)
            .Box({-0.7f, -0.75f, -0.75f}, {0.7f, 0.75f, 0.75f});
    }
    float height = 6;
    for (const char* role :
         {"Stack1", "Exhaust1", "SafetyValves1", "Whistle1", "Drainpipe1", "Cylinders1", "HeadOut",
          "PassengerCabinHeadPos", "FuelCoal", "FuelWater", "FuelDiesel", "FreightGravel"}) {
        builder.Group(std::string("RailwrightPlaceholder-") + role, "Main")
            .At(0, height, 12)
            .Box({-0.25f, -0.25f, -0.25f}, {0.25f, 0.25f, 0.25f});
        height += 1;
    }
    for (const host::Light& light : description.lights) {
        builder.Light(light);
    }
    return builder.Build();
}

// The index of "Main" among the scene's groups.
inline int32_t MainIndex(host::Scripting& scripting) {
    for (int32_t i = 0; i < scripting.GroupCount(); ++i) {
        if (scripting.Group(i)->Name() == "Main") {
            return i;
        }
    }
    return -1;
}

// The settings of a vehicle project; every other slot holds 0.
struct VehicleSettings {
    int32_t subType = 0;
    float massTonnes = 0;
    float velocityKmh = 0;
    std::array<float, 3> wheelRadii{};     // singles 3 to 5
    std::array<int32_t, 3> wheelCounts{};  // longs 5 to 7
    int32_t coupling = 0;
    int32_t tenderRequired = 0;
    int32_t viewPoint = 0;
    int32_t intakePoints = 0;

    std::vector<float> Singles() const {
        std::vector<float> singles(6, 0.0f);
        singles[0] = massTonnes;
        singles[2] = velocityKmh;
        for (size_t i = 0; i < 3; ++i) {
            singles[3 + i] = wheelRadii[i];
        }
        return singles;
    }
    std::vector<int32_t> Longs() const {
        std::vector<int32_t> longs(46, 0);
        for (size_t i = 0; i < 3; ++i) {
            longs[5 + i] = wheelCounts[i];
        }
        longs[10] = coupling;
        longs[24] = tenderRequired;
        longs[27] = viewPoint;
        longs[28] = intakePoints;
        longs[32] = subType;
        longs[33] = 818;
        return longs;
    }
};

}  // namespace railwright::exportmsts::testing
