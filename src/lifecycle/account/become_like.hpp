#pragma once

#include <string>
#include <vector>

#include "directory/account_fields.hpp"

namespace twk::lifecycle {

/// What became of an account that was to be like another one.
struct LikeOutcome {
  std::vector<std::string> joined;  ///< names of groups
  std::vector<std::string> left;
  std::string moved_to;               ///< the distinguished name of the unit; empty for none
  std::string dn;                     ///< where the account is now; empty in a WinNT domain
  std::vector<std::string> failures;  ///< what the directory refused, with its words
};

/// Makes `user` a member of the groups of `like`, its primary one included, and moves it to the unit of
/// `like`. With `exactly` it also leaves the groups that `like` is not in, except its own primary group,
/// which stays the same. What is refused is reported, and the rest is done. Raises what reading the two
/// raises.
LikeOutcome become_like(const directory::AccountDomain& domain, const platform::ObjectPtr& user,
                        const platform::ObjectPtr& like, bool exactly);

}  // namespace twk::lifecycle
