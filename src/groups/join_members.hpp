#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>

#include "base/errors.hpp"
#include "platform/directory.hpp"

namespace twk::groups {

/// The members that one request names, where a directory takes many.
constexpr std::size_t kMostMembersAtOnce = 1000;

/// Who follows many accounts into a group, or out of it.
struct JoinWatch {
  /// What became of one of them, in their order: the failure that `Add` or `Remove` raised, or none.
  std::function<void(std::size_t index, const base::Trap& failure)> told;
  /// Asked before each request; false leaves out the rest.
  std::function<bool()> goes_on;
};

/// Makes accounts, given by their paths, members of a group: hundreds with one request, where the directory
/// can. A request that is refused is halved until it is clear who was meant, so that each is told what a
/// single `Add` would have told.
void join_members(platform::DirectoryObject& group, std::span<const std::string> paths,
                  const JoinWatch& watch);
/// The same for accounts that leave it.
void leave_members(platform::DirectoryObject& group, std::span<const std::string> paths,
                   const JoinWatch& watch);

}  // namespace twk::groups
