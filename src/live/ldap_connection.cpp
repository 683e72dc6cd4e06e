#include "live/ldap_connection.hpp"

#include <ldap.h>

#include <chrono>
#include <ctime>
#include <deque>
#include <thread>
#include <utility>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "platform/directory.hpp"

namespace twk::live {
namespace {

namespace ads_error = platform::ads_error;

constexpr std::string_view kDescriptorControl = "1.2.840.113556.1.4.801";  // LDAP_SERVER_SD_FLAGS_OID

/// How long a server that was there is waited for: a controller that is started anew is back by then.
constexpr std::chrono::seconds kPatience{20};
constexpr std::chrono::milliseconds kPause{250};

berval to_berval(const std::string& text) {
  // The library reads the bytes and never writes them.
  return {text.size(), const_cast<char*>(text.data())};  // NOLINT
}

std::string to_string(const berval& value) {
  return {value.bv_val, value.bv_len};
}

/// The arrays that the library wants for one attribute; they point into the values, which must stay.
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

/// Controls of one request.
class Controls {
 public:
  Controls() = default;
  Controls(const Controls&) = delete;
  Controls& operator=(const Controls&) = delete;
  ~Controls() {
    for (LDAPControl* const control : controls_)
      ldap_control_free(control);
  }

  void add_page(LDAP* connection, std::int32_t size, const std::string& cookie) {
    berval start = to_berval(cookie);
    LDAPControl* control = nullptr;
    if (ldap_create_page_control(connection, size, cookie.empty() ? nullptr : &start, 1, &control) ==
        LDAP_SUCCESS)
      controls_.push_back(control);
  }

  /// The control's value is SEQUENCE { flags INTEGER } in BER.
  void add_descriptor_parts(std::uint32_t parts) {
    std::string value{0x30, 0x03, 0x02, 0x01, static_cast<char>(parts)};
    berval bytes = to_berval(value);
    LDAPControl* control = nullptr;
    const std::string name(kDescriptorControl);
    if (ldap_control_create(name.c_str(), 1, &bytes, 1, &control) == LDAP_SUCCESS)
      controls_.push_back(control);
  }

  LDAPControl** data() {
    if (controls_.empty())
      return nullptr;
    terminated_ = controls_;
    terminated_.push_back(nullptr);
    return terminated_.data();
  }

 private:
  std::vector<LDAPControl*> controls_;
  std::vector<LDAPControl*> terminated_;
};

int to_ldap(platform::Scope scope) {
  switch (scope) {
    case platform::Scope::kBase:
      return LDAP_SCOPE_BASE;
    case platform::Scope::kOneLevel:
      return LDAP_SCOPE_ONELEVEL;
    case platform::Scope::kSubtree:
      break;
  }
  return LDAP_SCOPE_SUBTREE;
}

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

/// Names and values are taken from the message where they lie, without the copies that other calls hand out.
LdapEntry to_entry(LDAP* connection, LDAPMessage* message) {
  LdapEntry entry;
  BerElement* place = nullptr;
  berval dn{};
  if (ldap_get_dn_ber(connection, message, &place, &dn) == LDAP_SUCCESS) {
    entry.dn = to_string(dn);
    berval name{};
    BerVarray values = nullptr;
    while (ldap_get_attribute_ber(connection, message, place, &name, &values) == LDAP_SUCCESS &&
           name.bv_val != nullptr) {
      LdapAttribute& attribute = entry.attributes.emplace_back();
      attribute.name = to_string(name);
      for (const berval* value = values; value != nullptr && value->bv_val != nullptr; ++value)
        attribute.values.push_back(to_string(*value));
      ldap_memfree(values);
      values = nullptr;
    }
  }
  ber_free(place, 0);
  return entry;
}

/// The mark that the server put beside a page (RFC 2696); empty behind the last.
std::string cookie_of(LDAP* connection, LDAPMessage* answer) {
  std::string cookie;
  LDAPControl** controls = nullptr;
  if (ldap_parse_result(connection, answer, nullptr, nullptr, nullptr, nullptr, &controls, 0) !=
          LDAP_SUCCESS ||
      controls == nullptr)
    return cookie;
  if (LDAPControl* const page = ldap_control_find(LDAP_CONTROL_PAGEDRESULTS, controls, nullptr)) {
    ber_int_t estimate = 0;
    berval next{};
    if (ldap_parse_pageresponse_control(connection, page, &estimate, &next) == LDAP_SUCCESS) {
      cookie = to_string(next);
      ber_memfree(next.bv_val);
    }
  }
  ldap_controls_free(controls);
  return cookie;
}

/// A search as the library wants it, to be made and waited for, or sent now and waited for later.
class SearchRequest {
 public:
  SearchRequest(const LdapSearch& search, int timeout_seconds) : search_(search) {
    timeout_.tv_sec = search.timeout_seconds > 0 ? search.timeout_seconds : timeout_seconds;
    for (const std::string& name : search.attributes)
      names_.push_back(const_cast<char*>(name.c_str()));  // NOLINT: read only
    names_.push_back(nullptr);
  }

