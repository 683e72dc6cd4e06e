#include <algorithm>
#include <limits>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "creation/account_name.hpp"
#include "creation/known_person.hpp"
#include "creation/validate_request.hpp"
#include "directory/names.hpp"
#include "directory/tree/tree.hpp"
#include "platform/ldap_text.hpp"
#include "platform/query.hpp"
#include "session/log_tab.hpp"
#include "session/session.hpp"
#include "session/settings.hpp"
#include "stores/side_tables.hpp"

namespace twk::creation {
namespace {

using session::Session;

/// There is no alternative to a taken name.
Step refuse_taken_name(CreationRun& run) {
  Session& session = run.session;
  refuse_for_taken_name(run);
  if (!session.import.Importing) {
    session.platform.dialogs.MsgBox(
        "User " + run.UserId + " Already Exist \r\nChange the UserID and Continue.", platform::Buttons::kOk,
        platform::Icon::kExclamation, "User Exist");
  }
  run.view.status("Ready.");
  run.view.progress(0);
  run.view.step("");
  log(run, "User : " + run.UserId + "  Already Exist ");
  session.log.close();
  return Step::kEnd;
}

/// Starts again with a newly formed name; a format that yields the same name again does not help.
Step try_again(CreationRun& run, const std::string& format) {
  Session& session = run.session;
  const NewUserRequest& request = run.request;
  const std::string name = form_user_id(session, request, format);
  if (base::equals_fold(name, run.UserId))
    return refuse_taken_name(run);
  log(run, "User ID " + run.UserId + " already exists");
  run.request.UserId = name;
  run.view.names(run.request);
  log(run, "Changing User ID to " + name);
  session.log.close();
  return Step::kAgain;
}

std::string import_bound(Session& session, std::string_view name) {
  const std::string value = session::read_setting(session, session::kSetup, name);
  return value.empty() ? "0" : value;
}

void begin_work(CreationRun& run) {
  Session& session = run.session;
  run.ImportGroupsStart = import_bound(session, "ImportGroupsStart");
  run.ImportGroupsFinish = import_bound(session, "ImportGroupsFinish");
  session.AltIdTried = false;
  session.SerialTokenUsed = false;
  run.view.lock();
}

/// The account name from a directory row, once all its tags have values.
void take_name_of_row(CreationRun& run) {
  const std::vector<stores::DirectoryRow> rows = stores::directory_rows(run.session);
  const auto row = std::ranges::find_if(rows, [](const stores::DirectoryRow& one) {
    return base::equals_fold(one.attribute, "SAMACCOUNTNAME");
  });
  if (row == rows.end())
    return;
  const std::string name = expand_row_value(run, row->value);
  if (name.find('%') == base::npos)
    run.SamName = name;
}

Step refuse_sam_name(CreationRun& run, const char* status) {
  Session& session = run.session;
  run.view.status(status);
  run.view.progress(0);
  session.log.close();
  run.view.unlock();
  return Step::kEnd;
}

/// Where users of the domain may be whom the tree does not show.
std::string searched_base(const Session& session) {
  const std::string& unit = session.ManagedOU;
  return "LDAP://" + session.DomainName + "/" +
         (unit.empty() ? directory::domain_distinguished_name(session.DomainName) : unit);
}

/// True for a name that the tree would show as taken if all of it had been read. An import goes by what was.
bool is_taken_in_unread_part(Session& session, const std::string& name) {
  const std::string_view in_filter = std::string_view(name).substr(0, name.find(','));
  if (session.import.Importing || session.LoadAllUsersFlag || in_filter.empty() ||
      !session::is_active_directory(session))
    return false;
  bool taken = false;
  // Where nobody answers, the account cannot be made either.
  base::Trap unanswered;
  unanswered([&] {
    const auto rows = session.platform.query.execute(
        {searched_base(session),
         // The name comes first: a Samba server goes through the people and stops at what fails.
         "(&(cn=" + platform::escape_filter_value(std::string(in_filter)) +
             "*)(objectCategory=person)(objectClass=user))",
         {"ADsPath"},
         session.ManagedOU.empty() || session.ManageSubOUs ? platform::Scope::kSubtree
                                                           : platform::Scope::kOneLevel},
        {});
    for (; !taken && !rows->at_eof(); rows->MoveNext())
      taken = base::starts_with_fold(directory::name_in_path(rows->field(0).text()), "CN=" + name);
  });
  if (taken)
    session::LOG_TAB(session, session::kRed, " User Name " + name + " already exist");
  return taken;
}

}  // namespace

const std::string* next_format(Session& session, const NameFormats& formats) {
  if (!session.SerialTokenUsed) {
    if (formats.taken.empty() || session.AltIdTried)
      return nullptr;
    session.AltIdTried = true;
    return &formats.taken;
  }
  if (session.SerialCounter == std::numeric_limits<std::int16_t>::max())
    return nullptr;
  ++session.SerialCounter;
  return session.AltIdTried ? &formats.taken : &formats.account;
}

void refuse_for_taken_name(CreationRun& run) {
  run.message = "User " + run.UserId + " Already Exist";
  run.name_taken = true;
}

Step ResolveCollision(CreationRun& run) {
  Session& session = run.session;
  if (!run.request.stages.account)
    return Step::kGoOn;
  if (!directory::User_Exist(session, run.UserId) && !is_taken_in_unread_part(session, run.UserId)) {
    begin_work(run);
    return Step::kGoOn;
  }
  const std::string* const format = next_format(session, run.request.formats);
  return format == nullptr ? refuse_taken_name(run) : try_again(run, *format);
}

Step ResolveSamName(CreationRun& run) {
  Session& session = run.session;
  const bool by_row = session::is_active_directory(session) && !run.request.named_by_logon;
  if (by_row)
    take_name_of_row(run);
  if (by_row && run.CommaInName && run.SamName.find(',') != base::npos) {
    run.message = "SAMName cannot have a comma in it.";
    session.platform.dialogs.MsgBox(
        "SAMName cannot have a comma in it.\r\nYou will need to enter a 'SAMAccountName' property into "
        "the\r\nW2K TAB.",
        platform::Buttons::kOk, platform::Icon::kCritical, "Invaild Chr in SAMAccountName");
    return refuse_sam_name(run, "Ready.");
  }
  std::vector<std::string> faults;
  if (by_row)
    faults = invalid_characters(run.SamName, true);
  if (run.SamName.ends_with('.'))
    faults.emplace_back("the dot at the end of " + run.SamName);
  if (faults.empty())
    return Step::kGoOn;
  for (const std::string& fault : faults)
    log(run, "Invalid Character in SAMAccountName: " + fault);
  run.message = "Invalid Character in SAMAccountName: " + faults.front();
  session.platform.dialogs.beep();
  return refuse_sam_name(run, "User Name Invalid...");
}

Step SettleName(CreationRun& run) {
  for (Step (*const check)(CreationRun&) :
       {ValidateRequest, RecognizePerson, ResolveCollision, ResolveSamName}) {
    if (const Step step = check(run); step != Step::kGoOn)
      return step;
  }
  return Step::kGoOn;
}

}  // namespace twk::creation
