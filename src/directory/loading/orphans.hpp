#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace twk::session {
struct Session;
}

namespace twk::directory {

/// OUs that were read before their parent. Slots 1 to 100; when all are taken the last is used again.
class OrphanTable {
 public:
  void store(std::string_view distinguished_name, std::string_view name);
  /// Adds to the tree what can be added, in passes, since one orphan may wait for another.
  void attach(session::Session& session);

 private:
  struct Orphan {
    std::string distinguished_name;
    std::string name;
  };
  static constexpr std::size_t kLastSlot = 100;
  static constexpr int kMostPasses = 20;

  /// The entries that found no parent in one pass.
  int attach_once(session::Session& session, std::size_t last);

  std::array<Orphan, kLastSlot + 1> orphans_;
  std::size_t next_ = 1;
  std::size_t last_ = 0;  ///< the last slot used
};

}  // namespace twk::directory
