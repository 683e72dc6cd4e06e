#include <limits>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "directory/load_options.hpp"
#include "directory/loading/ad_load.hpp"
#include "directory/names.hpp"
#include "directory/operations.hpp"
#include "platform/group_type.hpp"
#include "platform/ldap_text.hpp"
#include "session/loaded_domain.hpp"
#include "session/session.hpp"

namespace twk::directory {
namespace {

using session::Session;

constexpr std::int32_t kGroupsPerRefresh = 1000;

/// Where "/DEBUG1" ends the program.
base::Trap trap_of(const Session& session) {
  return base::Trap(base::upper(session.command_line) == "/DEBUG1");
}

bool are_left_out(const LoadOptions& options) {
  return options.SkipGroups && !options.TemplateGroupsOnly;
}

std::string group_type_text(std::int32_t type, std::string_view path) {
  std::string text = (type & platform::group_type::kSecurity) != 0 ? "Security Group" : "Distribution Group";
  if ((type & platform::group_type::kGlobal) != 0)
    text += " - Global";
  if ((type & platform::group_type::kLocal) != 0) {
    text += base::find_fold(path, "builtin") != base::npos ? " - builtin Local" : " - Domain Local";
  }
  if ((type & platform::group_type::kUniversal) != 0)
    text += " - Universal";
  return text;
}

void list_group(Session& session, const LoadOptions& options, const std::string& path,
                const std::string& name, std::int32_t type) {
  constexpr std::string_view kIcon = "W2KGRP";
  base::Trap trap = trap_of(session);
  const auto add = [&](controls::ListView& list, std::vector<std::string> columns = {}) {
    trap([&] { list.add(path, name, std::string(kIcon), std::move(columns)); });
  };
  if (!options.TemplateGroupsOnly) {
    add(session.domain.other_groups);
    add(session.domain.all_groups, {group_type_text(type, path)});
    if ((type & platform::group_type::kGlobal) != 0)
      add(session.domain.groups);
  }
  add(session.domain.template_choice);
}

void count_group(Session& session) {
  if (session.GroupCount == std::numeric_limits<std::int16_t>::max()) {
    throw base::RuntimeError(base::error::kOverflow, "Overflow: more groups than can be counted");
  }
  ++session.GroupCount;
  if (session.GroupCount % kGroupsPerRefresh == 0) {
    session.domain.loading =
        std::string(static_cast<std::size_t>(session.UserCount / kGroupsPerRefresh), '.') +
        "Retrieving Groups Please wait";
  }
}

/// The groups that meet a further condition.
void read_groups(Session& session, const LoadOptions& options, std::string_view condition) {
  const auto rows =
      run_query(session,
                "<" + options.Search + session.DomainName + ">;(&(objectCategory=group)(objectClass=Group)" +
                    std::string(condition) + ");adsPath,Name,GroupType;SubTree",
                query_options(options));
  for (; !rows->at_eof(); rows->MoveNext()) {
    base::Trap counting = trap_of(session);
    counting([&] { count_group(session); });
    const std::string path = rewrite_path(options.Search, rows->field(0).text());
    const platform::Value type = rows->field(2);
    list_group(session, options, path, rows->field(1).text(), type.is_empty() ? 0 : type.integer());
  }
}

}  // namespace

void Load_AD_Groups(Session& session) {
  const LoadOptions options = read_load_options(session);
  if (are_left_out(options)) {
    session.log.line("Skipping Loading Groups");
    return;
  }
  session.domain.loading = std::string("Retrieving Groups Please wait");
  session.domain.template_choice.clear();
  session.domain.other_groups.clear();
  session.status.panel1 = "Retrieving Groups...";
  session.Error_Status_Text = "Error Getting Groups " + base::to_text(session.GroupCount);
  session.GroupCount = 0;
  base::Trap trap = trap_of(session);
  trap([&] { read_groups(session, options, {}); });
}

void look_up_groups(Session& session, const std::vector<std::string>& names) {
  session::LookedUp& looked_up = session.domain.looked_up;
  if (!looked_up.groups)
    return;
  std::string conditions;
  for (const std::string& name : names) {
    if (!base::trim(name).empty() && !looked_up.asked_groups.contains(base::upper(name)))
      conditions += "(name=" + platform::escape_filter_value(name) + ")";
  }
  if (conditions.empty())
    return;
  const LoadOptions options = read_load_options(session);
  if (are_left_out(options))
    return;
  read_groups(session, options, "(|" + conditions + ")");
  for (const std::string& name : names)
    looked_up.asked_groups.insert(base::upper(name));
}

}  // namespace twk::directory
