#include "windows/formats_tab.hpp"

#include "base/text.hpp"
#include "format/user_name.hpp"
#include "session/form1.hpp"
#include "session/settings.hpp"

namespace twk::windows {
namespace {

constexpr std::array<std::string_view, 4> kAccountFormats = {"%last%#1%first%", "%first%#1%last%",
                                                             "1%first%%last%", "%first%%last%"};
constexpr std::array<std::string_view, 3> kFullNameFormats = {"%First% %Middle% %Last%", "%First% %Last%",
                                                              "%Last% %First%"};

std::string sample(session::Session& session, const controls::TextBox& format) {
  return format::UserName(session, format.text, "John", "Fred", "Smith");
}

/// The preset of an entry; empty for the custom one.
template <std::size_t Count>
std::string_view preset(const std::array<std::string_view, Count>& formats, int entry) {
  const auto place = static_cast<std::size_t>(entry);
  return place < Count ? formats[place] : std::string_view();
}

/// The number of the stored entry; 0 for none.
int stored_entry(session::Session& session, std::string_view sub_key, std::string_view name) {
  return base::to_number(session::read_setting(session, sub_key, name)).value_or(0);
}

/// The custom entry has no preset and leaves the text unchanged.
void put_preset(controls::TextBox& format, std::string_view text) {
  if (!text.empty())
    format.text = std::string(text);
}

}  // namespace

void Check_Name_Format_Click(session::Session& session) {
  session.form1.testuserid.text = sample(session, session.form1.setupid);
  session.form1.TESTUSERALTID.text = sample(session, session.form1.ALTID);
}

void Check_FN_Format_Click(session::Session& session) {
  session::Form1& form1 = session.form1;
  form1.FN_Format_Check.text = sample(session, form1.FN_Format);
  session::write_setting(session, session::kPreferences, "Custom_FN", form1.FN_Format.text.get());
  const std::string_view chosen =
      preset(kFullNameFormats, stored_entry(session, session::kPreferences, "FullName") - 1);
  if (chosen.empty() || form1.FN_Format.text.get() == chosen)
    return;
  form1.FullName_Format.index = static_cast<int>(kFullNameFormats.size());
  session::write_setting(session, session::kPreferences, "FullName",
                         base::to_text(form1.FullName_Format.index + 1));
}

void Option1_Click(session::Session& session) {
  const int entry = session.form1.Option1.index;
  session::write_setting(session, session::kSetup, "UserFormat", base::to_text(entry + 1));
  const std::string_view format = preset(kAccountFormats, entry);
  if (format.empty())
    return;
  session.form1.setupid.text = std::string(format);
  session.form1.testuserid.text = sample(session, session.form1.setupid);
}

void FullName_Format_Click(session::Session& session) {
  const int entry = session.form1.FullName_Format.index;
  session::write_setting(session, session::kPreferences, "FullName", base::to_text(entry + 1));
  const std::string_view format = preset(kFullNameFormats, entry);
  if (format.empty())
    return;
  session.form1.FN_Format.text = std::string(format);
  session.form1.FN_Format_Check.text = sample(session, session.form1.FN_Format);
}

void apply_presets(session::Session& session) {
  session::Form1& form1 = session.form1;
  if (form1.setupid.text.get().empty() || stored_entry(session, session::kSetup, "UserFormat") > 0)
    put_preset(form1.setupid, preset(kAccountFormats, form1.Option1.index));
  if (form1.FN_Format.text.get().empty() || stored_entry(session, session::kPreferences, "FullName") > 0)
    put_preset(form1.FN_Format, preset(kFullNameFormats, form1.FullName_Format.index));
}

void keep_typed_format(session::Session& session) {
  controls::OptionGroup& choice = session.form1.Option1;
  const int entry = stored_entry(session, session::kSetup, "UserFormat") - 1;
  const std::string_view chosen = preset(kAccountFormats, entry);
  if (chosen.empty() || session.form1.setupid.text.get() == chosen)
    return;
  choice.index = static_cast<int>(kAccountFormats.size());
  session::write_setting(session, session::kSetup, "UserFormat", base::to_text(choice.index + 1));
}

}  // namespace twk::windows
