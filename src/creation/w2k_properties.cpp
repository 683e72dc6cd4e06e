#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <unordered_map>
#include <vector>

#include "base/error_words.hpp"
#include "base/text.hpp"
#include "creation/account_stage.hpp"
#include "creation/known_person.hpp"
#include "directory/operations.hpp"
#include "directory/read_once.hpp"
#include "platform/adsi.hpp"
#include "session/session.hpp"
#include "stores/side_tables.hpp"

namespace twk::creation {
namespace {

using session::Session;
using stores::DirectoryRow;

constexpr std::string_view kPrincipalName = "userPrincipalName";

/// Personal details: a directory stores these on a new account just as on an existing one. For others that is
/// not certain; some that only the server may change ("whenCreated", "isDeleted") are silently ignored on a
/// new account, while a change of them is refused.
constexpr std::array<std::string_view, 42> kParticulars = {"userPrincipalName",
                                                           "displayName",
                                                           "givenName",
                                                           "initials",
                                                           "middleName",
                                                           "sn",
                                                           "personalTitle",
                                                           "generationQualifier",
                                                           "description",
                                                           "info",
                                                           "comment",
                                                           "department",
                                                           "company",
                                                           "division",
                                                           "title",
                                                           "employeeID",
                                                           "employeeNumber",
                                                           "employeeType",
                                                           "manager",
                                                           "assistant",
                                                           "physicalDeliveryOfficeName",
                                                           "roomNumber",
                                                           "streetAddress",
                                                           "street",
                                                           "postOfficeBox",
                                                           "l",
                                                           "st",
                                                           "postalCode",
                                                           "postalAddress",
                                                           "c",
                                                           "co",
                                                           "countryCode",
                                                           "telephoneNumber",
                                                           "otherTelephone",
                                                           "homePhone",
                                                           "mobile",
                                                           "facsimileTelephoneNumber",
                                                           "pager",
                                                           "ipPhone",
                                                           "mail",
                                                           "wWWHomePage",
                                                           "url"};

/// Writes those that are not yet written; returns why that was refused. Values left staged by a refused
/// write would spoil the next one, so the account is then bound again.
std::optional<std::string> refusal(CreationRun& run, std::span<const DirectoryProperty> properties) {
  base::Trap trap;
  if (trap([&] {
        for (const DirectoryProperty& one : properties) {
          if (!one.is_written)
            run.CurrentUserObject->Put(one.attribute, one.value);
        }
        run.CurrentUserObject->SetInfo();
      }))
    return std::nullopt;
  std::string reason = base::in_words(trap.number(), trap.description());
  trap([&] {
    run.CurrentUserObject = run.session.platform.directory.GetObject(run.CurrentUserObject->ADsPath());
  });
  return reason;
}

void tell(CreationRun& run, const DirectoryProperty& property, const std::optional<std::string>& refused) {
  const std::string what = property.attribute + ", " + property.value;
  if (refused) {
    run.RunWarning = 2;
    return run.session.log.reason("Error setting " + what, *refused);
  }
  if (base::equals_fold(property.attribute, "SAMACCOUNTNAME"))
    run.SamName = property.value;
  if (base::equals_fold(property.attribute, "DISPLAYNAME"))
    run.stored_name = property.value;
  log(run, "Setting " + what);
}

/// All in one request, which costs a server little more than a single one. When that is refused, each is
/// written separately, so that a bad one leaves the others in place.
void write_all(CreationRun& run, std::vector<DirectoryProperty>& properties) {
  const auto waiting =
      std::count_if(properties.begin(), properties.end(), [](const auto& one) { return !one.is_written; });
  const bool together = waiting > 1 && !refusal(run, properties);
  for (const DirectoryProperty& one : properties)
    tell(run, one, one.is_written || together ? std::nullopt : refusal(run, {&one, 1}));
  properties.clear();
}

/// Asks for a value, if someone is there to answer.
void ask_for_value(CreationRun& run, const std::string& attribute) {
  Session& session = run.session;
  if (session.import.Importing && run.request.skip_prompts)
    return;
  session.log.write_gathered();
  DirectoryProperty property{
      attribute, session.platform.dialogs.InputBox("Enter Value for " + attribute, "Enter value")};
  if (!property.value.empty())
    tell(run, property, refusal(run, {&property, 1}));
}

void refuse_taken_name(CreationRun& run, const std::string& name) {
  warn(run, "UPN aleardy Exists: " + name);
  log(run, "UPN not set");
  run.SummaryRow += ",";
}

bool is_prompt(const DirectoryRow& row) {
  return base::equals_fold(row.value, "PROMPT");
}

/// None for a row that writes nothing: without a value, or with a variable that has none.
std::optional<DirectoryProperty> property_of(CreationRun& run, const DirectoryRow& row) {
  std::string value = expand_row_value(run, row.value);
  if (value.empty() || value.find('%') != base::npos)
    return std::nullopt;
  return DirectoryProperty{row.attribute, std::move(value)};
}

/// A "%" of the user's own names would count as a variable without a value, in silence.
void warn_of_percent_sign(CreationRun& run, const DirectoryRow& row) {
  const NewUserRequest& names = run.request;
  const auto holds = [](const std::string& text) { return text.find('%') != base::npos; };
  const bool in_name =
      holds(run.UserId) || holds(names.FirstName) || holds(names.MiddleName) || holds(names.LastName);
  if (in_name && row.value.find('%') != base::npos)
    warn(run, row.attribute + " is not set, because of the \"%\" in the user's name");
}

bool is_principal_name(const DirectoryProperty& property) {
  return base::equals_fold(property.attribute, kPrincipalName);
}

bool is_taken(CreationRun& run, const DirectoryProperty& property) {
  return is_principal_name(property) && directory::Is_Name_Used_In_Forest(run.session, property.value);
}

/// Of a principal name, in a preview.
bool is_surely_free(CreationRun& run, const std::string& name) {
  session::Session& session = run.session;
  const auto all = [&] {
    return directory::ValuesWanted{directory::forest_path(session),
                                   "(&(objectCategory=person)(objectClass=user)(userPrincipalName=*))",
                                   "userPrincipalName",
                                   {}};
  };
  return directory::find_value(session, session.import.lookups.principals, all, name) ==
         session::KnownValues::Answer::kFree;
}

bool went_with_account(const CreationRun& run, const DirectoryProperty& property) {
  return std::any_of(run.first_properties.begin(), run.first_properties.end(), [&](const auto& one) {
    return one.attribute == property.attribute && one.value == property.value;
  });
}

std::string folded_attribute(std::string_view name) {
  return base::lower(platform::ldap_attribute(name));
}

bool is_particular(const CreationRun& run, std::string_view name) {
  const std::string_view attribute = platform::ldap_attribute(name);
  return base::equals_fold(attribute, run.request.key.attribute) ||
         std::any_of(kParticulars.begin(), kParticulars.end(),
                     [&](std::string_view one) { return base::equals_fold(one, attribute); });
}

/// The account's own fields come first, and rows overwrite them.
bool is_staged(CreationRun& run, std::string_view attribute) {
  base::Trap trap;
  trap([&] { static_cast<void>(run.CurrentUserObject->Get(attribute)); });
  return trap.number() != platform::ads_error::kPropertyNotFound;
}

/// How many rows there are for an attribute: the last one holds, so their order counts.
std::unordered_map<std::string, int> rows_by_attribute(const std::vector<DirectoryRow>& rows) {
  std::unordered_map<std::string, int> count;
  for (const DirectoryRow& row : rows) {
    if (row.of_user)
      ++count[folded_attribute(row.attribute)];
  }
  return count;
}

}  // namespace

void StageFirstProperties(CreationRun& run) {
  const std::vector<DirectoryRow> rows = directory_rows_with_key(run);
  const std::unordered_map<std::string, int> count = rows_by_attribute(rows);
  for (const DirectoryRow& row : rows) {
    if (!row.of_user || is_prompt(row) || !is_particular(run, row.attribute) ||
        count.at(folded_attribute(row.attribute)) != 1)
      continue;
    std::optional<DirectoryProperty> property = property_of(run, row);
    if (!property || is_staged(run, property->attribute) || is_taken(run, *property))
      continue;
    run.CurrentUserObject->Put(property->attribute, property->value);
    run.first_properties.push_back(std::move(*property));
  }
}

void foresee_principal_name(CreationRun& run, const std::string& name) {
  run.principal_name = name;
  const bool is_new = run.session.import.foreseen_names.add("UPN " + base::upper(name));
  if (!is_new || (!is_surely_free(run, name) && directory::Is_Name_Used_In_Forest(run.session, name)))
    refuse_taken_name(run, name);
}

void ForeseePrincipalName(CreationRun& run) {
  const std::vector<DirectoryRow> rows = directory_rows_with_key(run);
  for (const DirectoryRow& row : rows) {
    if (!row.of_user || is_prompt(row) || !base::equals_fold(row.attribute, kPrincipalName))
      continue;
    const std::optional<DirectoryProperty> property = property_of(run, row);
    if (property)
      foresee_principal_name(run, property->value);
  }
}

void ApplyW2kProperties(CreationRun& run) {
  log(run, "Setting W2K Properties");
  run.view.step("Setting W2K Properties");
  const std::vector<DirectoryRow> rows = directory_rows_with_key(run);
  std::vector<DirectoryProperty> waiting;
  for (const DirectoryRow& row : rows) {
    if (!row.of_user)
      continue;
    if (is_prompt(row)) {
      write_all(run, waiting);
      ask_for_value(run, row.attribute);
      continue;
    }
    std::optional<DirectoryProperty> property = property_of(run, row);
    if (!property) {
      warn_of_percent_sign(run, row);
      continue;
    }
    property->is_written = went_with_account(run, *property);
    if (base::equals_fold(property->attribute, "DISPLAYNAME"))
      run.tree_name = property->value;
    if (!property->is_written && is_taken(run, *property)) {
      write_all(run, waiting);
      refuse_taken_name(run, property->value);
      continue;
    }
    if (is_principal_name(*property))
      run.SummaryRow += property->value + ",";
    waiting.push_back(std::move(*property));
  }
  write_all(run, waiting);
}

}  // namespace twk::creation
