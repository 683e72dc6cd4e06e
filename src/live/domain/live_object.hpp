#pragma once

#include <optional>
#include <string>
#include <unordered_map>

#include "ads/ads_path.hpp"
#include "ads/entry_object.hpp"
#include "ads/staged_values.hpp"
#include "live/domain/live_domain.hpp"
#include "platform/attribute_listing.hpp"
#include "platform/foreseen_write.hpp"

namespace twk::live {

/// Where an object came from: the beginning of the paths of objects reached from it, and the server to ask.
struct Origin {
  LiveDomain* domain = nullptr;
  ads::Provider provider = ads::Provider::kLdap;
  std::string server;                          ///< as the path named it; empty when left out
  std::shared_ptr<LdapConnection> connection;  ///< with a separate logon; none for the domain's

  [[nodiscard]] LdapConnection& ldap() const;
  /// True for a server that is not a domain controller.
  [[nodiscard]] bool is_foreign() const { return domain->foreign_schema(server, ldap()) != nullptr; }
  /// None for an attribute that the server does not know.
  [[nodiscard]] const ads::AttributeSchema* attribute(std::string_view name) const;
  /// The attribute that a caller's name refers to there.
  [[nodiscard]] std::string_view attribute_name(std::string_view name) const;
};

/// The attributes of one entry of a server, with changes staged on it. Stored values are read together, on
/// first use; computed attributes and links are requested by name.
class LiveEntry final : public ads::AttributeAccess {
 public:
  LiveEntry(Origin origin, std::string dn, std::string object_class, bool is_new)
      : origin_(std::move(origin)),
        dn_(std::move(dn)),
        object_class_(std::move(object_class)),
        new_(is_new) {}
  /// An entry that was just read with all its attributes.
  LiveEntry(Origin origin, LdapEntry stored, std::string object_class);

  [[nodiscard]] const Origin& origin() const { return origin_; }
  [[nodiscard]] const std::string& dn() const { return dn_; }
  [[nodiscard]] const std::string& object_class() const { return object_class_; }

  platform::Value get(std::string_view attribute) override;
  void stage(int control, std::string_view attribute, const platform::Value& value) override;
  /// All staged changes in one request; on failure they stay staged. A new user account is disabled until it
  /// gets a password, as the directory requires.
  void commit();
  /// Raises what `commit` would raise for values and an account name in use; nothing is sent but a search.
  void foresee();
  /// Raises kAccessDenied where the directory says that the account may not write that attribute.
  void require_writing(std::string_view attribute) const;
  void require_reset() const;
  void require_deletion() const;
  void require_access_list_right() const;
  /// Enables an account that was made through this object.
  void set_password(std::string_view password);
  /// A new account, enabled unless it is staged otherwise, in one request. False when that was refused, and
  /// for anything that is not a new account.
  bool add_with_password(std::string_view password);
  [[nodiscard]] bool is_new() const { return new_; }
  /// Of the values that are stored.
  [[nodiscard]] std::vector<std::string> attribute_names();
  /// All values of a link, even when the server returns them in ranges.
  std::vector<std::string> links(std::string_view attribute);

 private:
  void fetch();
  [[nodiscard]] bool is_user() const;
  [[nodiscard]] std::vector<LdapAttribute> new_attributes();
  void write_changes();
  [[nodiscard]] std::vector<LdapChange> staged_requests();
  [[nodiscard]] bool keep_naming_value(std::vector<LdapChange>& changes) const;
  std::vector<std::string> stored(std::string_view attribute);
  std::vector<std::string> raw_values(const ads::StagedChange& change);

