#pragma once

#include "ads/ads_path.hpp"
#include "live/domain/live_domain.hpp"
#include "platform/directory.hpp"

namespace twk::live {

/// The directory of a real domain: LDAP and global catalogue objects, the schema, and "WinNT:" paths of an
/// Active Directory domain.
class LiveDirectory final : public platform::DirectoryService {
 public:
  explicit LiveDirectory(LiveDomain& domain) : domain_(domain) {}

  platform::ObjectPtr GetObject(std::string_view path) override;
  platform::ObjectPtr OpenDSObject(std::string_view path, std::string_view user,
                                   std::string_view password) override;

 private:
  platform::ObjectPtr bind_namespace(ads::Provider provider);
  platform::ObjectPtr bind_root_dse(const ads::AdsPath& path, std::string_view whole);
  platform::ObjectPtr bind_entry(const ads::AdsPath& path, std::string_view whole,
                                 std::shared_ptr<LdapConnection> connection);

  LiveDomain& domain_;
};

}  // namespace twk::live
