#include "windows/foresight.hpp"

#include "base/error_words.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "batch/rehearsed_session.hpp"
#include "creation/foresee_user.hpp"
#include "directory/names.hpp"
#include "directory/units.hpp"
#include "platform/ldap_text.hpp"
#include "windows/create_user.hpp"
#include "windows/state/desktop.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/new_user.hpp"

namespace twk::windows {
namespace {

constexpr const char* kNothing = "–";

std::string or_nothing(std::string text) {
  return text.empty() ? kNothing : std::move(text);
}

/// "Staff, Sales" of their paths.
std::string names_of(const std::vector<std::string>& groups) {
  std::string names;
  for (const std::string& path : groups) {
    const bool winnt = base::starts_with_fold(path, "WinNT:");
    names += (names.empty() ? "" : ", ") +
             (winnt ? path.substr(path.rfind('/') + 1)
                    : platform::plain_name(directory::relative_name(directory::name_in_path(path))));
  }
  return names;
}

std::string verdict_on(const creation::ForeseenUser& user) {
  std::string text = user.fault.empty() ? "Can be created." : "Cannot be created: " + user.fault;
  for (const std::string& warning : user.warnings)
    text += "\n- " + warning;
  return text;
}

std::string place_of(const Desktop& session, const std::string& dn) {
  return session::is_active_directory(session) && !dn.empty() ? directory::unit_in_words(dn)
                                                              : session.DomainName;
}

void show(Desktop& session, const creation::ForeseenUser& user) {
  Foresight& shown = session.new_user.foresight;
  const bool other_entry = !user.common_name.empty() && user.common_name != user.account;
  shown.verdict.caption = verdict_on(user);
  shown.place.caption = or_nothing(place_of(session, user.place));
  shown.account.caption =
      or_nothing(user.account + (other_entry ? " (entry " + user.common_name + ")" : std::string()));
  shown.full_name.caption = or_nothing(user.full_name);
  shown.principal_name.caption = or_nothing(user.principal_name);
  shown.home.caption = or_nothing(user.home);
  shown.profile.caption = or_nothing(user.profile);
  shown.groups.caption = or_nothing(names_of(user.groups));
}

bool has_name(const creation::NewUserRequest& request) {
  return !(request.FirstName + request.MiddleName + request.LastName + request.UserId).empty();
}

creation::ForeseenUser foresee(Desktop& session, const creation::NewUserRequest& request) {
  Foresight& foresight = session.new_user.foresight;
  if (foresight.session == nullptr)
    foresight.session = std::make_shared<batch::RehearsedSession>(session, [](const std::string&) {});
  // It may be dropped while it works.
  const std::shared_ptr<batch::RehearsedSession> rehearsed = foresight.session;
  rehearsed->session().SerialCounter = session.SerialCounter;
  return creation::foresee_user(rehearsed->session(), request);
}

}  // namespace

void foresee_new_user(Desktop& session) {
  Foresight& foresight = session.new_user.foresight;
  if (foresight.working || session.form1.TreeView1.first() == nullptr)
    return;
  const creation::NewUserRequest request = new_user_request(session);
  if (!has_name(request)) {
    creation::ForeseenUser nobody;
    if (request.CopyUser || request.SelectedNodeKind == "OU")
      nobody.place = request.CopyUser ? request.ParentNodeKey : request.SelectedNodeKey;
    show(session, nobody);
    foresight.verdict.caption = std::string("Type the names: what would be made is shown here.");
    return;
  }
  foresight.working = true;
  base::Trap trap;
  if (!trap([&] { show(session, foresee(session, request)); }))
    foresight.verdict.caption =
        "This cannot be foreseen: " + base::in_words(trap.number(), trap.description());
  foresight.working = false;
}

void forget_foresight(Desktop& session) {
  session.new_user.foresight.session.reset();
}

}  // namespace twk::windows
