#include "live/ldap/ldap_controls.hpp"

#include <ldap.h>

#include <string_view>

namespace twk::live {
namespace {

constexpr std::string_view kDescriptorControl = "1.2.840.113556.1.4.801";  // LDAP_SERVER_SD_FLAGS_OID

}  // namespace

berval to_berval(const std::string& text) {
  return {text.size(), const_cast<char*>(text.data())};  // NOLINT: read only
}

LdapControls::~LdapControls() {
  for (LDAPControl* const control : controls_)
    ldap_control_free(control);
}

void LdapControls::add_page(LDAP* connection, std::int32_t size, const std::string& cookie) {
  berval start = to_berval(cookie);
  LDAPControl* control = nullptr;
  if (ldap_create_page_control(connection, size, cookie.empty() ? nullptr : &start, 1, &control) ==
      LDAP_SUCCESS)
    controls_.push_back(control);
}

void LdapControls::add_descriptor_parts(std::uint32_t parts) {
  // SEQUENCE { flags INTEGER } in BER.
  std::string value{0x30, 0x03, 0x02, 0x01, static_cast<char>(parts)};
  berval bytes = to_berval(value);
  LDAPControl* control = nullptr;
  const std::string name(kDescriptorControl);
  if (ldap_control_create(name.c_str(), 1, &bytes, 1, &control) == LDAP_SUCCESS)
    controls_.push_back(control);
}

LDAPControl** LdapControls::data() {
  if (controls_.empty())
    return nullptr;
  terminated_ = controls_;
  terminated_.push_back(nullptr);
  return terminated_.data();
}

}  // namespace twk::live
