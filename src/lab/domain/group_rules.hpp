#pragma once

#include <cstdint>

#include "lab/domain/lab_domain.hpp"

namespace twk::lab {

/// Which changes of "groupType" the directory allows, [MS-ADTS] 3.1.1.5.3: in a native domain global and
/// universal into each other, and domain local and universal, as far as the groups in it and those that it is
/// in may then still be; security into distribution unless it is anyone's primary group; in a mixed domain
/// none. Raises kUnwilling with a server's words.
void check_group_type(const LabDomain& domain, const Entry& group, std::int32_t wanted);

}  // namespace twk::lab
