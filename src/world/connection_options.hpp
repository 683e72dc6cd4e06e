#pragma once

#include <string>
#include <vector>

#include "live/terms/live_settings.hpp"
#include "platform/registry.hpp"

/// How to reach a real domain, as a person writes it: options of the command line, fields of a window, and
/// the settings below "Live", which name everything but the password:
///
///     Server    host name of a controller
///     Port      of LDAP, a number
///     Method    ticket, ldaps or starttls
///     CAFile    path of the certificates that are trusted, PEM
///     User      who logs on; empty with a ticket that is there already
///
/// The domain's name is the session's: "Domain" below "Setup".
namespace twk::world {

/// Texts as written; an empty one was not given.
struct ConnectionOptions {
  std::string domain = {};
  std::string server = {};
  std::string port = {};
  std::string method = {};
  std::string user = {};
  std::string ca_file = {};
};

/// One of them as an option of a command line.
struct ConnectionOption {
  std::string name;  ///< "--domain"
  std::string type;  ///< "NAME"
  std::string help;
  std::string ConnectionOptions::*text;
};
const std::vector<ConnectionOption>& connection_options();
/// True when one of the texts was given.
bool says_anything(const ConnectionOptions& options);

/// A choice of the method: its word, and its text in a window.
struct ConnectionMethod {
  std::string word;
  std::string caption;
};
const std::vector<ConnectionMethod>& connection_methods();

/// The stored settings. A missing domain is "".
ConnectionOptions read_connection(platform::RegistryAccess& registry);
/// Stores them, including the domain. False when the settings cannot be written.
bool save_connection(platform::RegistryAccess& registry, const ConnectionOptions& options);

/// `given`, completed from `stored`. A domain other than the stored one gets nothing from what is
/// stored for that.
ConnectionOptions merge_connection(const ConnectionOptions& stored, const ConnectionOptions& given);

/// Raises 5 with what is wrong: an invalid port, an unknown method, a user's password that would not be used,
/// an invalid name.
live::LiveSettings live_settings(const ConnectionOptions& options);
/// The same, but a domain is required.
live::LiveSettings required_settings(const ConnectionOptions& options);

}  // namespace twk::world
