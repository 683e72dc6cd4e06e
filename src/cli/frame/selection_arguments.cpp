#include "cli/frame/selection_arguments.hpp"

#include <utility>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "batch/selection_walk.hpp"
#include "cli/frame/semicolon_hint.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/terminal/input.hpp"
#include "cli/terminal/interrupt.hpp"
#include "directory/names.hpp"
#include "lab/store/filter.hpp"
#include "platform/adsi.hpp"
#include "platform/directory.hpp"
#include "platform/ldap_text.hpp"
#include "session/loaded_domain.hpp"

namespace twk::cli {
namespace {

class Selector {
 public:
  Selector(Domain domain, controls::ListView& list) : domain_(std::move(domain)), list_(list) {
    list_.clear();
  }

  void take_user(const std::string& name, const std::string& place) {
    guarded(place, [&] {
      if (const auto control = base::find_control_character(name))
        throw Refused("A name holds the control character " + *control + ".");
      const auto found = find_user(domain_, name);
      if (!found)
        throw Refused("There is no user \"" + name + "\".");
      add(*found, "USER");
    });
  }
  void take_group(const std::string& name) {
    guarded({}, [&] { add(locate_group(domain_, name), domain_.active_directory ? "W2KGRP" : "Global"); });
  }
  void take_ou(const std::string& dn) {
    guarded({}, [&] {
      const std::string found = locate_ou(domain_, dn);
      add_row(found, found, "OU");
    });
  }
  void take_file(const std::string& file) {
    const std::vector<std::string> lines = text_lines(read_input(file));
    const std::string shown = file == "-" ? "standard input" : file;
    hint_at_semicolons(shown, lines);
    bool names_somebody = false;
    for (std::size_t i = 0; i < lines.size() && !interrupted(); ++i) {
      const std::string name(base::trim(lines[i]));
      if (name.empty() || name.front() == '#')
        continue;
      names_somebody = true;
      take_user(name, shown + ":" + std::to_string(i + 1) + ": ");
    }
    if (!names_somebody && !interrupted()) {
      complain(shown + " contains no names");
      found_.whole = false;
    }
  }
  [[nodiscard]] const Found& found() const { return found_; }

 private:
  template <typename Step>
  void guarded(const std::string& place, Step&& step) {
    try {
      step();
    } catch (const Refused& refusal) {
      complain(place + refusal.what());
      ++found_.unknown;
    } catch (const base::RuntimeError& failure) {
      if (failure.number() == platform::ads_error::kServerDown ||
          failure.number() == platform::ads_error::kAccessDenied)
        throw;
      complain(place + failure.description());
      ++found_.unknown;
    }
  }

  /// `found` is a distinguished name, in a WinNT domain an account name.
  void add(const std::string& found, const char* icon) {
    if (domain_.active_directory)
      add_row("LDAP://" + domain_.name + "/" + found, common_name(found), icon);
    else
      add_row(found, found, icon);
  }
  void add_row(const std::string& key, const std::string& text, const char* icon) {
    if (list_.find_key(key) == nullptr)
      list_.add(key, text, icon);
  }

  /// "Smith, Jo" of "CN=Smith\, Jo,OU=Staff,DC=twk,DC=test".
  static std::string common_name(std::string_view dn) {
    return platform::plain_name(directory::relative_name(dn));
  }

