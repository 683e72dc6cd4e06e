#include "lifecycle/rename/new_names.hpp"

#include <vector>

#include "lifecycle/rename/rename_nt.hpp"
#include "lifecycle/rename/rename_principal.hpp"
#include "lifecycle/rename/rename_user.hpp"
#include "session/session.hpp"

namespace twk::lifecycle {
namespace {

using session::Session;

void set(std::string& name, const std::optional<std::string>& text) {
  if (text)
    name = *text;
}

/// A name without a suffix keeps the account's own, or gets the domain's.
std::string principal_of(Session& session, const std::string& name, const std::string& before,
                         RenameTerms& terms) {
  const PrincipalName principal = split_principal(name);
  const std::string own = split_principal(before).suffix;
  if (!terms.suffixes)
    terms.suffixes = principal_suffixes(session);
  std::vector<std::string> suffixes = *terms.suffixes;
  if (!own.empty() && find_suffix(suffixes, own).empty())
    suffixes.push_back(own);
  std::string suffix = own.empty() ? suffixes.front() : own;
  if (!principal.suffix.empty()) {
    suffix = find_suffix(suffixes, principal.suffix);
    if (suffix.empty()) {
      std::string known;
      for (const std::string& one : suffixes)
        known += (known.empty() ? "" : ", ") + one;
      throw UnfitName("the forest has no suffix " + principal.suffix + "; it has " + known);
    }
  }
  return principal.prefix.empty() ? std::string() : principal.prefix + suffix;
}

session::RunOutcome rename_in_directory(Session& session, controls::TreeNode& node, const NewNames& names,
                                        RenameTerms& terms, session::RunView& view) {
  if (!terms.preferences)
    terms.preferences = session::read_preferences(session);
  RenameUserOrder order = rename_order(session, node, *terms.preferences);
  set(order.names.logon, names.logon);
  if (names.principal)
    order.names.principal = principal_of(session, *names.principal, order.principal_before, terms);
  set(order.names.full_name, names.full_name);
  set(order.names.first, names.first);
  set(order.names.last, names.last);
  set(order.names.display, names.display);
  order.full_name_changed = names.full_name.has_value();
  order.logon_changed = names.logon.has_value();
  order.folders = terms.folders;
  order.terms = terms.run;
  order.run_record = terms.record;
  if (has_refused_text(session, order.names))
    return {};
  return rename_user(session, node, order, view);
}

session::RunOutcome rename_in_nt(Session& session, controls::TreeNode& node, const NewNames& names,
                                 const RenameTerms& terms, session::RunView& view) {
  if (names.principal || names.first || names.last || names.display)
    throw UnfitName("an account of this domain has only a logon name and a full name");
  RenameNtOrder order = rename_order_nt(session, node);
  set(order.logon, names.logon);
  set(order.full_name, names.full_name);
  order.logon_changed = names.logon.has_value();
  order.full_name_changed = names.full_name.has_value();
  order.folders = terms.folders;
  order.terms = terms.run;
  order.run_record = terms.record;
  if (has_refused_text(session, order))
    return {};
  return rename_nt(session, node, order, view);
}

}  // namespace

session::RunOutcome rename_to(Session& session, controls::TreeNode& node, const NewNames& names,
                              RenameTerms& terms, session::RunView& view) {
  return session::is_active_directory(session) ? rename_in_directory(session, node, names, terms, view)
                                               : rename_in_nt(session, node, names, terms, view);
}

}  // namespace twk::lifecycle
