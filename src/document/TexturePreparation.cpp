#include "document/TexturePreparation.h"

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstring>
#include <map>
#include <optional>
#include <thread>

#include "document/DocumentState.h"
#include "document/Files.h"
#include "support/SupportingFunctions.h"
#include "support/Utf8Paths.h"

namespace railwright::document {

namespace {

namespace fs = std::filesystem;

// Bumped whenever the pictures written for the same bytes change, so that old ones are not
// taken for new.
constexpr uint64_t kPictureFormat = 1;
// The side of the picture made for a material of one colour.
constexpr int kPlainPictureSide = 8;

// A 64-bit hash, enough to tell a model's images apart: eight bytes a step on four lanes, so
// that hashing a model's images on every run costs little beside reading them.
class Hash {
  public:
    Hash& Add(std::string_view bytes) {
        const char* at = bytes.data();
        size_t left = bytes.size();
        std::array<uint64_t, 4> lanes = {value_, value_ ^ kMix1, value_ ^ kMix2, value_ + kMix1};
        for (; left >= 32; at += 32, left -= 32) {
            for (size_t lane = 0; lane < 4; ++lane) {
                uint64_t word;
                std::memcpy(&word, at + 8 * lane, sizeof word);
                lanes[lane] = std::rotl(lanes[lane] ^ (word * kMix1), 31) * kMix2;
            }
        }
        uint64_t value = bytes.size();
        for (const uint64_t lane : lanes) {
            value = std::rotl(value ^ (lane * kMix2), 27) * kMix1 + kMix2;
        }
        for (; left > 0; ++at, --left) {
            value = (value ^ static_cast<uint8_t>(*at)) * 0x100000001b3ULL;
        }
        value_ = value ^ (value >> 29);
        return *this;
    }
    Hash& Add(uint64_t number) {
        char bytes[sizeof number];
        std::memcpy(bytes, &number, sizeof number);
        return Add(std::string_view(bytes, sizeof bytes));
    }
    Hash& Add(const LinearColour& colour) {
        for (const float channel : colour) {
            Add(static_cast<uint64_t>(std::bit_cast<uint32_t>(channel)));
        }
        return *this;
    }
    std::string Hex() const {
        static constexpr char kDigits[] = "0123456789abcdef";
        std::string text(16, '0');
        for (size_t i = 0; i < 16; ++i) {
            text[15 - i] = kDigits[(value_ >> (4 * i)) & 0xF];
        }
        return text;
    }

  private:
    static constexpr uint64_t kMix1 = 0x9E3779B185EBCA87ULL;
    static constexpr uint64_t kMix2 = 0xC2B2AE3D27D4EB4FULL;
    uint64_t value_ = 0xcbf29ce484222325ULL;
};

bool IsPictureFolderName(const std::string& name) {
    return name.size() == 16 && std::all_of(name.begin(), name.end(), [](char c) {
               return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f');
           });
}

// A name every file system takes: no separators, wildcards, quotes or control characters, and
// no trailing dots or blanks (Windows drops them).
std::string FileNameFrom(std::string name) {
    for (char& c : name) {
        if (static_cast<unsigned char>(c) < 0x20 || std::strchr("<>:\"/\\|?*", c) != nullptr) {
            c = '_';
        }
    }
    while (!name.empty() && (name.back() == '.' || name.back() == ' ')) {
        name.pop_back();
    }
    return name.empty() ? "texture" : name;
}

bool IsModellerFormat(const std::string& file) {
    return support::EndsWithIgnoreCase(file, ".tga") || support::EndsWithIgnoreCase(file, ".bmp");
}

// One picture to have in the cache: an image (multiplied by a colour) or a plain colour.
struct CachedPicture {
    int image = -1;  // -1: a plain picture of `colour`
    LinearColour colour = {1.0f, 1.0f, 1.0f, 1.0f};
    std::string name;  // distinct, without extension
    std::string bytes;  // the image file's bytes, once read
    fs::path file;      // in the cache
    bool present = false;
    std::string fault;
};

class Preparer {
  public:
    Preparer(DocumentState& state, const fs::path& cache) : state_(state), cache_(cache) {}

    TexturePreparation Run();

