#include "mail/mail_rows.hpp"

#include <algorithm>
#include <array>

#include "base/text.hpp"
#include "format/filling.hpp"
#include "format/variables.hpp"
#include "platform/ldap_text.hpp"
#include "session/loaded_database.hpp"
#include "session/session.hpp"

namespace twk::mail {
namespace {

using format::Filling;
using session::Session;

constexpr std::array<std::pair<std::string_view, RowUse>, 5> kUses = {
    {{"TARGET-ADDRESS", RowUse::kTargetAddress},
     {"OTHERMAILBOX", RowUse::kOtherMailbox},
     {"CONTAINER", RowUse::kContainer},
     {"COUNTRY", RowUse::kCountry},
     {"MEMBEROF", RowUse::kMemberOf}}};

Filling& put_names(Filling& text, const MailboxOwner& owner) {
  return text.names(owner.FirstName, owner.MiddleName, owner.LastName);
}

Filling& put_built_ins(Filling& text, const Session& session, const MailboxOwner& owner) {
  return text.tag("%ExSite%", owner.place.Site)
      .tag("%EXServer%", owner.place.Server)
      .tag("%EXOrg%", owner.place.Org)
      .tag("%Domain%", session.DomainName)
      .tag("%UserName%", owner.SamName);
}

/// The value of a row that is read before the mailbox is made.
std::string leading_value(Session& session, const MailboxOwner& owner, const controls::ListRow& row) {
  std::string value = value_of(row);
  if (base::equals_fold(value, "PROMPT"))
    value = ask_for_value(session, owner, row.text);
  Filling text(session, std::move(value));
  put_names(text.variables(), owner);
  return put_built_ins(text, session, owner).take();
}

MailboxOwner escaped(const MailboxOwner& owner) {
  using platform::escape_dn_value;
  return {escape_dn_value(owner.FirstName),
          escape_dn_value(owner.MiddleName),
          escape_dn_value(owner.LastName),
          escape_dn_value(owner.SamName),
          {owner.place.Server, escape_dn_value(owner.place.Site), escape_dn_value(owner.place.Org)}};
}

}  // namespace

RowUse use_of(const controls::ListRow& row) {
  for (const auto& [name, use] : kUses) {
    if (base::equals_fold(row.text, name))
      return use;
  }
  return RowUse::kAttribute;
}

std::string value_of(const controls::ListRow& row) {
  return row.sub_items.empty() ? std::string() : row.sub_items.front();
}

std::string ask_for_value(Session& session, const MailboxOwner& owner, const std::string& attribute) {
  if (owner.skip_prompts)
    return {};
  session.log.write_gathered();
  return session.platform.dialogs.InputBox("Enter Value for " + attribute, "Enter value");
}

std::string container_row(Session& session) {
  const controls::ListView& rows = session.database.mail_rows;
  std::string container;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (use_of(rows.at(i)) == RowUse::kContainer)
      container = format::Replace_Variables(session, value_of(rows.at(i)));
  }
  return container;
}

bool has_variable(std::string_view value) {
  return value.find('%', 1) != base::npos;
}

LeadingRows read_leading_rows(Session& session, const MailboxOwner& owner, std::string address) {
  LeadingRows leading{std::move(address), {}, {}};
  const controls::ListView& rows = session.database.mail_rows;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const controls::ListRow& row = rows.at(i);
    const RowUse use = use_of(row);
    if (use == RowUse::kTargetAddress)
      leading.TargetAddress = leading_value(session, owner, row);
    if (use != RowUse::kOtherMailbox || value_of(row).empty())
      continue;
    std::string other = leading_value(session, owner, row);
    if (!other.empty())
      leading.OtherMailbox.push_back(std::move(other));
  }
  const std::string container = container_row(session);
  if (!container.empty())
    leading.Container = container_name(container);
  return leading;
}

std::string attribute_row(Session& session, const MailboxOwner& owner, const controls::ListRow& row) {
  const bool is_path = use_of(row) == RowUse::kMemberOf;
  std::string value = value_of(row);
  if (base::equals_fold(value, "PROMPT"))
    value = ask_for_value(session, owner, row.text);
  Filling text(session, std::move(value));
  if (is_path)
    text.import_fields([](std::string_view field) { return platform::escape_dn_value(field); });
  const MailboxOwner& used = is_path ? escaped(owner) : owner;
  put_names(text, used);
  return put_built_ins(text, session, used).variables().import_fields().take();
}

}  // namespace twk::mail
