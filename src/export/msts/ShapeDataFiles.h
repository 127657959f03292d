// The shape data file (.sd) that MSTS needs beside every shape, and the example REF file (.ref)
// that lets a route's editor place a scenery or rail network object.
//
//   SIMISA@@@@@@@@@@JINX0t1t______          shape data file of "Depot", a scenery project
//
//   shape ( depot.s
//       ESD_Detail_Level (0)
//       ESD_Software_DLev (0)
//       ESD_Alternative_Texture (0)
//       ESD_Bounding_Box ( -1 0 -5 1 3 5 )   not for a rail network object
//       ESD_Complex (1                       the number of collision boxes, then each box:
//           ESD_Complex_Box (
//               0 0 0
//               <P - Q>                      reference point relative to its group's origin
//               <min - P> <max - P>          corners relative to the reference point
//           )
//       )
//   )
//
//   Static (                                 REF file
//       Class       ( "Polyforge Scenery" )  "Polyforge Structures" for a rail network object
//       Description ( "..." )
//       FileName    ( "depot.s" )
//   )
//
// Both are 8-bit text with CR LF line ends, written from scratch and then converted to Unicode by
// txt2uni. Host failures propagate as host::HostError, file and tool failures as
// support::RunTimeError; an error leaves the file as far as it was written.
#pragma once

#include <cstdint>
#include <string>

#include "host/Host.h"
#include "support/Platform.h"

namespace railwright::exportmsts {

// The shape data file's text. `projectType` is the stored settings::ProjectType: a rail network
// object gets no overall box, and its REF file files it as a structure. The box is that of the
// scene graph of the group at `mainIndex`, placeholders left out; the collision boxes are the
// scripting object's.
std::string ShapeDataFileText(host::Scripting& scripting, const std::string& projectName,
                              int32_t projectType, int32_t mainIndex);

// Writes `targetFolder`/<project name in lower case>.sd.
void WriteShapeDataFile(support::Platform& platform, const std::string& toolsFolder,
                        host::Scripting& scripting, const std::string& projectName,
                        int32_t projectType, int32_t mainIndex, const std::string& targetFolder);

// The REF file's text. Its FileName line is built from the REF name, "~" and all.
std::string RefFileText(const std::string& refName, int32_t projectType,
                        const std::string& description);

// Writes `routeFolder`/<REF name in lower case>.ref.
void WriteRefFile(support::Platform& platform, const std::string& toolsFolder,
                  const std::string& refName, int32_t projectType, const std::string& description,
                  const std::string& routeFolder);

}  // namespace railwright::exportmsts
