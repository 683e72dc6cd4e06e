#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/errors.hpp"
#include "creation/creation_view.hpp"
#include "creation/new_user_request.hpp"
#include "platform/directory.hpp"
#include "records/records.hpp"

namespace twk::session {
struct Session;
}

namespace twk::creation {

/// What the template and the site of a creation hold, without the blanks that pad it.
struct TemplateValues {
  std::string ProfileDir;  ///< where directories are made, as the server sees it
  std::string HomeDir;
  std::string ProfilePath;  ///< what the account gets
  std::string HomePath;
  std::string ProfileShare;
  std::string HomeShare;
  std::string ProfileSharePoint;
  std::string HomeSharePoint;
  std::string LogonScript;
  std::string HomeDrive;
  std::string PrimaryGroup;
};
struct SiteValues {
  std::string server;
  std::string mail_server;
  std::string mail_site;
  std::string mail_organization;
  std::string mail_store;
  bool exchange_2000 = false;
};
TemplateValues values_of(const records::TemplateRecord& record);
SiteValues values_of(const records::SiteRecord& record);

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
  CreationRun(session::Session& owner, NewUserRequest asked, CreationView& watcher);

  session::Session& session;
  NewUserRequest request;
  CreationView& view;
  platform::WriteBatch batch;    ///< up to the command that ends the run
  TemplateValues user_template;  ///< from the check of the request on
  SiteValues site;
  std::string UserId;  ///< in a WinNT domain also the account's name
  std::string CnName;  ///< with RFC 4514 escapes in Active Directory
  std::string SamName;
  bool CommaInName = false;
  std::string Password;
  std::string FullName;
  std::string DescriptionText;
  std::string ExpiryText;
  std::string tree_name;       ///< from a "displayName" row
  std::string stored_name;     ///< the full name that was written to the account, as far as that is known
  std::string principal_name;  ///< from a row; only of an account that is foreseen
  std::string PdcName;         ///< server for look-ups; empty for the default controller
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
  std::string message;       ///< why a run was refused
  bool name_taken = false;   ///< it was refused because the name is in use
  bool is_unsure = false;    ///< no server told whether the account was made
  bool has_account = false;  ///< it was made by this run
  bool is_known = false;     ///< it ended because the person has an account
  bool traps_off = false;    ///< with "/DEBUG", from the point on where a failure stops the program
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
/// The key of the container that gets the account: the selected OU, or with `Copy_User` what is above the
/// selected user.
const std::string& container_key(const CreationRun& run);
/// A container or group, by its path; an import binds each once.
platform::ObjectPtr bind_once(CreationRun& run, const std::string& path);
/// Variables, name tags, "%Domain%", "%Account%" (the account's name that was found at last) and import
/// fields of a directory or mailbox row.
std::string expand_row_value(CreationRun& run, std::string_view value);

}  // namespace twk::creation
