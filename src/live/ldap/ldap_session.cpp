#include "live/ldap/ldap_session.hpp"

#include <arpa/inet.h>
#include <ldap.h>
#include <sasl/sasl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <optional>

#include "base/text.hpp"
#include "live/ldap/ldap_errors.hpp"
#include "live/ldap/ldap_search.hpp"
#include "live/logon/logon_name.hpp"
#include "live/logon/network_probe.hpp"
#include "platform/directory.hpp"

namespace twk::live {
namespace {

namespace ads_error = platform::ads_error;

constexpr std::uint16_t kLdapPort = 389;
constexpr std::uint16_t kLdapsPort = 636;
/// Kerberos with single DES has 56 bits; an unsealed connection has 0 or 1.
constexpr const char* kSealed = "minssf=56";
constexpr const char* kMechanism = "GSSAPI";

bool uses_password(const LiveSettings& settings) {
  return settings.logon == LiveSettings::Logon::kPassword;
}

/// TLS from the first byte on.
bool uses_ldaps(const LiveSettings& settings, std::uint16_t port) {
  return uses_password(settings) && settings.tls == LiveSettings::Tls::kLdaps && port != kLdapPort;
}

/// Raises kServerDown when the library does not accept the option.
void set_option(ldap* connection, int option, const void* value, std::string_view what) {
  if (ldap_set_option(connection, option, value) != LDAP_OPT_SUCCESS)
    base::raise(ads_error::kServerDown, "The LDAP library does not accept " + std::string(what));
}

void set_time_limit(ldap* connection, int option, int seconds) {
  timeval timeout{};
  timeout.tv_sec = seconds;
  set_option(connection, option, &timeout, "a time limit");
}

/// The file with the authorities that the system trusts, as its packages install it; a new TLS context of
/// the library has none. Empty when there is no such file.
std::string authorities_of_system() {
  constexpr std::array<const char*, 4> kBundles = {
      "/etc/ssl/certs/ca-certificates.crt",  // Debian and what comes from it
      "/etc/pki/tls/certs/ca-bundle.crt",    // Fedora and what comes from it
      "/etc/ssl/ca-bundle.pem",              // SUSE
      "/etc/ssl/cert.pem"};                  // Alpine
  for (const char* const path : kBundles) {
    if (access(path, R_OK) == 0)
      return path;
  }
  return {};
}

void trust_authorities(ldap* connection, const LiveSettings& settings) {
  const bool given = !settings.ca_file.empty();
  const std::string file = given ? settings.ca_file : authorities_of_system();
  if (file.empty()) {
    base::raise(ads_error::kServerDown,
                "This system has no file of trusted authorities. Install the package ca-certificates, or "
                "name the domain's own authority with --ca-file");
  }
  set_option(connection, LDAP_OPT_X_TLS_CACERTFILE, file.c_str(), "a file of authorities");
  const int as_client = 0;
  if (ldap_set_option(connection, LDAP_OPT_X_TLS_NEWCTX, &as_client) == LDAP_OPT_SUCCESS)
    return;
  base::raise(
      ads_error::kServerDown,
      "The CA file " + file +
          (access(file.c_str(), R_OK) == 0 ? " holds no certificate in PEM form" : " cannot be read"));
}

void set_options(ldap* connection, const LiveSettings& settings, int certificate_check) {
  const int version = LDAP_VERSION3;
  set_option(connection, LDAP_OPT_PROTOCOL_VERSION, &version, "version 3 of the protocol");
  // Other domains' servers are never contacted because a server says so.
  set_option(connection, LDAP_OPT_REFERRALS, LDAP_OPT_OFF, "that referrals are not followed");
  // A signal during the wait for an answer does not end the connection.
  set_option(connection, LDAP_OPT_RESTART, LDAP_OPT_ON, "that signals interrupt nothing");
  limit_messages(connection);
  set_time_limit(connection, LDAP_OPT_NETWORK_TIMEOUT, connect_timeout(settings));
  set_time_limit(connection, LDAP_OPT_TIMEOUT, settings.timeout_seconds);
  if (!uses_password(settings))
    return;
  set_option(connection, LDAP_OPT_X_TLS_REQUIRE_CERT, &certificate_check, "the check of certificates");
  trust_authorities(connection, settings);
}

/// The library reads an "ldaprc" of the current folder and other files at its first call, which could switch
/// off the check of certificates. The commands that this program runs must find their environment unchanged.
int initialize(ldap*& connection, const std::string& uri) {
  constexpr const char* kNoFiles = "LDAPNOINIT";
  // The environment is the whole process's, and the test of a connection has a thread of its own.
  static std::mutex one_at_a_time;
  const std::lock_guard lock(one_at_a_time);
  const char* const before = getenv(kNoFiles);
  const std::optional<std::string> kept =
      before == nullptr ? std::nullopt : std::optional<std::string>(before);
  setenv(kNoFiles, "1", 1);
  const int result = ldap_initialize(&connection, uri.c_str());
  if (kept)
    setenv(kNoFiles, kept->c_str(), 1);
  else
    unsetenv(kNoFiles);
  return result;
}

std::unique_ptr<LdapHandle> make_handle(const LiveSettings& settings, const std::string& host,
                                        std::uint16_t port, int certificate_check) {
  const std::string uri =
      std::string(uses_ldaps(settings, port) ? "ldaps://" : "ldap://") + host + ":" + base::to_text(port);
  ldap* connection = nullptr;
  if (initialize(connection, uri) != LDAP_SUCCESS)
    base::raise(ads_error::kServerDown, "Not a host that can be connected to: " + host);
  auto handle = std::make_unique<LdapHandle>(connection);
  set_options(connection, settings, certificate_check);
  return handle;
}

int start(LdapHandle& handle, const LiveSettings& settings, std::uint16_t port) {
  if (!uses_password(settings))
    return ldap_connect(handle.get());
  handle.deadline().watch(handle.get(), std::chrono::seconds(connect_timeout(settings)));
  const int result = uses_ldaps(settings, port) ? ldap_connect(handle.get())
                                                : ldap_start_tls_s(handle.get(), nullptr, nullptr);
  handle.deadline().end();
  return result;
}

/// The certificate of a server, DER, from a TLS connection without a check; the library does not say why a
/// checked one failed. Nothing is sent over such a connection.
std::optional<std::string> unchecked_certificate(const LiveSettings& settings, const std::string& host,
                                                 std::uint16_t port) {
  const auto handle = make_handle(settings, host, port, LDAP_OPT_X_TLS_NEVER);
  if (start(*handle, settings, port) != LDAP_SUCCESS)
    return std::nullopt;
  berval bytes{};
  if (ldap_get_option(handle->get(), LDAP_OPT_X_TLS_PEERCERT, static_cast<void*>(&bytes)) != LDAP_OPT_SUCCESS)
    return std::string();
  std::string certificate(bytes.bv_val, bytes.bv_len);
  ldap_memfree(bytes.bv_val);
  return certificate;
}

/// Bytes that are not ASCII letters stay.
std::string small_letters(std::string bytes) {
  for (char& c : bytes)
    c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
  return bytes;
}

/// A part of a certificate: a tag, one byte with its length, and the bytes (DER, ITU-T X.690).
std::string part(char tag, const std::string& bytes) {
  return std::string(1, tag) + static_cast<char>(bytes.size()) + bytes;
}

/// The name is among the alternative names of a certificate, or as its common name (RFC
/// 5280 4.2.1.6, 4.1.2.4).
bool holds_name(const std::string& certificate, const std::string& name) {
  constexpr char kDnsName = '\x82';
  constexpr char kUtf8String = '\x0c';
  constexpr char kPrintableString = '\x13';
  constexpr std::size_t kLongest = 127;  // whose length is one byte
  if (name.empty() || name.size() > kLongest)
    return false;
  for (const char tag : {kDnsName, kUtf8String, kPrintableString}) {
    if (certificate.find(small_letters(part(tag, name))) != base::npos)
      return true;
  }
  return false;
}

/// The four or sixteen bytes of an address; empty for anything else.
std::string address_bytes(const std::string& host) {
  for (const int family : {AF_INET, AF_INET6}) {
    std::string bytes(family == AF_INET ? sizeof(in_addr) : sizeof(in6_addr), '\0');
    if (inet_pton(family, host.c_str(), bytes.data()) == 1)
      return bytes;
  }
  return {};
}

/// Also matches "*" for the first label, and an address as its bytes.
bool names_host(const std::string& certificate, const std::string& host) {
  constexpr char kAddress = '\x87';
  if (const std::string address = address_bytes(host); !address.empty())
    return certificate.find(part(kAddress, address)) != base::npos;
  const std::string bytes = small_letters(certificate);
  const std::string name = small_letters(host);
  const std::size_t dot = name.find('.');
  return holds_name(bytes, name) || (dot != base::npos && holds_name(bytes, "*" + name.substr(dot)));
}

[[noreturn]] void explain_no_connection(const LiveSettings& settings, const std::string& host,
                                        std::uint16_t port, int result, const std::string& diagnostic) {
  const std::string why = why_no_answer(host, port, connect_timeout(settings));
  const std::string place = host + " on port " + base::to_text(port);
  if (!why.empty())
    base::raise(ads_error::kServerDown, "No answer from " + place + ": " + why);
  if (uses_password(settings)) {
    const auto certificate = unchecked_certificate(settings, host, port);
    const std::string refused = "The certificate of " + place + " is refused: ";
    if (certificate && !certificate->empty() && !names_host(*certificate, host))
      base::raise(
          ads_error::kServerDown,
          refused + "it names another host, or another address. Name the server as its certificate does");
    if (certificate) {
      base::raise(ads_error::kServerDown,
                  refused +
                      (settings.ca_file.empty() ? "no authority that this system trusts"
                                                : "no authority of the file " + settings.ca_file) +
                      " has signed it, or it is out of date. Name the domain's own authority with --ca-file");
    }
  }
  raise_ldap_error(result, diagnostic, LdapRequest::kBind,
                   std::string(uses_password(settings) ? "TLS with " : "Connect to ") + place);
}

/// The ticket needs no answers: every question gets its default.
int answer_nothing(ldap* /*connection*/, unsigned /*flags*/, void* /*defaults*/, void* questions) {
  for (auto* one = static_cast<sasl_interact_t*>(questions); one->id != SASL_CB_LIST_END; ++one) {
    one->result = "";
    one->len = 0;
  }
  return LDAP_SUCCESS;
}

void require_plug_in(ldap* connection) {
  char** names = nullptr;
  bool found = false;
  if (ldap_get_option(connection, LDAP_OPT_X_SASL_MECHLIST, static_cast<void*>(&names)) == LDAP_OPT_SUCCESS &&
      names != nullptr) {
    for (char** name = names; *name != nullptr; ++name)
      found = found || std::strcmp(*name, kMechanism) == 0;
  }
  if (!found) {
    base::raise(ads_error::kLogonFailure,
                "The SASL plug-in for Kerberos (GSSAPI) is missing. Install the package "
                "libsasl2-modules-gssapi-mit");
  }
}

void log_on_with_ticket(const LdapHandle& handle, Credentials& credentials, const std::string& host) {
  require_plug_in(handle.get());
  const Ticket& ticket = credentials.ticket();
  // Otherwise reverse name look-up would decide which service the ticket is for.
  set_option(handle.get(), LDAP_OPT_X_SASL_NOCANON, LDAP_OPT_ON, "the server's name as it is");
  set_option(handle.get(), LDAP_OPT_X_SASL_SECPROPS, kSealed, "that a connection is sealed");
  int result = LDAP_SUCCESS;
  {
    const Ticket::InUse in_use(ticket);
    result = ldap_sasl_interactive_bind_s(handle.get(), nullptr, kMechanism, nullptr, nullptr,
                                          LDAP_SASL_QUIET, answer_nothing, nullptr);
  }
  if (result == LDAP_SUCCESS)
    return;
  const std::string text = handle.diagnostic();
  if (!is_connection_lost(result))
    ticket.ask_for_service("ldap", host);
  raise_ldap_error(result == LDAP_LOCAL_ERROR ? LDAP_INVALID_CREDENTIALS : result, text, LdapRequest::kBind,
                   "Log on to " + host + " with the Kerberos ticket of " + ticket.principal());
}

void log_on_with_password(const LdapHandle& handle, Credentials& credentials, const std::string& host) {
  const std::string name = bind_name(credentials.settings());
  const std::string& text = credentials.password();
  berval password{text.size(), const_cast<char*>(text.data())};  // NOLINT: read only
  const int result =
      ldap_sasl_bind_s(handle.get(), name.c_str(), LDAP_SASL_SIMPLE, &password, nullptr, nullptr, nullptr);
  if (result == LDAP_SUCCESS)
    return;
  const std::string diagnostic = handle.diagnostic();
  if (result != LDAP_INVALID_CREDENTIALS)
    raise_ldap_error(result, diagnostic, LdapRequest::kBind, "Log on to " + host + " as " + name);
  const base::RuntimeError refusal(ads_error::kLogonFailure, explain_refused_logon(name, diagnostic));
  credentials.refuse_password(refusal);
  throw base::RuntimeError(refusal);
}

}  // namespace

LdapHandle::~LdapHandle() {
  ldap_unbind_ext_s(connection_, nullptr, nullptr);
}

std::string LdapHandle::diagnostic() const {
  char* text = nullptr;
  if (ldap_get_option(connection_, LDAP_OPT_DIAGNOSTIC_MESSAGE, static_cast<void*>(&text)) !=
          LDAP_OPT_SUCCESS ||
      text == nullptr)
    return {};
  std::string result = text;
  ldap_memfree(text);
  return result;
}

int connect_timeout(const LiveSettings& settings) {
  constexpr int kLongest = 10;
  return std::min(settings.timeout_seconds, kLongest);
}

std::uint16_t ldap_port(const LiveSettings& settings, std::uint16_t port) {
  if (port != 0)
    return port;
  return uses_ldaps(settings, 0) ? kLdapsPort : kLdapPort;
}

std::unique_ptr<LdapHandle> connect_ldap(const LiveSettings& settings, const std::string& host,
                                         std::uint16_t port) {
  const std::uint16_t asked = ldap_port(settings, port);
  auto handle = make_handle(settings, host, asked, LDAP_OPT_X_TLS_HARD);
  if (const int result = start(*handle, settings, asked); result != LDAP_SUCCESS)
    explain_no_connection(settings, host, asked, result, handle->diagnostic());
  return handle;
}

void log_on(const LdapHandle& handle, Credentials& credentials, const std::string& host) {
  if (uses_password(credentials.settings()))
    log_on_with_password(handle, credentials, host);
  else
    log_on_with_ticket(handle, credentials, host);
}

std::string ask_host_name(const LiveSettings& settings, const std::string& host) {
  LiveSettings clear = settings;
  clear.logon = LiveSettings::Logon::kTicket;
  base::Trap trap;
  std::string name;
  trap([&] {
    const auto handle = make_handle(clear, host, kLdapPort, LDAP_OPT_X_TLS_HARD);
    char wanted[] = "dnsHostName";
    char* attributes[] = {wanted, nullptr};
    timeval timeout{};
    timeout.tv_sec = settings.timeout_seconds;
    LDAPMessage* answer = nullptr;
    const int result = ldap_search_ext_s(handle->get(), "", LDAP_SCOPE_BASE, "(objectClass=*)", attributes, 0,
                                         nullptr, nullptr, &timeout, 1, &answer);
    const std::unique_ptr<LDAPMessage, int (*)(LDAPMessage*)> owned(answer, ldap_msgfree);
    LDAPMessage* const entry =
        result == LDAP_SUCCESS ? ldap_first_entry(handle->get(), owned.get()) : nullptr;
    if (entry == nullptr)
      return;
    if (berval** const values = ldap_get_values_len(handle->get(), entry, wanted)) {
      if (values[0] != nullptr)
        name.assign(values[0]->bv_val, values[0]->bv_len);
      ldap_value_free_len(values);
    }
  });
  return name;
}

}  // namespace twk::live
