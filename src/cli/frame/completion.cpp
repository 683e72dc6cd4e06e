#include "cli/frame/completion.hpp"

#include <algorithm>
#include <iostream>
#include <set>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "cli/frame/context.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "lab/store/quick_names.hpp"
#include "platform/ldap_text.hpp"
#include "platform/query.hpp"
#include "session/loaded_database.hpp"
#include "session/settings_schema.hpp"

namespace twk::cli {
namespace {

/// More than that nobody reads.
constexpr std::size_t kMost = 200;

enum class Kind { kNothing, kFiles, kFolders, kTemplates, kSites, kUsers, kGroups, kUnits, kKeys, kSettings };

/// What an argument's name in help stands for. "NAME" is what its command is about.
Kind kind_of(const Completion& wanted) {
  const auto is = [&](std::initializer_list<std::string_view> names) {
    return std::ranges::find(names, wanted.placeholder) != names.end();
  };
  const std::string_view room = std::string_view(wanted.command).substr(0, wanted.command.find(' '));
  if (is({"FILE", "F", "RECORD", "LDIF"}))
    return Kind::kFiles;
  if (is({"DIR"}))
    return Kind::kFolders;
  if (is({"T", "TEMPLATE"}) || (room == "template" && is({"NAME", "A", "B"})))
    return Kind::kTemplates;
  if (is({"S"}) || (room == "site" && is({"NAME"})))
    return Kind::kSites;
  if (is({"G", "GROUP"}) || (room == "group" && is({"NAME", "FROM", "TO"})))
    return Kind::kGroups;
  if (is({"DN", "OU"}))
    return Kind::kUnits;
  if (room == "settings")
    return is({"KEY"}) ? Kind::kKeys : is({"NAME"}) ? Kind::kSettings : Kind::kNothing;
  const bool about_users = room == "user" || room == "users" || room == "profile" || room == "mailbox" ||
                           room == "ts" || room == "lab";
  if (is({"USER", "U", "A", "B"}) || (about_users && is({"NAME"})) ||
      (room == "user" && is({"FIRST", "SECOND"})))
    return Kind::kUsers;
  return Kind::kNothing;
}

using Names = std::vector<std::string>;

void keep_fitting(Names& names, std::string_view prefix) {
  std::erase_if(names, [&](const std::string& name) { return !base::starts_with_fold(name, prefix); });
}

Names trimmed(const std::vector<std::string>& padded) {
  Names names;
  for (const std::string& name : padded)
    names.emplace_back(base::trim(name));
  return names;
}

/// By a search that returns no more than is offered.
Names searched(Context& context, const std::string& kind, const std::string& attribute,
               const std::string& prefix) {
  const Domain domain = context.domain();
  if (!domain.active_directory)
    return {};
  platform::QueryOptions options;
  options.page_size = kMost;
  const std::string filter = "(&" + kind +
                             (attribute == "distinguishedName"
                                  ? ""
                                  : "(" + attribute + "=" + platform::escape_filter_value(prefix) + "*)") +
                             ")";
  const auto rows = domain.services.query.execute(
      {"LDAP://" + domain.name, filter, {attribute}, platform::Scope::kSubtree}, options);
  Names names;
  for (; !rows->at_eof() && names.size() < kMost; rows->MoveNext())
    names.push_back(rows->field(0).text());
  keep_fitting(names, prefix);
  return names;
}

Names of_domain(Context& context, Kind kind, const std::string& prefix) {
  const bool in_lab =
      !context.options().live && (!context.options().lab.empty() || std::getenv("TWK_LAB") != nullptr);
  if (kind == Kind::kUnits)
    return in_lab ? lab::quick_names(context.lab_folder(), "dn", "organizationalUnit", prefix, kMost)
                  : searched(context, "(objectCategory=organizationalUnit)", "distinguishedName", prefix);
  const bool users = kind == Kind::kUsers;
  if (in_lab)
    return lab::quick_names(context.lab_folder(), "sAMAccountName", users ? "user" : "group", prefix, kMost);
  return searched(context, users ? "(objectCategory=person)(objectClass=user)" : "(objectCategory=group)",
                  "sAMAccountName", prefix);
}

/// `key` is the word before, of a setting's name.
Names of_settings(Kind kind, std::string_view key) {
  std::set<std::string> names;
  for (const session::Setting& setting : session::all_settings()) {
    if (kind == Kind::kKeys)
      names.emplace(setting.sub_key);
    else if (base::equals_fold(setting.sub_key, key))
      names.emplace(setting.name);
  }
  return {names.begin(), names.end()};
}

Names names_of(Context& context, Kind kind, const std::string& prefix, std::string_view word_before) {
  switch (kind) {
    case Kind::kTemplates:
      return trimmed(context.session(Depth::kDatabases).database.templates);
    case Kind::kSites:
      return trimmed(context.session(Depth::kDatabases).database.sites);
    case Kind::kUsers:
    case Kind::kGroups:
    case Kind::kUnits:
      return of_domain(context, kind, prefix);
    case Kind::kKeys:
    case Kind::kSettings:
      return of_settings(kind, word_before);
    case Kind::kNothing:
    case Kind::kFiles:
    case Kind::kFolders:
      break;
  }
  return {};
}

/// The options in front of and behind the command that say which lab or domain it is.
void take_place(GlobalOptions& options, const std::vector<std::string>& words) {
  const auto value = [&](const std::string& name) -> std::string {
    for (std::size_t i = 0; i + 1 < words.size(); ++i) {
      if (words[i] == name)
        return words[i + 1];
      if (words[i].starts_with(name + "="))
        return words[i].substr(name.size() + 1);
    }
    return {};
  };
  options.lab = value("--lab");
  options.db = value("--db");
  options.live = std::ranges::find(words, "--live") != words.end();
  for (const world::ConnectionOption& one : world::connection_options())
    options.connection.*one.text = value(one.name);
  options.no_input = true;
}

}  // namespace

int print_completions(Context& context, const CLI::App& line, const std::vector<std::string>& words) {
  const Completion wanted = complete_words(line, words);
  for (const Candidate& one : wanted.candidates)
    std::cout << one.word << '\t' << one.help << '\n';
  const Kind kind = kind_of(wanted);
  if (kind == Kind::kFiles || kind == Kind::kFolders) {
    std::cout << (kind == Kind::kFiles ? "FILES\n" : "FOLDERS\n");
    return kExitGreen;
  }
  base::Trap unknown;
  unknown([&] {
    take_place(context.options(), words);
    Names names = names_of(context, kind, wanted.prefix, words.size() < 2 ? "" : words[words.size() - 2]);
    keep_fitting(names, wanted.prefix);
    std::ranges::sort(names);
    for (const std::string& name : names)
      std::cout << wanted.before << name << "\t\n";
  });
  return kExitGreen;
}

}  // namespace twk::cli
