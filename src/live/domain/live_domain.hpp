#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ads/password_rules.hpp"
#include "live/domain/access_lists.hpp"
#include "live/ldap/ldap_connection.hpp"
#include "live/ldap/live_schema.hpp"
#include "live/ldap/subschema.hpp"
#include "live/rpc/live_rpc.hpp"
#include "live/terms/live_settings.hpp"
#include "platform/sid.hpp"

namespace twk::live {

/// What the services of one real domain share: its connections, kept by server, and what its controller says
/// about it, read once.
class LiveDomain {
 public:
  explicit LiveDomain(LiveSettings settings, Prompts prompts = {});
  LiveDomain(const LiveDomain&) = delete;
  LiveDomain& operator=(const LiveDomain&) = delete;
  ~LiveDomain() { credentials_->learn_netbios_by({}); }

  /// Contains the password once it has been asked for.
  [[nodiscard]] const LiveSettings& settings() const { return credentials_->settings(); }
  [[nodiscard]] Credentials& credentials() { return *credentials_; }
  [[nodiscard]] std::shared_ptr<Credentials> shared_credentials() { return credentials_; }
  /// False for an NT4-style domain, whose name has no dot.
  [[nodiscard]] bool has_directory() const;
  /// Host name of the controller. Raises kServerDown when the name service knows none.
  [[nodiscard]] const std::string& controller();

  /// The connection to a server of a path: none or one of the domain's names for its controller, otherwise a
  /// host with or without ":port". With `catalogue` the global catalogue of that server; when nothing answers
  /// there, which is told once, the directory itself.
  LdapConnection& ldap(std::string_view server = {}, bool catalogue = false);
  /// A connection with a separate logon, by user and password over TLS.
  std::unique_ptr<LdapConnection> ldap_as(std::string_view server, std::string_view user,
                                          std::string_view password);

  /// The port of the global catalogue that belongs to the way of logging on.
  [[nodiscard]] std::uint16_t catalogue_port() const;

  /// Remote calls to the domain's servers.
  [[nodiscard]] LiveRpc& rpc() { return rpc_; }

  [[nodiscard]] const std::string& root_dn() { return facts().root_dn; }
  /// The one of the domain that a path's server belongs to.
  [[nodiscard]] std::string root_dn(std::string_view server);
  [[nodiscard]] const std::string& configuration_dn() { return facts().configuration_dn; }
  [[nodiscard]] const std::string& schema_dn() { return facts().schema_dn; }
  /// The pre-2000 name; an NT4-style domain's only name.
  [[nodiscard]] const std::string& netbios() { return has_directory() ? facts().netbios : settings().domain; }
  [[nodiscard]] const platform::Sid& sid() { return facts().sid; }
  /// DNS name of the forest's first domain.
  [[nodiscard]] const std::string& forest() { return facts().forest; }

  /// True for what is in a naming context that the catalogue does not hold. A server may return it
  /// anyway.
  [[nodiscard]] bool is_beside_catalogue(std::string_view dn);

  [[nodiscard]] bool is_domain_name(std::string_view name);
  /// None for an attribute that the directory does not know.
  const ads::AttributeSchema* attribute(std::string_view name);
  /// What the directory requires and allows of objects of a class.
  const ads::ClassProperties& properties(const ads::ClassSchema& schema);

  /// The schema of a server that is not a domain controller; none for one that is. Read once.
  const Subschema* foreign_schema(std::string_view server, LdapConnection& connection);

