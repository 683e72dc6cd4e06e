#include <span>
#include <vector>

#include "base/text.hpp"
#include "creation/account_stage.hpp"
#include "directory/operations.hpp"
#include "session/session.hpp"

namespace twk::creation {
namespace {

using session::Session;

struct Property {
  std::string attribute;
  std::string value;
};

/// False when it was refused. What a refused write leaves staged would spoil the next one, so the account is
/// bound anew then.
bool write(CreationRun& run, std::span<const Property> properties) {
  base::Trap trap;
  if (trap([&] {
        for (const Property& one : properties)
          run.CurrentUserObject->Put(one.attribute, one.value);
        run.CurrentUserObject->SetInfo();
      }))
    return true;
  trap([&] {
    run.CurrentUserObject = run.session.platform.directory.GetObject(run.CurrentUserObject->ADsPath());
  });
  return false;
}

void tell(CreationRun& run, const Property& property, bool written) {
  const std::string what = property.attribute + ", " + property.value;
  if (!written) {
    run.RunWarning = 2;
    return log(run, "Error setting " + what);
  }
  if (base::equals_fold(property.attribute, "SAMACCOUNTNAME"))
    run.SamName = property.value;
  log(run, "Setting " + what);
}

/// All in one request, which costs a server little more than one of them. When that is refused, each goes on
/// its own, so that a bad one leaves the others in place.
void write_all(CreationRun& run, std::vector<Property>& properties) {
  const bool together = properties.size() > 1 && write(run, properties);
  for (const Property& one : properties)
    tell(run, one, together || write(run, {&one, 1}));
  properties.clear();
}

/// Asks for a value, where somebody is there to answer.
void ask_for_value(CreationRun& run, const std::string& attribute) {
  Session& session = run.session;
  if (session.import.Importing && session.form1.STOP_ON_RED[2].on())
    return;
  Property property{attribute,
                    session.platform.dialogs.InputBox("Enter Value for " + attribute, "Enter value")};
  if (!property.value.empty())
    tell(run, property, write(run, {&property, 1}));
}

void refuse_taken_name(CreationRun& run, const std::string& name) {
  warn(run, "UPN aleardy Exists: " + name);
  log(run, "UPN not set");
  run.SummaryRow += ",";
}

}  // namespace

void ApplyW2kProperties(CreationRun& run) {
  log(run, "Setting W2K Properties");
  show_step(run, "Setting W2K Properties");
  const controls::ListView& rows = run.session.form1.ListView7;
  std::vector<Property> waiting;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const controls::ListRow& row = rows.at(i);
    if (row.icon != "USER")
      continue;
    const std::string value = row.sub_items.empty() ? std::string() : row.sub_items.front();
    if (base::equals_fold(value, "PROMPT")) {
      write_all(run, waiting);
      ask_for_value(run, row.text);
      continue;
    }
    std::string expanded = expand_row_value(run, value);
    if (expanded.empty() || expanded.find('%') != base::npos)
      continue;
    if (base::equals_fold(row.text, "DISPLAYNAME"))
      run.tree_name = expanded;
    if (base::equals_fold(row.text, "USERPRINCIPALNAME")) {
      if (directory::Is_Name_Used_In_Forest(run.session, expanded)) {
        write_all(run, waiting);
        refuse_taken_name(run, expanded);
        continue;
      }
      run.SummaryRow += expanded + ",";
    }
    waiting.push_back({row.text, std::move(expanded)});
  }
  write_all(run, waiting);
}

}  // namespace twk::creation
