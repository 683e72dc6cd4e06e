#include "world/connection_options.hpp"

#include <algorithm>
#include <array>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "session/settings.hpp"

namespace twk::world {
namespace {

constexpr std::uint32_t kInvalidArgument = 5;

struct Field {
  std::string_view name;
  std::string ConnectionOptions::*text;
};

constexpr std::array<Field, 5> kStored = {{{"Server", &ConnectionOptions::server},
                                           {"Port", &ConnectionOptions::port},
                                           {"Method", &ConnectionOptions::method},
                                           {"CAFile", &ConnectionOptions::ca_file},
                                           {"User", &ConnectionOptions::user}}};

std::string key_of(std::string_view sub_key) {
  return std::string(session::kTree) + "\\" + std::string(sub_key);
}

[[noreturn]] void refuse(const std::string& what) {
  base::raise(kInvalidArgument, what);
}

/// A host or domain: letters, digits, dots, hyphens, underscores.
void check_name(const std::string& what, const std::string& name) {
  constexpr std::size_t kLongest = 255;  // RFC 1035 2.3.4
  const bool fits = std::all_of(name.begin(), name.end(), [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           std::string_view(".-_").find(c) != base::npos;
  });
  if (!fits || name.size() > kLongest || name.starts_with('.') || name.starts_with('-'))
    refuse("the " + what + " is not the name of a " + what + ": " + name);
}

std::uint16_t port_of(const std::string& text) {
  if (text.empty())
    return 0;
  constexpr std::int32_t kHighest = 65535;
  const auto port = base::to_number(text);
  if (!port || *port < 1 || *port > kHighest)
    refuse("the port is a number from 1 to 65535, not " + text);
  return static_cast<std::uint16_t>(*port);
}

}  // namespace

const std::vector<ConnectionOption>& connection_options() {
  using Options = ConnectionOptions;
  static const std::vector<ConnectionOption> options = {
      {"--domain", "NAME", "The domain; default: from the settings or the ticket", &Options::domain},
      {"--server", "HOST", "Its controller; default: one from the name service", &Options::server},
      {"--port", "N", "Port of LDAP there", &Options::port},
      {"--method", "METHOD", "Log on by ticket, ldaps or starttls; ticket if not given", &Options::method},
      {"--user", "NAME", "User who logs on with a password, which is asked for", &Options::user},
      {"--ca-file", "FILE", "Trusted certificates, in PEM form", &Options::ca_file}};
  return options;
}

bool says_anything(const ConnectionOptions& options) {
  return std::any_of(connection_options().begin(), connection_options().end(),
                     [&](const ConnectionOption& one) { return !(options.*one.text).empty(); });
}

const std::vector<ConnectionMethod>& connection_methods() {
  static const std::vector<ConnectionMethod> methods = {{"ticket", "Kerberos ticket"},
                                                        {"ldaps", "User and password over LDAPS"},
                                                        {"starttls", "User and password with StartTLS"}};
  return methods;
}

ConnectionOptions read_connection(platform::RegistryAccess& registry) {
  ConnectionOptions options;
  registry.Reg_Read(platform::kHiveLocalMachine, key_of(session::kSetup), "Domain", options.domain);
  options.domain = base::trim(options.domain);
  if (options.domain == session::kNoDomain)
    options.domain.clear();
  for (const Field& field : kStored) {
    std::string value;
    registry.Reg_Read(platform::kHiveLocalMachine, key_of(session::kLive), field.name, value);
    options.*field.text = base::trim(value);
  }
  return options;
}

bool save_connection(platform::RegistryAccess& registry, const ConnectionOptions& options) {
  bool saved =
      registry.Reg_Write(platform::kHiveLocalMachine, key_of(session::kSetup), "Domain", options.domain);
  for (const Field& field : kStored) {
    saved = registry.Reg_Write(platform::kHiveLocalMachine, key_of(session::kLive), field.name,
                               options.*field.text) &&
            saved;
  }
  return saved;
}

ConnectionOptions merge_connection(const ConnectionOptions& stored, const ConnectionOptions& given) {
  const bool other = !given.domain.empty() && !base::equals_fold(given.domain, stored.domain);
  ConnectionOptions merged = other ? ConnectionOptions{} : stored;
  if (!given.domain.empty())
    merged.domain = given.domain;
  // A stored user belongs to the stored method.
  if (!given.method.empty() && !base::equals_fold(given.method, stored.method))
    merged.user.clear();
  for (const Field& field : kStored) {
    if (!(given.*field.text).empty())
      merged.*field.text = given.*field.text;
  }
  return merged;
}

live::LiveSettings live_settings(const ConnectionOptions& options) {
  using live::LiveSettings;
  LiveSettings settings;
  check_name("domain", options.domain);
  check_name("server", options.server);
  settings.domain = options.domain;
  settings.server = options.server;
  settings.port = port_of(options.port);
  settings.user = options.user;
  settings.ca_file = options.ca_file;
  const std::string method = base::lower(options.method);
  if (method == "ldaps" || method == "starttls") {
    settings.logon = LiveSettings::Logon::kPassword;
    settings.tls = method == "ldaps" ? LiveSettings::Tls::kLdaps : LiveSettings::Tls::kStartTls;
    if (settings.user.empty())
      refuse("the method " + method + " needs a user to log on as");
  } else if (!method.empty() && method != "ticket") {
    refuse("the method is ticket, ldaps or starttls, not " + options.method);
  }
  return settings;
}

live::LiveSettings required_settings(const ConnectionOptions& options) {
  if (options.domain.empty())
    refuse("no domain is named");
  return live_settings(options);
}

}  // namespace twk::world
