#pragma once

#include <span>
#include <string>
#include <vector>

#include "ads/entry_object.hpp"
#include "lab/domain/staged_entry.hpp"
#include "platform/attribute_listing.hpp"
#include "platform/foreseen_write.hpp"

namespace twk::lab {

/// An entry bound through LDAP or the global catalogue. Objects reached from it have its provider and server
/// part in their paths. The catalogue is read-only: every change raises kUnwilling.
class LdapObject final : public ads::EntryObject,
                         public platform::ForeseenWrite,
                         public platform::AttributeListing {
 public:
  /// `whole_path` is the object's own path when bound as "LDAP://twk.test"; empty for a path that ends in the
  /// DN.
  LdapObject(StagedEntry entry, ads::Provider provider, std::string server, std::string whole_path = {});

  [[nodiscard]] std::string Class() const override { return entry_.object_class(); }
  void SetInfo() override;
  void SetPassword(std::string_view password) override;
  bool SetInfoWithPassword(std::string_view password) override;
  void foresee_write() override;
  void foresee_password(std::string_view password) override;
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
  [[nodiscard]] ads::Provider provider() const override { return provider_; }
  [[nodiscard]] const std::string& server() const override { return server_; }
  [[nodiscard]] const std::string& root_dn() const override { return domain().root_dn; }
  ads::AttributeAccess& attributes() override { return entry_; }

  [[nodiscard]] LabDomain& domain() const { return entry_.domain(); }
  [[nodiscard]] platform::ObjectPtr bind(std::string_view dn) const;
  /// The stored child of that name and class. Raises kNoSuchObject.
  [[nodiscard]] std::string existing_child(std::string_view object_class,
                                           std::string_view relative_name) const;
  /// The names of the entries at these paths.
  [[nodiscard]] std::vector<std::string> resolve_all(std::span<const std::string> paths) const;
  [[nodiscard]] std::vector<platform::ObjectPtr> bind_all(const std::vector<std::string>& dns) const;

  StagedEntry entry_;
  ads::Provider provider_;
  std::string server_;
};

}  // namespace twk::lab
