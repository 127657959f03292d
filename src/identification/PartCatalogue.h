// The part catalogue: the ordered list of the parts that one project must have, each with the
// prompt that asks the user for it, the name its group receives in the model, and the name each
// simulator knows it by.
//
// The catalogue is built from the vehicle's attributes as plain values (CatalogueInputs), so it
// depends on nothing but those values; identification (Identification.h) walks it, and the
// default custom group fields are filled from it.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "host/Host.h"

namespace railwright::identification {

// The primary part's group, under which everything that holds geometry belongs.
inline constexpr std::string_view kMainGroupName = "Main";

// The simulator name of a part that the simulator has no name for; nothing is written for it.
inline constexpr std::string_view kNoName = "-";

// Shown when a steam engine has no drive wheels; the wizard then goes back to the attributes.
inline constexpr std::string_view kSteamNeedsDriveWheels =
    "Steam engines are required to have drive wheels.";

struct PartEntry {
    std::string Description;  // noun phrase of the prompt, "the piston"
    std::string GroupName;    // name of the part's group in the model, "Piston"
    bool Identified = false;  // identified, found already present, or skipped
    std::string MstsName;
    std::string RailWorksName;  // RailWorks and Rail Simulator
    std::string TrainzName;
    std::string Rail3DName;
    std::string BveName;
    bool operator==(const PartEntry&) const = default;
};

struct PartCatalogue {
    std::vector<PartEntry> entries;
    // Index of the part being asked for.
    int32_t position = 0;
    // Set by a steam engine without drive wheels: the catalogue has no drive wheel, link, piston
    // or rod entries, and the user must be sent back to the attributes.
    bool missingDriveWheels = false;

    int32_t Count() const { return static_cast<int32_t>(entries.size()); }
};

// The rail vehicle sub-types; Other for every project that is not a rail vehicle.
enum class VehicleType {
    Other,
    SteamEngine,
    TankEngine,
    DieselEngine,
    ElectricEngine,
    FreightCar,
    PassengerCar,
    Tender,
};

bool IsEngine(VehicleType vehicle);
bool IsSteam(VehicleType vehicle);

// Wheel positions: 0 the front wheels (a steam engine's wheels forward of the drive wheels), 1 a
// steam engine's drive wheels or another vehicle's rear wheels, 2 a steam engine's rear wheels.
inline constexpr int kWheelPositionCount = 3;

// What the catalogue is built from: the project's sub-type and the vehicle's attributes, counts
// already converted to whole numbers.
struct CatalogueInputs {
    VehicleType vehicle = VehicleType::Other;
    // The sub-type's text; lower-cased, it is the primary part's RailWorks name for projects
    // other than engines, wagons and coaches.
    std::string subType;
    std::array<int32_t, kWheelPositionCount> wheels{};
    std::array<bool, kWheelPositionCount> bogie{};
    int32_t rods = 0;
    int32_t pantographs = 0;
    int32_t armsPerPantograph = 0;
    int32_t dieselExhaust = 0;
    int32_t stacks = 0;
    int32_t cylinders = 0;
    int32_t drainPipes = 0;
    int32_t whistles = 0;
    int32_t safetyValves = 0;
    bool wiperLeft = false;
    bool wiperRight = false;
    bool mirrorLeft = false;
    bool mirrorRight = false;
    bool viewPoint = false;
    bool intakePoint = false;
};

// A number in at least two digits, as RailWorks names hold them: 1 is "01", 12 is "12", -1 is
// "-01".
std::string TwoDigits(int64_t number);

// Appends one entry, not yet identified.
void AddPart(PartCatalogue& catalogue, std::string Description, std::string GroupName,
             std::string MstsName, std::string RailWorksName, std::string TrainzName,
             std::string Rail3DName, std::string BveName);

// The catalogue of these inputs, position 0. Touches nothing outside the catalogue.
PartCatalogue ListParts(const CatalogueInputs& inputs);

// Names the scene's top group after the project title, then lists the parts.
PartCatalogue BuildPartCatalogue(host::Scripting& scene, const std::string& projectTitle,
                                 const CatalogueInputs& inputs);

}  // namespace railwright::identification
