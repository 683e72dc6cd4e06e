#include "creation/known_person.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "directory/names.hpp"
#include "directory/operations.hpp"
#include "directory/read_once.hpp"
#include "platform/ldap_text.hpp"
#include "session/session.hpp"

namespace twk::creation {
namespace {

std::string key_of(CreationRun& run) {
  return std::string(base::trim(expand_row_value(run, run.request.key.text)));
}

std::string foreseen(std::string_view key) {
  return "KEY " + base::upper(key);
}

/// The search for accounts that have a key; `key` as in a filter.
directory::ValuesWanted accounts_with(const CreationRun& run, const std::string& key) {
  const session::Session& session = run.session;
  const std::string& attribute = run.request.key.attribute;
  return {"LDAP://" + session.DomainName + "/" + directory::domain_distinguished_name(session.DomainName),
          "(&(objectCategory=person)(objectClass=user)(" + attribute + "=" + key + "))", attribute,
          "sAMAccountName"};
}

/// The name of an account that has the key; empty for none.
std::string account_with(CreationRun& run, const std::string& key) {
  using session::KnownValues;
  session::Session& session = run.session;
  session::ReadOnce& persons = session.import.lookups.persons;
  const KnownValues::Answer answer = directory::find_value(
      session, persons, [&] { return accounts_with(run, "*"); }, key);
  if (answer == KnownValues::Answer::kFree)
    return {};
  if (std::string owner = answer == KnownValues::Answer::kTaken ? persons.values->owner_of(key) : "";
      !owner.empty())
    return owner;
  const directory::ValuesWanted wanted = accounts_with(run, platform::escape_filter_value(key));
  const auto rows = directory::run_query(
      session, "<" + wanted.base + ">;" + wanted.filter + ";" + wanted.owner + ";subtree");
  return rows->at_eof() ? std::string() : rows->field(0).text();
}

Step end(CreationRun& run, std::string message) {
  run.message = std::move(message);
  log(run, run.message);
  run.view.status("Ready.");
  run.view.progress(0);
  run.view.step("");
  run.session.log.close();
  return Step::kEnd;
}

}  // namespace

bool is_attribute_name(std::string_view text) {
  const auto is_letter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
  return !text.empty() && is_letter(text.front()) && std::ranges::all_of(text, [&](char c) {
    return is_letter(c) || (c >= '0' && c <= '9') || c == '-';
  });
}

Step RecognizePerson(CreationRun& run) {
  const std::string& attribute = run.request.key.attribute;
  if (attribute.empty())
    return Step::kGoOn;
  const std::string key = key_of(run);
  if (key.empty() || key.find('%') != base::npos)
    return end(run, "There is no " + attribute + " by which the person could be recognised");
  const std::string account = account_with(run, key);
  run.is_known = !account.empty() || run.session.import.foreseen_names.has(foreseen(key));
  if (!run.is_known)
    return Step::kGoOn;
  return end(run, account.empty()
                      ? "An earlier line is of the same person: " + attribute + " " + key
                      : "Has an account already: " + account + " (" + attribute + " " + key + ")");
}

void remember_person(CreationRun& run) {
  session::ImportState& import = run.session.import;
  if (run.request.key.attribute.empty())
    return;
  if (import.rehearsed)
    import.foreseen_names.add(foreseen(key_of(run)));
  else if (import.lookups.persons.values)
    import.lookups.persons.values->add(key_of(run), run.SamName);
}

void doubt_person(CreationRun& run) {
  auto& known = run.session.import.lookups.persons.values;
  if (!run.request.key.attribute.empty() && known)
    known->add(key_of(run));
}

std::vector<stores::DirectoryRow> directory_rows_with_key(const CreationRun& run) {
  std::vector<stores::DirectoryRow> rows = stores::directory_rows(run.session);
  const PersonKey& key = run.request.key;
  const bool has_row = std::ranges::any_of(rows, [&](const stores::DirectoryRow& row) {
    return row.of_user && base::equals_fold(row.attribute, key.attribute);
  });
  if (!key.attribute.empty() && !has_row)
    rows.push_back({key.attribute, key.text, true});
  return rows;
}

}  // namespace twk::creation
