#include "creation/plain_preview.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "creation/account_name.hpp"
#include "creation/account_stage.hpp"
#include "creation/known_person.hpp"
#include "creation/outcome_of.hpp"
#include "creation/paths.hpp"
#include "creation/validate_request.hpp"
#include "directory/tree/listed_objects.hpp"
#include "directory/tree/tree.hpp"
#include "format/filling.hpp"
#include "format/passwords.hpp"
#include "format/replace.hpp"
#include "format/tags.hpp"
#include "session/settings.hpp"

namespace twk::creation {
namespace {

using format::CompiledFormat;
using session::Session;

constexpr char kNameMark = '\x1F';
/// After so many names it is worth while to remember how far a search went.
constexpr std::int32_t kFewNames = 16;

/// In any directory, in paths and in a distinguished name.
bool is_plain_in_account(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' || c == '-' ||
         c == '_' || c == ' ';
}

bool is_plain_in_name(char c) {
  return c >= ' ' && c <= '~';
}

void fold(std::string_view text, std::string& out) {
  out = text;
  for (char& c : out)
    c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

/// True for fields of groups in the lines.
bool has_group_columns(Session& session) {
  const std::string last = session::read_setting(session, session::kSetup, "ImportGroupsFinish");
  return !last.empty() && base::trim(last) != "0";
}

bool holds(std::string_view text, std::string_view tag) {
  return format::find_tag(text, tag) != base::npos;
}

/// Of the order, what no line changes; `PlainPreview` knows how to work with it.
bool is_plain_order(Session& session, const NewUserRequest& order) {
  return session.import.Importing && session.import.rehearsed && order.names_only && order.stages.account &&
         session::is_active_directory(session) && !session::is_debug(session) && !order.CopyUser &&
         !order.plain_letters && order.key.attribute.empty() && order.Expiry.find('%') == base::npos &&
         !holds(order.password.text, "%IMPORT") && !holds(order.password.format, "%IMPORT") &&
         !has_group_columns(session);
}

}  // namespace

bool PlainPreview::AccountPath::ends_in_name() const {
  return text.size() > 3 && text.ends_with(std::string("\\") + kNameMark) &&
         std::ranges::count(text, kNameMark) == 1;
}

PlainPreview::PlainPreview(Session& session, const NewUserRequest& order)
    : session_(session), run_(session, order, view_), values_{{}, session.import.ImportFields, {}} {}

void PlainPreview::learn(const session::CreationOutcome& outcome) {
  const session::RunLookups& lookups = session_.import.lookups;
  const bool all_was_fine = outcome.light == session::kGreen && outcome.warnings.empty();
  if (is_open_ || is_closed_ || !all_was_fine || !lookups.neighbours.values || !lookups.accounts.values)
    return;
  is_open_ = prepare();
  is_closed_ = !is_open_;
}

bool PlainPreview::prepare() {
  const NewUserRequest& order = run_.request;
  if (!is_plain_order(session_, order) || !directory::is_container_shown(session_, container_key(run_)))
    return false;
  password_varies_ =
      order.password.text.find('%') != base::npos || order.password.format.find('%') != base::npos;
  account_ = CompiledFormat::of(order.formats.account);
  taken_ = CompiledFormat::of(order.formats.taken);
  key_ = directory::user_key_start(session_);
  key_start_ = key_.size();
  return account_ && taken_ && prepare_principal_name() && prepare_folders();
}

/// False for rows that give the account's name, or several principal names.
bool PlainPreview::prepare_principal_name() {
  for (const stores::DirectoryRow& row : directory_rows_with_key(run_)) {
    if (base::equals_fold(row.attribute, "sAMAccountName"))
      return false;
    if (!row.of_user || base::equals_fold(row.value, "PROMPT") ||
        !base::equals_fold(row.attribute, "userPrincipalName"))
      continue;
    // A digit or a mark of the domain's name beside a tag would be a modifier of it.
    if (principal_ || session_.DomainName.size() < 3 ||
        session_.DomainName.find_first_of("#%123456789") != base::npos)
      return false;
    const std::string text = format::FRString(format::Filling(session_, row.value).variables().take(),
                                              "%Domain%", session_.DomainName);
    principal_ = CompiledFormat::of(text, "%ACCOUNT%");
    if (!principal_)
      return false;
  }
  return true;
}

/// False for folders that two accounts, or both folders of one, could share.
bool PlainPreview::prepare_folders() {
  if (!run_.request.stages.directories)
    return true;
  run_.user_template = values_of(session_.ActiveTemplate);
  run_.site = values_of(session_.ActiveSite);
  run_.SamName = kNameMark;
  ResolvePaths(run_);
  const ResolvedPaths& paths = run_.paths;
  if (paths.WantHomeDir)
    folders_.push_back({paths.HomeShareDir});
  if (paths.WantProfileDir)
    folders_.push_back({paths.ProfileShareDir});
  const bool of_drive = paths.HomeLocalDir.find(kNameMark) < 3 || paths.ProfileLocalDir.find(kNameMark) < 3;
  return !of_drive && std::ranges::all_of(folders_, &AccountPath::ends_in_name) &&
         (folders_.size() < 2 || !base::equals_fold(folders_.front().text, folders_.back().text));
}

bool PlainPreview::take_names(const NewUserRequest& request) {
  NewUserRequest& names = run_.request;
  names.FirstName = request.FirstName;
  names.MiddleName = request.MiddleName;
  names.LastName = request.LastName;
  if (names.FirstName.empty() || names.LastName.empty())
    return false;
  std::size_t which = 0;
  for (std::string* const name : {&names.FirstName, &names.MiddleName, &names.LastName}) {
    if (!std::ranges::all_of(*name, is_plain_in_name) || base::trim(*name) != *name)
      return false;
    if (!names.keeps_names && !name->empty())
      *name = capitalized(*name);
    values_.names.at(which++) = *name;
  }
  return true;
}

/// False for a name that is not plain, or one that no account can have.
bool PlainPreview::form_name(const CompiledFormat& format) {
  if (!format.takes(values_))
    return false;
  if (format.has_serial()) {
    format::begin_serials(session_);
    if (!session_.SerialTokenUsed)
      first_serial_ = session_.SerialCounter;
    session_.SerialTokenUsed = true;
    values_.serial = session_.SerialCounter;
  }
  format.fill(values_, name_);
  return !name_.empty() && name_.size() <= kLongestUserId && !name_.ends_with('.') &&
         std::ranges::all_of(name_, is_plain_in_account);
}

bool PlainPreview::is_taken() {
  fold(name_, folded_);
  key_.resize(key_start_);
  key_ += name_;
  return directory::is_name_taken(session_, key_, folded_);
}

/// Before the next name of a search with serial numbers is formed.
void PlainPreview::skip_taken_serials(const CompiledFormat& format) {
  if (tries_ == kFewNames && format.has_serial()) {
    values_.serial.reset();
    format.fill(values_, serials_);
    // Where the numbers start is in the settings, which may change.
    serials_ += kNameMark + base::to_text(first_serial_);
  }
  if (const auto known = next_serials_.find(serials_); tries_ == kFewNames && known != next_serials_.end())
    session_.SerialCounter = std::max(session_.SerialCounter, known->second);
}

PlainPreview::Search PlainPreview::search_name() {
  tries_ = 0;
  serials_.clear();
  if (!form_name(*account_))
    return Search::kUnusual;
  while (is_taken()) {
    ++tries_;
    const NameFormats& formats = run_.request.formats;
    const std::string* const next = next_format(session_, formats);
    if (next == nullptr)
      return Search::kRefused;
    const CompiledFormat& format = next == &formats.taken ? *taken_ : *account_;
    skip_taken_serials(format);
    former_.swap(name_);
    if (!form_name(format))
      return Search::kUnusual;
    if (base::equals_fold(name_, former_)) {
      name_.swap(former_);
      return Search::kRefused;
    }
  }
  return Search::kFound;
}

/// In the domain, of which the tree may show a part, and on the file server.
bool PlainPreview::is_free_elsewhere() {
  const session::RunLookups& lookups = session_.import.lookups;
  if (lookups.neighbours.values->find(name_) != session::KnownValues::Answer::kFree ||
      lookups.accounts.values->find(name_) != session::KnownValues::Answer::kFree)
    return false;
  return std::ranges::none_of(folders_, [&](const AccountPath& folder) {
    text_.assign(folder.text, 0, folder.text.size() - 1);
    text_ += name_;
    return session_.platform.files.exists(text_);
  });
}

/// One of a format may come out empty.
bool PlainPreview::has_password() {
  const auto& [first, middle, last] = values_.names;
  return !password_varies_ ||
         format::new_password_text(session_, run_.request.password, name_, first, middle, last).fault.empty();
}

void PlainPreview::foresee_principal() {
  if (!principal_)
    return;
  values_.tag = name_;
  if (principal_->has_serial()) {
    format::begin_serials(session_);
    values_.serial = session_.SerialCounter;
  }
  principal_->fill(values_, text_);
  if (!text_.empty() && text_.find('%') == base::npos)
    foresee_principal_name(run_, text_);
}

session::CreationOutcome PlainPreview::outcome(Search end) {
  session_.log.begin_block();
  run_.RunWarning = 1;
  run_.SummaryRow.clear();
  run_.name_taken = false;
  run_.UserId = name_;
  run_.SamName = name_;
  if (end == Search::kRefused) {
    refuse_for_taken_name(run_);
    return outcome_of(run_, {}, run_.message);
  }
  foresee_principal();
  session_.import.lookups.foreseen_in_tree.add(folded_);
  return good_outcome(run_);
}

std::optional<session::CreationOutcome> PlainPreview::settle(const NewUserRequest& request) {
  if (!is_open_ || !take_names(request))
    return std::nullopt;
  const auto forget_search = [&] { session_.AltIdTried = session_.SerialTokenUsed = false; };
  forget_search();
  const Search end = search_name();
  if (end == Search::kFound && !serials_.empty())
    next_serials_[serials_] = session_.SerialCounter;
  const bool is_settled =
      end == Search::kRefused || (end == Search::kFound && is_free_elsewhere() && has_password() &&
                                  (!principal_ || principal_->takes(values_)));
  forget_search();
  return is_settled ? std::optional(outcome(end)) : std::nullopt;
}

}  // namespace twk::creation
