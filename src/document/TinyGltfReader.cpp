#define TINYGLTF_IMPLEMENTATION
#include "document/TinyGltfReader.h"

#include <limits>
#include <new>

#include "document/Files.h"
#include "support/Utf8Paths.h"

namespace railwright::document {

namespace {

using Json = nlohmann::ordered_json;

struct FileContext {
    std::string folder;  // UTF-8, as handed to tinygltf as its base folder
};

// tinygltf joins the base folder and a buffer's URI, then also tries the current folder; only
// files reached from the model's folder count.
bool FileExists(const std::string& path, void* userData) {
    const auto& context = *static_cast<const FileContext*>(userData);
    if (path.compare(0, context.folder.size(), context.folder) != 0) {
        return false;
    }
    std::error_code error;
    return std::filesystem::is_regular_file(support::PathFromUtf8(path), error);
}

std::string ExpandFilePath(const std::string& path, void*) {
    return path;
}

bool ReadFile(std::vector<unsigned char>* out, std::string* error, const std::string& path, void*) {
    const std::optional<std::string> bytes = ReadWholeFile(support::PathFromUtf8(path));
    if (!bytes) {
        *error = "cannot be read";
        return false;
    }
    out->assign(bytes->begin(), bytes->end());
    return true;
}

bool RefuseToWrite(std::string* error, const std::string&, const std::vector<unsigned char>&,
                   void*) {
    *error = "tinygltf never writes for this program";
    return false;
}

// Keeps what the model needs of an image (its URI, already set by tinygltf) and decodes
// nothing. The bytes of a data: URI come from tinygltf's own decoded copy and are kept; the
// bytes of a bufferView image are left alone, as its range is only checked later.
bool KeepImage(tinygltf::Image* image, const int index, std::string*, std::string*, int, int,
               const unsigned char* bytes, int size, void* userData) {
    if (image->bufferView < 0 && size > 0) {
        auto& images = *static_cast<std::map<int, std::string>*>(userData);
        images[index] =
            std::string(reinterpret_cast<const char*>(bytes), static_cast<size_t>(size));
    }
    return true;
}

bool IsIndex(const Json& value) {
    return value.is_number_unsigned();
}

// tinygltf takes the address of an image's bufferView bytes before anything validates the
// view; the view must lie inside its buffer's declared length (tinygltf makes sure that each
// buffer holds at least that many bytes).
std::string ImageViewFault(const Json& root) {
    const auto images = root.find("images");
    if (images == root.end() || !images->is_array()) {
        return {};
    }
    const auto views = root.find("bufferViews");
    const auto buffers = root.find("buffers");
    for (size_t i = 0; i < images->size(); ++i) {
        const Json& image = (*images)[i];
        if (!image.is_object() || !image.contains("bufferView")) {
            continue;
        }
        const std::string what = "image " + std::to_string(i);
        const Json& viewIndex = image["bufferView"];
        if (!IsIndex(viewIndex) || views == root.end() || !views->is_array() ||
            viewIndex.get<uint64_t>() >= views->size()) {
            return what + " names a bufferView that does not exist.";
        }
        const Json& view = (*views)[viewIndex.get<size_t>()];
        if (!view.is_object() || !view.contains("buffer") || !IsIndex(view["buffer"]) ||
            buffers == root.end() || !buffers->is_array() ||
            view["buffer"].get<uint64_t>() >= buffers->size()) {
            return what + " lies in a bufferView whose buffer does not exist.";
        }
        const Json& buffer = (*buffers)[view["buffer"].get<size_t>()];
        const Json offset = view.value("byteOffset", Json(0u));
        const Json length = view.value("byteLength", Json());
        const Json bufferLength = buffer.is_object() ? buffer.value("byteLength", Json()) : Json();
        if (!IsIndex(offset) || !IsIndex(length) || !IsIndex(bufferLength) ||
            length.get<uint64_t>() == 0 || offset.get<uint64_t>() > bufferLength.get<uint64_t>() ||
            length.get<uint64_t>() > bufferLength.get<uint64_t>() - offset.get<uint64_t>()) {
            return what + " lies in a bufferView outside its buffer.";
        }
    }
    return {};
}

// tinygltf's messages end in newlines and may run to several lines; the first says what broke.
std::string FirstLine(std::string text) {
    const size_t end = text.find('\n');
    if (end != std::string::npos) {
        text.resize(end);
    }
    return text.empty() ? "tinygltf gave no reason" : text;
}

}  // namespace

TinyGltfRead ReadWithTinyGltf(std::string_view file, bool binary, const Json& json,
                              const std::filesystem::path& folder) {
    TinyGltfRead read;
    if (file.size() > std::numeric_limits<unsigned int>::max()) {
        read.error = "the file is larger than 4 GiB.";
        return read;
    }
    if (std::string fault = ImageViewFault(json); !fault.empty()) {
        read.error = std::move(fault);
        return read;
    }

    FileContext context{support::Utf8FromPath(folder)};
    tinygltf::TinyGLTF loader;
    loader.SetImageLoader(&KeepImage, &read.dataUriImages);
    loader.SetFsCallbacks({&FileExists, &ExpandFilePath, &ReadFile, &RefuseToWrite, &context});
    std::string error;
    std::string warning;
    bool loaded = false;
    try {
        const auto length = static_cast<unsigned int>(file.size());
        loaded = binary ? loader.LoadBinaryFromMemory(
                              &read.model, &error, &warning,
                              reinterpret_cast<const unsigned char*>(file.data()), length,
                              context.folder)
                        : loader.LoadASCIIFromString(&read.model, &error, &warning, file.data(),
                                                     length, context.folder);
    } catch (const std::bad_alloc&) {
        error = "it asks for more memory than there is";
    } catch (const std::exception& exception) {
        error = exception.what();
    } catch (...) {
        error = "the glTF reader failed";
    }
    if (!loaded) {
        read.error = "it is not a glTF file that can be read: " + FirstLine(error);
    }
    return read;
}

}  // namespace railwright::document
