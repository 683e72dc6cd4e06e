#pragma once

#include <cstdint>
#include <string>

#include "lab/shares/file_server.hpp"
#include "lab/shares/lab_config.hpp"
#include "lab/store/entry_store.hpp"
#include "platform/clock.hpp"

namespace twk::lab {

/// What the services and objects of one open lab share. `Lab` owns it and outlives them.
struct LabDomain {
  LabConfig config;
  EntryStore& store;
  platform::Clock& clock;
  FileServers& servers;
  std::string root_dn;           ///< "DC=twk,DC=test"
  std::string configuration_dn;  ///< "CN=Configuration,DC=twk,DC=test"
  std::uint32_t next_rid = 0;    ///< what this process reserved and has not used yet: [next_rid, end_rid)
  std::uint32_t end_rid = 0;
};

/// True when `name` names the domain: its DNS or its NetBIOS name, in any case.
bool is_domain_name(const LabDomain& domain, std::string_view name);
/// True for the domain's names and its controller's, with or without the DNS suffix. An empty name means
/// "any".
bool is_domain_server(const LabDomain& domain, std::string_view name);

}  // namespace twk::lab
