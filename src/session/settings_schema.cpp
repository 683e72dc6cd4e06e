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

enum class Kind {
  kText,
  kWords,        ///< one of the words, letter by letter
  kFoldedWords,  ///< in any case
  kNumber,
  kVersion
};

struct Rule {
  std::string_view sub_key;
  std::string_view name;
  Kind kind = Kind::kText;
  std::string_view words = {};  ///< with "|" between
  std::int32_t least = 0;
  std::int32_t most = 0;
};

constexpr std::string_view kYesNo = "Yes|No";
constexpr std::string_view kTrueFalse = "True|False";

constexpr Rule text(std::string_view sub_key, std::string_view name) {
  return {sub_key, name};
}
/// Its reader knows "Yes" and "No" as they are spelled here alone.
constexpr Rule yes_no(std::string_view sub_key, std::string_view name) {
  return {sub_key, name, Kind::kWords, kYesNo};
}
constexpr Rule folded(std::string_view sub_key, std::string_view name, std::string_view words = kYesNo) {
  return {sub_key, name, Kind::kFoldedWords, words};
}
constexpr Rule number(std::string_view sub_key, std::string_view name, std::int32_t least,
                      std::int32_t most) {
  return {sub_key, name, Kind::kNumber, {}, least, most};
}

constexpr std::array kRules = {text(kSetup, "Domain"),
                               text(kSetup, "Password"),
                               text(kSetup, "FormattedPassword"),
                               text(kSetup, "DataBasePath"),
                               text(kSetup, "Profiles"),
                               text(kSetup, "BatchFileCreate"),
                               text(kSetup, "BatchFileMove"),
                               text(kSetup, "BatchFileDelete"),
                               text(kSetup, "SetupID"),
                               text(kSetup, "AltSetupID"),
                               number(kSetup, "UserFormat", 1, 5),
                               text(kSetup, "OU"),
                               yes_no(kSetup, "SUBOU"),
                               yes_no(kSetup, "CreateHidden"),
                               yes_no(kSetup, "MoveHidden"),
                               yes_no(kSetup, "DeleteHidden"),
                               yes_no(kSetup, "WaitNew"),
                               yes_no(kSetup, "WaitMove"),
                               yes_no(kSetup, "WaitDelete"),
                               yes_no(kSetup, "RunHidden"),
                               text(kSetup, "AccountExpire"),
                               number(kSetup, "ImportGroupsStart", 0, kMostImportField),
                               number(kSetup, "ImportGroupsFinish", 0, kMostImportField),
                               number(kSetup, "IncNumber", 0, kMostSerial),
                               folded(kPreferences, "UseFormattedPassword"),
                               text(kPreferences, "Custom_FN"),
                               folded(kPreferences, "CNName"),
                               folded(kPreferences, "CantChangePWD"),
                               folded(kPreferences, "PasswdNVRExpire"),
                               folded(kPreferences, "ProfileDeleteUsername"),
                               number(kPreferences, "FullName", 1, 4),
                               yes_no(kPreferences, "ConfirmDeletes"),
                               yes_no(kPreferences, "AdminShares"),
                               yes_no(kPreferences, "ConfirmResets"),
                               yes_no(kPreferences, "CheckAdminRights"),
                               yes_no(kPreferences, "AccountDisabled"),
                               yes_no(kPreferences, "ForcePasswdChange"),
                               yes_no(kPreferences, "SkipPrompt"),
                               yes_no(kPreferences, "StopOnWarning"),
                               yes_no(kPreferences, "StopOnError"),
                               yes_no(kPreferences, "Sorted"),
                               yes_no(kPreferences, "DisplayName"),
                               folded(kPreferences, "LogonHoursZone", "UTC+12|Workstation"),
                               yes_no(kUM, "CreateDirs"),
                               yes_no(kUM, "CreateShares"),
                               yes_no(kUM, "SetPermissions"),
                               yes_no(kUM, "UserAccount"),
                               yes_no(kUM, "MailAccount"),
                               yes_no(kUM, "RunCmd"),
                               number(kMail, "LDAP_PORT", 1, kMostPort),
                               text(kMail, "Admin_Account"),
                               text(kMail, "Mail_Password"),
                               folded(kMail, "MailCredentials", kTrueFalse),
                               number(kADO, "PageSize", 1, kAnyNumber),
                               number(kADO, "UserLimit", 1, kAnyNumber),
                               folded(kADO, "SkipUsers", kTrueFalse),
                               folded(kADO, "SkipGroups", kTrueFalse),
                               folded(kADO, "UseCacheFiles", kTrueFalse),
                               folded(kADO, "Search", "LDAP://|GC://"),
                               folded(kADO, "Asynchronous", kTrueFalse),
                               folded(kADO, "LoadAllUsers", kTrueFalse),
                               folded(kADO, "TemplateGroupsOnly", kTrueFalse),
                               folded(kADO, "Sort", kTrueFalse),
                               folded(kDU, "TakeOwnership"),
                               folded(kDU, "DeleteShares"),
                               folded(kDU, "DeleteData"),
                               folded(kDU, "DeleteMail"),
                               folded(kDU, "DeleteNT"),
                               folded(kDU, "Runcmd"),
                               text(kCustom, "Menu"),
                               text(kCustom, "Script"),
                               folded(kCustom, "RUNHIDDEN"),
                               text(kCustom, "Menu1"),
                               text(kCustom, "Script1"),
                               folded(kCustom, "RUNHIDDEN1"),
                               text(kCustom, "Custom1"),
                               text(kCustom, "Custom2"),
                               text(kCustom, "Custom3"),
                               text(kCustom, "Custom4"),
                               text(kCustom, "Property1"),
                               text(kCustom, "Property2"),
                               text(kCustom, "Property3"),
                               text(kCustom, "Property4"),
                               text(kLive, "Server"),
                               number(kLive, "Port", 1, kMostPort),
                               folded(kLive, "Method", "ticket|ldaps|starttls"),
                               text(kLive, "User"),
                               text(kLive, "CAFile"),
                               Rule{kVersion, "DBVersion", Kind::kVersion}};

