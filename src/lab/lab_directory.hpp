#pragma once

#include "ads/ads_path.hpp"
#include "lab/lab_domain.hpp"
#include "platform/directory.hpp"

namespace twk::lab {

/// The directory of a lab: its domain through LDAP, GC and WinNT, the schema, its file servers' shares. In a
/// lab of kind nt LDAP and GC paths raise kServerDown, but for the name spaces themselves, which are then
/// empty.
class LabDirectory final : public platform::DirectoryService {
 public:
  explicit LabDirectory(LabDomain& domain) : domain_(domain) {}

  platform::ObjectPtr GetObject(std::string_view path) override;
  platform::ObjectPtr OpenDSObject(std::string_view path, std::string_view user,
                                   std::string_view password) override;
  void begin_batch() override { domain_.store.begin_batch(); }
  void end_batch() override { domain_.store.end_batch(); }

 private:
  platform::ObjectPtr bind_namespace(ads::Provider provider);
  platform::ObjectPtr bind_entry(const ads::AdsPath& path, std::string_view whole);
  platform::ObjectPtr bind_share(const ads::AdsPath& path);

  LabDomain& domain_;
};

}  // namespace twk::lab
