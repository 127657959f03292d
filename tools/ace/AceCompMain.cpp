// acecomp IN OUT: compresses an ACE file into the zlib container.
//
// The exporters call it with the same file twice, to compress in place. A file that is already
// compressed is left as it is (copied to OUT when OUT is another file). OUT is replaced only by a
// complete file: a failure leaves it as it was.
//
// Exit status: 0 on success; 1 when IN is no ACE file or cannot be read, or OUT cannot be
// written; 2 for bad usage. Every failure is reported on standard error, naming the file and the
// fault.
#include <iostream>
#include <string>
#include <system_error>

#include "ace/AceContainer.h"
#include "ace/AceFormat.h"
#include "ace/FileAccess.h"
#include "ace/ProgramMain.h"

namespace {

using namespace railwright::ace;

constexpr std::string_view kProgram = "acecomp";
constexpr int kExitFailure = 1;
constexpr int kExitUsage = 2;

int Fail(const std::filesystem::path& file, const std::string& fault) {
    std::cerr << kProgram << ": \"" << DisplayName(file) << "\": " << fault << "\n";
    return kExitFailure;
}

bool SameFile(const std::filesystem::path& first, const std::filesystem::path& second) {
    std::error_code error;
    return std::filesystem::equivalent(first, second, error) && !error;
}

int AceComp(const Arguments& arguments) {
    if (arguments.size() != 3) {
        std::cerr << kProgram
                  << ": usage: acecomp IN OUT (the same file twice compresses it in "
                     "place)\n";
        return kExitUsage;
    }
    const std::filesystem::path& input = arguments[1];
    const std::filesystem::path& output = arguments[2];

    const Result<std::vector<uint8_t>> bytes = ReadWholeFile(input);
    if (!bytes) {
        return Fail(input, bytes.FaultText());
    }
    const Result<Container> container = IdentifyContainer(bytes.Value());
    if (!container) {
        return Fail(input, container.FaultText());
    }

    Result<std::vector<uint8_t>> compressed = bytes.Value();
    if (container.Value() == Container::Compressed) {
        if (SameFile(input, output)) {
            return 0;
        }
    } else {
        const std::span<const uint8_t> body =
            std::span<const uint8_t>(bytes.Value()).subspan(kSignatureSize);
        const std::string bodyFault = CheckBodyHeader(body);
        if (!bodyFault.empty()) {
            return Fail(input, bodyFault);
        }
        compressed = WrapCompressed(body);
        if (!compressed) {
            return Fail(input, compressed.FaultText());
        }
    }
    const std::string writeFault = WriteFileReplacing(output, compressed.Value());
    if (!writeFault.empty()) {
        return Fail(output, writeFault);
    }
    return 0;
}

}  // namespace

#ifdef _WIN32
int wmain(int argc, wchar_t** argv) {
    return RunProgram(kProgram, Arguments(argv, argv + argc), AceComp);
}
#else
int main(int argc, char** argv) {
    return RunProgram(kProgram, Arguments(argv, argv + argc), AceComp);
}
#endif