const Rule* find_rule(std::string_view sub_key, std::string_view name) {
  const auto* const found = std::find_if(kRules.begin(), kRules.end(), [&](const Rule& rule) {
    return base::equals_fold(rule.sub_key, sub_key) && base::equals_fold(rule.name, name);
  });
  return found == kRules.end() ? nullptr : found;
}

bool takes_word(const Rule& rule, std::string_view value) {
  const std::vector<std::string> words = base::split(rule.words, '|');
  return std::any_of(words.begin(), words.end(), [&](const std::string& word) {
    return rule.kind == Kind::kWords ? word == value : base::equals_fold(word, base::trim(value));
  });
}

bool takes(const Rule& rule, std::string_view value) {
  switch (rule.kind) {
    case Kind::kText:
      return true;
    case Kind::kWords:
    case Kind::kFoldedWords:
      return takes_word(rule, value);
    case Kind::kNumber: {
      const auto entered = base::to_number(value);
      return entered && *entered >= rule.least && *entered <= rule.most;
    }
    case Kind::kVersion:
      return value.starts_with('1') || value == "2.0" || value == "2.1" || value == "2.2" || value == "2.3" ||
             value == kDataVersion;
  }
  return false;
}

std::string taken_by(const Rule& rule) {
  if (rule.kind == Kind::kVersion)
    return "1, 2.0, 2.1, 2.2, 2.3 or " + std::string(kDataVersion);
  if (rule.kind == Kind::kNumber) {
    const std::string least = "a number from " + base::to_text(rule.least);
    return rule.most == kAnyNumber ? least + " up" : least + " to " + base::to_text(rule.most);
  }
  std::string words(rule.words);
  for (std::size_t bar = words.rfind('|'); bar != base::npos; bar = words.rfind('|'))
    words.replace(bar, 1, words.find(" or ") == base::npos ? " or " : ", ");
  return words;
}

}  // namespace

std::vector<std::string> setting_names() {
  std::vector<std::string> names;
  for (const Rule& rule : kRules)
    names.push_back(std::string(rule.sub_key) + "\\" + std::string(rule.name));
  return names;
}

bool is_setting(std::string_view sub_key, std::string_view name) {
  return find_rule(sub_key, name) != nullptr;
}

std::string setting_refusal(std::string_view sub_key, std::string_view name, std::string_view value) {
  const Rule* const rule = find_rule(sub_key, name);
  return rule == nullptr || value.empty() || takes(*rule, value) ? std::string() : taken_by(*rule);
}

}  // namespace twk::session
