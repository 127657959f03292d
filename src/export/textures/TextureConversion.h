// Texture conversion: every texture of the texture list is turned into an .ace file by the
// simulator's outside conversion program, run from the tools folder and waited for.
//
// The command lines below are the contract with those programs and are built piece by piece as
// the programs expect them, unquoted pieces included: TOOLS is the tools folder, IN the short
// form of the texture file, OUT the output file as given, DQ one double quote.
//
//   MakeACE    TOOLS MakeACE.exe IN DQ OUT DQ [-trans] [-zlib | -dxt]
//   ToAce      TOOLS ToAce.exe <format switches>/OUT=DQ OUT DQ DQ IN DQ
//   RWAceTool  DQ TOOLS RWAceTool.exe DQ DQ IN DQ -o DQ OUT DQ [-noCompress]
//   acecomp    TOOLS acecomp.exe FILE FILE  (FILE the short form of a finished .ace file)
//
// A run succeeds when the program could be started, ended with exit code 0 and left the output
// file. A failed or unsupported conversion never ends the export: each texture is reported by
// itself and the next one is tried.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "export/textures/TextureCheck.h"
#include "support/Platform.h"

namespace railwright::exporttextures {

// The texture compression setting (settings::kLongCompression).
inline constexpr int32_t kUncompressed = 0;
inline constexpr int32_t kLosslessCompression = 1;
inline constexpr int32_t kLossyCompression = 2;

// The simulator a texture is converted for.
enum class TextureTarget { Msts, RailSimulator, RailWorks, Trainz, Rail3D, Bve, Msts2 };

// One texture to convert.
struct TextureJob {
    std::string inputShort;  // IN: the short form of the located texture file
    std::string outputFile;  // OUT: the .ace file to write
    std::string alphaKind;   // the texture's "Tx Alpha" kind, compared upper-cased
    int32_t compression = kUncompressed;
};

// `textureName` is the texture's file name, whose ending tells a TGA file apart.
// `compressorPresent`: acecomp.exe is in the tools folder.
std::string MakeAceCommandLine(const std::string& toolsFolder, const TextureJob& job,
                               std::string_view textureName, bool compressorPresent);
std::string ToAceCommandLine(const std::string& toolsFolder, const TextureJob& job);
std::string RwAceToolCommandLine(const std::string& toolsFolder, const TextureJob& job);
std::string AceCompCommandLine(const std::string& toolsFolder, const std::string& shortAceFile);

// True when acecomp.exe is in the tools folder (its name compared without regard to case).
bool CompressorPresent(support::FileSystem& files, const std::string& toolsFolder);

// The texture file a material names: the name as given (against the model's folder when it is
// relative), else a file of the same name in the model's folder; nothing when neither exists.
std::optional<std::string> LocateTexture(support::FileSystem& files, const std::string& modelFolder,
                                         const std::string& textureName);

// The .ace file a texture converts to: the texture's name with the extension ".ACE", in
// `targetFolder`.
std::string AceFileName(const std::string& targetFolder, const std::string& textureName);

struct ConversionSettings {
    std::string toolsFolder;   // where the programs are
    std::string modelFolder;   // what relative texture names are resolved against
    std::string targetFolder;  // where the .ace files go
    int32_t compression = kUncompressed;
    TextureTarget target = TextureTarget::Msts;
};

// Converts one texture, showing its own messages.
void ConvertTexture(support::Platform& platform, const TextureEntry& texture,
                    const ConversionSettings& settings);

// Converts every texture of the list in order. Only an error outside the programs' runs (a
// failing file system, say) escapes, and ends the conversion.
void ConvertTextures(support::Platform& platform, const TextureList& list,
                     const ConversionSettings& settings);

}  // namespace railwright::exporttextures
