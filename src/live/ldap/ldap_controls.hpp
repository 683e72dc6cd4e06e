#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct berval;
struct ldap;
struct ldapcontrol;

namespace twk::live {

/// The bytes of a text in the library's form; it only reads them.
berval to_berval(const std::string& text);

/// The controls of one request.
class LdapControls {
 public:
  LdapControls() = default;
  LdapControls(const LdapControls&) = delete;
  LdapControls& operator=(const LdapControls&) = delete;
  ~LdapControls();

  /// A page of that many entries, at the server's cookie; the first when it is empty (RFC 2696).
  void add_page(ldap* connection, std::int32_t size, const std::string& cookie);
  /// Which parts of a security descriptor are meant, [MS-ADTS] 3.1.1.3.4.1.11.
  void add_descriptor_parts(std::uint32_t parts);

  /// In the library's form: null when there are none.
  ldapcontrol** data();

 private:
  std::vector<ldapcontrol*> controls_;
  std::vector<ldapcontrol*> terminated_;
};

}  // namespace twk::live
