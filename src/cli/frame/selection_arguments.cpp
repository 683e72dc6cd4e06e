#include "cli/frame/selection_arguments.hpp"

#include <utility>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "cli/terminal/failures.hpp"
#include "cli/terminal/input.hpp"
#include "cli/terminal/interrupt.hpp"
#include "directory/names.hpp"
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
  command
      .add_option("--from-file", arguments.files,
                  "Names of users from a file, one a line, \"-\" for standard input; blank lines and lines "
                  "that begin with # are skipped")
      ->type_name("F");
}

Found fill_selection(Context& context, session::Session& session, const SelectionArguments& arguments) {
  if (arguments.names.empty() && arguments.groups.empty() && arguments.ous.empty() && arguments.files.empty())
    throw UsageError("say which users: give a NAME, --group, --ou or --from-file");
  Selector selector(context.domain(), session.domain.selection);
  for (const std::string& name : arguments.names)
    selector.take_user(name, {});
  for (const std::string& group : arguments.groups)
    selector.take_group(group);
  for (const std::string& ou : arguments.ous)
    selector.take_ou(ou);
  for (const std::string& file : arguments.files)
    selector.take_file(file);
  return selector.found();
}

}  // namespace twk::cli
