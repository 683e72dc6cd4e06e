#include "live/ldap_connection.hpp"

#include <ldap.h>
#include <sasl/sasl.h>

#include <cstring>
#include <deque>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "platform/directory.hpp"

namespace twk::live {
namespace {

namespace ads_error = platform::ads_error;

constexpr std::uint16_t kLdapPort = 389;
constexpr std::uint16_t kLdapsPort = 636;
constexpr std::string_view kDescriptorControl = "1.2.840.113556.1.4.801";  // LDAP_SERVER_SD_FLAGS_OID
/// Kerberos with single DES has 56 bits; what is not sealed at all has 0 or 1.
constexpr const char* kSealed = "minssf=56";

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

LdapEntry to_entry(LDAP* connection, LDAPMessage* message) {
  LdapEntry entry;
  if (char* const dn = ldap_get_dn(connection, message)) {
    entry.dn = dn;
    ldap_memfree(dn);
  }
  BerElement* place = nullptr;
  for (char* name = ldap_first_attribute(connection, message, &place); name != nullptr;
       name = ldap_next_attribute(connection, message, place)) {
    LdapAttribute& attribute = entry.attributes.emplace_back();
    attribute.name = name;
    ldap_memfree(name);
    if (berval** const values = ldap_get_values_len(connection, message, attribute.name.c_str())) {
      for (berval** value = values; *value != nullptr; ++value)
        attribute.values.push_back(to_string(**value));
      ldap_value_free_len(values);
    }
  }
  ber_free(place, 0);
  return entry;
}

/// The ticket needs no answers: every question gets its default.
int answer_nothing(LDAP* /*connection*/, unsigned /*flags*/, void* /*defaults*/, void* questions) {
  for (auto* one = static_cast<sasl_interact_t*>(questions); one->id != SASL_CB_LIST_END; ++one) {
    one->result = "";
    one->len = 0;
  }
  return LDAP_SUCCESS;
}

}  // namespace

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

struct LdapConnection::Handle {
  LDAP* connection = nullptr;
  Handle() = default;
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  ~Handle() {
    if (connection != nullptr)
      ldap_unbind_ext_s(connection, nullptr, nullptr);
  }
};

LdapConnection::LdapConnection(LiveSettings settings, std::string host, std::uint16_t port)
    : settings_(std::move(settings)), host_(std::move(host)), port_(port) {}

LdapConnection::~LdapConnection() = default;

std::string LdapConnection::diagnostic() const {
  char* text = nullptr;
  if (handle_ == nullptr ||
      ldap_get_option(handle_->connection, LDAP_OPT_DIAGNOSTIC_MESSAGE, &text) != LDAP_OPT_SUCCESS ||
      text == nullptr)
    return {};
  std::string result = text;
  ldap_memfree(text);
  return result;
}

void LdapConnection::close() {
  handle_.reset();
}

void LdapConnection::connect() {
  const bool ldaps = settings_.logon == LiveSettings::Logon::kPassword &&
                     settings_.tls == LiveSettings::Tls::kLdaps && port_ != kLdapPort;
  const std::uint16_t port = port_ != 0 ? port_ : ldaps ? kLdapsPort : kLdapPort;
  const std::string uri = std::string(ldaps ? "ldaps://" : "ldap://") + host_ + ":" + base::to_text(port);
  auto handle = std::make_unique<Handle>();
  if (const int result = ldap_initialize(&handle->connection, uri.c_str()); result != LDAP_SUCCESS)
    raise_ldap_error(result, {}, LdapRequest::kBind, uri);
  LDAP* const connection = handle->connection;
  const int version = LDAP_VERSION3;
  ldap_set_option(connection, LDAP_OPT_PROTOCOL_VERSION, &version);
  // Other domains' servers are never contacted on a server's word.
  ldap_set_option(connection, LDAP_OPT_REFERRALS, LDAP_OPT_OFF);
  timeval timeout{};
  timeout.tv_sec = settings_.timeout_seconds;
  ldap_set_option(connection, LDAP_OPT_NETWORK_TIMEOUT, &timeout);
  ldap_set_option(connection, LDAP_OPT_TIMEOUT, &timeout);
  const int check = LDAP_OPT_X_TLS_HARD;
  ldap_set_option(connection, LDAP_OPT_X_TLS_REQUIRE_CERT, &check);
  if (!settings_.ca_file.empty())
    ldap_set_option(connection, LDAP_OPT_X_TLS_CACERTFILE, settings_.ca_file.c_str());
  const int as_client = 0;
  ldap_set_option(connection, LDAP_OPT_X_TLS_NEWCTX, &as_client);
  handle_ = std::move(handle);
}

void LdapConnection::bind_with_ticket() {
  LDAP* const connection = handle_->connection;
  // Otherwise reverse name look-up decides which service the ticket is for.
  ldap_set_option(connection, LDAP_OPT_X_SASL_NOCANON, LDAP_OPT_ON);
  ldap_set_option(connection, LDAP_OPT_X_SASL_SECPROPS, kSealed);
  const int result = ldap_sasl_interactive_bind_s(connection, nullptr, "GSSAPI", nullptr, nullptr,
                                                  LDAP_SASL_QUIET, answer_nothing, nullptr);
  if (result == LDAP_SUCCESS)
    return;
  const std::string text = diagnostic();
  const bool no_logon = result == LDAP_LOCAL_ERROR || result == LDAP_AUTH_UNKNOWN;
  close();
  raise_ldap_error(no_logon ? LDAP_INVALID_CREDENTIALS : result, text, LdapRequest::kBind,
                   "Log on to " + host_ + " with the Kerberos ticket");
}

void LdapConnection::bind_with_password() {
  LDAP* const connection = handle_->connection;
  int result = LDAP_SUCCESS;
  if (ldap_tls_inplace(connection) == 0 &&
      (settings_.tls == LiveSettings::Tls::kStartTls || port_ == kLdapPort))
    result = ldap_start_tls_s(connection, nullptr, nullptr);
  if (result == LDAP_SUCCESS) {
    berval password = to_berval(settings_.password);
    result = ldap_sasl_bind_s(connection, settings_.user.c_str(), LDAP_SASL_SIMPLE, &password, nullptr,
                              nullptr, nullptr);
  }
  if (result == LDAP_SUCCESS)
    return;
  const std::string text = diagnostic();
  close();
  raise_ldap_error(result, text, LdapRequest::kBind, "Log on to " + host_ + " as " + settings_.user);
}

void LdapConnection::open() {
  if (handle_ != nullptr)
    return;
  connect();
  if (settings_.logon == LiveSettings::Logon::kTicket)
    bind_with_ticket();
  else
    bind_with_password();
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
  const int result = ldap_search_ext_s(handle_->connection, dn.c_str(), LDAP_SCOPE_BASE, "(objectClass=*)",
                                       attributes, 0, nullptr, nullptr, nullptr, 1, &answer);
  ldap_msgfree(answer);
  if (result == LDAP_SUCCESS || result == LDAP_SIZELIMIT_EXCEEDED)
    return true;
  if (result == LDAP_NO_SUCH_OBJECT)
    return false;
  raise_ldap_error(result, diagnostic(), LdapRequest::kRead, "Look whether " + dn + " was written");
}

std::vector<LdapEntry> LdapConnection::search_page(const LdapSearch& search, std::string& cookie) {
  std::vector<char*> names;
  for (const std::string& name : search.attributes)
    names.push_back(const_cast<char*>(name.c_str()));  // NOLINT: read only
  names.push_back(nullptr);
  const bool paged = search.scope != platform::Scope::kBase && search.page_size > 0;
  LDAPMessage* answer = nullptr;
  const auto ask = [&] {
    Controls controls;
    if (paged)
      controls.add_page(handle_->connection, search.page_size, cookie);
    if (search.descriptor_parts != 0)
      controls.add_descriptor_parts(search.descriptor_parts);
    ldap_msgfree(answer);
    answer = nullptr;
    timeval timeout{};
    timeout.tv_sec = search.timeout_seconds > 0 ? search.timeout_seconds : settings_.timeout_seconds;
    return ldap_search_ext_s(handle_->connection, search.base.c_str(), to_ldap(search.scope),
                             search.filter.c_str(), search.attributes.empty() ? nullptr : names.data(), 0,
                             controls.data(), nullptr, &timeout, LDAP_NO_LIMIT, &answer);
  };
  // A cookie belongs to its connection: a search that lost it in the middle cannot go on.
  const bool may_repeat = cookie.empty();
  open();
  const int result = may_repeat ? run(ask, [] { return false; }) : ask();
  const std::unique_ptr<LDAPMessage, int (*)(LDAPMessage*)> owned(answer, ldap_msgfree);
  if (result != LDAP_SUCCESS) {
    const std::string text = diagnostic();
    if (is_connection_lost(result))
      close();
    raise_ldap_error(result, text, LdapRequest::kRead, "Search below " + search.base);
  }
  std::vector<LdapEntry> entries;
  for (LDAPMessage* entry = ldap_first_entry(handle_->connection, owned.get()); entry != nullptr;
       entry = ldap_next_entry(handle_->connection, entry))
    entries.push_back(to_entry(handle_->connection, entry));
  cookie.clear();
  LDAPControl** controls = nullptr;
  if (paged &&
      ldap_parse_result(handle_->connection, owned.get(), nullptr, nullptr, nullptr, nullptr, &controls, 0) ==
          LDAP_SUCCESS &&
      controls != nullptr) {
    if (LDAPControl* const page = ldap_control_find(LDAP_CONTROL_PAGEDRESULTS, controls, nullptr)) {
      ber_int_t estimate = 0;
      berval next{};
      if (ldap_parse_pageresponse_control(handle_->connection, page, &estimate, &next) == LDAP_SUCCESS) {
        cookie = to_string(next);
        ber_memfree(next.bv_val);
      }
    }
    ldap_controls_free(controls);
  }
  return entries;
}

void LdapConnection::search(const LdapSearch& wanted, const std::function<bool(LdapEntry&&)>& visit) {
  std::string cookie;
  do {
    for (LdapEntry& entry : search_page(wanted, cookie)) {
      if (!visit(std::move(entry)))
        return;
    }
  } while (!cookie.empty());
}

LdapEntry LdapConnection::read(const std::string& dn, const std::vector<std::string>& attributes,
                               std::uint32_t descriptor_parts) {
  LdapSearch one;
  one.base = dn;
  one.scope = platform::Scope::kBase;
  one.attributes = attributes;
  one.descriptor_parts = descriptor_parts;
  std::string cookie;
  std::vector<LdapEntry> found = search_page(one, cookie);
  if (found.empty())
    base::raise(ads_error::kNoSuchObject, "There is no such object: " + dn);
  return std::move(found.front());
}

void LdapConnection::add(const std::string& dn, const std::vector<LdapAttribute>& attributes) {
  ModArray mods;
  for (const LdapAttribute& attribute : attributes)
    mods.add(LDAP_MOD_ADD, attribute.name, attribute.values);
  const int result =
      run([&] { return ldap_add_ext_s(handle_->connection, dn.c_str(), mods.data(), nullptr, nullptr); },
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
      [&] {
        return ldap_modify_ext_s(handle_->connection, dn.c_str(), mods.data(), controls.data(), nullptr);
      },
      // To replace twice is to replace once; what adds and deletes says by its own result that it was made.
      [&] {
        repeated = true;
        return false;
      });
  const std::uint32_t number =
      result == LDAP_SUCCESS ? 0 : number_of_ldap_result(result, diagnostic(), request);
  const bool was_made =
      repeated && (number == ads_error::kMemberInGroup || number == ads_error::kMemberNotInGroup);
  if (result != LDAP_SUCCESS && !was_made)
    raise_ldap_error(result, diagnostic(), request, "Change " + dn);
}

void LdapConnection::remove(const std::string& dn) {
  const int result = run([&] { return ldap_delete_ext_s(handle_->connection, dn.c_str(), nullptr, nullptr); },
                         [&] { return !exists(dn); });
  if (result != LDAP_SUCCESS)
    raise_ldap_error(result, diagnostic(), LdapRequest::kDelete, "Delete " + dn);
}

void LdapConnection::rename(const std::string& dn, const std::string& new_rdn,
                            const std::string& new_parent) {
  const int result = run(
      [&] {
        return ldap_rename_s(handle_->connection, dn.c_str(), new_rdn.c_str(),
                             new_parent.empty() ? nullptr : new_parent.c_str(), 1, nullptr, nullptr);
      },
      [&] { return !exists(dn); });
  if (result != LDAP_SUCCESS)
    raise_ldap_error(result, diagnostic(), LdapRequest::kRename, "Move " + dn);
}

}  // namespace twk::live
