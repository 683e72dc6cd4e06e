#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "mail/exchange_path.hpp"

namespace twk::controls {
struct ListRow;
}
namespace twk::session {
struct Session;
}

/// The rows of the mail table for the mailbox of one person.
namespace twk::mail {

/// Whose mailbox it is, and where.
struct MailboxOwner {
  std::string FirstName;
  std::string MiddleName;
  std::string LastName;
  std::string SamName;
  ExchangePlace place;
  bool skip_prompts = false;  ///< nobody is asked for the value of a row
};

/// The attribute of a row.
enum class RowUse { kTargetAddress, kOtherMailbox, kContainer, kCountry, kMemberOf, kAttribute };
RowUse use_of(const controls::ListRow& row);
/// The row's second column.
std::string value_of(const controls::ListRow& row);

/// The rows that are needed before there is a mailbox.
struct LeadingRows {
  std::string TargetAddress;
  std::vector<std::string> OtherMailbox;
  std::string Container;  ///< as from `container_name`; empty without a row
};
/// Reads them. `address` counts when no row names one.
LeadingRows read_leading_rows(session::Session& session, const MailboxOwner& owner, std::string address);

/// The value of the "CONTAINER" row with the template's variables filled in; the last of several counts.
std::string container_row(session::Session& session);
/// True for a value with an unresolved variable: a "%" past the first character.
bool has_variable(std::string_view value);

/// The value of an attribute row: a prompt if it reads "PROMPT", otherwise with its tags filled in. In the
/// path of a distribution list, tag values are escaped, so that they stay within their names.
std::string attribute_row(session::Session& session, const MailboxOwner& owner, const controls::ListRow& row);

/// Asks for the value of an attribute, unless the owner's prompts are skipped: then it is empty.
std::string ask_for_value(session::Session& session, const MailboxOwner& owner, const std::string& attribute);

}  // namespace twk::mail
