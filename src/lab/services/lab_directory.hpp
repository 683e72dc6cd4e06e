#pragma once

#include "ads/ads_path.hpp"
#include "lab/domain/lab_domain.hpp"
#include "lab/exchange/exchange_servers.hpp"
#include "platform/directory.hpp"

namespace twk::lab {

/// The directories of a lab: its domain through LDAP, GC and WinNT, the schema, its file servers' shares, its
/// Exchange 5.5 servers through LDAP. In a lab of kind nt LDAP and GC paths of the domain raise kServerDown,
/// except the namespaces themselves, which are then empty.
class LabDirectory final : public platform::DirectoryService {
 public:
  LabDirectory(LabDomain& domain, ExchangeServers& exchange, local::TurnPtr turn)
      : domain_(domain), exchange_(exchange), turn_(std::move(turn)) {}

  platform::ObjectPtr GetObject(std::string_view path) override;
  platform::ObjectPtr OpenDSObject(std::string_view path, std::string_view user,
                                   std::string_view password) override;
  void begin_batch() override;
  void begin_sync() override { domain_.store.begin_sync(); }
  void end_batch() override;

 private:
  platform::ObjectPtr bind_namespace(ads::Provider provider);
  platform::ObjectPtr bind_entry(const ads::AdsPath& path, std::string_view whole);
  platform::ObjectPtr bind_share(const ads::AdsPath& path);
  /// None for a path of the domain.
  platform::ObjectPtr bind_exchange(const ads::AdsPath& path);

  LabDomain& domain_;
  ExchangeServers& exchange_;
  local::TurnPtr turn_;
};

}  // namespace twk::lab