  /// The account's entry with these attributes, by its pre-2000 name; none when there is no such account.
  std::optional<LdapEntry> find_account(std::string_view name, const std::vector<std::string>& attributes,
                                        std::string_view server = {});
  /// The identifier of an account by its pre-2000 name, in any case; none when there is no such account. The
  /// stages of a creation ask for the same ones again: an answer is kept for ten seconds, as long as nothing
  /// here can have given the name to another account.
  std::optional<platform::Sid> sid_of_account(std::string_view name);
  /// The NetBIOS name of the controller that a domain's clients of the old kind write to, as the directory
  /// has it: asking by a remote call would take a logon to a file server. Empty when it cannot be read.
  std::string primary_controller();
  /// What the domain requires of the password of a new account; none where some accounts have rules of their
  /// own, since only the controller knows which ones it will have. Kept for ten seconds.
  std::optional<ads::PasswordRules> password_rules();
  /// The same of an account that exists; none where its own rules cannot be read.
  std::optional<ads::PasswordRules> password_rules_of(const std::string& dn);
  /// What the account that is logged on may do, as the directory says, true where it does not tell: create
  /// objects of a class in a container, write an attribute of an object. Kept for ten seconds, for a few
  /// objects.
  bool may_create(const std::string& container, std::string_view object_class);
  bool may_write(const std::string& dn, std::string_view attribute);
  /// The same by the access lists: delete an object, give an account a new password, change the list. None
  /// where that cannot be told.
  std::optional<bool> deletes(const std::string& dn) { return lists_.deletes(ldap(), schema_dn(), dn); }
  std::optional<bool> sets_password(const std::string& dn) { return lists_.sets_password(ldap(), dn); }
  std::optional<bool> writes_access_list(const std::string& dn) { return lists_.writes_list(ldap(), dn); }
  /// The entry that has an identifier.
  std::optional<LdapEntry> find_sid(const platform::Sid& sid, const std::vector<std::string>& attributes);

 private:
  struct Facts {
    std::string root_dn;
    std::string configuration_dn;
    std::string schema_dn;
    std::string netbios;
    std::string forest;
    std::vector<std::string> beside_catalogue;  ///< normalized names
    platform::Sid sid{5, {}};
  };

  struct KnownSid {
    platform::Sid sid;
    std::chrono::steady_clock::time_point at;
  };

  struct KnownRights {
    std::optional<std::vector<std::string>> names;
    std::chrono::steady_clock::time_point at;
  };

  /// True when what `read` reads of an object, or what is known of that, has the name.
  bool is_among_rights(const std::string& dn, std::string_view name,
                       std::optional<std::vector<std::string>> (*read)(LdapConnection&, const std::string&));
  const Facts& facts();
  /// The controller that the domain has turned to, if that is another; once `host` is gone, one that answers,
  /// which is the domain's from here on. Empty when there is none, or the settings name the one to use.
  std::string another_controller(const std::string& host, bool is_gone);
  void read_password_rules();
  LdapConnection& catalogue_of(std::string_view server);
  /// The kept connection of that key, made by `make` when there is none.
  LdapConnection& kept(const std::string& key, std::string_view server, bool catalogue);
  [[nodiscard]] bool is_own(std::string_view server) const;
  [[nodiscard]] std::unique_ptr<LdapConnection> make(std::string_view server, bool catalogue,
                                                     const std::shared_ptr<Credentials>& credentials);

  std::shared_ptr<Credentials> credentials_;
  LiveRpc rpc_{credentials_};
  std::string controller_;
  std::map<std::string, std::unique_ptr<LdapConnection>> connections_;
  std::map<std::string, bool> catalogue_answers_;  ///< by server, in capitals
  std::map<std::string, KnownSid> sids_;           ///< by name, in capitals
  std::size_t sids_known_at_ = 0;                  ///< how many changes of names there had been
  std::optional<Facts> facts_;
  ads::PasswordRules password_rules_;    ///< of accounts without own ones
  bool has_own_password_rules_ = false;  ///< some accounts
  std::chrono::steady_clock::time_point password_rules_until_;
  std::map<std::string, KnownRights> rights_;                  ///< by kind and name of the object
  std::map<std::string, std::unique_ptr<Subschema>> foreign_;  ///< by server; null for a controller
  AccessLists lists_;
  LiveSchema schema_;
};

}  // namespace twk::live
