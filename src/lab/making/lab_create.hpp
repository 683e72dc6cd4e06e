#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "lab/making/exchange_entries.hpp"
#include "lab/shares/lab_config.hpp"

namespace twk::lab {

struct FileServerPlan {
  std::string name = "FS1";
  std::vector<std::string> drives = {"C", "D"};  ///< one letter each
};

/// What a new lab is to hold.
struct LabPlan {
  std::string domain = "twk.test";  ///< not used by a lab of kind nt
  std::string netbios;              ///< empty: the first label of `domain` in capitals
  DomainKind kind = DomainKind::kNative;
  std::size_t users = 25;
  std::size_t groups = 8;
  std::size_t ous = 6;        ///< none in a lab of kind nt, which is flat
  std::uint64_t seed = 1;     ///< equal plans with equal seeds make equal directories
  std::string administrator;  ///< a person to put into Domain Admins; empty: the person running the program
  std::vector<FileServerPlan> servers = {FileServerPlan{}};
  std::optional<ExchangePlan> exchange = ExchangePlan{};  ///< none: a lab without mail
};

/// What a new lab holds.
struct LabContents {
  std::size_t users = 0;
  std::size_t groups = 0;
  std::size_t ous = 0;
};

/// Makes a lab in a folder that does not exist or is empty: the domain with its built-in accounts and its
/// controller, units, people and groups by invented names, the file servers, whose last drives get the
/// folders "Users" and "Profiles", the mail systems, settings and the database directory. Only the owner
/// may read it (0600, 0700).
///
/// "lab.conf" is written last, so that a half-made folder is not taken for a lab. Raises 75 for a
/// folder that is not empty, 5 and kConstraint for names in the plan that cannot be used, and the runtime's
/// file numbers. An administrator whose name cannot be an account name is left out.
LabContents create_lab(const std::filesystem::path& folder, const LabPlan& plan);

/// Adds a file server, with its drives, to a lab that exists; its folders "Users" and "Profiles" are not
/// made. Raises kConstraint for names that cannot be used, 58 for a server that exists.
void add_file_server(const std::filesystem::path& folder, const FileServerPlan& server);

}  // namespace twk::lab
