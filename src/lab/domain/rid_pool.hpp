#pragma once

#include <string>

#include "lab/domain/lab_domain.hpp"

namespace twk::lab {

/// A security identifier that no object of the domain has or had. Relative ids are reserved in blocks,
/// recorded as "rIDNextRID" on the domain's entry; what a process did not use of its block is not given
/// again. Raises kUnwilling when the domain's entry has no identifier of its own or the ids are used up.
std::string next_sid(LabDomain& domain);

/// The domain's own identifier. Raises kUnwilling when its entry has none.
std::string domain_sid(const LabDomain& domain);

}  // namespace twk::lab
