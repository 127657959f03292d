// Helpers of the model document's tests: the shared corpus, scratch folders, loading.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <string>

#include "document/Document.h"

namespace railwright::document::testing {

// The shared corpus of third-party models beside the repository.
inline std::filesystem::path CorpusPath(const std::string& relative) {
    return std::filesystem::path(RAILWRIGHT_SOURCE_DIR) / ".." / "shared" / "corpus" / relative;
}

// A scratch folder removed with everything in it.
class ScratchFolder {
  public:
    ScratchFolder() {
        std::random_device random;
        path_ = std::filesystem::temp_directory_path() /
                ("railwright-document-" + std::to_string(random()) + std::to_string(random()));
        std::filesystem::create_directories(path_);
    }
    ~ScratchFolder() {
        std::error_code error;
        std::filesystem::permissions(path_, std::filesystem::perms::owner_all,
                                     std::filesystem::perm_options::add, error);
        std::filesystem::remove_all(path_, error);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::filesystem::path& Path() const { return path_; }
    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

    // Copies a corpus folder's files into this folder (or a sub-folder) and returns the path of
    // `file` among them.
    std::filesystem::path CopyCorpus(const std::string& corpusFolder, const std::string& file,
                                     const std::string& into = "") const {
        const std::filesystem::path target = into.empty() ? path_ : path_ / into;
        std::filesystem::create_directories(target);
        std::filesystem::copy(CorpusPath(corpusFolder), target,
                              std::filesystem::copy_options::recursive |
                                  std::filesystem::copy_options::overwrite_existing);
        // The corpus may be read-only; its copies are ours to change.
        for (const auto& entry : std::filesystem::recursive_directory_iterator(target)) {
            std::filesystem::permissions(entry.path(), std::filesystem::perms::owner_write,
                                         std::filesystem::perm_options::add);
        }
        return target / file;
    }

  private:
    std::filesystem::path path_;
};

inline std::string ReadBytes(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

inline void WriteBytes(const std::filesystem::path& file, const std::string& bytes) {
    std::ofstream stream(file, std::ios::binary);
    stream << bytes;
    stream.close();
    ASSERT_TRUE(stream) << "cannot write " << file;
}

// Loads a model that must load; fails the test with the loader's message otherwise.
inline std::unique_ptr<Document> MustLoad(const std::filesystem::path& file) {
    LoadResult loaded = Document::Load(file.string());
    EXPECT_TRUE(loaded.document) << loaded.error;
    EXPECT_EQ(loaded.error, "");
    return std::move(loaded.document);
}

}  // namespace railwright::document::testing
