#include "cli/frame/user_fields.hpp"

#include <array>

#include "base/text.hpp"
#include "cli/terminal/failures.hpp"
#include "directory/account_expiry.hpp"
#include "session/session.hpp"

namespace twk::cli {
namespace {

using directory::UserDetails;

struct TextField {
  std::string_view name;
  std::string UserDetails::*text;
  bool only_in_active_directory = false;
};

constexpr std::array kTexts = {
    TextField{"fullName", &UserDetails::FullName},       TextField{"description", &UserDetails::Description},
    TextField{"first", &UserDetails::FirstName, true},   TextField{"last", &UserDetails::LastName, true},
    TextField{"initials", &UserDetails::Initials, true}, TextField{"office", &UserDetails::Office, true},
    TextField{"mail", &UserDetails::Mail, true},         TextField{"profile", &UserDetails::Profile},
    TextField{"home", &UserDetails::HomeDirectory},      TextField{"script", &UserDetails::LoginScript},
    TextField{"preW2K", &UserDetails::PreW2K, true}};

struct FlagField {
  std::string_view name;
  bool UserDetails::*flag;
};

constexpr std::array kFlags = {
    FlagField{"mustChange", &UserDetails::must_change}, FlagField{"cantChange", &UserDetails::cannot_change},
    FlagField{"neverExpires", &UserDetails::never_expires}, FlagField{"disabled", &UserDetails::disabled}};

struct Assignment {
  std::string name;
  std::string value;
};

std::string known_fields() {
  std::string list;
  for (const TextField& field : kTexts)
    list += std::string(field.name) + ", ";
  list += "drive, logonName, expires, ";
  for (const FlagField& field : kFlags)
    list += std::string(field.name) + ", ";
  return list + "lockedOut, custom1 to custom4 or the name of a custom attribute";
}

Assignment split(const std::string& text) {
  const std::size_t equals = text.find('=');
  if (equals == base::npos || equals == 0)
    throw UsageError("\"" + text + "\" is not FIELD=VALUE. Fields: " + known_fields());
  return {text.substr(0, equals), text.substr(equals + 1)};
}

bool yes_or_no(const Assignment& assignment) {
  for (const std::string_view yes : {"yes", "true", "1"}) {
    if (base::equals_fold(assignment.value, yes))
      return true;
  }
  for (const std::string_view no : {"no", "false", "0"}) {
    if (base::equals_fold(assignment.value, no))
      return false;
  }
  throw UsageError(assignment.name + " takes yes or no, not \"" + assignment.value + "\".");
}

void require_active_directory(const session::Session& session, const Assignment& assignment) {
  if (!session::is_active_directory(session))
    throw Refused("An account of this domain has no " + assignment.name + ".");
}

/// "jo" keeps the part after the "@" as it is, "jo@twk.test" sets both.
void write_logon_name(UserDetails& details, const Assignment& assignment) {
  const std::size_t at = assignment.value.find('@');
  details.LogonName = assignment.value.substr(0, at);
  if (at != base::npos)
    details.LogonSuffix = assignment.value.substr(at);
}

void write_expiry(session::Session& session, UserDetails& details, const Assignment& assignment) {
  const auto typed = directory::read_expiry(session.platform.clock, assignment.value);
  if (!typed.error.empty())
    throw UsageError("expires: " + typed.error + ".");
  details.Expires = assignment.value;
}

void write_lock_out(UserDetails& details, const Assignment& assignment) {
  if (yes_or_no(assignment))
    throw UsageError("lockedOut only takes no: an account cannot be locked out by hand.");
  details.locked_out = false;
}

bool write_custom(session::Session& session, UserDetails& details, const Assignment& assignment) {
  const auto captions = session::is_active_directory(session)
                            ? directory::custom_captions(session)
                            : decltype(directory::custom_captions(session))();
  for (std::size_t i = 0; i < captions.size(); ++i) {
    const std::string& caption = captions.at(i);
    const bool numbered =
        base::equals_fold(assignment.name, "custom" + base::to_text(static_cast<std::int64_t>(i) + 1));
    const bool named =
        !caption.empty() && base::equals_fold(base::trim(assignment.name), base::trim(caption));
    if (!numbered && !named)
      continue;
    if (caption.empty())
      throw Refused("An account of this domain has no " + assignment.name + ".");
    details.Custom.at(i) = assignment.value;
    return true;
  }
  return false;
}

bool write_special(session::Session& session, UserDetails& details, const Assignment& assignment) {
  const std::string name = base::upper(assignment.name);
  if (name == "DRIVE") {
    details.HomeDrive = assignment.value;
  } else if (name == "LOGONNAME") {
    require_active_directory(session, assignment);
    write_logon_name(details, assignment);
  } else if (name == "EXPIRES") {
    write_expiry(session, details, assignment);
  } else if (name == "LOCKEDOUT") {
    write_lock_out(details, assignment);
  } else {
    return false;
  }
  return true;
}

void assign(session::Session& session, UserDetails& details, const Assignment& assignment) {
  for (const TextField& field : kTexts) {
    if (!base::equals_fold(field.name, assignment.name))
      continue;
    if (field.only_in_active_directory)
      require_active_directory(session, assignment);
    details.*field.text = assignment.value;
    return;
  }
  for (const FlagField& field : kFlags) {
    if (base::equals_fold(field.name, assignment.name)) {
      details.*field.flag = yes_or_no(assignment);
      return;
    }
  }
  if (!write_special(session, details, assignment) && !write_custom(session, details, assignment))
    throw UsageError("There is no field \"" + assignment.name + "\". Fields: " + known_fields());
}

}  // namespace

void assign_fields(session::Session& session, UserDetails& details,
                   const std::vector<std::string>& assignments) {
  for (const std::string& assignment : assignments)
    assign(session, details, split(assignment));
}

}  // namespace twk::cli
