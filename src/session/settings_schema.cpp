#include "session/settings_schema.hpp"

#include <algorithm>
#include <array>
#include <limits>

#include "base/text.hpp"
#include "session/settings.hpp"

namespace twk::session {
namespace {

constexpr std::int32_t kAnyNumber = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kMostSerial = 32767;
constexpr std::int32_t kMostPort = 65535;
constexpr std::int32_t kMostImportField = 99;

constexpr std::string_view kYesNo = "Yes|No";
constexpr std::string_view kTrueFalse = "True|False";

using Kind = Setting::Kind;

constexpr Setting text(std::string_view sub_key, std::string_view name, std::string_view initial,
                       std::string_view meaning) {
  return {sub_key, name, initial, meaning};
}
constexpr Setting secret(std::string_view sub_key, std::string_view name, std::string_view meaning) {
  Setting setting = text(sub_key, name, "", meaning);
  setting.secret = true;
  return setting;
}
/// Its reader accepts "Yes" and "No" only in exactly this spelling.
constexpr Setting yes_no(std::string_view sub_key, std::string_view name, std::string_view initial,
                         std::string_view meaning, std::string_view otherwise = "No") {
  return {sub_key, name, initial, meaning, Kind::kWords, kYesNo, otherwise};
}
constexpr Setting folded(std::string_view sub_key, std::string_view name, std::string_view initial,
                         std::string_view meaning, std::string_view words = kYesNo,
                         std::string_view otherwise = "No") {
  return {sub_key, name, initial, meaning, Kind::kFoldedWords, words, otherwise};
}
constexpr Setting number(std::string_view sub_key, std::string_view name, std::string_view initial,
                         std::string_view meaning, std::int32_t least, std::int32_t most) {
  return {sub_key, name, initial, meaning, Kind::kNumber, {}, {}, least, most};
}

constexpr std::array kSettings = {
    text(kSetup, "Domain", "", "The domain to work on; a name without a dot is an NT4-style one"),
    secret(kSetup, "Password",
           "The default password of new accounts, or PROMPT to be asked for each; readable text"),
    secret(kSetup, "FormattedPassword",
           "The format that a password is made of when UseFormattedPassword is on"),
    text(kSetup, "DataBasePath", "", "The folder of sites, templates and tables"),
    text(kSetup, "Profiles", "NTUser.dat", "The registry file of a profile, NTUser.man for mandatory ones"),
    text(kSetup, "BatchFileCreate", "", "The command after a creation"),
    text(kSetup, "BatchFileMove", "", "The command after a move"),
    text(kSetup, "BatchFileDelete", "", "The command after a deletion"),
    text(kSetup, "SetupID", "", "The format of account names, while UserFormat is 5 or not set"),
    text(kSetup, "AltSetupID", "", "The format of the account name when the first one is taken"),
    number(kSetup, "UserFormat", "3", "The preset of account names; 5 for the format in SetupID", 1, 5),
    text(kSetup, "OU", "", "Only this unit is shown, by its distinguished name"),
    yes_no(kSetup, "SUBOU", "Yes", "Units below the one in OU are shown, too", "Yes"),
    yes_no(kSetup, "CreateHidden", "No", "The command after a creation has no window and no output"),
    yes_no(kSetup, "MoveHidden", "No", "The command after a move has no window and no output"),
    yes_no(kSetup, "DeleteHidden", "No", "The command after a deletion has no window and no output"),
    yes_no(kSetup, "WaitNew", "No", "The end of the command after a creation is waited for"),
    yes_no(kSetup, "WaitMove", "No", "The end of the command after a move is waited for"),
    yes_no(kSetup, "WaitDelete", "No", "The end of the command after a deletion is waited for"),
    yes_no(kSetup, "RunHidden", "No", "As CreateHidden, of older versions"),
    text(kSetup, "AccountExpire", "", "When imported accounts end: a day, or %IMPORTn% for a column"),
    number(kSetup, "ImportGroupsStart", "", "The first column of an import that names groups; 0 for none", 0,
           kMostImportField),
    number(kSetup, "ImportGroupsFinish", "", "The last column of an import that names groups", 0,
           kMostImportField),
    number(kSetup, "IncNumber", "0", "The first serial number of the tags %n%, %nn% and %nnn%", 0,
           kMostSerial),
    folded(kPreferences, "UseFormattedPassword", "No",
           "Passwords are made of the format in FormattedPassword"),
    text(kPreferences, "Custom_FN", "", "The format of full names, while FullName is 4 or not set"),
    folded(kPreferences, "CNName", "Yes",
           "Accounts are called by the full name in the directory; No: by the logon name", kYesNo, "Yes"),
    folded(kPreferences, "CantChangePWD", "No", "New users cannot change their password"),
    folded(kPreferences, "PasswdNVRExpire", "No", "The password of new users never expires"),
    folded(kPreferences, "ProfileDeleteUsername", "No",
           "A profile is deleted from the folder that bears the user's name on"),
    number(kPreferences, "FullName", "1", "The preset of full names; 4 for the format in Custom_FN", 1, 4),
    yes_no(kPreferences, "ConfirmDeletes", "Yes", "A deletion asks first", "Yes"),
    yes_no(kPreferences, "AdminShares", "Yes", "Folders are reached by the shares of drives, as D$", "Yes"),
    yes_no(kPreferences, "ConfirmResets", "Yes", "A new password asks first", "Yes"),
    yes_no(kPreferences, "CheckAdminRights", "No",
           "Whether one is an administrator is looked for at the start"),
    yes_no(kPreferences, "AccountDisabled", "No", "New accounts are disabled"),
    yes_no(kPreferences, "ForcePasswdChange", "No", "New users must change their password at the next logon"),
    yes_no(kPreferences, "SkipPrompt", "No", "Rows that ask are passed over in an import"),
    yes_no(kPreferences, "StopOnWarning", "No", "An import halts on warnings, and so on errors"),
    yes_no(kPreferences, "StopOnError", "No", "An import halts on errors"),
    yes_no(kPreferences, "Sorted", "No", "The tree is sorted"),
    yes_no(kPreferences, "DisplayName", "No", "The tree shows display names"),
    folded(kPreferences, "LogonHoursZone", "UTC+12", "Whose hours the logon hours show", "UTC+12|Workstation",
           "UTC+12"),
    yes_no(kUM, "CreateDirs", "Yes", "A creation makes the directories"),
    yes_no(kUM, "CreateShares", "Yes", "A creation makes the shares"),
    yes_no(kUM, "SetPermissions", "Yes", "A creation sets the permissions of the directories"),
    yes_no(kUM, "UserAccount", "Yes", "A creation makes the account"),
    yes_no(kUM, "MailAccount", "Yes", "A creation makes the mailbox"),
    yes_no(kUM, "RunCmd", "Yes", "A creation runs its command"),
    number(kMail, "LDAP_PORT", "", "The port of an Exchange 5.5 server", 1, kMostPort),
    text(kMail, "Admin_Account", "", "Who logs on to an Exchange 5.5 server"),
    secret(kMail, "Mail_Password", "The password of Admin_Account; readable text"),
    folded(kMail, "MailCredentials", "True",
           "The Exchange 5.5 server is asked as who one is; False: as Admin_Account", kTrueFalse, "True"),
    number(kADO, "PageSize", "1000", "How many entries a page of a search has", 1, kAnyNumber),
    number(kADO, "UserLimit", "99999", "How many users of one unit are shown", 1, kAnyNumber),
    folded(kADO, "SkipUsers", "False", "Users are not loaded", kTrueFalse, "False"),
    folded(kADO, "SkipGroups", "False", "Groups are not loaded", kTrueFalse, "False"),
    folded(kADO, "UseCacheFiles", "True", "Searches keep their rows in files", kTrueFalse, "False"),
    folded(kADO, "Search", "GC://", "Where users and groups are searched", "LDAP://|GC://"),
    folded(kADO, "Asynchronous", "True", "Searches run beside the window", kTrueFalse, "True"),
    folded(kADO, "LoadAllUsers", "False", "All users are loaded into the tree at the start", kTrueFalse,
           "False"),
    folded(kADO, "TemplateGroupsOnly", "False", "Only the groups of templates are loaded", kTrueFalse,
           "False"),
    folded(kADO, "Sort", "True", "The server sorts what it finds", kTrueFalse, "False"),
    folded(kDU, "TakeOwnership", "No", "A deletion takes the ownership of what it may not delete"),
    folded(kDU, "DeleteShares", "No", "A deletion takes the shares away"),
    folded(kDU, "DeleteData", "No", "A deletion takes the directories away"),
    folded(kDU, "DeleteMail", "No", "A deletion takes the mailbox away"),
    folded(kDU, "DeleteNT", "No", "A deletion takes the account away"),
    folded(kDU, "Runcmd", "No", "A deletion runs its command"),
    text(kCustom, "Menu", "", "The first command of the tree's menu, as it is called there"),
    text(kCustom, "Script", "", "The first command of the tree's menu"),
    folded(kCustom, "RUNHIDDEN", "No", "The first command has no window and no output"),
    text(kCustom, "Menu1", "", "The second command of the tree's menu, as it is called there"),
    text(kCustom, "Script1", "", "The second command of the tree's menu"),
    folded(kCustom, "RUNHIDDEN1", "No", "The second command has no window and no output"),
    text(kCustom, "Custom1", "", "What the first attribute of one's own is called"),
    text(kCustom, "Custom2", "", "What the second one is called"),
    text(kCustom, "Custom3", "", "What the third one is called"),
    text(kCustom, "Custom4", "", "What the fourth one is called"),
    text(kCustom, "Property1", "", "The first attribute of one's own on the user details tab"),
    text(kCustom, "Property2", "", "The second one"),
    text(kCustom, "Property3", "", "The third one"),
    text(kCustom, "Property4", "", "The fourth one"),
    text(kLive, "Server", "", "The controller to use; found by DNS while it is not set"),
    number(kLive, "Port", "", "The port of the directory there", 1, kMostPort),
    folded(kLive, "Method", "ticket", "How to log on", "ticket|ldaps|starttls"),
    text(kLive, "User", "", "Who logs on"),
    text(kLive, "CAFile", "",
         "The authorities that are trusted, as a PEM file; the system's while it is not set"),
    Setting{kVersion, "DBVersion", "", "The generation of the database's files", Kind::kGeneration}};

bool is_word(const Setting& setting, std::string_view word, std::string_view value) {
  return setting.kind == Kind::kWords ? word == value : base::equals_fold(word, base::trim(value));
}

bool takes_word(const Setting& setting, std::string_view value) {
  const std::vector<std::string> words = base::split(setting.words, '|');
  return std::any_of(words.begin(), words.end(),
                     [&](const std::string& word) { return is_word(setting, word, value); });
}

bool takes(const Setting& setting, std::string_view value) {
  switch (setting.kind) {
    case Kind::kText:
      return true;
    case Kind::kWords:
    case Kind::kFoldedWords:
      return takes_word(setting, value);
    case Kind::kNumber: {
      const auto entered = base::to_number(value);
      return entered && *entered >= setting.least && *entered <= setting.most;
    }
    case Kind::kGeneration:
      return value.starts_with('1') || value == "2.0" || value == "2.1" || value == "2.2" || value == "2.3" ||
             value == kDataVersion;
  }
  return false;
}

}  // namespace

std::string Setting::full_name() const {
  return std::string(sub_key) + "\\" + std::string(name);
}

std::string Setting::taken() const {
  if (kind == Kind::kText)
    return "a text";
  if (kind == Kind::kGeneration)
    return "1, 2.0, 2.1, 2.2, 2.3 or " + std::string(kDataVersion);
  if (kind == Kind::kNumber) {
    const std::string from = "a number from " + base::to_text(least);
    return most == kAnyNumber ? from + " up" : from + " to " + base::to_text(most);
  }
  std::string listed(words);
  for (std::size_t bar = listed.rfind('|'); bar != base::npos; bar = listed.rfind('|'))
    listed.replace(bar, 1, listed.find(" or ") == base::npos ? " or " : ", ");
  return listed;
}

std::span<const Setting> all_settings() {
  return kSettings;
}

const Setting* find_setting(std::string_view sub_key, std::string_view name) {
  const auto* const found = std::find_if(kSettings.begin(), kSettings.end(), [&](const Setting& setting) {
    return base::equals_fold(setting.sub_key, sub_key) && base::equals_fold(setting.name, name);
  });
  return found == kSettings.end() ? nullptr : found;
}

std::string setting_refusal(const Setting& setting, std::string_view value) {
  return value.empty() || takes(setting, value) ? std::string() : setting.taken();
}

bool is_on(const Setting& setting, const std::optional<std::string>& stored) {
  const std::string_view on = setting.words.substr(0, setting.words.find('|'));
  const std::string_view value = !stored                        ? setting.initial
                                 : takes_word(setting, *stored) ? std::string_view(*stored)
                                                                : setting.otherwise;
  return is_word(setting, on, value);
}

bool read_switch(Session& session, std::string_view sub_key, std::string_view name) {
  std::optional<std::string> stored = read_setting(session, sub_key, name);
  if (!session.LastRegResult)
    stored.reset();
  return is_on(*find_setting(sub_key, name), stored);
}

}  // namespace twk::session
