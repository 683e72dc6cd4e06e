#pragma once

#include <string>

#include "ads/winnt_object.hpp"
#include "lab/domain/staged_entry.hpp"
#include "platform/account_listing.hpp"
#include "platform/foreseen_write.hpp"

namespace twk::lab {

/// A domain bound through WinNT: a flat container of users and groups, named by their account names. New
/// accounts go to CN=Users. Computer accounts are not among its children.
class WinntDomain final : public ads::WinntDomainObject, public platform::AccountListing {
 public:
  WinntDomain(LabDomain& domain, std::string name) : WinntDomainObject(std::move(name)), domain_(domain) {}

  void enumerate(std::span<const std::string> classes,
                 const std::function<bool(const platform::ObjectPtr&)>& visit) override;
  void list_users(const std::function<bool(const platform::ListedUser&)>& visit) override;
  platform::ObjectPtr GetObject(std::string_view object_class, std::string_view name) override;
  platform::ObjectPtr Create(std::string_view object_class, std::string_view name) override;
  void Delete(std::string_view object_class, std::string_view name) override;
  /// Renames an account of this domain.
  platform::ObjectPtr MoveHere(std::string_view source_path,
                               const std::optional<std::string>& new_name) override;

 private:
  [[nodiscard]] const std::string& find(std::string_view object_class, std::string_view name) const;

  LabDomain& domain_;
};

/// A user or a group bound through WinNT.
class WinntAccount final : public ads::WinntAccountObject, public platform::ForeseenWrite {
 public:
  /// `domain_name` as the paths spell it; `name` is for an object that is not stored yet.
  WinntAccount(StagedEntry entry, std::string domain_name, std::string name);

  [[nodiscard]] std::string Name() const override { return name_; }
  [[nodiscard]] std::string Class() const override;

  void SetInfo() override;
  void SetPassword(std::string_view password) override;
  void foresee_write() override { entry_.foresee(); }
  void foresee_password(std::string_view password) override;

  void Add(std::string_view path) override;
  void Remove(std::string_view path) override;
  bool IsMember(std::string_view path) override;
  /// In a lab of kind nt, members by primary group are included.
  std::vector<platform::ObjectPtr> Members() override;
  /// The primary group first.
  std::vector<platform::ObjectPtr> Groups() override;

 private:
  ads::AttributeAccess& attributes() override { return entry_; }
  [[nodiscard]] LabDomain& domain() const { return entry_.domain(); }
  [[nodiscard]] std::vector<platform::ObjectPtr> bind_all(const std::vector<std::string>& dns) const;

  StagedEntry entry_;
  std::string name_;
};

/// The account at that DN.
platform::ObjectPtr bind_winnt_account(LabDomain& domain, std::string_view dn,
                                       const std::string& domain_name);

}  // namespace twk::lab
