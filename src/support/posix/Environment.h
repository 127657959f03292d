// How the POSIX services read environment variables: through a lookup handed to them, so that a
// caller (or a test) decides which environment they see.
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace railwright::support::posix {

// The value of an environment variable; empty when it is not set.
using EnvironmentLookup = std::function<std::optional<std::string>(const std::string& name)>;

// The process's own environment.
EnvironmentLookup ProcessEnvironment();

// The user's home folder: $HOME when set and not empty, otherwise the password database's entry
// for the current user; empty when neither is known.
std::string HomeFolder(const EnvironmentLookup& environment);

}  // namespace railwright::support::posix
