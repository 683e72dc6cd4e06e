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
    text(kSetup, "Domain", "", "The domain to manage; a name without a dot means an NT4-style domain"),
    secret(kSetup, "Password",
           "The default password of new accounts, stored as readable text; PROMPT asks for each"),
    secret(kSetup, "FormattedPassword", "The format of new passwords while UseFormattedPassword is Yes"),
    text(kSetup, "DataBasePath", "", "The folder of the database: sites, templates and tables"),
    text(kSetup, "Profiles", "NTUser.dat", "The registry file in a profile; stored only, without effect"),
    text(kSetup, "BatchFileCreate", "", "The command to run after a creation"),
    text(kSetup, "BatchFileMove", "", "The command to run after a move"),
    text(kSetup, "BatchFileDelete", "", "The command to run after a deletion"),
    text(kSetup, "SetupID", "", "The format of account names while UserFormat is 5 or not set"),
    text(kSetup, "AltSetupID", "", "The format of the account name if the first name is taken"),
    number(kSetup, "UserFormat", "3", "The format of account names: a preset, or 5 for SetupID", 1, 5),
    text(kSetup, "OU", "", "Distinguished name of the only unit to show"),
    yes_no(kSetup, "SUBOU", "Yes", "Units below the one in OU are also shown", "Yes"),
    yes_no(kSetup, "CreateHidden", "No", "The command after a creation has no window and no output"),
    yes_no(kSetup, "MoveHidden", "No", "The command after a move has no window and no output"),
    yes_no(kSetup, "DeleteHidden", "No", "The command after a deletion has no window and no output"),
    yes_no(kSetup, "WaitNew", "No", "A creation waits for the end of its command"),
    yes_no(kSetup, "WaitMove", "No", "A move waits for the end of its command"),
    yes_no(kSetup, "WaitDelete", "No", "A deletion waits for the end of its command"),
    yes_no(kSetup, "RunHidden", "No", "Written with CreateHidden, never read"),
    text(kSetup, "AccountExpire", "", "When imported accounts expire: a day, or %IMPORTn% for a column"),
    number(kSetup, "ImportGroupsStart", "", "The first column of an import that may contain groups", 0,
           kMostImportField),
    number(kSetup, "ImportGroupsFinish", "",
           "The last column of an import that may contain groups; 0 for none", 0, kMostImportField),
    number(kSetup, "IncNumber", "0", "The first serial number for the tags %n%, %nn% and %nnn%", 0,
           kMostSerial),
    folded(kPreferences, "UseFormattedPassword", "No", "New passwords use the format in FormattedPassword"),
    text(kPreferences, "Custom_FN", "", "The format of full names while FullName is 4 or not set"),
    folded(kPreferences, "CNName", "Yes", "Directory entries are named by full name; No: by logon name",
           kYesNo, "Yes"),
    folded(kPreferences, "CantChangePWD", "No", "New users cannot change their password"),
    folded(kPreferences, "PasswdNVRExpire", "No", "The password of new users never expires"),
    folded(kPreferences, "ProfileDeleteUsername", "No",
           "NT4-style domain: a profile means its folder named after the user"),
    number(kPreferences, "FullName", "1", "The format of full names: a preset, or 4 for Custom_FN", 1, 4),
    yes_no(kPreferences, "ConfirmDeletes", "Yes", "Ask before a deletion", "Yes"),
    yes_no(kPreferences, "AdminShares", "Yes",
           "Moves and deletions reach folders through administrative shares such as D$", "Yes"),
    yes_no(kPreferences, "ConfirmResets", "Yes", "Ask before a password reset", "Yes"),
    yes_no(kPreferences, "CheckAdminRights", "No", "Stored and shown only; nothing is checked"),
    yes_no(kPreferences, "AccountDisabled", "No", "New accounts are disabled"),
    yes_no(kPreferences, "ForcePasswdChange", "No", "New users must change their password at the next logon"),
    yes_no(kPreferences, "SkipPrompt", "No", "An import skips rows that ask for a value"),
    yes_no(kPreferences, "StopOnWarning", "No", "An import halts on warnings and errors"),
    yes_no(kPreferences, "StopOnError", "No", "An import halts on errors"),
    yes_no(kPreferences, "Sorted", "No", "The units in the tree are sorted"),
    yes_no(kPreferences, "DisplayName", "No", "The tree shows users by display name; No: by common name"),
    folded(kPreferences, "LogonHoursZone", "UTC+12", "The time zone in which logon hours are shown",
           "UTC+12|Workstation", "UTC+12"),
    yes_no(kUM, "CreateDirs", "Yes", "A creation makes directories"),
    yes_no(kUM, "CreateShares", "Yes", "A creation makes shares"),
    yes_no(kUM, "SetPermissions", "Yes", "A creation sets the permissions of directories"),
    yes_no(kUM, "UserAccount", "Yes", "A creation makes the account"),
    yes_no(kUM, "MailAccount", "Yes", "A creation makes the mailbox"),
    yes_no(kUM, "RunCmd", "Yes", "A creation runs its command"),
    number(kMail, "LDAP_PORT", "", "The port of an Exchange 5.5 server", 1, kMostPort),
    text(kMail, "Admin_Account", "", "The account for the logon to an Exchange 5.5 server"),
    secret(kMail, "Mail_Password", "The password of Admin_Account, stored as readable text"),
    folded(kMail, "MailCredentials", "True",
           "Use the current logon for an Exchange 5.5 server; False: Admin_Account", kTrueFalse, "True"),
    number(kADO, "PageSize", "1000", "Entries in a page of a search", 1, kAnyNumber),
    number(kADO, "UserLimit", "99999", "Users shown of one unit at most", 1, kAnyNumber),
    folded(kADO, "SkipUsers", "False", "The load of the domain leaves out users", kTrueFalse, "False"),
    folded(kADO, "SkipGroups", "False", "The load of the domain leaves out groups", kTrueFalse, "False"),
    folded(kADO, "UseCacheFiles", "True", "Stored only, without effect", kTrueFalse, "False"),
    folded(kADO, "Search", "GC://", "What the load searches: the domain, or the global catalog (GC://)",
           "LDAP://|GC://"),
    folded(kADO, "Asynchronous", "True", "Written to the log of the load only, without effect", kTrueFalse,
           "True"),
    folded(kADO, "LoadAllUsers", "False",
           "The load reads all users into the tree; False: each unit when opened", kTrueFalse, "False"),
    folded(kADO, "TemplateGroupsOnly", "False", "Groups are loaded for the Template tab only", kTrueFalse,
           "False"),
    folded(kADO, "Sort", "True", "Search results are sorted by name", kTrueFalse, "False"),
    folded(kDU, "TakeOwnership", "No", "A deletion takes ownership of directories first"),
    folded(kDU, "DeleteShares", "No", "A deletion removes the shares"),
    folded(kDU, "DeleteData", "No", "A deletion removes the directories"),
    folded(kDU, "DeleteMail", "No", "A deletion removes the mailbox"),
    folded(kDU, "DeleteNT", "No", "A deletion removes the account"),
    folded(kDU, "Runcmd", "No", "A deletion runs its command"),
    text(kCustom, "Menu", "", "The caption of the first custom command in the tree's menu"),
    text(kCustom, "Script", "", "The first custom command; shown once Menu, Script and RUNHIDDEN are set"),
    folded(kCustom, "RUNHIDDEN", "No", "The first custom command has no window and no output"),
    text(kCustom, "Menu1", "", "The caption of the second custom command in the tree's menu"),
    text(kCustom, "Script1", "",
         "The second custom command; shown once Menu1, Script1 and RUNHIDDEN1 are set"),
    folded(kCustom, "RUNHIDDEN1", "No", "The second custom command has no window and no output"),
    text(kCustom, "Custom1", "", "The caption of the first custom attribute"),
    text(kCustom, "Custom2", "", "The caption of the second custom attribute"),
    text(kCustom, "Custom3", "", "The caption of the third custom attribute"),
    text(kCustom, "Custom4", "", "The caption of the fourth custom attribute"),
    text(kCustom, "Property1", "", "The first custom attribute on the user details tab"),
    text(kCustom, "Property2", "", "The second custom attribute"),
    text(kCustom, "Property3", "", "The third custom attribute"),
    text(kCustom, "Property4", "", "The fourth custom attribute"),
    text(kLive, "Server", "", "The controller to use; without it, DNS names one"),
    number(kLive, "Port", "", "The controller's LDAP port", 1, kMostPort),
    folded(kLive, "Method", "ticket", "How to log on", "ticket|ldaps|starttls"),
    text(kLive, "User", "", "The user who logs on"),
    text(kLive, "CAFile", "", "The trusted authorities, a PEM file; without it, the system's"),
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
