// A value, or the fault that kept the value from being made.
//
// A fault is a phrase that reads after a file's name ("is a 16-bit TGA, whose alpha bit would be
// lost; ..."), so that the programs can report "<program>: "<file>": <fault>" without knowing
// where the fault came from.
#pragma once

#include <string>
#include <utility>
#include <variant>

namespace railwright::ace {

struct Fault {
    std::string text;
};

template <class T>
class [[nodiscard]] Result {
  public:
    Result(T value) : state_(std::move(value)) {}      // NOLINT: a value converts implicitly
    Result(Fault fault) : state_(std::move(fault)) {}  // NOLINT: so does a fault

    bool Ok() const { return state_.index() == 0; }
    explicit operator bool() const { return Ok(); }

    T& Value() { return std::get<0>(state_); }
    const T& Value() const { return std::get<0>(state_); }
    const std::string& FaultText() const { return std::get<1>(state_).text; }

  private:
    std::variant<T, Fault> state_;
};

}  // namespace railwright::ace
