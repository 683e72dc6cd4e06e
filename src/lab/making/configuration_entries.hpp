#pragma once

#include <string>
#include <vector>

#include "lab/domain/lab_domain.hpp"
#include "lab/store/ldif.hpp"

namespace twk::lab {

/// An entry of that name with its classes (from "top" down, blanks between), the attribute that it is named
/// by and the further ones.
LdifRecord make_entry(const std::string& dn, const std::string& chain, std::vector<LdifAttribute> attributes);

/// The configuration of a domain that is a forest of its own, as far as it is read: CN=Configuration, its
/// CN=Partitions with the cross-references of the configuration, the schema and the domain, its CN=Schema.
/// Parents first; nothing for a lab of kind nt.
std::vector<LdifRecord> configuration_entries(const LabConfig& config);

/// Adds those that the directory lacks, which one taken from a real domain's export does. A directory without
/// the domain's own entry is left alone.
void add_missing_configuration(LabDomain& domain);

}  // namespace twk::lab
