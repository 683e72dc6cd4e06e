#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "base/errors.hpp"
#include "platform/directory.hpp"
#include "session/hourglass.hpp"

namespace twk::controls {
struct Label;
struct TreeNode;
}  // namespace twk::controls
namespace twk::session {
struct Session;
}

namespace twk::creation {

/// The request for one creation, from the New User tab or from one line of an import.
struct NewUserRequest {
  std::string TemplateName;  ///< as in the list, padded
  std::string SiteName;
  std::string FirstName;
  std::string MiddleName;
  std::string LastName;
  std::string UserId;            ///< may be blank: it is then generated
  bool CopyUser = false;         ///< take the groups from the selected user
  std::string SelectedNodeKind;  ///< "OU", "USER", …
  std::string SelectedNodeKey;
  std::string SelectedNodeText;
  std::string ParentNodeKey;
};

/// Where directories are made and what the account says about them.
struct ResolvedPaths {
  std::string ProfileLocalDir;  ///< as the server sees it
  std::string ProfileShareDir;  ///< the network path that reaches it
  bool WantProfileDir = false;
  std::string HomeLocalDir;
  std::string HomeShareDir;
  bool WantHomeDir = false;
  std::string ProfileText;  ///< stored on the account
  std::string HomeDirText;
};

/// A row of the directory table as written: an attribute and its expanded value.
struct DirectoryProperty {
  std::string attribute;
  std::string value;
  bool is_written = false;
};

enum class CreationStage { kNone = 0, kAccount = 1, kProfileDirectory = 2, kCommand = 3 };

/// One run of the creation: its input and what its stages pass to each other.
struct CreationRun {
  explicit CreationRun(session::Session& owner);

  session::Session& session;
  NewUserRequest request;
  std::string UserId;  ///< in a WinNT domain also the account's name
  std::string CnName;  ///< with RFC 4514 escapes in Active Directory
  std::string SamName;
  bool CommaInName = false;
  std::string Password;
  std::string FullName;
  std::string DescriptionText;
  std::string ExpiryText;
  std::string tree_name;  ///< from a "displayName" row
  std::string PdcName;    ///< server for look-ups; empty for the default controller
  ResolvedPaths paths;
  std::string ImportGroupsStart = "0";
  std::string ImportGroupsFinish = "0";
  std::string SummaryRow;
  std::int16_t RunWarning = 1;  ///< 2 after any warning
  CreationStage stage = CreationStage::kNone;
  std::set<std::string> joined_groups;              ///< their paths, in upper case
  std::vector<DirectoryProperty> first_properties;  ///< rows written with the new account
  platform::ObjectPtr CurrentUserObject;
  platform::ObjectPtr AdContainer;
  controls::TreeNode* CreatedUserNode = nullptr;
  std::optional<session::Hourglass> hourglass;  ///< from the first step to the end of the run
  bool traps_off = false;  ///< with "/DEBUG", from the point where a failure stops the program
};

/// How a part of the run ended.
enum class Step {
  kGoOn,
  kEnd,   ///< the run is over
  kAgain  ///< a new run begins with another account name
};

/// A line of "Log.txt".
void log(CreationRun& run, std::string_view text);
/// A line, a beep, and the run ends "YELLOW".
void warn(CreationRun& run, std::string_view text);
/// The same with the cause.
void warn(CreationRun& run, std::string_view text, std::string_view why);
/// The caption under the progress bar.
void show_step(CreationRun& run, std::string_view caption);
void set_progress(CreationRun& run, int value);
/// A light of the New User tab; `complete` is "Completed" in blue.
void paint(controls::Label& light, std::int32_t colour, const char* caption);
void complete(controls::Label& light);
/// The key of the container that gets the account: the selected OU, or with `Copy_User` the selected user's
/// container.
const std::string& container_key(const CreationRun& run);
/// Variables, name tags, "%Domain%" and import fields of a directory or mailbox row.
std::string expand_row_value(CreationRun& run, std::string_view value);

}  // namespace twk::creation
