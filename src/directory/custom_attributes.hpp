#pragma once

#include <array>
#include <cstddef>
#include <string>

namespace twk::session {
struct Session;
}

/// The administrator's own attributes of an account in Active Directory. Settings hold a display name
/// `Custom1` to `Custom4` and an attribute `Property1` to `Property4`. A field whose display name is absent
/// or empty is hidden, and so is not read or written.
namespace twk::directory {

inline constexpr std::size_t kCustomFields = 4;

struct CustomField {
  std::string caption;
  std::string attribute;  ///< its LDAP name
};
using CustomFieldRows = std::array<CustomField, kCustomFields>;

/// As stored, without the blanks around them.
CustomFieldRows read_custom_fields(session::Session& session);
/// What is wrong with the rows; empty when they will do. A field without an attribute would show nothing.
std::string refused_custom_fields(const CustomFieldRows& rows);
/// Stores them. Returns the name of the setting that could not be written; empty when all were.
std::string write_custom_fields(session::Session& session, const CustomFieldRows& rows);

/// The captions of the fields that accounts in Active Directory show; empty for one that is not shown.
std::array<std::string, kCustomFields> custom_captions(session::Session& session);
/// The LDAP name of a field's attribute, counted from 0; empty for none.
std::string custom_attribute(session::Session& session, std::size_t index);

}  // namespace twk::directory
