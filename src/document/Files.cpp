#include "document/Files.h"

#include <fstream>

namespace railwright::document {

namespace {

std::filesystem::path WithSuffix(const std::filesystem::path& file, const char* suffix) {
    std::filesystem::path named = file;
    named += suffix;
    return named;
}

std::string Reason(const std::error_code& error) {
    return error ? error.message() : std::string("the write failed");
}

}  // namespace

bool WriteWholeFile(const std::filesystem::path& file, std::string_view bytes) {
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    return static_cast<bool>(stream);
}

std::filesystem::path TemporaryFileFor(const std::filesystem::path& target) {
    return WithSuffix(target, ".railwright-save");
}

std::string WriteReplacing(const std::filesystem::path& target, std::string_view bytes,
                           const WrittenFileCheck& check) {
    const std::filesystem::path temporary = TemporaryFileFor(target);
    std::error_code error;
    if (!std::ofstream(temporary, std::ios::binary | std::ios::app)) {
        return "a file cannot be created in its folder.";
    }
    if (!WriteWholeFile(temporary, bytes) ||
        std::filesystem::file_size(temporary, error) != bytes.size() || error) {
        std::filesystem::remove(temporary, error);
        return "the new file could not be written completely (is the disk full?).";
    }
    if (std::string fault = check(temporary); !fault.empty()) {
        std::filesystem::remove(temporary, error);
        return "the new file failed its check: " + fault;
    }

    std::filesystem::rename(temporary, target, error);
    if (!error) {
        return {};
    }
    // Where renaming does not replace an existing file, the old one is moved aside first and
    // put back if the new one cannot take its place.
    const std::string firstReason = Reason(error);
    if (!std::filesystem::exists(target, error) || std::filesystem::is_directory(target, error)) {
        std::filesystem::remove(temporary, error);
        return "the new file cannot take its place: " + firstReason + ".";
    }
    const std::filesystem::path aside = WithSuffix(target, ".railwright-old");
    std::filesystem::rename(target, aside, error);
    if (error) {
        std::filesystem::remove(temporary, error);
        return "the old file cannot be replaced: " + Reason(error) + ".";
    }
    std::filesystem::rename(temporary, target, error);
    if (error) {
        const std::string reason = Reason(error);
        std::filesystem::rename(aside, target, error);
        std::filesystem::remove(temporary, error);
        return "the new file cannot take its place: " + reason + ".";
    }
    std::filesystem::remove(aside, error);
    return {};
}

}  // namespace railwright::document
