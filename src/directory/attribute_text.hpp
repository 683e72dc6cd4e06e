#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "directory/account_fields.hpp"
#include "platform/value.hpp"

/// The attributes of an account as a person reads them.
namespace twk::directory {

/// "2026-12-31 09:05:00", what clocks here show at a moment in UTC.
std::string sortable_moment(platform::Clock& clock, base::Date utc);

/// A value: identifiers as "S-1-5-…" and as a GUID, moments by the clock here, flags and kinds in words with
/// their number, yes and no, other bytes as hexadecimal digits or, when there are many, their count.
std::string attribute_text(platform::Clock& clock, std::string_view attribute, const platform::Value& value);
/// Each value of a list.
std::vector<std::string> attribute_texts(platform::Clock& clock, std::string_view attribute,
                                         const platform::Value& values);

struct ReadAttribute {
  std::string name;
  std::vector<std::string> values;  ///< none for an attribute without a value
};

/// Everything that the directory returns of an account, by name; in a WinNT domain the properties of its
/// accounts.
std::vector<ReadAttribute> all_attributes(const AccountDomain& domain, const platform::ObjectPtr& account);
/// The attribute as the schema of users spells it. Raises kNoSuchAttribute, with its name, when there is
/// none.
std::string known_attribute(const AccountDomain& domain, std::string_view name);
/// One of them. Raises what the directory raises.
ReadAttribute read_attribute(const AccountDomain& domain, const platform::ObjectPtr& account,
                             const std::string& name);

}  // namespace twk::directory
