#include "host/Host.h"

#include <utility>

namespace railwright::host {

HostError::HostError(int32_t number, std::string description)
    : std::runtime_error(description), number_(number), description_(std::move(description)) {}

}  // namespace railwright::host
