#include "host/scene/Failures.h"

#include "host/Host.h"

namespace railwright::host::scene {

void Failures::FailOperation(const std::string& operation, int32_t succeedFirst) {
    successesLeft_[operation] = succeedFirst;
}

void Failures::Clear() {
    failEvery_ = false;
    successesLeft_.clear();
}

void Failures::Check(std::string_view operation) {
    auto counted = calls_.find(operation);
    if (counted == calls_.end()) {
        counted = calls_.emplace(std::string(operation), 0).first;
    }
    ++counted->second;

    bool fails = failEvery_;
    if (const auto armed = successesLeft_.find(operation); armed != successesLeft_.end()) {
        if (armed->second > 0) {
            --armed->second;
        } else {
            fails = true;
        }
    }
    if (fails) {
        throw HostError(kHostErrorFailed, std::string(operation) + " failed.");
    }
}

int32_t Failures::CallCount(std::string_view operation) const {
    const auto counted = calls_.find(operation);
    return counted == calls_.end() ? 0 : counted->second;
}

}  // namespace railwright::host::scene
