// The running gear's entries in the part catalogue: bogies, wheelsets and a steam engine's drive
// wheelsets, with the names that the exporters rely on.
//
// Front wheelsets are "Wheels11" to "Wheels14", rear ones "Wheels21" to "Wheels24", a steam
// engine's drive wheelsets "Wheels1" to "Wheels4"; the bogies "Bogie1" and "Bogie2". RailWorks
// numbers the wheelsets of a bogie from 1 under the bogie's name ("bo01wh01"), and every other
// wheelset with one running number over the whole vehicle, front to rear ("wh01", "wh02"...).
#pragma once

#include <cstdint>
#include <string>

#include "identification/PartCatalogue.h"

namespace railwright::identification {

// Half a wheel count, rounded to the nearest whole number with halves to the even neighbour:
// how far a wheel group moves the running wheelset number on.
int32_t HalfRoundedToEven(int32_t wheelCount);

// The entries of the wheels at one end of the vehicle: the bogie and its wheelsets, or a plain
// wheel group. `positionIndex` names the wheel position of the inputs, `bogieNumber` the end (1
// front, 2 rear), `positionWord` the word of the prompts ("front", "rear"). A plain wheel group
// numbers its wheelsets from `wheelsetCounter` and moves it on.
void AddRunningGear(PartCatalogue& catalogue, const CatalogueInputs& inputs, int positionIndex,
                    int bogieNumber, const std::string& positionWord, int64_t& wheelsetCounter);

// A steam engine's drive wheelsets for `driveWheels` wheels (not 0), numbered from
// `wheelsetCounter`, which is then moved on.
void AddDriveWheels(PartCatalogue& catalogue, int32_t driveWheels, int64_t& wheelsetCounter);

}  // namespace railwright::identification
