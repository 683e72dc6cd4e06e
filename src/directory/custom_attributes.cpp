#include "directory/custom_attributes.hpp"

#include "base/text.hpp"
#include "session/settings.hpp"

namespace twk::directory {
namespace {

using session::Session;

std::string numbered(std::string_view name, std::size_t index) {
  return std::string(name) + base::to_text(static_cast<std::int64_t>(index) + 1);
}

std::string stored(Session& session, std::string_view name, std::size_t index) {
  return session::read_setting(session, session::kCustom, numbered(name, index));
}

}  // namespace

CustomFieldRows read_custom_fields(Session& session) {
  CustomFieldRows rows;
  for (std::size_t i = 0; i < rows.size(); ++i)
    rows.at(i) = {std::string(base::trim(stored(session, "Custom", i))),
                  std::string(base::trim(stored(session, "Property", i)))};
  return rows;
}

std::string refused_custom_fields(const CustomFieldRows& rows) {
  for (const CustomField& row : rows) {
    if (!row.caption.empty() && row.attribute.empty())
      return "\"" + row.caption + "\" has no attribute.";
  }
  return {};
}

std::string write_custom_fields(Session& session, const CustomFieldRows& rows) {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    for (const auto& [name, value] :
         {std::pair("Custom", &rows.at(i).caption), std::pair("Property", &rows.at(i).attribute)}) {
      session::write_setting(session, session::kCustom, numbered(name, i), *value);
      if (!session.LastRegResult)
        return numbered(name, i);
    }
  }
  return {};
}

std::array<std::string, kCustomFields> custom_captions(Session& session) {
  std::array<std::string, kCustomFields> captions;
  for (std::size_t i = 0; i < captions.size(); ++i) {
    std::string caption = stored(session, "Custom", i);
    if (session.LastRegResult && !base::trim(caption).empty())
      captions.at(i) = std::move(caption);
  }
  return captions;
}

std::string custom_attribute(Session& session, std::size_t index) {
  return stored(session, "Property", index);
}

}  // namespace twk::directory
