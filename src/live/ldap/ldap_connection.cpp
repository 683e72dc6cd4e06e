#include "live/ldap/ldap_connection.hpp"

#include <ldap.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <deque>
#include <thread>
#include <utility>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "live/ldap/ldap_controls.hpp"
#include "platform/directory.hpp"

namespace twk::live {
namespace {

namespace ads_error = platform::ads_error;

/// How long to wait for a server that answered before: a restarting controller is back by then.
constexpr std::chrono::seconds kPatience{20};
constexpr std::chrono::milliseconds kPause{250};
/// More members than any group has.
constexpr std::size_t kMostValues = 20'000'000;

/// The arrays that the library needs for one attribute; they point into the values, which must stay valid.
class ModArray {
 public:
  void add(int operation, const std::string& name, const std::vector<std::string>& values) {
    Item& item = items_.emplace_back();
    for (const std::string& value : values)
      item.values.push_back(to_berval(value));
    for (berval& value : item.values)
      item.pointers.push_back(&value);
    item.pointers.push_back(nullptr);
    item.mod.mod_op = operation | LDAP_MOD_BVALUES;
    item.mod.mod_type = const_cast<char*>(name.c_str());  // NOLINT: read only
    item.mod.mod_bvalues = values.empty() ? nullptr : item.pointers.data();
  }

  LDAPMod** data() {
    pointers_.clear();
    for (Item& item : items_)
      pointers_.push_back(&item.mod);
    pointers_.push_back(nullptr);
    return pointers_.data();
  }

