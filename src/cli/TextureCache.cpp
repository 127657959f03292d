#include "cli/TextureCache.h"

#include <chrono>
#include <cstdlib>
#include <random>

#include "document/TexturePreparation.h"
#include "support/Utf8Paths.h"

namespace railwright::cli {

namespace {

namespace fs = std::filesystem;

// Pictures not used for this long are removed.
constexpr std::chrono::hours kUnusedFor{24 * 30};

fs::path UserCacheFolder() {
#ifdef _WIN32
    if (const wchar_t* local = _wgetenv(L"LOCALAPPDATA"); local != nullptr && *local != L'\0') {
        return fs::path(local) / "railwright" / "cache";
    }
#else
    if (const char* cache = std::getenv("XDG_CACHE_HOME");
        cache != nullptr && fs::path(cache).is_absolute()) {
        return fs::path(cache) / "railwright";
    }
    if (const char* home = std::getenv("HOME"); home != nullptr && *home != '\0') {
        return fs::path(home) / ".cache" / "railwright";
    }
#endif
    return {};
}

fs::path NewTemporaryFolder() {
    std::error_code error;
    const fs::path temp = fs::temp_directory_path(error);
    std::random_device random;
    for (int attempt = 0; attempt < 100; ++attempt) {
        const fs::path folder = temp / ("railwright-textures-" + std::to_string(random()));
        if (fs::create_directory(folder, error)) {
            return folder;
        }
    }
    return temp / "railwright-textures";
}

}  // namespace

TextureCache::TextureCache(bool temporary) {
    if (!temporary) {
        folder_ = UserCacheFolder();
        std::error_code error;
        if (!folder_.empty() && (fs::create_directories(folder_, error) || fs::is_directory(folder_, error))) {
            document::CleanTextureCache(folder_, kUnusedFor);
            return;
        }
    }
    temporary_ = true;
    folder_ = NewTemporaryFolder();
}

TextureCache::~TextureCache() {
    if (temporary_) {
        std::error_code error;
        fs::remove_all(folder_, error);
    }
}

std::string TextureCache::Folder() const {
    return support::Utf8FromPath(folder_);
}

}  // namespace railwright::cli
