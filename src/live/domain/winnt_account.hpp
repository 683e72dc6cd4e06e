#pragma once

#include <string>

#include "ads/winnt_object.hpp"
#include "live/domain/live_object.hpp"

/// "WinNT://" paths of an Active Directory domain, which are answered by its directory.
namespace twk::live {

/// The domain as a flat container of users and groups, named by their account names. New accounts go to
/// CN=Users. Computer accounts are not among its children.
class WinntDirectoryDomain final : public ads::WinntDomainObject {
 public:
  WinntDirectoryDomain(LiveDomain& domain, std::string name)
      : WinntDomainObject(std::move(name)), domain_(domain) {}

  void enumerate(std::span<const std::string> classes,
                 const std::function<bool(const platform::ObjectPtr&)>& visit) override;
  platform::ObjectPtr GetObject(std::string_view object_class, std::string_view name) override;
  platform::ObjectPtr Create(std::string_view object_class, std::string_view name) override;
  void Delete(std::string_view object_class, std::string_view name) override;
  /// Renames an account of this domain.
  platform::ObjectPtr MoveHere(std::string_view source_path,
                               const std::optional<std::string>& new_name) override;

 private:
  LiveDomain& domain_;
};

/// The account of that name and class ("User", "Group"; any when empty). Raises kUserNotFound,
/// kGroupNotFound.
platform::ObjectPtr bind_winnt_account(LiveDomain& domain, std::string_view name,
                                       std::string_view object_class, const std::string& domain_name);

}  // namespace twk::live
