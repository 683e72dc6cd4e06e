#pragma once

#include <string>
#include <string_view>

#include "groups/group_object.hpp"

namespace twk::groups {

/// What became of one user of a copy.
struct CopiedUser {
  std::string path;
  std::string text;        ///< "CN=jo Added user."
  std::string_view light;  ///< GREEN for one who was added, YELLOW for a member already, RED for a refusal
};

/// What a copy reports while it works.
class CopyView {
 public:
  CopyView() = default;
  CopyView(const CopyView&) = delete;
  CopyView& operator=(const CopyView&) = delete;
  virtual ~CopyView() = default;

  virtual void copied(const CopiedUser& user) = 0;
  /// From 0 to 100.
  virtual void progress(int percent) = 0;
  /// Asked between requests, each of which may add hundreds of users: true ends the copy.
  virtual bool stopped() = 0;
};

struct CopyOutcome {
  bool complete = false;   ///< the walk went through to its end or to a stop
  std::string_view light;  ///< the worst of all users; at least YELLOW when it was stopped
  std::string text;        ///< "3 of 3 users: 2 added, …", or what ended it
};

/// Asks whether to copy.
bool confirm_copy(session::Session& session, const GroupRow& from, const GroupRow& to);

/// Adds each user among the source's members to the destination. Groups and contacts are skipped, and so are
/// users whose primary group is the source. A group that cannot be read ends it.
CopyOutcome copy_group(session::Session& session, const GroupRow& from, const GroupRow& to, CopyView& view);

}  // namespace twk::groups
