#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "records/records.hpp"

namespace twk::world {

/// A folder of a file server, and the share that leads to it.
struct TemplatePlace {
  std::string folder;  ///< "D:\Users", as the server sees it
  std::string share;   ///< "Users"; empty for a folder without one
};

/// What must be there before a template makes its first home and profile on a server: the folders above those
/// that it makes for each user, and the shares that its paths go through. Paths that depend on a variable
/// before their last folder cannot be known, and are left out. Each folder and share is named once.
std::vector<TemplatePlace> places_of_template(const records::TemplateRecord& record);

}  // namespace twk::world
