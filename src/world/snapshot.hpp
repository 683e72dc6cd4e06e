#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>

#include "world/real_domains.hpp"

namespace twk::world {

/// The contents of a copy of a domain.
struct Snapshot {
  std::size_t users = 0;
  std::size_t groups = 0;
  std::size_t ous = 0;
  std::size_t entries = 0;  ///< including those above, containers and contacts
};

/// Copies the directory of a real domain into a new lab in a new or empty folder: the domain, its units and
/// containers, users, contacts and groups with the attributes that this program knows, the domain's names,
/// its controller's and its rules for passwords. No password, key or picture is read, and computers and
/// everything below CN=System are left out. The file servers that paths of homes and profiles name by their
/// short names exist, empty; mail systems and settings are those of a new lab.
///
/// `progress` gets the number of entries read so far, and says whether to continue; None when it does not.
/// Raises what the directory and `lab::create_lab` raise; no lab is left behind then.
std::optional<Snapshot> take_snapshot(RealDomain& domain, const std::filesystem::path& folder,
                                      const std::function<bool(std::size_t entries)>& progress);

}  // namespace twk::world
