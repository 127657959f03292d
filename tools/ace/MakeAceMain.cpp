// MakeACE IN OUT [-trans] [-zlib] [-dxt]: converts a TGA or BMP picture into an ACE texture.
//
//   -trans  keep the alpha as a 1-bit transparency mask
//   -zlib   write the compressed container
//   -dxt    DXT1 blocks instead of 8-bit channels
//
// Without -trans a picture with alpha keeps an 8-bit alpha channel, except in DXT1, which cannot
// hold one: there the alpha is dropped and a note says so. Switches are matched without regard
// to case. OUT is replaced only by a complete file: a failure leaves it as it was.
//
// Exit status: 0 on success; 1 when IN cannot be read or converted or OUT cannot be written;
// 2 for bad usage. Every failure is reported on standard error, naming the file and the fault.
#include <iostream>
#include <string>

#include "ace/AceContainer.h"
#include "ace/AceEncoder.h"
#include "ace/FileAccess.h"
#include "ace/ProgramMain.h"
#include "ace/SourceImage.h"

namespace {

using namespace railwright::ace;

constexpr std::string_view kProgram = "MakeACE";
constexpr int kExitFailure = 1;
constexpr int kExitUsage = 2;

struct Request {
    std::filesystem::path input;
    std::filesystem::path output;
    AceOptions options;
    bool compressed = false;
};

int Usage(const std::string& fault) {
    std::cerr << kProgram << ": " << fault << "\n"
              << kProgram << ": usage: MakeACE IN OUT [-trans] [-zlib] [-dxt]\n";
    return kExitUsage;
}

int Fail(const std::filesystem::path& file, const std::string& fault) {
    std::cerr << kProgram << ": \"" << DisplayName(file) << "\": " << fault << "\n";
    return kExitFailure;
}

std::string LowerCase(std::string text) {
    for (char& c : text) {
        if (c >= 'A' && c <= 'Z') {
            c = static_cast<char>(c - 'A' + 'a');
        }
    }
    return text;
}

// The request, or a usage fault.
Result<Request> ParseArguments(const Arguments& arguments) {
    if (arguments.size() < 3) {
        return Fault{"an input and an output file are needed"};
    }
    Request request;
    request.input = arguments[1];
    request.output = arguments[2];
    for (size_t i = 3; i < arguments.size(); ++i) {
        const std::string option = LowerCase(DisplayName(arguments[i]));
        if (option == "-trans") {
            request.options.transparencyMask = true;
        } else if (option == "-zlib") {
            request.compressed = true;
        } else if (option == "-dxt") {
            request.options.data = AceData::Dxt1;
        } else {
            return Fault{"unknown option \"" + DisplayName(arguments[i]) + "\""};
        }
    }
    return request;
}

int MakeAce(const Arguments& arguments) {
    const Result<Request> parsed = ParseArguments(arguments);
    if (!parsed) {
        return Usage(parsed.FaultText());
    }
    const Request& request = parsed.Value();

    const Result<Image> image = ReadSourceImage(request.input);
    if (!image) {
        return Fail(request.input, image.FaultText());
    }
    if (image.Value().hasAlpha &&
        ChooseAlphaChannel(image.Value(), request.options) == AlphaChannel::None) {
        std::cerr << kProgram << ": \"" << DisplayName(request.input)
                  << "\": note: its alpha channel is dropped; DXT1 keeps at most a 1-bit mask "
                     "(-trans)\n";
    }
    const Result<std::vector<uint8_t>> body = EncodeAceBody(image.Value(), request.options);
    if (!body) {
        return Fail(request.input, body.FaultText());
    }
    Result<std::vector<uint8_t>> file =
        request.compressed ? WrapCompressed(body.Value()) : WrapPlain(body.Value());
    if (!file) {
        return Fail(request.input, file.FaultText());
    }
    const std::string writeFault = WriteFileReplacing(request.output, file.Value());
    if (!writeFault.empty()) {
        return Fail(request.output, writeFault);
    }
    return 0;
}

}  // namespace

#ifdef _WIN32
int wmain(int argc, wchar_t** argv) {
    return RunProgram(kProgram, Arguments(argv, argv + argc), MakeAce);
}
#else
int main(int argc, char** argv) {
    return RunProgram(kProgram, Arguments(argv, argv + argc), MakeAce);
}
#endif
