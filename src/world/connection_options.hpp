#pragma once

#include <string>
#include <vector>

#include "live/logon/live_settings.hpp"
#include "platform/registry.hpp"

/// How a real domain is reached, as a person writes it: options of the command line, fields of a window, and
/// the settings below "Live", which name everything but the password:
///
///     Server    host name of a controller
///     Port      of LDAP, a number
///     Method    ticket, ldaps or starttls
///     CAFile    path of the certificates that are trusted, PEM
///     User      who logs on; empty with a ticket that is there already
///
/// The domain's name is that of the session: "Domain" below "Setup".
namespace twk::world {

/// Texts as they were written; an empty one says nothing.
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
/// True when one of the texts says something.
bool says_anything(const ConnectionOptions& options);

/// A choice of the method: its word and how it reads in a window.
struct ConnectionMethod {
  std::string word;
  std::string caption;
};
const std::vector<ConnectionMethod>& connection_methods();

/// What the settings say. A domain that is not named is "".
ConnectionOptions read_connection(platform::RegistryAccess& registry);
/// Keeps them, the domain too. False when the settings cannot be written.
bool save_connection(platform::RegistryAccess& registry, const ConnectionOptions& options);

/// `given` where it says something, else `stored`. Another domain than the stored one takes nothing from
/// what is stored for that.
ConnectionOptions merge_connection(const ConnectionOptions& stored, const ConnectionOptions& given);

/// Raises 5 with what is wrong: a port that is none, a method that is not known, a user's password that
/// would go nowhere, a name that is none.
live::LiveSettings live_settings(const ConnectionOptions& options);
/// The same where a domain must be named.
live::LiveSettings required_settings(const ConnectionOptions& options);

}  // namespace twk::world
