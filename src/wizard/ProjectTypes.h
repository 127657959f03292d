// The project types and sub-types. Later steps compare the combo texts literally, so these texts
// are the identifiers of the types.
#pragma once

#include <string_view>

namespace railwright::wizard {

inline constexpr std::string_view kRailNetwork = "Rail Network";
inline constexpr std::string_view kRailVehicle = "Rail Vehicle";
inline constexpr std::string_view kScenery = "Scenery";

inline constexpr std::string_view kSteamEngine = "Steam Engine";
inline constexpr std::string_view kTankEngine = "Tank Engine";
inline constexpr std::string_view kDieselEngine = "Diesel Engine";
inline constexpr std::string_view kElectricEngine = "Electric Engine";
inline constexpr std::string_view kFreightCar = "Freight Car";
inline constexpr std::string_view kPassengerCar = "Passenger Car";
inline constexpr std::string_view kTender = "Tender";
inline constexpr std::string_view kSignal = "Signal";
inline constexpr std::string_view kTunnel = "Tunnel";

// "Steam Engine", "Tank Engine", "Diesel Engine", "Electric Engine".
bool IsEngine(std::string_view subType);
// "Steam Engine", "Tank Engine".
bool IsSteam(std::string_view subType);

}  // namespace railwright::wizard
