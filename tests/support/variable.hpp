#pragma once

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>
#include <utility>

namespace twk::test {

/// A variable of the environment has another value, or none, until the end of the scope.
class Variable {
 public:
  explicit Variable(std::string name, const std::optional<std::string>& value = std::nullopt)
      : name_(std::move(name)) {
    if (const char* const before = std::getenv(name_.c_str()))
      before_ = before;
    put(value);
  }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;
  ~Variable() { put(before_); }

  void put(const std::optional<std::string>& value) {
    if (value)
      setenv(name_.c_str(), value->c_str(), 1);
    else
      unsetenv(name_.c_str());
  }

 private:
  std::string name_;
  std::optional<std::string> before_;
};

/// The program is in another time zone until the end of the scope.
class TimeZone {
 public:
  explicit TimeZone(const std::string& zone) : variable_(std::in_place, "TZ", zone) { tzset(); }
  TimeZone(const TimeZone&) = delete;
  TimeZone& operator=(const TimeZone&) = delete;
  ~TimeZone() {
    variable_.reset();
    tzset();
  }

 private:
  std::optional<Variable> variable_;
};

}  // namespace twk::test
