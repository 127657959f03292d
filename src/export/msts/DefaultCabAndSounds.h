// The rail vehicle step of the MSTS export: the cab view and sounds lent by one of the default
// trains of every MSTS installation (SCOTSMAN for steam, DASH9 for diesel, ACELA for electric
// engines), copied into the vehicle folder under the project's name, then the engine or wagon
// file whose CabView and Sound lines name those copies.
//
//   <vehicle folder>/CABVIEW/<name>.cvf, the default train's cab textures (*.ACE)
//   <vehicle folder>/SOUND/<name>cab.sms, <name>eng.sms, the default train's sounds (*.WAV)
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "export/msts/VehicleFiles.h"
#include "settings/Slots.h"
#include "support/Platform.h"

namespace railwright::exportmsts {

// The default train that lends its files to a sub-type.
std::string_view DefaultTrain(settings::VehicleSubType subType);

// Copies the default train's files as the model's settings ask (settings::kLongSound and
// kLongCabView), then runs the writer of the sub-type: steam, diesel and electric engines get
// their engine writers, every other sub-type (tank engines included) the wagon writer. `mstsFolder`
// is the MSTS installation the default trains are taken from. A missing default train or source
// file, like any error of the writers, raises an error that ends the step; files copied before
// stay.
void ExportVehicleFiles(support::Platform& platform, const std::string& toolsFolder,
                        const std::string& mstsFolder, const VehicleFileInputs& inputs);

}  // namespace railwright::exportmsts
