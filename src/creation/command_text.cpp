#include "creation/command_text.hpp"

#include "format/user_name.hpp"
#include "format/variables.hpp"
#include "session/session.hpp"

namespace twk::creation {

std::string command_text(session::Session& session, std::string command, const CommandUser& user) {
  const session::Form1& form = session.form1;
  if (session.import.Importing)
    command = format::replace_import_fields(session, std::move(command));
  command = format::FRString(command, "%Domain%", session.DomainName);
  command = format::FRString(command, "%Server%", form.NTSERVER.text.get());
  command = format::FRString(command, "%UserName%", user.account);
  command = format::FRString(command, "%EXServer%", form.EXSERVER.text.get());
  command = format::FRString(command, "%EXSite%", form.EXSite.text.get());
  command = format::FRString(command, "%EXorg%", form.EXorg.text.get());
  command = format::UserName(session, std::move(command), user.first, user.middle, user.last);
  return format::Replace_Variables(session, std::move(command));
}

}  // namespace twk::creation
