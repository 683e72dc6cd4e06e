#include "format/user_name.hpp"

#include "format/filling.hpp"

namespace twk::format {

std::string UserName(session::Session& session, std::string format, std::string_view first,
                     std::string_view middle, std::string_view last) {
  return Filling(session, std::move(format)).names(first, middle, last).take();
}

}  // namespace twk::format
