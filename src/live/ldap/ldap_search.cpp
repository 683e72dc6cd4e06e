#include "live/ldap/ldap_search.hpp"

#include <ldap.h>

#include <chrono>
#include <memory>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "live/ldap/ldap_controls.hpp"
#include "live/ldap/ldap_errors.hpp"
#include "platform/directory.hpp"

namespace twk::live {
namespace {

using Clock = std::chrono::steady_clock;
using Message = std::unique_ptr<LDAPMessage, int (*)(LDAPMessage*)>;

/// An answer on its way is waited for even after a stop, so that the current item is not cut off.
constexpr std::chrono::seconds kGrace{3};
constexpr suseconds_t kSlice = 250'000;  // microseconds
/// Referrals to other domains that a search may return with its entries.
constexpr std::size_t kMostReferences = 10'000;
constexpr std::size_t kMostEmptyPages = 100;
constexpr std::size_t kMostEntries = 20'000'000;
constexpr std::size_t kMostOnOnePage = 1'000'000;
constexpr ber_len_t kLargestMessage = ber_len_t{256} << 20U;  // bytes

std::string to_string(const berval& value) {
  return {value.bv_val, value.bv_len};
}

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

/// Names and values are read from the message in place, without the copies that other calls make.
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

/// The cookie that the server sent with a page (RFC 2696); empty after the last.
std::string cookie_of(LDAP* connection, LDAPMessage* answer) {
  std::string cookie;
  LDAPControl** controls = nullptr;
  if (ldap_parse_result(connection, answer, nullptr, nullptr, nullptr, nullptr, &controls, 0) !=
          LDAP_SUCCESS ||
      controls == nullptr)
    return cookie;
  LDAPControl* const page = ldap_control_find(LDAP_CONTROL_PAGEDRESULTS, controls, nullptr);
  // The library crashes on a control without a value.
  if (page != nullptr && page->ldctl_value.bv_val != nullptr && page->ldctl_value.bv_len > 0) {
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

}  // namespace

void limit_messages(LDAP* connection) {
  ber_len_t most = kLargestMessage;
  Sockbuf* buffer = nullptr;
  if (ldap_get_option(connection, LDAP_OPT_SOCKBUF, static_cast<void*>(&buffer)) != LDAP_OPT_SUCCESS ||
      ber_sockbuf_ctrl(buffer, LBER_SB_OPT_SET_MAX_INCOMING, &most) != 1)
    base::raise(platform::ads_error::kServerDown, "The LDAP library does not accept a limit on messages");
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

std::string class_of(const LdapEntry& entry) {
  const auto* const classes = entry.find("objectClass");
  return classes == nullptr || classes->empty() ? "top" : classes->back();
}

LdapPageRequest::LdapPageRequest(const LdapSearch& search, int timeout_seconds)
    : search_(search),
      timeout_seconds_(search.timeout_seconds > 0 ? search.timeout_seconds : timeout_seconds) {
  for (const std::string& name : search.attributes)
    names_.push_back(const_cast<char*>(name.c_str()));  // NOLINT: read only
  if (!names_.empty())
    names_.push_back(nullptr);
}

std::optional<int> LdapPageRequest::send(LDAP* connection, const std::string& cookie) const {
  LdapControls controls;
  if (search_.scope != platform::Scope::kBase && search_.page_size > 0)
    controls.add_page(connection, search_.page_size, cookie);
  if (search_.descriptor_parts != 0)
    controls.add_descriptor_parts(search_.descriptor_parts);
  timeval timeout{};
  timeout.tv_sec = timeout_seconds_;
  auto** const names = names_.empty() ? nullptr : const_cast<char**>(names_.data());  // NOLINT: read only
  int message = 0;
  const int result =
      ldap_search_ext(connection, search_.base.c_str(), to_ldap(search_.scope), search_.filter.c_str(), names,
                      0, controls.data(), nullptr, &timeout, LDAP_NO_LIMIT, &message);
  return result == LDAP_SUCCESS ? std::optional<int>(message) : std::nullopt;
}

std::size_t LdapPageRequest::most_entries() const {
  if (search_.scope == platform::Scope::kBase)
    return 1;
  return search_.page_size > 0 ? static_cast<std::size_t>(search_.page_size) : kMostOnOnePage;
}

int LdapPageRequest::receive(LDAP* connection, int message, const std::function<bool()>& is_stopped,
                             LdapPage& page) const {
  const auto start = Clock::now();
  std::size_t references = 0;
  for (;;) {
    timeval slice{0, kSlice};
    LDAPMessage* one = nullptr;
    const int type = ldap_result(connection, message, LDAP_MSG_ONE, &slice, &one);
    const Message owned(one, ldap_msgfree);
    if (type < 0)
      return last_ldap_result(connection);
    if (type == LDAP_RES_SEARCH_RESULT) {
      int result = LDAP_OTHER;
      ldap_parse_result(connection, one, &result, nullptr, nullptr, nullptr, nullptr, 0);
      page.cookie = cookie_of(connection, one);
      return result;
    }
    if (type == LDAP_RES_SEARCH_ENTRY)
      page.entries.push_back(to_entry(connection, one));
    else if (type != 0)
      ++references;
    if (page.entries.size() > most_entries() || references > kMostReferences)
      base::raise(kProtocolError, "The server sends more than was requested below " + search_.base);
    const auto waited = Clock::now() - start;
    if (waited > kGrace && is_stopped && is_stopped())
      base::raise(kStopped, "Stopped while " + search_.base + " was searched");
    if (waited > std::chrono::seconds(timeout_seconds_))
      return LDAP_TIMEOUT;
  }
}

void LdapProgress::require(const LdapSearch& search, const LdapPage& page) {
  const bool repeats = !page.entries.empty() && first_dn_ == page.entries.front().dn;
  empty_pages_ = page.entries.empty() ? empty_pages_ + 1 : 0;
  entries_ += page.entries.size();
  if (repeats || empty_pages_ > kMostEmptyPages || entries_ > kMostEntries) {
    base::raise(kProtocolError, "The server never finishes the search below " + search.base +
                                    (repeats            ? ": it sends the same page again"
                                     : empty_pages_ > 0 ? ": it sends nothing but empty pages"
                                                        : ": it sends more than any directory has"));
  }
  if (!page.entries.empty())
    first_dn_ = page.entries.front().dn;
}

}  // namespace twk::live
