#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>

#include "live/domain/live_domain.hpp"

namespace twk::world {

/// What a copy of a domain holds.
struct Snapshot {
  std::size_t users = 0;
  std::size_t groups = 0;
  std::size_t ous = 0;
  std::size_t entries = 0;  ///< with those above, containers and contacts
};

/// Copies the directory of a real domain into a new lab in a new or empty folder: the domain, its units and
/// containers, users, contacts and groups with the attributes that this program knows, the domain's names,
/// its controller's and its rules for passwords. No password, key or picture is asked for, and computers and
/// what stands below CN=System stay out. The file servers that paths of homes and profiles
/// name by their short names are
/// there, empty; mail systems and settings are those of a new lab.
///
/// `progress` is told the number of entries that were read, and says whether to go on; None when it does not.
/// Raises what the directory and `lab::create_lab` raise; no lab is left behind then.
std::optional<Snapshot> take_snapshot(live::LiveDomain& domain, const std::filesystem::path& folder,
                                      const std::function<bool(std::size_t entries)>& progress);

}  // namespace twk::world
