#pragma once

#include <string>

namespace twk::live {

/// Where the workstation keeps a person's files for work on real domains:
///
///     <config>/settings/    the registry
///     <data>/db/            the database directory, unless the settings name another one
struct Folders {
  std::string config;
  std::string data;
};
/// The person's own, where the XDG base directories are.
Folders user_folders();

/// The registry of the workstation, from which the settings of a connection are read before there is one.
std::string registry_folder(const Folders& folders);

}  // namespace twk::live
