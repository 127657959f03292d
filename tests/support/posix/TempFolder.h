// A fresh folder under the system's temp folder for one test, removed with everything in it when
// the test ends.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace railwright::testing {

class TempFolder {
public:
    TempFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "railwright-test-XXXXXX");
        if (mkdtemp(pattern.data()) == nullptr) {
            ADD_FAILURE() << "cannot create a temp folder from " << pattern;
        }
        path_ = pattern;
    }
    ~TempFolder() {
        std::error_code error;
        std::filesystem::remove_all(path_, error);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::string& Path() const { return path_; }
    std::string operator/(std::string_view relative) const {
        return path_ + "/" + std::string(relative);
    }

private:
    std::string path_;
};

// Writes a file for a test to read; the folder must exist.
inline void PutFile(const std::string& path, std::string_view bytes) {
    std::ofstream file(path, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    ASSERT_TRUE(file.good()) << "cannot write " << path;
}

inline std::string GetFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

// True when both paths name the same file or folder, whatever links lie between.
inline bool SameFile(const std::string& a, const std::string& b) {
    struct stat first {};
    struct stat second {};
    return stat(a.c_str(), &first) == 0 && stat(b.c_str(), &second) == 0 &&
           first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

}  // namespace railwright::testing
