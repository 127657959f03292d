// The templates of the engine and wagon files, each writing its lines in file order. Comments of
// the form "// 12" number the template's rows, so that a row can be found by its number.
#pragma once

#include <string_view>

#include "export/msts/CommonBody.h"

namespace railwright::exportmsts {

enum class Traction { Steam, Diesel, Electric };

// The whole wagon file.
void WriteWagonTemplate(VehicleText& vehicle);

// An engine file's header and Wagon block, up to the Engine block.
void WriteEngineWagonBlock(VehicleText& vehicle, Traction traction);

// The Engine blocks that end the engine files.
void WriteSteamEngineBlock(VehicleText& vehicle);
void WriteDieselEngineBlock(VehicleText& vehicle);
void WriteElectricEngineBlock(VehicleText& vehicle);

// A quoted text block: "    <name> (", one quoted line per line of the text (CR ends a line,
// LF is dropped; every line but the last followed by \n"+), and "    )".
void WriteTextBlock(MstsTextFile& file, std::string_view blockName, std::string_view text);

}  // namespace railwright::exportmsts