  int make(LDAP* connection, const std::string& cookie, LdapAnswer& answer) const {
    Controls controls;
    add_controls(connection, cookie, controls);
    timeval timeout = timeout_;
    LDAPMessage* message = nullptr;
    const int result =
        ldap_search_ext_s(connection, search_.base.c_str(), to_ldap(search_.scope), search_.filter.c_str(),
                          names(), 0, controls.data(), nullptr, &timeout, LDAP_NO_LIMIT, &message);
    answer.reset(message);
    return result;
  }

  /// None when it could not be sent.
  [[nodiscard]] std::optional<int> send(LDAP* connection, const std::string& cookie) const {
    Controls controls;
    add_controls(connection, cookie, controls);
    timeval timeout = timeout_;
    int request = 0;
    const int result =
        ldap_search_ext(connection, search_.base.c_str(), to_ldap(search_.scope), search_.filter.c_str(),
                        names(), 0, controls.data(), nullptr, &timeout, LDAP_NO_LIMIT, &request);
    return result == LDAP_SUCCESS ? std::optional<int>(request) : std::nullopt;
  }

  int wait(LDAP* connection, int request, LdapAnswer& answer) const {
    timeval timeout = timeout_;
    LDAPMessage* message = nullptr;
    const int type = ldap_result(connection, request, LDAP_MSG_ALL, &timeout, &message);
    answer.reset(message);
    if (type == 0)
      return LDAP_TIMEOUT;
    int result = LDAP_OTHER;
    if (type < 0)
      ldap_get_option(connection, LDAP_OPT_RESULT_CODE, &result);
    else
      ldap_parse_result(connection, message, &result, nullptr, nullptr, nullptr, nullptr, 0);
    return result;
  }

 private:
  [[nodiscard]] char** names() const {
    return search_.attributes.empty() ? nullptr : const_cast<char**>(names_.data());  // NOLINT: read only
  }

  void add_controls(LDAP* connection, const std::string& cookie, Controls& controls) const {
    if (search_.scope != platform::Scope::kBase && search_.page_size > 0)
      controls.add_page(connection, search_.page_size, cookie);
    if (search_.descriptor_parts != 0)
      controls.add_descriptor_parts(search_.descriptor_parts);
  }

