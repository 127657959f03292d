// Files and folders on a POSIX system, behaving as the Windows calls the system was made for.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/Platform.h"
#include "support/WholeFile.h"

namespace railwright::support::posix {

// True when `name` matches `pattern`, where * stands for any run of characters and ? for exactly
// one character, letters compared without regard to case (ASCII letters; other bytes as they
// are; a UTF-8 sequence counts as one character). "*.*" matches every name, with or without a
// dot, as it does on Windows.
bool MatchesWildcard(std::string_view name, std::string_view pattern);

// Writes `bytes` to a new file beside `path` and renames it into place, so that `path` is either
// its old self or the whole new file, never a part; false (and no trace) on failure. The folder
// must exist.
[[nodiscard]] bool ReplaceFile(const std::string& path, std::string_view bytes);

// The regular file that `path` names, found as Windows finds it: `path` itself when it is one,
// else the file of its folder whose name equals the last component without regard to case (the
// first in ListFiles order), the same test by which a tool is looked for in the tools folder.
// Empty when there is none.
std::string FindFileIgnoringCase(const std::string& path);

class PosixFileSystem : public FileSystem {
public:
    // `aliasRoot` is where ShortPath keeps its aliases; empty picks the per-user folder
    // railwright-short-<uid> under $TMPDIR (or /tmp).
    explicit PosixFileSystem(std::string aliasRoot = {});

    bool CreateFolder(const std::string& path) override;
    void DeleteFile(const std::string& path) noexcept override;
    [[nodiscard]] bool CopyFile(const std::string& from, const std::string& to) override;
    bool FileExists(const std::string& path) override;
    bool FolderExists(const std::string& path) override;
    // Regular files (symbolic links followed) only; sorted without regard to case, as NTFS lists
    // them, names differing only in case in byte order.
    std::vector<std::string> ListFiles(const std::string& folder,
                                       std::string_view pattern) override;
    std::vector<std::string> ListFolders(const std::string& folder) override;
    // Through ReplaceFile.
    [[nodiscard]] bool WriteFile(const std::string& path, std::string_view bytes) override;
    std::optional<std::string> ReadFile(const std::string& path) override;
    // POSIX has no short names. A path that a Windows command line can carry unquoted (no blank,
    // tab, line break, control character, double quote or backslash) is its own short form.
    // Otherwise the result is an alias in the alias folder: a symbolic link named after a hash
    // of the file's folder, pointing at that folder, followed by the file's own name; or, when
    // the file's name itself needs quoting, a link named after a hash of the whole path (with the
    // file's extension kept, as 8.3 names keep it) pointing at the file. A tool may therefore
    // rewrite the file through the alias by writing a new file beside it and renaming it, as long
    // as the name needed no alias. Links are reused while they point at the same place. When no
    // alias can be made the path itself is returned. Empty when the path does not exist.
    std::string ShortPath(const std::string& path) override;

private:
    // The alias folder, created 0700 on first use; empty when it cannot be made or is not ours.
    std::string AliasFolder();
    // A link at `linkPath` pointing at `target`, reused or replaced; false on failure.
    static bool MakeLink(const std::string& linkPath, const std::string& target);

    std::string aliasRoot_;
};

}  // namespace railwright::support::posix