  private:
    // The picture for this image and colour, made on first use; -1 when the material's file is
    // to be kept as it is.
    int PictureFor(int image, const LinearColour& colour, const std::string& materialName);
    std::string FileOf(int picture, const std::string& kept) const;
    void Make(CachedPicture& picture) const;

    DocumentState& state_;
    fs::path cache_;
    std::vector<CachedPicture> pictures_;
    std::map<std::pair<int, std::array<uint32_t, 4>>, int> known_;  // by image and colour
    std::vector<std::string> taken_;                                // names, upper-cased
};

int Preparer::PictureFor(int image, const LinearColour& colour, const std::string& materialName) {
    std::string name;
    if (image >= 0) {
        const ImageSource& source = state_.images[static_cast<size_t>(image)];
        if (!source.file.empty() && IsModellerFormat(source.file) && IsWhite(colour)) {
            return -1;
        }
        std::array<uint32_t, 4> key{};
        for (size_t c = 0; c < 4; ++c) {
            key[c] = std::bit_cast<uint32_t>(colour[c]);
        }
        if (const auto found = known_.find({image, key}); found != known_.end()) {
            return found->second;
        }
        known_[{image, key}] = static_cast<int>(pictures_.size());
        name = source.name;
    } else {
        name = materialName;
    }
    // The first picture of a name keeps it; later ones are numbered.
    const std::string base = FileNameFrom(name);
    std::string distinct = base;
    for (int n = 2; std::find(taken_.begin(), taken_.end(), support::ToUpper(distinct)) !=
                    taken_.end();
         ++n) {
        distinct = base + "_" + std::to_string(n);
    }
    taken_.push_back(support::ToUpper(distinct));
    pictures_.push_back({image, colour, distinct, {}, {}, false, {}});
    return static_cast<int>(pictures_.size() - 1);
}

std::string Preparer::FileOf(int picture, const std::string& kept) const {
    if (picture < 0) {
        return kept;
    }
    const CachedPicture& made = pictures_[static_cast<size_t>(picture)];
    return made.present ? support::Utf8FromPath(made.file) : kept;
}

void Preparer::Make(CachedPicture& picture) const {
    DecodedPicture decoded;
    if (picture.image < 0) {
        decoded.picture = PlainPicture(picture.colour, kPlainPictureSide);
    } else {
        decoded = DecodePicture(picture.bytes);
        if (!decoded.error.empty()) {
            picture.fault = decoded.error;
            return;
        }
        if (!IsWhite(picture.colour)) {
            MultiplyColour(decoded.picture, picture.colour);
        }
    }
    std::error_code error;
    fs::create_directories(picture.file.parent_path(), error);
    // Written beside its place and renamed, so that a run cut short never leaves half a
    // picture in the cache.
    fs::path partial = picture.file;
    partial += ".partial";
    if (!WriteWholeFile(partial, EncodeTga(decoded.picture))) {
        fs::remove(partial, error);
        picture.fault = "it cannot be written to " + support::Utf8FromPath(picture.file);
        return;
    }
    fs::rename(partial, picture.file, error);
    if (error) {
        fs::remove(partial, error);
        picture.fault = "it cannot be written to " + support::Utf8FromPath(picture.file);
        return;
    }
    picture.present = true;
}

TexturePreparation Preparer::Run() {
    struct Uses {
        int base = -1;
        std::array<int, 4> further = {-1, -1, -1, -1};
    };
    std::vector<Uses> uses;
    for (const MaterialRecord& record : state_.materials) {
        const MaterialImages& images = record.images;
        Uses use;
        use.base = PictureFor(images.baseColour, images.baseColourFactor, record.name);
        const std::array<int, 4> further = {images.normal, images.occlusion, images.emissive,
                                            images.metallicRoughness};
        for (size_t m = 0; m < further.size(); ++m) {
            if (further[m] >= 0) {
                use.further[m] = PictureFor(further[m], {1.0f, 1.0f, 1.0f, 1.0f}, {});
            }
        }
        uses.push_back(use);
    }

    TexturePreparation result;
    const std::string modelFolder =
        support::Utf8FromPath(state_.file.stem()) + "-" +
        Hash().Add(support::Utf8FromPath(state_.file)).Hex().substr(0, 8);
    std::vector<CachedPicture*> toMake;
    for (CachedPicture& picture : pictures_) {
        Hash hash;
        hash.Add(kPictureFormat).Add(picture.colour);
        if (picture.image >= 0) {
            const ImageSource& source = state_.images[static_cast<size_t>(picture.image)];
            if (source.file.empty()) {
                picture.bytes = source.bytes;
            } else if (std::optional<std::string> bytes =
                           ReadWholeFile(support::PathFromUtf8(source.file))) {
                picture.bytes = std::move(*bytes);
            } else {
                result.notices.push_back(source.file + ": the image cannot be read.");
                continue;
            }
            hash.Add(picture.bytes);
        }
        picture.file = cache_ / support::PathFromUtf8(modelFolder) / hash.Hex() /
                       support::PathFromUtf8(picture.name + ".tga");
        std::error_code error;
        if (fs::is_regular_file(picture.file, error)) {
            picture.present = true;
            fs::last_write_time(picture.file.parent_path(), fs::file_time_type::clock::now(),
                                error);
            ++result.reused;
        } else {
            toMake.push_back(&picture);
        }
    }

    // Decoding is the slow part: the pictures are made side by side.
    std::atomic<size_t> next = 0;
    const auto work = [&] {
        for (size_t i = next++; i < toMake.size(); i = next++) {
            Make(*toMake[i]);
        }
    };
    const size_t workers =
        std::min<size_t>(toMake.size(), std::max(2u, std::thread::hardware_concurrency()));
    std::vector<std::thread> threads;
    for (size_t w = 1; w < workers; ++w) {
        threads.emplace_back(work);
    }
    work();
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (const CachedPicture* picture : toMake) {
        if (picture->present) {
            ++result.written;
        } else {
            const std::string what =
                picture->image < 0
                    ? "the picture of material \"" + picture->name + "\""
                    : [&] {
                          const ImageSource& source =
                              state_.images[static_cast<size_t>(picture->image)];
                          return source.file.empty() ? "image \"" + source.name + "\" of " +
                                                           support::Utf8FromPath(state_.file)
                                                     : source.file;
                      }();
            result.notices.push_back(what + ": " + picture->fault + ".");
        }
    }

    for (size_t i = 0; i < state_.materials.size(); ++i) {
        host::scene::MaterialProperties& properties =
            state_.materials[i].material->Properties();
        const Uses& use = uses[i];
        const bool maskedByTexture = !properties.transparencyMap.empty() &&
                                     properties.transparencyMap == properties.textureFile;
        properties.textureFile = FileOf(use.base, properties.textureFile);
        if (maskedByTexture) {
            properties.transparencyMap = properties.textureFile;
        }
        properties.normalMap = FileOf(use.further[0], properties.normalMap);
        properties.occlusionMap = FileOf(use.further[1], properties.occlusionMap);
        properties.emissiveMap = FileOf(use.further[2], properties.emissiveMap);
        properties.metallicRoughnessMap = FileOf(use.further[3], properties.metallicRoughnessMap);
    }
    return result;
}

}  // namespace

TexturePreparation PrepareTextures(DocumentState& state, const fs::path& cache) {
    return Preparer(state, cache).Run();
}

size_t CleanTextureCache(const fs::path& cache, std::chrono::hours maxAge) {
    const fs::file_time_type oldest = fs::file_time_type::clock::now() - maxAge;
    size_t removed = 0;
    std::error_code error;
    for (const fs::directory_entry& model : fs::directory_iterator(cache, error)) {
        if (!model.is_directory(error)) {
            continue;
        }
        bool empty = true;
        for (const fs::directory_entry& picture : fs::directory_iterator(model.path(), error)) {
            const std::string name = support::Utf8FromPath(picture.path().filename());
            if (picture.is_directory(error) && IsPictureFolderName(name) &&
                picture.last_write_time(error) < oldest && !error) {
                if (fs::remove_all(picture.path(), error) != static_cast<std::uintmax_t>(-1)) {
                    ++removed;
                    continue;
                }
            }
            empty = false;
        }
        if (empty) {
            fs::remove(model.path(), error);
        }
    }
    return removed;
}

}  // namespace railwright::document
