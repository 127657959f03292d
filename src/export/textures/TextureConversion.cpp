#include "export/textures/TextureConversion.h"

#include "support/SupportingFunctions.h"

namespace railwright::exporttextures {
namespace {

constexpr std::string_view kMakeAce = "MakeACE.exe";
constexpr std::string_view kToAce = "ToAce.exe";
constexpr std::string_view kRwAceTool = "RWAceTool.exe";
constexpr std::string_view kAceComp = "acecomp.exe";

constexpr std::string_view kMstsRefusal =
    "\". It may be in a format not permitted by Microsoft Train Simulator.";
// RailWorks shares Rail Simulator's text on purpose.
constexpr std::string_view kRailSimulatorRefusal =
    "\". It may be in a format not permitted by Rail Simulator.";

// The only quoting these programs get: the piece between two double quotes, as it stands.
std::string InQuotes(std::string_view piece) {
    return "\"" + std::string(piece) + "\"";
}

std::string Program(const std::string& toolsFolder, std::string_view program) {
    return support::JoinPath(toolsFolder, program);
}

bool IsAlpha(const TextureJob& job, std::string_view kind) {
    return support::ToUpper(job.alphaKind) == support::ToUpper(kind);
}

// ToAce's format switches by alpha kind and compression.
std::string_view ToAceSwitches(const TextureJob& job) {
    const bool translucency = IsAlpha(job, kAlphaTranslucency);
    const bool transparency = IsAlpha(job, kAlphaTransparency);
    switch (job.compression) {
        case kLosslessCompression:
            return translucency || transparency ? "/FMT=RGBA " : "/FMT=RGB ";
        case kLossyCompression:
            return translucency ? "/FMT=DXT5 " : "/FMT=DXT1 ";
        default:
            return translucency || transparency ? "/ZIP=0 /FMT=RGBA " : "/ZIP=0 /FMT=RGB ";
    }
}

// The file name at the end of a path written with either separator.
std::string_view FilePart(std::string_view path) {
    const size_t last = path.find_last_of("\\/");
    return last == std::string_view::npos ? path : path.substr(last + 1);
}

bool IsAbsolute(std::string_view path) {
    return (!path.empty() && (path.front() == '/' || path.front() == '\\')) ||
           (path.size() >= 2 && path[1] == ':');
}

void Show(support::UserInterface& ui, const std::string& text, support::MessageIcon icon) {
    ui.ShowMessage(text, icon, support::MessageButtons::Ok);
}

void ShowWarning(support::UserInterface& ui, const std::string& text) {
    Show(ui, text, support::MessageIcon::Exclamation);
}

// Runs one program and tells whether it did its work: started, ended with 0, left `output`.
// An error while starting it counts as a failed run.
bool Run(support::Platform& platform, const std::string& commandLine, const std::string& output) {
    try {
        const support::RunResult result = support::RunAndWait(
            platform, commandLine, false, support::WindowStyle::Hidden, nullptr);
        return result.started && result.exitCode == 0 && platform.files.FileExists(output);
    } catch (...) {
        return false;
    }
}

bool ConvertForMsts(support::Platform& platform, const TextureJob& job,
                    std::string_view textureName, const std::string& toolsFolder) {
    const bool compressorPresent = CompressorPresent(platform.files, toolsFolder);
    if (!Run(platform, MakeAceCommandLine(toolsFolder, job, textureName, compressorPresent),
             job.outputFile)) {
        return false;
    }
    // Lossy conversion is left to acecomp when it is there, instead of MakeACE's own -dxt.
    if (job.compression == kLossyCompression && compressorPresent) {
        const std::string shortAce = support::ShortPath(platform.files, job.outputFile);
        return Run(platform, AceCompCommandLine(toolsFolder, shortAce), job.outputFile);
    }
    return true;
}

}  // namespace

std::string MakeAceCommandLine(const std::string& toolsFolder, const TextureJob& job,
                               std::string_view textureName, bool compressorPresent) {
    std::string line =
        Program(toolsFolder, kMakeAce) + " " + job.inputShort + " " + InQuotes(job.outputFile);
    const bool dxt = job.compression == kLossyCompression && !compressorPresent;
    if (IsAlpha(job, kAlphaTransparency)) {
        line += " -trans";
        if (job.compression == kLosslessCompression) {
            line += " -zlib";
        } else if (dxt) {
            line += " -dxt";
        }
    } else if (support::EndsWithIgnoreCase(textureName, "TGA") ||
               job.compression == kLosslessCompression) {
        line += " -zlib";
    } else if (dxt) {
        line += " -dxt";
    }
    return line;
}

std::string ToAceCommandLine(const std::string& toolsFolder, const TextureJob& job) {
    return Program(toolsFolder, kToAce) + " " + std::string(ToAceSwitches(job)) +
           "/OUT=" + InQuotes(job.outputFile) + " " + InQuotes(job.inputShort);
}

std::string RwAceToolCommandLine(const std::string& toolsFolder, const TextureJob& job) {
    std::string line = InQuotes(Program(toolsFolder, kRwAceTool)) + " " + InQuotes(job.inputShort) +
                       " -o " + InQuotes(job.outputFile);
    if (job.compression == kUncompressed) {
        line += " -noCompress";
    }
    return line;
}

std::string AceCompCommandLine(const std::string& toolsFolder, const std::string& shortAceFile) {
    return Program(toolsFolder, kAceComp) + " " + shortAceFile + " " + shortAceFile;
}

bool CompressorPresent(support::FileSystem& files, const std::string& toolsFolder) {
    for (const std::string& name : files.ListFiles(toolsFolder, kAceComp)) {
        if (support::EqualsIgnoreCase(name, kAceComp)) {
            return true;
        }
    }
    return false;
}

std::optional<std::string> LocateTexture(support::FileSystem& files, const std::string& modelFolder,
                                         const std::string& textureName) {
    const std::string asGiven =
        IsAbsolute(textureName) ? textureName : support::JoinPath(modelFolder, textureName);
    if (files.FileExists(asGiven)) {
        return asGiven;
    }
    const std::string besideModel = support::JoinPath(modelFolder, FilePart(textureName));
    if (files.FileExists(besideModel)) {
        return besideModel;
    }
    return std::nullopt;
}

std::string AceFileName(const std::string& targetFolder, const std::string& textureName) {
    return support::JoinPath(targetFolder,
                             support::SplitExtension(FilePart(textureName)).baseName + ".ACE");
}

void ConvertTexture(support::Platform& platform, const TextureEntry& texture,
                    const ConversionSettings& settings) {
    const std::string& name = texture.textureFile;
    const std::optional<std::string> located =
        LocateTexture(platform.files, settings.modelFolder, name);
    if (!located) {
        Show(platform.ui,
             "Unable to find texture \"" + name +
                 "\". To ensure it is found please move it to the same location as your PFG "
                 "file.",
             support::MessageIcon::Critical);
        return;
    }
    const TextureJob job{support::ShortPath(platform.files, *located),
                         AceFileName(settings.targetFolder, name), texture.alphaKind,
                         settings.compression};
    std::string_view refusal;
    bool converted = false;
    switch (settings.target) {
        case TextureTarget::Msts: {
            if (!support::EndsWithIgnoreCase(name, "TGA") &&
                !support::EndsWithIgnoreCase(name, "BMP")) {
                ShowWarning(platform.ui, "Unable to convert texture \"" + name +
                                             "\". Only TGA files and BMP files are supported.");
                return;
            }
            refusal = kMstsRefusal;
            converted = ConvertForMsts(platform, job, name, settings.toolsFolder);
            break;
        }
        case TextureTarget::RailSimulator:
            refusal = kRailSimulatorRefusal;
            converted = Run(platform, ToAceCommandLine(settings.toolsFolder, job), job.outputFile);
            break;
        case TextureTarget::RailWorks:
            refusal = kRailSimulatorRefusal;
            converted =
                Run(platform, RwAceToolCommandLine(settings.toolsFolder, job), job.outputFile);
            break;
        case TextureTarget::Trainz:
            ShowWarning(platform.ui, "Texture conversion not currently supported for Trainz.");
            return;
        case TextureTarget::Rail3D:
            ShowWarning(platform.ui, "Texture conversion not currently supported for Rail3D.");
            return;
        case TextureTarget::Bve:
            ShowWarning(platform.ui, "Texture conversion not currently supported for BVE.");
            return;
        case TextureTarget::Msts2:
            ShowWarning(platform.ui,
                        "Texture conversion not currently supported for Microsoft Train "
                        "Simulator 2.");
            return;
    }
    if (!converted) {
        ShowWarning(platform.ui, "Unable to convert texture \"" + name + std::string(refusal));
    }
}

void ConvertTextures(support::Platform& platform, const TextureList& list,
                     const ConversionSettings& settings) {
    const int total = static_cast<int>(list.size());
    int done = 0;
    for (const TextureEntry& texture : list) {
        platform.ui.Progress("Converting textures", done, total, FilePart(texture.textureFile));
        ConvertTexture(platform, texture, settings);
        ++done;
    }
    if (total > 0) {
        platform.ui.Progress("Converting textures", done, total, {});
    }
}

}  // namespace railwright::exporttextures
