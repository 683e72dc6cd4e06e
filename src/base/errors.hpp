#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <utility>

namespace twk::base {

/// A failed platform call or runtime operation. `number` is what the logic tests and logs; the description is
/// for people. Numbers below 65536 are the classic runtime's, the others are HRESULTs.
class RuntimeError : public std::runtime_error {
 public:
  RuntimeError(std::uint32_t number, const std::string& description)
      : std::runtime_error(description), number_(number) {}

  [[nodiscard]] std::uint32_t number() const { return number_; }
  [[nodiscard]] std::string description() const { return what(); }

 private:
  std::uint32_t number_;
};

[[noreturn]] inline void raise(std::uint32_t number, const std::string& description) {
  throw RuntimeError(number, description);
}

namespace error {

inline constexpr std::uint32_t kOverflow = 6;
inline constexpr std::uint32_t kOutOfBounds = 9;
inline constexpr std::uint32_t kTypeMismatch = 13;
inline constexpr std::uint32_t kBadFileName = 52;
inline constexpr std::uint32_t kFileNotFound = 53;
inline constexpr std::uint32_t kFileExists = 58;
inline constexpr std::uint32_t kDiskFull = 61;
inline constexpr std::uint32_t kPermissionDenied = 70;
inline constexpr std::uint32_t kDifferentDrive = 74;
inline constexpr std::uint32_t kPathFileAccess = 75;
inline constexpr std::uint32_t kPathNotFound = 76;
inline constexpr std::uint32_t kParentNotFound = 35601;  ///< a tree node's parent key is not in the tree
inline constexpr std::uint32_t kKeyNotUnique = 35602;    ///< a row or node with that key exists already

}  // namespace error

/// Ignores the failure of one statement and keeps its number, so that the caller can test it:
///
///     Trap trap(session.traps_off());
///     trap([&] { user.SetInfo(); });
///     if (trap.number() != 0) …
///
/// Each call forgets the previous failure. With `rethrow` nothing is ignored.
class Trap {
 public:
  explicit Trap(bool rethrow = false) : rethrow_(rethrow) {}

  /// Runs `step`; true when it succeeded.
  template <typename Step>
  bool operator()(Step&& step) {
    clear();
    try {
      std::forward<Step>(step)();
      return true;
    } catch (const RuntimeError& failure) {
      if (rethrow_)
        throw;
      number_ = failure.number();
      description_ = failure.description();
      return false;
    }
  }

  void clear() {
    number_ = 0;
    description_.clear();
  }

  /// 0 when the last step succeeded.
  [[nodiscard]] std::uint32_t number() const { return number_; }
  [[nodiscard]] const std::string& description() const { return description_; }

 private:
  bool rethrow_;
  std::uint32_t number_ = 0;
  std::string description_;
};

}  // namespace twk::base
