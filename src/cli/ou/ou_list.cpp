#include "cli/frame/resource_session.hpp"
#include "cli/ou/ou_commands.hpp"
#include "cli/terminal/exit_codes.hpp"
#include "cli/terminal/failures.hpp"
#include "directory/names.hpp"
#include "directory/units.hpp"
#include "platform/adsi.hpp"
#include "platform/ldap_text.hpp"
#include "session/loaded_domain.hpp"

namespace twk::cli {
namespace {

const std::vector<Column> kColumns = {
    {"name", "Unit"}, {"users", "Users"}, {"ous", "Units"}, {"dn", "Distinguished name"}};

const std::vector<Column> kFields = {{"dn", "Distinguished name"},
                                     {"name", "Name"},
                                     {"description", "Description"},
                                     {"users", "Users"},
                                     {"groups", "Groups"},
                                     {"computers", "Computers"},
                                     {"ous", "Units"},
                                     {"others", "Other objects"},
                                     {"usersBelow", "Users, units below included"},
                                     {"allBelow", "All objects below"}};

int list_ous(Context& context) {
  session::Session& session = resource_session(context);
  if (!session::is_active_directory(session))
    throw Refused("A WinNT domain has no organizational units.");
  std::vector<Json> rows;
  for (const directory::Unit& unit : directory::list_units(session)) {
    Json row = {{"dn", unit.dn}, {"users", unit.users}, {"ous", unit.units}};
    if (!context.output().json())
      row["name"] = std::string(2 * unit.depth, ' ') + unit.name;
    rows.push_back(std::move(row));
  }
  context.output().table(kColumns, rows);
  return kExitGreen;
}

int show_ou(Context& context, const std::string& name) {
  session::Session& session = resource_session(context);
  const std::string dn = locate_ou(context.domain(), name);
  const directory::UnitContents own = directory::count_in_unit(session, dn);
  const directory::UnitContents below = directory::count_below_unit(session, dn);
  const platform::ObjectPtr unit =
      session.platform.directory.GetObject("LDAP://" + session.DomainName + "/" + dn);
  context.output().details(kFields, {{"dn", dn},
                                     {"name", platform::plain_name(directory::relative_name(dn))},
                                     {"description", platform::text_or_empty(*unit, "description")},
                                     {"users", own.users},
                                     {"groups", own.groups},
                                     {"computers", own.computers},
                                     {"ous", own.units},
                                     {"others", own.others},
                                     {"usersBelow", below.users},
                                     {"allBelow", below.all()}});
  return kExitGreen;
}

}  // namespace

void add_ou_list(Command& ou, Context& context) {
  auto* list = ou.add_subcommand("list", "List the organizational units with the users directly in each");
  list->callback([&context] { context.set_action([&context] { return list_ous(context); }); });

  auto name = std::make_shared<std::string>();
  auto* show = ou.add_subcommand("show", "Show how much is in an organizational unit");
  show->add_option("DN", *name, "Its distinguished name")->required();
  show->callback([=, &context] { context.set_action([=, &context] { return show_ou(context, *name); }); });
}

}  // namespace twk::cli
