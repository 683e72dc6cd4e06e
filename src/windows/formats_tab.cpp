#include "windows/formats_tab.hpp"

#include "base/text.hpp"
#include "format/presets.hpp"
#include "format/user_name.hpp"
#include "session/settings.hpp"
#include "windows/state/form1.hpp"

namespace twk::windows {
namespace {

std::string sample(Desktop& session, const controls::TextBox& format) {
  return format::UserName(session, format.text, "John", "Fred", "Smith");
}

/// The number of the stored entry; 0 for none.
int stored_entry(Desktop& session, std::string_view sub_key, std::string_view name) {
  return base::to_number(session::read_setting(session, sub_key, name)).value_or(0);
}

}  // namespace

void Check_Name_Format_Click(Desktop& session) {
  session.form1.testuserid.text = sample(session, session.form1.setupid);
  session.form1.TESTUSERALTID.text = sample(session, session.form1.ALTID);
}

void Check_FN_Format_Click(Desktop& session) {
  Form1& form1 = session.form1;
  form1.FN_Format_Check.text = sample(session, form1.FN_Format);
  session::write_setting(session, session::kPreferences, "Custom_FN", form1.FN_Format.text.get());
  const std::string_view chosen =
      format::full_name_preset(stored_entry(session, session::kPreferences, "FullName") - 1);
  if (chosen.empty() || form1.FN_Format.text.get() == chosen)
    return;
  form1.FullName_Format.index = format::kFullNameFormats - 1;
  session::write_setting(session, session::kPreferences, "FullName",
                         base::to_text(form1.FullName_Format.index + 1));
}

void Option1_Click(Desktop& session) {
  const int entry = session.form1.Option1.index;
  session::write_setting(session, session::kSetup, "UserFormat", base::to_text(entry + 1));
  const std::string_view format = format::account_preset(entry);
  if (format.empty())
    return;
  session.form1.setupid.text = std::string(format);
  session.form1.testuserid.text = sample(session, session.form1.setupid);
}

void FullName_Format_Click(Desktop& session) {
  const int entry = session.form1.FullName_Format.index;
  session::write_setting(session, session::kPreferences, "FullName", base::to_text(entry + 1));
  const std::string_view format = format::full_name_preset(entry);
  if (format.empty())
    return;
  session.form1.FN_Format.text = std::string(format);
  session.form1.FN_Format_Check.text = sample(session, session.form1.FN_Format);
}

void apply_presets(Desktop& session) {
  session.form1.setupid.text = format::stored_account_format(session);
  session.form1.FN_Format.text = format::stored_full_name_format(session);
}

void keep_typed_format(Desktop& session) {
  controls::OptionGroup& choice = session.form1.Option1;
  const int entry = stored_entry(session, session::kSetup, "UserFormat") - 1;
  const std::string_view chosen = format::account_preset(entry);
  if (chosen.empty() || session.form1.setupid.text.get() == chosen)
    return;
  choice.index = format::kAccountFormats - 1;
  session::write_setting(session, session::kSetup, "UserFormat", base::to_text(choice.index + 1));
}

}  // namespace twk::windows
