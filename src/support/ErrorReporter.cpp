// The shared error reporter.
#include <filesystem>
#include <new>
#include <system_error>

#include "support/SupportingFunctions.h"

namespace railwright::support {
namespace {

constexpr std::string_view kOutOfMemory =
    "Out of memory. Please close all programs and run Polyforge again.";
constexpr std::string_view kFailedComCall =
    "An Unrecoverable error has occured. Often errors such as these can be resolved by updating "
    "the drivers for your display adapter (video card). If you continue to receive this message "
    "please let us know on the problem reports forum at ";
constexpr std::string_view kOtherError =
    "An Unrecoverable error has occured. If you continue to receive this message please let us "
    "know on the problem reports forum at ";

}  // namespace

ErrorInfo CurrentError() {
    try {
        throw;
    } catch (const host::HostError& error) {
        return {error.Number(), error.Description()};
    } catch (const RunTimeError& error) {
        return {error.Number(), error.what()};
    } catch (const std::bad_alloc&) {
        return {kErrorOutOfMemory, "Out of memory"};
    } catch (const std::filesystem::filesystem_error& error) {
        return {kErrorPathFileAccess, error.what()};
    } catch (const std::exception& error) {
        return {kErrorInternal, error.what()};
    } catch (...) {
        return {kErrorInternal, "Internal error"};
    }
}

std::string ErrorMessage(const ErrorInfo& error) {
    std::string text;
    if (error.number == kErrorCancelledDialog) {
        return text;
    }
    if (error.number == host::kHostErrorFailed || error.number == host::kHostErrorInvalidArgument) {
        text = error.description;
    } else if (error.number == kErrorOutOfMemory) {
        text = kOutOfMemory;
    } else if (error.number < 0) {
        text = std::string(kFailedComCall) + std::string(kForumAddress);
    } else {
        text = std::string(kOtherError) + std::string(kForumAddress);
    }
    return text + " (#" + std::to_string(error.number) + ")";
}

void ReportError(UserInterface& ui, const ErrorInfo& error) {
    const std::string text = ErrorMessage(error);
    if (!text.empty()) {
        ui.ShowMessage(text, MessageIcon::Critical, MessageButtons::Ok);
    }
}

void ReportCurrentError(UserInterface& ui) { ReportError(ui, CurrentError()); }

}  // namespace railwright::support
