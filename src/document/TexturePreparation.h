// Textures as the modeller would present them: every material of a loaded model paints with a
// TGA or BMP file that the exporters take.
//
// A PNG or JPEG image, or one held inside the model (bufferView or data: URI), is decoded and
// written once as a TGA into a folder of its own in the texture cache:
//
//     <cache>/<model name>-<hash of the model's path>/<hash of the image's bytes and colour>/<name>.tga
//
// named after the image's own file or name, so that the .ace file and the shape carry that name
// ("CesiumLogoFlat.png" becomes "CesiumLogoFlat.tga", then "cesiumlogoflat.ace"). A material
// whose base colour factor is not white paints with its image multiplied by that colour; a
// material without a base colour image gets a small picture of its colour of its own, named
// after the material. Names are made distinct without regard to case by a "_2", "_3"... suffix.
// A TGA or BMP file with a white factor is taken as it is. A picture already in the cache is
// not decoded again; its folder's time is brought forward so that cleaning keeps it.
#pragma once

#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

namespace railwright::document {

struct DocumentState;

struct [[nodiscard]] TexturePreparation {
    size_t written = 0;  // pictures decoded and written in this run
    size_t reused = 0;   // pictures found in the cache
    // Images that could not be made into pictures (unreadable, not decodable, cache not
    // writable), one line each naming the image and the fault. Their materials keep the file
    // they had, which the texture conversion then reports in its own words.
    std::vector<std::string> notices;
};

// Gives every material of `state` its TGA files in the cache folder `cache` (created when
// missing) and points the materials at them.
TexturePreparation PrepareTextures(DocumentState& state, const std::filesystem::path& cache);

// Removes from the cache folder `cache` every picture folder last used before `now - maxAge`,
// then the model folders left empty. The folder, its model folders and their picture folders
// are the cache's own; nothing else in `cache` is touched. Returns how many picture folders went.
size_t CleanTextureCache(const std::filesystem::path& cache, std::chrono::hours maxAge);

}  // namespace railwright::document