  const LdapSearch& search_;
  timeval timeout_{};
  std::vector<char*> names_;
};

}  // namespace

void LdapCursor::restart() {
  const std::optional<int> asked = std::exchange(request_, std::nullopt);
  if (const auto connection = asked_over_.lock(); connection != nullptr && asked)
    ldap_abandon_ext(connection->get(), *asked, nullptr, nullptr);
  cookie_.clear();
}

const std::vector<std::string>* LdapEntry::find(std::string_view name) const {
  for (const LdapAttribute& attribute : attributes) {
    if (base::equals_fold(attribute.name, name))
      return &attribute.values;
  }
  return nullptr;
}

std::string LdapEntry::first(std::string_view name) const {
  const auto* const values = find(name);
  return values == nullptr || values->empty() ? std::string() : values->front();
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
  // What was sealed by a ticket that has ended is about to be shut by the server.
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

void LdapConnection::reconnect() {
  const auto end = std::chrono::steady_clock::now() + (gone_ ? std::chrono::seconds(0) : kPatience);
  for (;;) {
    try {
      connect();
      break;
    } catch (const base::RuntimeError& failure) {
      credentials_->tell_failure(failure.description());
      gone_ = failure.number() == ads_error::kServerDown && std::chrono::steady_clock::now() >= end;
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
  // A connection that was made just now will not do better the next time.
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
  raise_ldap_error(result, diagnostic(), LdapRequest::kRead, "Look whether " + dn + " was written");
}

int LdapConnection::get_page(const LdapSearch& search, LdapCursor& cursor, LdapAnswer& answer) {
  const SearchRequest request(search, credentials_->settings().timeout_seconds);
  const std::optional<int> asked = std::exchange(cursor.request_, std::nullopt);
  if (asked && cursor.asked_over_.lock() == handle_)
    return request.wait(handle_->get(), *asked, answer);
  const auto ask = [&] { return request.make(handle_->get(), cursor.cookie_, answer); };
  // A cookie belongs to its connection: a search that lost it in the middle cannot go on.
  return cursor.has_more() ? ask() : run(ask, [] { return false; });
}

void LdapConnection::ask_ahead(const LdapSearch& search, LdapCursor& cursor) {
  const SearchRequest request(search, credentials_->settings().timeout_seconds);
  // One that cannot be sent is made when the page is wanted, and tells then what is wrong.
  cursor.request_ = request.send(handle_->get(), cursor.cookie_);
  cursor.asked_over_ = handle_;
}

std::vector<LdapEntry> LdapConnection::search_page(const LdapSearch& search, LdapCursor& cursor) {
  open();
  LdapAnswer answer(nullptr, ldap_msgfree);
  const int result = get_page(search, cursor, answer);
  if (result != LDAP_SUCCESS) {
    const std::string text = diagnostic();
    if (is_connection_lost(result))
      close();
    raise_ldap_error(result, text, LdapRequest::kRead, "Search below " + search.base);
  }
  cursor.cookie_ = cookie_of(handle_->get(), answer.get());
  if (cursor.has_more())
    ask_ahead(search, cursor);
  std::vector<LdapEntry> entries;
  for (LDAPMessage* entry = ldap_first_entry(handle_->get(), answer.get()); entry != nullptr;
       entry = ldap_next_entry(handle_->get(), entry))
    entries.push_back(to_entry(handle_->get(), entry));
  return entries;
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
  ModArray mods;
  for (const LdapAttribute& attribute : attributes)
    mods.add(LDAP_MOD_ADD, attribute.name, attribute.values);
  const int result =
      run([&] { return ldap_add_ext_s(handle_->get(), dn.c_str(), mods.data(), nullptr, nullptr); },
          [&] { return exists(dn); });
  if (result != LDAP_SUCCESS)
    raise_ldap_error(result, diagnostic(), LdapRequest::kAdd, "Create " + dn);
}

void LdapConnection::modify(const std::string& dn, const std::vector<LdapChange>& changes,
                            LdapRequest request, std::uint32_t descriptor_parts) {
  ModArray mods;
  for (const LdapChange& change : changes)
    mods.add(to_ldap(change.kind), change.attribute, change.values);
  Controls controls;
  if (descriptor_parts != 0)
    controls.add_descriptor_parts(descriptor_parts);
  bool repeated = false;
  const int result = run(
      [&] { return ldap_modify_ext_s(handle_->get(), dn.c_str(), mods.data(), controls.data(), nullptr); },
      // To replace twice is to replace once; what adds and deletes says by its own result that it was made.
      [&] {
        repeated = true;
        return false;
      });
  const std::uint32_t number =
      result == LDAP_SUCCESS ? 0 : number_of_ldap_result(result, diagnostic(), request);
  const bool is_so = number == ads_error::kMemberNotInGroup ||
                     (number == ads_error::kObjectExists && request == LdapRequest::kAddMember);
  const bool was_made = repeated && is_so;
  if (result != LDAP_SUCCESS && !was_made)
    raise_ldap_error(result, diagnostic(), request, "Change " + dn);
}

void LdapConnection::remove(const std::string& dn) {
  const int result = run([&] { return ldap_delete_ext_s(handle_->get(), dn.c_str(), nullptr, nullptr); },
                         [&] { return !exists(dn); });
  if (result != LDAP_SUCCESS)
    raise_ldap_error(result, diagnostic(), LdapRequest::kDelete, "Delete " + dn);
}

void LdapConnection::rename(const std::string& dn, const std::string& new_rdn,
                            const std::string& new_parent) {
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
  std::string wanted(attribute);
  for (;;) {
    const LdapEntry entry = connection.read(dn, {wanted});
    const std::string prefix = std::string(attribute) + ";range=";
    bool more = false;
    for (const LdapAttribute& part : entry.attributes) {
      const bool ranged = base::starts_with_fold(part.name, prefix);
      if (!ranged && !base::equals_fold(part.name, attribute))
        continue;
      all.insert(all.end(), part.values.begin(), part.values.end());
      // A server may send the plain attribute along, empty, before or after the range.
      more = more || (ranged && !part.name.ends_with("-*") && !part.values.empty());
    }
    if (!more)
      return all;
    wanted = prefix + std::to_string(all.size()) + "-*";
  }
}

}  // namespace twk::live
