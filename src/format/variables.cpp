#include "format/variables.hpp"

#include "format/filling.hpp"

namespace twk::format {

std::string Replace_Variables(session::Session& session, std::string text) {
  return Filling(session, std::move(text)).variables().take();
}

}  // namespace twk::format
