#include "cli/frame/access_text.hpp"

#include <array>
#include <utility>

#include "base/text.hpp"
#include "platform/access_check.hpp"
#include "resources/file_permission.hpp"
#include "resources/share502.hpp"

namespace twk::cli {
namespace {

using platform::Ace;

constexpr std::array<std::pair<const char*, std::uint32_t>, 14> kRights = {{
    {"readData", 0x1},
    {"writeData", 0x2},
    {"appendData", 0x4},
    {"readExtendedAttributes", 0x8},
    {"writeExtendedAttributes", 0x10},
    {"execute", 0x20},
    {"deleteChild", 0x40},
    {"readAttributes", 0x80},
    {"writeAttributes", 0x100},
    {"delete", 0x10000},
    {"readPermissions", 0x20000},
    {"changePermissions", 0x40000},
    {"takeOwnership", 0x80000},
    {"synchronize", 0x100000},
}};

std::string type_of(const Ace& ace) {
  if (ace.type() == platform::ace_type::kAllow)
    return "allow";
  return ace.type() == platform::ace_type::kDeny ? "deny" : "type " + std::to_string(ace.type());
}

std::string access_of(const Ace& ace, AccessOf what) {
  if (what == AccessOf::kShare) {
    for (const char* const word : {"Full Control", "Change", "Read"}) {
      if (resources::share_mask_of_access_word(word) == ace.mask())
        return word;
    }
  }
  const auto word = resources::access_word(ace.type(), platform::map_generic_file_bits(ace.mask()));
  return word ? std::string(*word) : base::to_hex(ace.mask());
}

std::string applies_to(const Ace& ace) {
  std::string text;
  const auto add = [&text](const char* what) { text += (text.empty() ? "" : ", ") + std::string(what); };
  if ((ace.flags() & platform::ace_flag::kInheritOnly) == 0)
    add("this folder");
  if ((ace.flags() & platform::ace_flag::kContainerInherit) != 0)
    add("subfolders");
  if ((ace.flags() & platform::ace_flag::kObjectInherit) != 0)
    add("files");
  return text;
}

}  // namespace

std::vector<Column> entry_columns(AccessOf what) {
  std::vector<Column> columns = {{"account", "Account"}, {"type", "Type"}, {"access", "Access"}};
  if (what == AccessOf::kFolder) {
    columns.push_back({"appliesTo", "Applies to"});
    columns.push_back({"inherited", "Inherited"});
  }
  return columns;
}

std::vector<Json> list_entries(platform::Security& security, const platform::SecurityDescriptor& descriptor,
                               AccessOf what) {
  std::vector<Json> rows;
  if (!descriptor.dacl)
    return rows;
  for (const Ace& ace : descriptor.dacl->entries()) {
    const auto sid = ace.sid();
    Json& row = rows.emplace_back();
    row["account"] = sid ? security.LookupAccountSid({}, *sid) : std::string();
    row["sid"] = sid ? sid->text() : std::string();
    row["type"] = type_of(ace);
    row["access"] = access_of(ace, what);
    row["mask"] = base::to_hex(ace.mask());
    if (what == AccessOf::kFolder) {
      row["appliesTo"] = applies_to(ace);
      row["inherited"] = (ace.flags() & platform::ace_flag::kInherited) != 0;
    }
  }
  return rows;
}

bool is_open_to_all(const platform::SecurityDescriptor& descriptor) {
  return !descriptor.dacl_present || !descriptor.dacl;
}

Json describe_rights(std::uint32_t rights) {
  const auto has = [rights](std::uint32_t mask) { return (rights & mask) == mask; };
  const auto word = [&has](const char* access) { return has(resources::mask_of_access_word(access)); };
  Json result = {{"full", word("Full Control")},
                 {"change", word("Change")},
                 {"read", word("Read")},
                 {"write", has(platform::access::kFileGenericWrite)},
                 {"mask", base::to_hex(rights)}};
  Json each = Json::object();
  for (const auto& [name, mask] : kRights)
    each[name] = has(mask);
  result["rights"] = std::move(each);
  return result;
}

}  // namespace twk::cli
