#pragma once

#include <string>

#include "lab/domain/lab_domain.hpp"

namespace twk::lab {

/// A security identifier that no object of the domain has or ever had. Relative ids are reserved in blocks,
/// recorded as "rIDNextRID" on the domain's entry; the unused rest of a process's block is not handed out
/// again. Raises kUnwilling when the domain's entry has no identifier of its own or the ids are used up.
std::string next_sid(LabDomain& domain);

/// The domain's own identifier. Raises kUnwilling when its entry has none.
std::string domain_sid(const LabDomain& domain);

}  // namespace twk::lab