  Domain domain_;
  controls::ListView& list_;
  Found found_;
};

/// Of what `locate_user` or `locate_group` found.
std::string account_path(const Domain& domain, const std::string& located) {
  return domain.active_directory ? "LDAP://" + domain.name + "/" + located
                                 : platform::winnt_path(domain.nt_name, located);
}

std::unique_ptr<platform::Recordset> search(const Domain& domain, const std::string& place,
                                            const std::string& filter, const std::string& attribute) {
  return domain.services.query.execute({place,
                                        "(&(objectCategory=person)(objectClass=user)" + filter + ")",
                                        {attribute},
                                        platform::Scope::kSubtree},
                                       {});
}

/// Raises `UsageError` for what does not go together.
void check(const SelectionArguments& arguments) {
  const bool names_users = !arguments.names.empty() || !arguments.groups.empty() || !arguments.files.empty();
  if (!names_users && arguments.ous.empty() && arguments.filter.empty())
    throw UsageError("say which users: give a NAME, --group, --ou, --filter or --from-file");
  if (names_users && !arguments.filter.empty())
    throw UsageError(
        "--filter chooses among the users of --ou, or of the whole domain: leave out names, --group and "
        "--from-file");
  if (arguments.recurse && arguments.ous.empty() && arguments.filter.empty())
    throw UsageError("--recurse is for the units of --ou: give one as well");
  if (arguments.filter.empty())
    return;
  base::Trap trap;
  if (!trap([&] { static_cast<void>(lab::parse_filter(arguments.filter)); }))
    throw UsageError("--filter: " + trap.description());
}

void leave_out_members(const Domain& domain, session::Session& session, const std::string& name) {
  const std::string path = account_path(domain, locate_group(domain, name));
  const platform::ObjectPtr group =
      domain.services.directory.GetObject(domain.active_directory ? path : path + ",group");
  for (const platform::ObjectPtr& member : group->Members())
    batch::leave_out(session, member->ADsPath());
  if (!domain.active_directory)
    return;
  const std::string token = group->Get("primaryGroupToken").text();
  const auto rows = search(domain, "LDAP://" + domain.name, "(primaryGroupID=" + token + ")", "ADsPath");
  for (; !rows->at_eof(); rows->MoveNext())
    batch::leave_out(session, rows->field(0).text());
}

/// Raises `Refused` for a name that is unknown: whom it meant would not be spared.
void leave_out(const Domain& domain, session::Session& session, const SelectionArguments& arguments) {
  for (const std::string& name : arguments.excepted)
    batch::leave_out(session, account_path(domain, locate_user(domain, name)));
  for (const std::string& group : arguments.except_groups)
    leave_out_members(domain, session, group);
}

std::size_t count_below(const Domain& domain, const std::string& ou, const std::string& filter) {
  const auto rows = search(domain, "LDAP://" + domain.name + "/" + ou, filter, "distinguishedName");
  std::size_t users = 0;
  for (; !rows->at_eof(); rows->MoveNext())
    ++users;
  return users;
}

}  // namespace

void add_selection_options(Command& command, SelectionArguments& arguments) {
  command.add_option("NAME", arguments.names,
                     "Account name, common name, principal name or distinguished name; several may be given");
  command.add_option("--group", arguments.groups, "The members of a group; may be given several times")
      ->type_name("G");
  command
      .add_option("--ou", arguments.ous,
                  "The users directly in an organizational unit; may be given several times")
      ->type_name("DN");
  command.add_flag("--recurse", arguments.recurse,
                   "With --ou, also the users in the units below it (`user list --ou` always has them)");
  command
      .add_option("--filter", arguments.filter,
                  "Of the users of --ou, without it of the whole domain, those that an LDAP filter finds: "
                  "\"(department=Sales)\"")
      ->type_name("LDAP-FILTER");
  command
      .add_option("--except", arguments.excepted,
                  "A user who is left out, whatever else includes them; may be given several times")
      ->type_name("NAME");
  command
      .add_option(
          "--except-group", arguments.except_groups,
          "The members of a group are left out, those by primary group included; may be given several "
          "times")
      ->type_name("G");
  command
      .add_option("--from-file", arguments.files,
                  "Names of users from a file, one a line, \"-\" for standard input; blank lines and lines "
                  "that begin with # are skipped")
      ->type_name("F");
}

Found fill_selection(Context& context, session::Session& session, const SelectionArguments& arguments) {
  check(arguments);
  const Domain domain = context.domain();
  if (!domain.active_directory && !arguments.filter.empty())
    throw Refused("A WinNT domain has no directory in which a filter could search.");
  session.domain.selection_terms = {
      .units_below = arguments.recurse || arguments.ous.empty(), .filter = arguments.filter, .excepted = {}};
  leave_out(domain, session, arguments);
  Selector selector(domain, session.domain.selection);
  for (const std::string& name : arguments.names)
    selector.take_user(name, {});
  for (const std::string& group : arguments.groups)
    selector.take_group(group);
  for (const std::string& ou : arguments.ous)
    selector.take_ou(ou);
  if (arguments.ous.empty() && !arguments.filter.empty())
    selector.take_ou(domain_dn(domain));
  for (const std::string& file : arguments.files)
    selector.take_file(file);
  return selector.found();
}

void explain_empty(Context& context, const SelectionArguments& arguments) {
  if (arguments.recurse)
    return;
  const Domain domain = context.domain();
  for (const std::string& ou : arguments.ous) {
    base::Trap unknown;
    unknown([&] {
      const std::size_t below = count_below(domain, locate_ou(domain, ou), arguments.filter);
      if (below > 0)
        complain(ou + " has no such users directly in it, but " + std::to_string(below) +
                 " in the units below it: --recurse takes them");
    });
  }
}

}  // namespace twk::cli
