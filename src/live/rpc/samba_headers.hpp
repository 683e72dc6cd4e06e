#pragma once

#include <cstdint>
#include <ctime>

// Samba's headers are C: they need these types first and do not support C++ by themselves.
extern "C" {
#include <talloc.h>
#include <tevent.h>

#include <core/error.h>
#include <core/ntstatus.h>
#include <core/werror.h>
#include <dcerpc.h>
#include <gen_ndr/ndr_samr.h>
#include <param.h>

// From credentials.h, which is not valid C++: it uses enumerations before they are declared.
struct cli_credentials* cli_credentials_init(TALLOC_CTX* context);
bool cli_credentials_set_conf(struct cli_credentials* credentials, struct loadparm_context* configuration);
bool cli_credentials_guess(struct cli_credentials* credentials, struct loadparm_context* configuration);
}

namespace twk::live {

/// A status, [MS-ERREF] 2.3, in the library's form; its own macro is not valid C++.
inline NTSTATUS to_status(std::uint32_t number) {
  NTSTATUS status{};
  status.v = number;
  return status;
}

/// `enum credentials_obtained` and `enum credentials_use_kerberos` of credentials.h.
inline constexpr int kCredentialsSpecified = 6;
inline constexpr int kKerberosDisabled = 0;
inline constexpr int kKerberosDesired = 1;
inline constexpr int kKerberosRequired = 2;

/// What the library allocates; freed with the object.
class Memory {
 public:
  Memory() : context_(talloc_named_const(nullptr, 0, "twk")) {}
  Memory(const Memory&) = delete;
  Memory& operator=(const Memory&) = delete;
  ~Memory() { talloc_free(context_); }

  [[nodiscard]] TALLOC_CTX* get() const { return context_; }

 private:
  TALLOC_CTX* context_;
};

}  // namespace twk::live

extern "C" {
// From tevent.h, where only programs that say so see it.
void tevent_loop_allow_nesting(struct tevent_context* events);
bool cli_credentials_set_username(struct cli_credentials* credentials, const char* name, int obtained);
bool cli_credentials_set_domain(struct cli_credentials* credentials, const char* name, int obtained);
bool cli_credentials_set_realm(struct cli_credentials* credentials, const char* name, int obtained);
bool cli_credentials_set_principal(struct cli_credentials* credentials, const char* name, int obtained);
bool cli_credentials_set_password(struct cli_credentials* credentials, const char* password, int obtained);
bool cli_credentials_set_kerberos_state(struct cli_credentials* credentials, int state, int obtained);
}
