#pragma once

#include <string>
#include <vector>

#include "lab/shares/lab_config.hpp"
#include "lab/store/ldif.hpp"

/// The mail systems that a new lab starts with.
namespace twk::lab {

struct ExchangePlan {
  std::string organisation = "Tarnwick";
  std::string site = "Head Office";
  std::string old_server = "EX55";  ///< Exchange 5.5, with a directory of its own
  std::string new_server = "EX2K";  ///< Exchange 2000, in the domain's configuration
};

/// The directory of the Exchange 5.5 server, parents first: organisation, site, the configuration of its
/// servers, the container "Recipients" with the distribution list "All Staff".
std::vector<LdifRecord> exchange55_entries(const ExchangePlan& plan);

/// The Exchange 2000 organisation in the configuration of a domain, parents first: "First Administrative
/// Group", the server, "First Storage Group" with the stores "Mailbox Store" and "Mailbox Store 2". Nothing
/// for a lab of kind nt.
std::vector<LdifRecord> exchange2000_entries(const LabConfig& config, const ExchangePlan& plan);

}  // namespace twk::lab
