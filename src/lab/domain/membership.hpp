#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "lab/domain/lab_domain.hpp"

/// Groups and their members. A membership by primary group is an attribute of the user, every other one is a
/// link.
namespace twk::lab {

/// Acts at once. Raises kObjectExists for a member, also one by primary group; kUnwilling for a member that
/// is not an account and for a group in itself; kNoSuchObject when either is gone.
/// All of them or none.
void add_members(LabDomain& domain, const std::string& group_dn, const std::vector<std::string>& member_dns);
/// Acts at once. Raises kMemberNotInGroup also for the primary group, which cannot be left this way. All of
/// them or none.
void remove_members(LabDomain& domain, const std::string& group_dn,
                    const std::vector<std::string>& member_dns);
/// By link or by primary group.
bool is_member(const LabDomain& domain, const std::string& group_dn, const std::string& member_dn);

/// The group that is the user's primary one; none when the user has none or it is gone.
const Entry* primary_group(const LabDomain& domain, const Entry& user);
/// The names of the users whose primary group this is.
std::vector<std::string> members_by_primary_group(const LabDomain& domain, const Entry& group);

/// What else a change of "primaryGroupID" does: the old group becomes an ordinary one of the user, the
/// link to the new one goes, since the attribute replaces it. Construction raises kUnwilling unless the
/// user is a direct member of the new group or it is the primary one already.
class PrimaryGroupChange {
 public:
  PrimaryGroupChange(LabDomain& domain, const Entry& user, std::int32_t new_rid);

  /// Before the attribute is written: the user is then a member of the old group in either case.
  void begin();
  /// When it could not be written.
  void undo();
  /// After it was written.
  void finish();

 private:
  LabDomain& domain_;
  std::string user_dn_;
  std::string old_group_dn_;  ///< empty when there is none to keep
  std::string new_group_dn_;  ///< empty when nothing changes
};

}  // namespace twk::lab