 private:
  struct Item {
    std::deque<berval> values;
    std::vector<berval*> pointers;
    LDAPMod mod{};
  };
  std::deque<Item> items_;
  std::vector<LDAPMod*> pointers_;
};

int to_ldap(LdapChangeKind kind) {
  switch (kind) {
    case LdapChangeKind::kAdd:
      return LDAP_MOD_ADD;
    case LdapChangeKind::kDelete:
      return LDAP_MOD_DELETE;
    case LdapChangeKind::kReplace:
      break;
  }
  return LDAP_MOD_REPLACE;
}

}  // namespace

void LdapCursor::restart() {
  const std::optional<int> asked = std::exchange(request_, std::nullopt);
  if (const auto connection = asked_over_.lock(); connection != nullptr && asked)
    ldap_abandon_ext(connection->get(), *asked, nullptr, nullptr);
  cookie_.clear();
  progress_ = {};
}

LdapConnection::LdapConnection(std::shared_ptr<Credentials> credentials, std::string host, std::uint16_t port)
    : credentials_(std::move(credentials)), host_(std::move(host)), port_(port) {}

LdapConnection::~LdapConnection() = default;

std::string LdapConnection::diagnostic() const {
  return handle_ == nullptr ? std::string() : handle_->diagnostic();
}

void LdapConnection::close() {
  handle_.reset();
  ends_.reset();
}

void LdapConnection::connect() {
  auto handle = connect_ldap(credentials_->settings(), host_, port_);
  log_on(*handle, *credentials_, host_);
  handle_ = std::move(handle);
  if (credentials_->settings().logon == LiveSettings::Logon::kTicket)
    ends_ = credentials_->ticket().ends();
}

void LdapConnection::open() {
  // The server is about to close a connection whose ticket has expired.
  if (ends_ && std::time(nullptr) >= *ends_)
    close();
  if (handle_ != nullptr)
    return;
  if (!had_connection_)
    connect();
  else
    reconnect();
  had_connection_ = true;
}

bool LdapConnection::go_elsewhere(bool is_gone) {
  std::string other = find_other_ ? find_other_(host_, is_gone) : std::string();
  if (other.empty())
    return false;
  if (is_gone)
    credentials_->tell(host_ + " does not answer any more: the work goes on with " + other);
  host_ = std::move(other);
  return true;
}

void LdapConnection::require_trying_again() const {
  if (std::chrono::steady_clock::now() < quiet_until_)
    base::raise(ads_error::kServerDown, quiet_reason_);
}

void LdapConnection::keep_quiet(std::chrono::steady_clock::time_point since, std::string reason) {
  constexpr int kTimes = 3;
  const auto now = std::chrono::steady_clock::now();
  quiet_until_ = now + kTimes * (now - since);
  quiet_reason_ = std::move(reason);
}

void LdapConnection::reconnect() {
  if (gone_)
    require_trying_again();
  bool has_moved = go_elsewhere(false);
  const auto end = std::chrono::steady_clock::now() + (gone_ ? std::chrono::seconds(0) : kPatience);
  for (;;) {
    const auto start = std::chrono::steady_clock::now();
    try {
      connect();
      break;
    } catch (const base::RuntimeError& failure) {
      // Once: two servers that answer and let nobody in would take turns for ever.
      if (!has_moved && failure.number() == ads_error::kServerDown && go_elsewhere(true)) {
        has_moved = true;
        continue;
      }
      credentials_->tell_failure(failure.description());
      gone_ = failure.number() == ads_error::kServerDown &&
              (credentials_->is_stopped() || std::chrono::steady_clock::now() >= end);
      if (gone_)
        keep_quiet(start, failure.description());
      if (gone_ || failure.number() != ads_error::kServerDown)
        throw;
    }
    std::this_thread::sleep_for(kPause);
  }
  gone_ = false;
  credentials_->tell_recovery();
}

int LdapConnection::run(const std::function<int()>& request, const std::function<bool()>& done) {
  const bool was_open = handle_ != nullptr;
  open();
  int result = request();
  if (!is_connection_lost(result))
    return result;
  close();
  // A connection made just now will not do better next time.
  if (!was_open && result == LDAP_TIMEOUT)
    return result;
  open();
  if (done())
    return LDAP_SUCCESS;
  result = request();
  if (is_connection_lost(result))
    close();
  return result;
}

bool LdapConnection::exists(const std::string& dn) {
  LDAPMessage* answer = nullptr;
  char no_attributes[] = LDAP_NO_ATTRS;
  char* attributes[] = {no_attributes, nullptr};
  const int result = ldap_search_ext_s(handle_->get(), dn.c_str(), LDAP_SCOPE_BASE, "(objectClass=*)",
                                       attributes, 0, nullptr, nullptr, nullptr, 1, &answer);
  ldap_msgfree(answer);
  if (result == LDAP_SUCCESS || result == LDAP_SIZELIMIT_EXCEEDED)
    return true;
  if (result == LDAP_NO_SUCH_OBJECT)
    return false;
  raise_ldap_error(result, diagnostic(), LdapRequest::kRead, "Check whether " + dn + " was written");
}

int LdapConnection::receive(const LdapPageRequest& request, int message, LdapPage& page) {
  try {
    return request.receive(
        handle_->get(), message, [this] { return credentials_->is_stopped(); }, page);
  } catch (const base::RuntimeError&) {
    close();  // only the rest of that answer would come over it
    throw;
  }
}

int LdapConnection::get_page(const LdapSearch& search, LdapCursor& cursor, LdapPage& page) {
  const LdapPageRequest request(search, credentials_->settings().timeout_seconds);
  const std::optional<int> asked = std::exchange(cursor.request_, std::nullopt);
  if (asked && cursor.asked_over_.lock() == handle_)
    return receive(request, *asked, page);
  const auto ask = [&] {
    page = {};
    const std::optional<int> message = request.send(handle_->get(), cursor.cookie_);
    return message ? receive(request, *message, page) : last_ldap_result(handle_->get());
  };
  // A cookie belongs to its connection: a search that loses its connection cannot go on.
  return cursor.has_more() ? ask() : run(ask, [] { return false; });
}

void LdapConnection::ask_ahead(const LdapSearch& search, LdapCursor& cursor) {
  const LdapPageRequest request(search, credentials_->settings().timeout_seconds);
  // One that cannot be sent is repeated when the page is needed, and then reports what is wrong.
  cursor.request_ = request.send(handle_->get(), cursor.cookie_);
  cursor.asked_over_ = handle_;
}

std::vector<LdapEntry> LdapConnection::search_page(const LdapSearch& search, LdapCursor& cursor) {
  if (cursor.has_more())
    require_going_on();
  open();
  LdapPage page;
  const int result = get_page(search, cursor, page);
  if (result != LDAP_SUCCESS) {
    const std::string text = diagnostic();
    if (is_connection_lost(result))
      close();
    raise_ldap_error(result, text, LdapRequest::kRead, "Search below " + search.base);
  }
  cursor.progress_.require(search, page);
  cursor.cookie_ = page.cookie;
  if (cursor.has_more())
    ask_ahead(search, cursor);
  return std::move(page.entries);
}

void LdapConnection::require_going_on() const {
  if (credentials_->is_stopped())
    base::raise(kStopped, "Stopped before " + host_ + " had sent everything");
}

void LdapConnection::search(const LdapSearch& wanted, const std::function<bool(LdapEntry&&)>& visit) {
  LdapCursor cursor;
  do {
    for (LdapEntry& entry : search_page(wanted, cursor)) {
      if (!visit(std::move(entry)))
        return;
    }
  } while (cursor.has_more());
}

void LdapConnection::search_at_once(const LdapSearch& wanted, const std::function<bool(LdapEntry&&)>& visit) {
  if (!answers_in_pages_) {
    LdapSearch whole = wanted;
    whole.page_size = 0;
    LdapCursor cursor;
    LdapPage page;
    const int result = get_page(whole, cursor, page);
    if (result == LDAP_SUCCESS) {
      for (LdapEntry& entry : page.entries) {
        if (!visit(std::move(entry)))
          return;
      }
      return;
    }
    if (is_connection_lost(result))
      close();
    answers_in_pages_ = result == LDAP_SIZELIMIT_EXCEEDED || result == LDAP_ADMINLIMIT_EXCEEDED;
  }
  search(wanted, visit);
}

LdapEntry LdapConnection::read(const std::string& dn, const std::vector<std::string>& attributes,
                               std::uint32_t descriptor_parts) {
  LdapSearch one;
  one.base = dn;
  one.scope = platform::Scope::kBase;
  one.attributes = attributes;
  one.descriptor_parts = descriptor_parts;
  LdapCursor cursor;
  std::vector<LdapEntry> found = search_page(one, cursor);
  if (found.empty())
    base::raise(ads_error::kNoSuchObject, "There is no such object: " + dn);
  return std::move(found.front());
}

void LdapConnection::add(const std::string& dn, const std::vector<LdapAttribute>& attributes) {
  ++changes_of_names_;
  ModArray mods;
  for (const LdapAttribute& attribute : attributes)
    mods.add(LDAP_MOD_ADD, attribute.name, attribute.values);
  const std::string asked = host_;
  const auto is_made = [&] {
    if (host_ != asked) {
      base::raise(ads_error::kServerDown, asked + " went away while it was asked to create " + dn +
                                              ". Look whether it is there once " + asked +
                                              " is back, before it is created again; the work goes on with " +
                                              host_);
    }
    return exists(dn);
  };
  const int result =
      run([&] { return ldap_add_ext_s(handle_->get(), dn.c_str(), mods.data(), nullptr, nullptr); }, is_made);
  if (result != LDAP_SUCCESS)
    raise_ldap_error(result, diagnostic(), LdapRequest::kAdd, "Create " + dn);
}

void LdapConnection::modify(const std::string& dn, const std::vector<LdapChange>& changes,
                            LdapRequest request, std::uint32_t descriptor_parts) {
  ModArray mods;
  if (std::ranges::any_of(changes, [](const LdapChange& change) {
        return base::equals_fold(change.attribute, "sAMAccountName");
      }))
    ++changes_of_names_;
  for (const LdapChange& change : changes)
    mods.add(to_ldap(change.kind), change.attribute, change.values);
  LdapControls controls;
  if (descriptor_parts != 0)
    controls.add_descriptor_parts(descriptor_parts);
  bool repeated = false;
  const int result = run(
      [&] { return ldap_modify_ext_s(handle_->get(), dn.c_str(), mods.data(), controls.data(), nullptr); },
      // Replacing twice does no harm; additions and deletions show by their result that they were made.
      [&] {
        repeated = true;
        return false;
      });
  const std::uint32_t number =
      result == LDAP_SUCCESS ? 0 : number_of_ldap_result(result, diagnostic(), request);
  // Of several members, one may have been there before.
  const bool is_one = changes.size() == 1 && changes.front().values.size() == 1;
  const bool is_so = is_one && (number == ads_error::kMemberNotInGroup ||
                                (number == ads_error::kObjectExists && request == LdapRequest::kAddMember));
  const bool was_made = repeated && is_so;
  if (result != LDAP_SUCCESS && !was_made)
    raise_ldap_error(result, diagnostic(), request, "Change " + dn);
}

void LdapConnection::remove(const std::string& dn) {
  ++changes_of_names_;
  const int result = run([&] { return ldap_delete_ext_s(handle_->get(), dn.c_str(), nullptr, nullptr); },
                         [&] { return !exists(dn); });
  if (result != LDAP_SUCCESS)
    raise_ldap_error(result, diagnostic(), LdapRequest::kDelete, "Delete " + dn);
}

void LdapConnection::rename(const std::string& dn, const std::string& new_rdn,
                            const std::string& new_parent) {
  ++changes_of_names_;
  const int result = run(
      [&] {
        return ldap_rename_s(handle_->get(), dn.c_str(), new_rdn.c_str(),
                             new_parent.empty() ? nullptr : new_parent.c_str(), 1, nullptr, nullptr);
      },
      [&] { return !exists(dn); });
  if (result != LDAP_SUCCESS)
    raise_ldap_error(result, diagnostic(), LdapRequest::kRename, "Move " + dn);
}

std::vector<std::string> read_links(LdapConnection& connection, const std::string& dn,
                                    std::string_view attribute) {
  std::vector<std::string> all;
  std::optional<std::string> wanted = std::string(attribute);
  while (wanted) {
    const std::size_t known = all.size();
    if (known != 0)
      connection.require_going_on();
    wanted = join_range(connection.read(dn, {*wanted}), attribute, all);
    const bool repeats = known != 0 && all.size() > known && all[known] == all.front();
    if (repeats || all.size() > kMostValues)
      base::raise(kProtocolError, "The server never finishes sending the values of " + dn);
  }
  return all;
}

std::optional<std::string> join_range(const LdapEntry& answer, std::string_view attribute,
                                      std::vector<std::string>& all) {
  const std::string prefix = std::string(attribute) + ";range=";
  bool more = false;
  for (const LdapAttribute& part : answer.attributes) {
    const bool ranged = base::starts_with_fold(part.name, prefix);
    if (!ranged && !base::equals_fold(part.name, attribute))
      continue;
    all.insert(all.end(), part.values.begin(), part.values.end());
    // A server may also send the plain attribute, empty, before or after the range.
    more = more || (ranged && !part.name.ends_with("-*") && !part.values.empty());
  }
  return more ? std::optional(prefix + std::to_string(all.size()) + "-*") : std::nullopt;
}

}  // namespace twk::live
