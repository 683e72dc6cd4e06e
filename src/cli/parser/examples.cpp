#include "cli/parser/examples.hpp"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <string>

#include "base/text.hpp"

namespace twk::cli {
namespace {

constexpr auto kExamples = std::to_array<Example>({
    {"lab init", "twk lab init ~/school --empty --domain school.test"},
    {"lab info", "twk --lab ~/lab lab info"},
    {"doctor", "twk --lab ~/lab doctor"},
    {"site list", "twk site list"},
    {"site add", "twk site add Bergen --nt-server FS1"},
    {"site show", "twk site show Bergen"},
    {"site edit",
     R"(twk site edit Bergen --exchange-server EX55 --exchange-org Tarnwick --exchange-site "Head Office")"},
    {"template list", "twk template list"},
    {"template copy", "twk template copy Staff Contractors"},
    {"template add", R"(twk template add Guests --home-dir '\\%Server%\Users\%UserName%' --home-drive H:)"},
    {"template show", "twk template show Staff"},
    {"template edit", "twk template edit Contractors --logon-script guests.cmd"},
    {"template diff", "twk template diff Staff Contractors"},
    {"settings list", "twk settings list"},
    {"settings describe", "twk settings describe"},
    {"settings get", "twk settings get Setup UserFormat"},
    {"settings set", R"(twk settings set Setup AltSetupID "%First%%n%")"},
    {"settings unset", "twk settings unset Setup AltSetupID"},
    {"settings export", "twk settings export > settings.reg"},
    {"settings import", "twk settings import settings.reg"},
    {"format", R"(twk format "8%first%.8%last%" Ada "" Marsh)"},
    {"user create",
     R"(twk user create --template Staff --site "Head Office" --ou "OU=London,DC=twk,DC=test" Ada Marsh)"},
    {"user import", R"(printf 'Ann,,Lee\nFrank,,Hill\n' > starters.txt
twk user import starters.txt --template Staff --site "Head Office" \
  --ou "OU=New Starters,DC=twk,DC=test")"},
    {"user show", "twk user show Ada.Marsh --attributes objectSid,pwdLastSet,userAccountControl"},
    {"user list", "twk user list --columns name,ou,mail,lastLogonTimestamp --csv > users.csv"},
    {"user find", "twk user find Mar*"},
    {"user reset-password", "echo Welcome-2-Work | twk --yes user reset-password Ada.Marsh --password-stdin"},
    {"user set", "twk user set Ada.Marsh office=201 mail=ada@twk.test mustChange=no"},
    {"user groups", "twk user groups Ada.Marsh --effective"},
    {"user diff", "twk user diff Ann.Lee Ada.Marsh"},
    {"user copy", "twk user copy Ann.Lee --like Ada.Marsh --dry-run"},
    {"user move-ou", R"(twk user move-ou Ann.Lee "OU=Zürich,DC=twk,DC=test")"},
    {"user move", "twk user move Ann.Lee --site Bergen --template Contractors --data move --dry-run"},
    {"user rename", R"(twk user rename Ann.Lee --logon Ann.Day --full-name "Ann Day" --last Day)"},
    {"lab logon", "echo Welcome-2-Work | twk --lab ~/lab lab logon Ada.Marsh --password-stdin"},
    {"lab lock", "twk --lab ~/lab lab lock Ada.Marsh"},
    {"lab expire", "twk --lab ~/lab lab expire Frank.Hill"},
    {"users find-locked", "twk users find-locked --csv > locked.csv"},
    {"users unlock", R"x(twk users unlock --filter "(lockoutTime>=1)")x"},
    {"users disable",
     R"(twk users disable --ou "OU=London,DC=twk,DC=test" --recurse --except Ada.Marsh --dry-run)"},
    {"users enable", "twk users enable --group Staff"},
    {"users password-expires", "twk users password-expires --group Staff"},
    {"users password-never-expires", "twk users password-never-expires --group Staff --dry-run"},
    {"users reset-password", R"(twk users reset-password --ou "OU=London,DC=twk,DC=test" --dry-run)"},
    {"users find-expired", "twk users find-expired --within 30d"},
    {"users find-inactive", "twk users find-inactive --days 90 --csv > inactive.csv"},
    {"users find-password-expiring", "twk users find-password-expiring --within 7d"},
    {"users find-never-logged-on", "twk users find-never-logged-on --csv"},
    {"users set-attribute",
     R"(twk users set-attribute department Sales --ou "OU=London,DC=twk,DC=test" --recurse --dry-run)"},
    {"users delete", R"(twk users delete --ou "OU=New Starters,DC=twk,DC=test" --account --dry-run)"},
    {"users groups",
     R"(twk users groups --add "Building Access" --ou "OU=London,DC=twk,DC=test" --recurse --dry-run)"},
    {"users move-ou",
     R"(twk users move-ou "OU=New Starters,DC=twk,DC=test" --ou "OU=London,DC=twk,DC=test" --dry-run)"},
    {"users move", "twk users move --group Staff --site Bergen --template Contractors --data copy --dry-run"},
    {"users rename", R"(printf 'User,Logon,Last name\nAnn.Day,Ann.Lee,Lee\n' > married.csv
twk users rename --from-file married.csv)"},
    {"user delete", "twk user delete Frank.Hill --account --data --dry-run"},
    {"profile delete", "twk profile delete Ada.Marsh --dry-run"},
    {"mailbox show", R"(twk mailbox show Ada.Marsh --site "Head Office")"},
    {"mailbox find", R"(twk mailbox find Ada.Marsh --site "Head Office")"},
    {"mailbox delete", R"(twk --yes mailbox delete Ada.Marsh --site "Head Office")"},
    {"mailbox create", R"(twk mailbox create Ada.Marsh --site "Head Office")"},
    {"group list", "twk group list"},
    {"group create", R"(twk group create Drivers --description "Who may drive the van")"},
    {"group add-member", "twk group add-member Drivers Ada.Marsh Ann.Lee"},
    {"group show", "twk group show Drivers"},
    {"group members", "twk group members Drivers --nested --csv > drivers.csv"},
    {"group tree", "twk group tree Drivers"},
    {"group copy", "twk --yes group copy Drivers Contractors"},
    {"group remove-member", "twk group remove-member Drivers Ann.Lee"},
    {"group rename", "twk group rename Contractors Externals"},
    {"group set", "twk group set Externals --scope universal"},
    {"group find-empty", "twk group find-empty --csv > empty.csv"},
    {"group delete", "twk --yes group delete Externals"},
    {"ou create", R"(twk ou create "OU=Pupils,DC=twk,DC=test")"},
    {"ou list", "twk ou list"},
    {"ou show", R"(twk ou show "OU=London,DC=twk,DC=test")"},
    {"ou rename", R"(twk ou rename "OU=Pupils,DC=twk,DC=test" Students)"},
    {"ou move", R"(twk ou move "OU=Students,DC=twk,DC=test" "OU=London,DC=twk,DC=test")"},
    {"ou delete", R"(twk ou delete "OU=Students,OU=London,DC=twk,DC=test" --recursive --dry-run)"},
    {"ou manage", "twk ou manage"},
    {"options show", "twk options show"},
    {"options set", "twk options set PageSize=500"},
    {"hours show", "twk hours show --user Ada.Marsh"},
    {"hours zone", "twk hours zone workstation"},
    {"hours set", "twk hours show --user Ada.Marsh | twk hours set --user Ann.Lee"},
    {"custom set", "twk custom set 1 Badge employeeNumber"},
    {"custom show", "twk custom show"},
    {"custom clear", "twk custom clear 1"},
    {"site delete", "twk --yes site delete Bergen"},
    {"template delete", "twk --yes template delete Guests"},
    {"table show", "twk table show wts"},
    {"table set", "twk table show permissions | twk table set permissions --dry-run"},
    {"ts show", "twk ts show Ada.Marsh"},
    {"ts set", R"(twk ts set Ada.Marsh allowLogon=yes "idleLimit=30 mins")"},
    {"acl show", R"(twk acl show '\\FS1\Users')"},
    {"acl check", R"(twk acl check '\\FS1\Users' Ada.Marsh)"},
    {"acl set", R"(twk acl set '\\FS1\Users\Ada.Marsh' --account Staff --access Read)"},
    {"owner take", R"(twk owner take '\\FS1\Users\Ada.Marsh' --account Ada.Marsh)"},
    {"share list", "twk share list FS1"},
    {"share add", R"(twk share add FS1 Ada$ "D:\Users\Ada.Marsh" --remark "Home of Ada Marsh")"},
    {"share show", "twk share show FS1 Users"},
    {"share delete", "twk --yes share delete FS1 Ada$"},
    {"lab server add", "twk --lab ~/lab lab server add FS2 --for-template Staff"},
    {"lab export", "twk --lab ~/lab lab export > lab.ldif"},
    {"lab import", "twk --lab ~/lab lab import lab.ldif"},
    {"plan run", R"(printf 'users disable Ann.Lee\nusers groups --add Drivers Ann.Lee\n' | twk plan run -)"},
    {"plan undo", "twk --yes plan undo ~/lab/db/Plan*.jsonl"},
    {"db compact", "twk --yes db compact"},
    {"db backup", "twk db backup"},
    {"db convert", "twk db convert"},
    {"log show", "twk log show --tail 20"},
    {"log clear", "twk --yes log clear"},
});

/// "Example: twk site list"; on lines of their own when there are several, or one is long.
std::string shown(const Example& example) {
  constexpr std::size_t kLongest = 100;
  const bool one_line = example.lines.size() <= kLongest && example.lines.find('\n') == base::npos;
  std::string text = one_line ? "Example: " : "Example:";
  if (one_line)
    return text += example.lines;
  for (const std::string& line : base::split(example.lines, '\n'))
    text += "\n  " + line;
  return text;
}

void show_example(CLI::App& command, const Example& example, const std::string& common) {
  const std::string text = command.get_footer();
  const bool has_own = !text.ends_with(common);
  command.footer((has_own ? text + "\n\n" : std::string()) + shown(example) + "\n\n" + common);
}

}  // namespace

std::span<const Example> all_examples() {
  return kExamples;
}

void show_examples(CLI::App& line) {
  const std::string common = line.get_footer();
  for (const Example& example : kExamples) {
    CLI::App* command = &line;
    for (const std::string& word : base::split(example.words, ' '))
      command = command->get_subcommand(word);
    show_example(*command, example, common);
  }
}

}  // namespace twk::cli
