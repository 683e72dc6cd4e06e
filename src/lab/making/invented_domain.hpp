#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "lab/shares/lab_config.hpp"
#include "lab/store/ldif.hpp"

namespace twk::lab {

struct DomainPlan {
  std::size_t users = 0;
  std::size_t groups = 0;
  std::size_t ous = 0;
  std::uint64_t seed = 1;
  std::string administrator;  ///< account name of a member of Domain Admins; may be empty
};

/// Passes the entries of a new domain to `write`, parents before children and accounts before the groups they
/// are in: what every domain has, then units of places and departments, people spread over them, and groups
/// of most kinds.
void invent_domain(const LabConfig& config, const DomainPlan& plan,
                   const std::function<void(const LdifRecord&)>& write);

}  // namespace twk::lab