  Origin origin_;
  std::string dn_;
  std::string object_class_;
  bool new_ = false;
  bool awaits_password_ = false;
  bool has_new_password_ = false;  ///< set through this object, and nothing written since
  std::optional<LdapEntry> fetched_;
  ads::StagedValues staged_;
};

/// An entry bound through LDAP or the global catalogue. The catalogue is read-only: every change raises
/// kUnwilling.
class LiveObject final : public ads::EntryObject,
                         public platform::ForeseenWrite,
                         public platform::AttributeListing {
 public:
  /// `whole_path` is the object's own path when bound as "LDAP://twk.test"; empty for a path that ends in the
  /// DN.
  explicit LiveObject(LiveEntry entry, std::string whole_path = {})
      : EntryObject(std::move(whole_path)), entry_(std::move(entry)) {}

  [[nodiscard]] std::string Class() const override { return entry_.object_class(); }
  void SetInfo() override;
  void SetPassword(std::string_view password) override;
  bool SetInfoWithPassword(std::string_view password) override;
  void foresee_write() override;
  void foresee_password(std::string_view password) override;
  void foresee_reset() override { entry_.require_reset(); }
  void foresee_deletion() override { entry_.require_deletion(); }
  void foresee_members() override { entry_.require_writing("member"); }
  void foresee_move(std::string_view source) override;
  std::vector<std::string> attribute_names() override { return entry_.attribute_names(); }

  void enumerate(std::span<const std::string> classes,
                 const std::function<bool(const platform::ObjectPtr&)>& visit) override;
  platform::ObjectPtr GetObject(std::string_view object_class, std::string_view relative_name) override;
  platform::ObjectPtr Create(std::string_view object_class, std::string_view relative_name) override;
  void Delete(std::string_view object_class, std::string_view relative_name) override;
  platform::ObjectPtr MoveHere(std::string_view source_path,
                               const std::optional<std::string>& new_name) override;

  void Add(std::string_view path) override;
  bool AddTogether(std::span<const std::string> paths) override;
  void Remove(std::string_view path) override;
  bool RemoveTogether(std::span<const std::string> paths) override;
  [[nodiscard]] bool takes_many() const override { return true; }
  bool IsMember(std::string_view path) override;
  std::vector<platform::ObjectPtr> Members() override;
  std::vector<platform::ObjectPtr> Groups() override;

 private:
  [[nodiscard]] const std::string& dn() const override { return entry_.dn(); }
  [[nodiscard]] ads::Provider provider() const override { return entry_.origin().provider; }
  [[nodiscard]] const std::string& server() const override { return entry_.origin().server; }
  [[nodiscard]] const std::string& root_dn() const override { return entry_.origin().domain->root_dn(); }
  ads::AttributeAccess& attributes() override { return entry_; }
  [[nodiscard]] std::string_view attribute_name(std::string_view name) const override {
    return entry_.origin().attribute_name(name);
  }

  [[nodiscard]] LdapConnection& ldap() const { return entry_.origin().ldap(); }
  /// Writes the members by one request. False when it was refused; raises kServerDown.
  bool write_members(LdapChangeKind kind, LdapRequest request, std::span<const std::string> paths);
  [[nodiscard]] platform::ObjectPtr make(std::string dn, std::string object_class, bool is_new = false) const;
  /// The name of an existing child.
  [[nodiscard]] std::string stored_child(std::string_view relative_name) const;
  /// The class of a stored child. Raises kNoSuchObject, also when it has another class.
  std::string existing_child(std::string_view object_class, const std::string& dn) const;

  /// The classes of the group's so many members in this domain by their names, in few requests.
  [[nodiscard]] std::unordered_map<std::string, std::string> classes_of_members(std::size_t count) const;
  /// Empty for a member that cannot be read, as one of another domain may be.
  [[nodiscard]] std::string class_of_member(const std::string& dn) const;

  LiveEntry entry_;
};

/// Raises kAccessDenied when the account may not write that attribute.
void require_attribute_right(LiveDomain& domain, const std::string& dn, std::string_view attribute);
/// The distinguished name for a path of an LDAP or WinNT object; a WinNT account is looked up. Raises
/// kNoSuchObject, kBadPathname.
std::string dn_of_path(LiveDomain& domain, std::string_view path);

/// Membership, at once. Raises kObjectExists, kMemberNotInGroup.
void add_member(LdapConnection& connection, const std::string& group_dn, const std::string& member_dn);
void remove_member(LdapConnection& connection, const std::string& group_dn, const std::string& member_dn);
/// By link or by primary group.
bool is_member(LiveDomain& domain, LdapConnection& connection, const std::string& group_dn,
               const std::string& member_dn);

}  // namespace twk::live
