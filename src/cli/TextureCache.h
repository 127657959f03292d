// Where `railwright apply` keeps the TGA pictures it makes of a model's textures: the user's
// cache folder ($XDG_CACHE_HOME/railwright or ~/.cache/railwright on POSIX, the local application
// data folder's railwright\cache on Windows), cleaned of pictures unused for a month on each run;
// or, with --no-cache or when the user has no cache folder, a temporary folder removed when the
// run ends.
#pragma once

#include <filesystem>
#include <string>

namespace railwright::cli {

class TextureCache {
  public:
    // The user's cache, or a temporary folder when `temporary` is set or there is none.
    explicit TextureCache(bool temporary);
    ~TextureCache();
    TextureCache(const TextureCache&) = delete;
    TextureCache& operator=(const TextureCache&) = delete;

    // UTF-8.
    std::string Folder() const;
    bool IsTemporary() const { return temporary_; }

  private:
    std::filesystem::path folder_;
    bool temporary_ = false;
};

}  // namespace railwright::cli
