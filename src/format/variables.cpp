#include "format/variables.hpp"

#include "format/filling.hpp"
#include "session/loaded_database.hpp"
#include "session/session.hpp"

namespace twk::format {

std::vector<Variable> template_variables(const session::Session& session) {
  const controls::ListView& rows = session.database.variables;
  std::vector<Variable> variables;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const controls::ListRow& row = rows.at(i);
    variables.push_back({row.text, row.sub_items.empty() ? std::string() : row.sub_items.front()});
  }
  return variables;
}

std::string Replace_Variables(session::Session& session, std::string text) {
  return Filling(session, std::move(text)).variables().take();
}

}  // namespace twk::format
