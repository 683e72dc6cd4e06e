#include "live/rpc/rpc_pipe.hpp"

#include "ads/account_names.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "live/ldap/ldap_errors.hpp"
#include "live/logon/logon_name.hpp"
#include "live/logon/network_probe.hpp"
#include "live/rpc/samba_headers.hpp"
#include "platform/directory.hpp"
#include "platform/network.hpp"

// Interfaces whose own headers Debian does not package.
extern "C" const struct ndr_interface_table ndr_table_srvsvc;
extern "C" const struct ndr_interface_table ndr_table_netlogon;

namespace twk::live {
namespace {

namespace network_error = platform::network_error;

const ndr_interface_table& table_of(RpcInterface interface) {
  switch (interface) {
    case RpcInterface::kAccounts:
      return ndr_table_samr;
    case RpcInterface::kLogon:
      return ndr_table_netlogon;
    case RpcInterface::kServerService:
      break;
  }
  return ndr_table_srvsvc;
}

[[noreturn]] void no_answer(const std::string& host, const std::string& why) {
  base::raise(network_error::kBadNetPath, "The network path was not found: " + host + " (" + why + ")");
}

/// The library would say of an invalid parameter.
void require_lasting(const Ticket& ticket) {
  if (ticket.is_about_to_end())
    base::raise(platform::ads_error::kLogonFailure,
                "The Kerberos ticket of " + ticket.principal() + " ends at " + ticket.end_text() +
                    ", and remote calls need one that lasts five minutes more. Renew it with `kinit`");
}

/// The ticket of the workstation's cache, or the user's password.
cli_credentials* make_credentials(TALLOC_CTX* memory, Credentials& person, loadparm_context* configuration) {
  cli_credentials* const credentials = cli_credentials_init(memory);
  cli_credentials_set_conf(credentials, configuration);
  if (!person.has_user()) {
    // The library reads the cache by itself; this reports what is wrong with it.
    require_lasting(*Ticket::current(person.settings().domain));
    cli_credentials_guess(credentials, configuration);
    cli_credentials_set_kerberos_state(credentials, kKerberosRequired, kCredentialsSpecified);
    return credentials;
  }
  const WindowsLogon logon = windows_logon(person.settings());
  const std::string& principal = person.kerberos_name();
  if (principal.empty()) {
    cli_credentials_set_username(credentials, logon.user.c_str(), kCredentialsSpecified);
    cli_credentials_set_domain(credentials, logon.domain.c_str(), kCredentialsSpecified);
  } else {
    cli_credentials_set_principal(credentials, principal.c_str(), kCredentialsSpecified);
    const std::string realm = principal.substr(principal.rfind('@') + 1);
    cli_credentials_set_realm(credentials, realm.c_str(), kCredentialsSpecified);
  }
  cli_credentials_set_password(credentials, person.password().c_str(), kCredentialsSpecified);
  cli_credentials_set_kerberos_state(credentials, principal.empty() ? kKerberosDisabled : kKerberosDesired,
                                     kCredentialsSpecified);
  return credentials;
}

}  // namespace

struct RpcPipe::Handle {
  Memory memory;
  dcerpc_pipe* pipe = nullptr;  ///< null when the binding came from elsewhere
  dcerpc_binding_handle* binding = nullptr;
};

WithoutPipeSignal::WithoutPipeSignal() {
  struct sigaction ignore {};
  ignore.sa_handler = SIG_IGN;
  sigaction(SIGPIPE, &ignore, &before_);
}

WithoutPipeSignal::~WithoutPipeSignal() {
  sigaction(SIGPIPE, &before_, nullptr);
}

void require_file_server(const std::string& host, int seconds, const std::function<bool()>& is_stopped) {
  // These characters belong to the syntax of the binding's text.
  if (host.empty() || host.find_first_of("[]:,\\/\"@ ") != base::npos || base::find_control_character(host))
    no_answer(base::to_valid_utf8(host), "not the name of a server");
  base::Trap unknown;
  std::string why;
  if (!unknown([&] { why = why_no_file_server(host, seconds, is_stopped); }) && unknown.number() == kStopped)
    base::raise(unknown.number(), unknown.description());
  if (unknown.number() != 0)
    no_answer(host, unknown.description());
  if (!why.empty())
    no_answer(host, why);
}

std::uint32_t win32_of_status(std::uint32_t status) {
  return W_ERROR_V(ntstatus_to_werror(to_status(status)));
}

std::uint32_t directory_number(std::uint32_t number) {
  constexpr std::uint32_t kWin32Facility = 0x80070000;
  if (number == kRpcLost)
    return platform::ads_error::kServerDown;
  if (number == kStopped)
    return number;
  return number < 0x10000 ? kWin32Facility | number : number;
}

RpcPipe::RpcPipe(std::shared_ptr<Credentials> credentials, std::string_view server, RpcInterface interface)
    : credentials_(std::move(credentials)), host_(ads::without_backslashes(server)), interface_(interface) {}

RpcPipe::RpcPipe(Open open, RpcInterface interface)
    : open_(std::move(open)), host_("memory"), interface_(interface) {}

RpcPipe::RpcPipe(RpcPipe&&) noexcept = default;

RpcPipe::~RpcPipe() {
  close();
}

void RpcPipe::open() {
  const WithoutPipeSignal quiet;
  opened();
}

void RpcPipe::close() {
  const WithoutPipeSignal quiet;
  handle_.reset();
}

void RpcPipe::connect() {
  if (!open_)
    return connect_to_server();
  auto handle = std::make_unique<Handle>();
  handle->binding = open_(handle->memory.get());
  handle_ = std::move(handle);
}

void RpcPipe::connect_to_server() {
  const int seconds = credentials_->settings().timeout_seconds;
  require_file_server(host_, seconds, [this] { return credentials_->is_stopped(); });
  auto handle = std::make_unique<Handle>();
  loadparm_context* const configuration = loadparm_init(handle->memory.get());
  // Without the machine's file the library's defaults apply.
  lpcfg_load_default(configuration);
  lpcfg_set_option(configuration, "name resolve order=host");
  // Whatever the machine's file says.
  lpcfg_set_option(configuration, "client ipc signing=required");
  lpcfg_set_option(configuration, "client ipc min protocol=SMB2_02");
  lpcfg_set_option(configuration, "client smb encrypt=desired");
  dcerpc_init();
  cli_credentials* person = nullptr;
  base::Trap trap;
  if (!trap([&] { person = make_credentials(handle->memory.get(), *credentials_, configuration); })) {
    const bool refused = trap.number() == platform::ads_error::kLogonFailure;
    base::raise(refused ? kRpcLogonFailure : trap.number(), trap.description());
  }
  const std::string binding = "ncacn_np:" + host_ + (interface_ == RpcInterface::kAccounts ? "[]" : "[seal]");
  tevent_context* const events = tevent_context_init(handle->memory.get());
  // While it connects, the library asks for a ticket and waits for that answer alone.
  tevent_loop_allow_nesting(events);
  const NTSTATUS status = dcerpc_pipe_connect(handle->memory.get(), &handle->pipe, binding.c_str(),
                                              &table_of(interface_), person, events, configuration);
  if (!NT_STATUS_IS_OK(status)) {
    const std::uint32_t number = win32_of_status(NT_STATUS_V(status));
    if (number == platform::security_error::kAccessDenied || number == kRpcLogonFailure)
      refuse(number, "The logon to " + host_ + " failed: " + nt_errstr(status));
    no_answer(host_, nt_errstr(status));
  }
  handle->binding = handle->pipe->binding_handle;
  dcerpc_binding_handle_set_timeout(handle->binding, static_cast<std::uint32_t>(seconds));
  handle_ = std::move(handle);
}

void RpcPipe::refuse(std::uint32_t number, const std::string& text) {
  if (number == kRpcLogonFailure && credentials_->has_user())
    credentials_->refuse_password({platform::ads_error::kLogonFailure, text});
  base::raise(number, text);
}

RpcPipe::Handle& RpcPipe::opened() {
  if (handle_ != nullptr && !dcerpc_binding_handle_is_connected(handle_->binding))
    handle_.reset();
  if (handle_ == nullptr)
    connect();
  return *handle_;
}

void RpcPipe::check(std::uint32_t status) {
  if (status == 0)
    return;
  constexpr std::uint32_t kAccessDenied = 0xC0000022;  // STATUS_ACCESS_DENIED, [MS-ERREF] 2.3.1
  constexpr std::uint32_t kTimedOut = 0xC00000B5;      // STATUS_IO_TIMEOUT
  const std::string text = "The call to " + host_ + " failed: " + nt_errstr(to_status(status));
  if (status == kAccessDenied)
    base::raise(platform::security_error::kAccessDenied, text);
  handle_.reset();
  // Another request would mean another wait.
  base::raise(status == kTimedOut ? network_error::kBadNetPath : kRpcLost, text);
}

base::Bytes RpcPipe::call(std::uint32_t operation, std::span<const std::uint8_t> arguments) {
  const WithoutPipeSignal quiet;
  Handle& handle = opened();
  const Memory answer;
  std::uint8_t* bytes = nullptr;
  std::size_t size = 0;
  std::uint32_t flags = 0;
  check(NT_STATUS_V(dcerpc_binding_handle_raw_call(handle.binding, nullptr, operation, 0, arguments.data(),
                                                   arguments.size(), answer.get(), &bytes, &size, &flags)));
  return base::Bytes(bytes, bytes + size);
}

base::Bytes RpcPipe::call_again(std::uint32_t operation, std::span<const std::uint8_t> arguments,
                                bool* repeated) {
  base::Trap trap;
  base::Bytes answer;
  if (trap([&] { answer = call(operation, arguments); }))
    return answer;
  if (trap.number() != kRpcLost)
    base::raise(trap.number(), trap.description());
  if (repeated != nullptr)
    *repeated = true;
  return call(operation, arguments);
}

void RpcPipe::call(std::uint32_t operation, void* arguments, void* memory) {
  const WithoutPipeSignal quiet;
  Handle& handle = opened();
  check(NT_STATUS_V(dcerpc_binding_handle_call(handle.binding, nullptr, &table_of(interface_), operation,
                                               memory, arguments)));
}

void RpcPipe::require_going_on() const {
  if (credentials_ != nullptr && credentials_->is_stopped())
    base::raise(kStopped, "Stopped before " + host_ + " had sent everything");
}

base::Bytes RpcPipe::session_key() {
  const WithoutPipeSignal quiet;
  constexpr std::size_t kSize = 16;
  DATA_BLOB key{};
  dcerpc_pipe* const pipe = opened().pipe;
  if (pipe == nullptr)
    base::raise(platform::security_error::kAccessDenied, "The pipe to " + host_ + " has no key");
  check(NT_STATUS_V(dcerpc_fetch_session_key(pipe, &key)));
  return base::Bytes(key.data, key.data + std::min(key.length, kSize));
}

}  // namespace twk::live
