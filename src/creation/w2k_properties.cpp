#include "base/text.hpp"
#include "creation/account_stage.hpp"
#include "directory/operations.hpp"
#include "session/session.hpp"

namespace twk::creation {
namespace {

using session::Session;

/// Writes one attribute; false when it was refused. What a refused write leaves staged would spoil the next
/// one, so the account is bound anew then.
bool write_attribute(CreationRun& run, const std::string& attribute, const std::string& value) {
  base::Trap trap;
  const bool written = trap([&] {
    run.CurrentUserObject->Put(attribute, value);
    run.CurrentUserObject->SetInfo();
  });
  if (written) {
    log(run, "Setting " + attribute + ", " + value);
    return true;
  }
  run.RunWarning = 2;
  log(run, "Error setting " + attribute + ", " + value);
  trap([&] {
    run.CurrentUserObject = run.session.platform.directory.GetObject(run.CurrentUserObject->ADsPath());
  });
  return false;
}

/// Asks for a value, where somebody is there to answer.
void ask_for_value(CreationRun& run, const std::string& attribute) {
  Session& session = run.session;
  if (session.import.Importing && session.form1.STOP_ON_RED[2].on())
    return;
  const std::string answer = session.platform.dialogs.InputBox("Enter Value for " + attribute, "Enter value");
  if (!answer.empty())
    write_attribute(run, attribute, answer);
}

/// False when the principal name is taken; the row is then left out.
bool principal_name_is_free(CreationRun& run, const std::string& value) {
  if (!directory::Is_Name_Used_In_Forest(run.session, value)) {
    run.SummaryRow += value + ",";
    return true;
  }
  warn(run, "UPN aleardy Exists: " + value);
  log(run, "UPN not set");
  run.SummaryRow += ",";
  return false;
}

void write_row(CreationRun& run, const std::string& attribute, const std::string& value) {
  if (base::equals_fold(attribute, "DISPLAYNAME"))
    run.tree_name = value;
  if (base::equals_fold(attribute, "USERPRINCIPALNAME") && !principal_name_is_free(run, value))
    return;
  if (write_attribute(run, attribute, value) && base::equals_fold(attribute, "SAMACCOUNTNAME"))
    run.SamName = value;
}

}  // namespace

void ApplyW2kProperties(CreationRun& run) {
  log(run, "Setting W2K Properties");
  show_step(run, "Setting W2K Properties");
  const controls::ListView& rows = run.session.form1.ListView7;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const controls::ListRow& row = rows.at(i);
    if (row.icon != "USER")
      continue;
    const std::string value = row.sub_items.empty() ? std::string() : row.sub_items.front();
    if (base::equals_fold(value, "PROMPT")) {
      ask_for_value(run, row.text);
      continue;
    }
    const std::string expanded = expand_row_value(run, value);
    if (!expanded.empty() && expanded.find('%') == base::npos)
      write_row(run, row.text, expanded);
  }
}

}  // namespace twk::creation
