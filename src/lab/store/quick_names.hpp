#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace twk::lab {

/// What a shell offers while a person types: texts of a lab's files, found without opening its directory.
/// What was deleted or renamed since the last compaction may be among them.
///
/// At most `most` values of `attribute` ("sAMAccountName"; "dn" for the names of entries) that begin with
/// `prefix`, case ignored, of records of that object class, sorted. None for files that cannot be read.
std::vector<std::string> quick_names(const std::filesystem::path& lab, std::string_view attribute,
                                     std::string_view object_class, std::string_view prefix,
                                     std::size_t most);

}  // namespace twk::lab
