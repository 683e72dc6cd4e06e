#include "cli/frame/user_fields.hpp"

#include <array>
#include <functional>

#include "base/text.hpp"
#include "cli/terminal/failures.hpp"
#include "directory/account_expiry.hpp"
#include "session/form1.hpp"

namespace twk::cli {
namespace {

using session::Form1;

struct TextField {
  std::string_view name;
  controls::TextBox Form1::*box;
};

constexpr std::array kTexts = {
    TextField{"fullName", &Form1::UM_Full_Name}, TextField{"description", &Form1::UM_Description},
    TextField{"first", &Form1::UM_First},        TextField{"last", &Form1::UM_Last},
    TextField{"initials", &Form1::UM_Initails},  TextField{"office", &Form1::UM_Office},
    TextField{"mail", &Form1::UM_MailAddress},   TextField{"profile", &Form1::UM_Profile_Dir},
    TextField{"home", &Form1::UM_Home_Dir},      TextField{"script", &Form1::UM_Logon_Script},
    TextField{"preW2K", &Form1::UM_PreW2K}};

struct FlagField {
  std::string_view name;
  controls::CheckBox Form1::*box;
};

constexpr std::array kFlags = {
    FlagField{"mustChange", &Form1::chkMustChange}, FlagField{"cantChange", &Form1::chkCantChange},
    FlagField{"neverExpires", &Form1::chkPwdNever}, FlagField{"disabled", &Form1::chkAcctDisabled}};

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

void write(controls::TextBox& box, const Assignment& assignment) {
  if (!box.visible)
    throw Refused("An account of this domain has no " + assignment.name + ".");
  box.text = assignment.value;
}

/// "jo" keeps the part after the "@" as it is, "jo@twk.test" sets both.
void write_logon_name(Form1& form, const Assignment& assignment) {
  const std::size_t at = assignment.value.find('@');
  write(form.UM_Logon_Name, {assignment.name, assignment.value.substr(0, at)});
  if (at != base::npos)
    form.UM_W2KDomain_Name.text = assignment.value.substr(at);
}

void write_expiry(session::Session& session, const Assignment& assignment) {
  const auto typed = directory::read_expiry(session.platform.clock, assignment.value);
  if (!typed.error.empty())
    throw UsageError("expires: " + typed.error + ".");
  session.form1.AccExpires.text = assignment.value;
}

void write_lock_out(Form1& form, const Assignment& assignment) {
  if (yes_or_no(assignment))
    throw UsageError("lockedOut only takes no: an account cannot be locked out by hand.");
  if (form.chkAcctLockedOut.enabled)
    form.chkAcctLockedOut.value = 0;
}

bool write_custom(Form1& form, const Assignment& assignment) {
  for (std::size_t i = 0; i < form.Custom_Value.size(); ++i) {
    const bool numbered =
        base::equals_fold(assignment.name, "custom" + base::to_text(static_cast<std::int64_t>(i) + 1));
    const std::string& caption = form.Custom_Label.at(i).caption;
    const bool named = form.Custom_Label.at(i).visible && !caption.empty() &&
                       base::equals_fold(base::trim(assignment.name), base::trim(caption));
    if (!numbered && !named)
      continue;
    write(form.Custom_Value.at(i), assignment);
    return true;
  }
  return false;
}

bool write_special(session::Session& session, const Assignment& assignment) {
  Form1& form = session.form1;
  const std::string name = base::upper(assignment.name);
  if (name == "DRIVE")
    form.UM_Drive_Letter.text = assignment.value;
  else if (name == "LOGONNAME")
    write_logon_name(form, assignment);
  else if (name == "EXPIRES")
    write_expiry(session, assignment);
  else if (name == "LOCKEDOUT")
    write_lock_out(form, assignment);
  else
    return false;
  return true;
}

void fill(session::Session& session, const Assignment& assignment) {
  Form1& form = session.form1;
  for (const TextField& field : kTexts) {
    if (base::equals_fold(field.name, assignment.name))
      return write(form.*field.box, assignment);
  }
  for (const FlagField& field : kFlags) {
    if (base::equals_fold(field.name, assignment.name)) {
      (form.*field.box).value = yes_or_no(assignment) ? 1 : 0;
      return;
    }
  }
  if (!write_special(session, assignment) && !write_custom(form, assignment))
    throw UsageError("There is no field \"" + assignment.name + "\". Fields: " + known_fields());
}

}  // namespace

void fill_details_tab(session::Session& session, const std::vector<std::string>& assignments) {
  for (const std::string& assignment : assignments)
    fill(session, split(assignment));
}

}  // namespace twk::cli
