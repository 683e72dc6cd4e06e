#include "session/formats_tab.hpp"

#include "base/text.hpp"
#include "format/user_name.hpp"
#include "session/settings.hpp"

namespace twk::session {
namespace {

constexpr std::array<std::string_view, 4> kAccountFormats = {"%last%#1%first%", "%first%#1%last%",
                                                             "1%first%%last%", "%first%%last%"};
constexpr std::array<std::string_view, 3> kFullNameFormats = {"%First% %Middle% %Last%", "%First% %Last%",
                                                              "%Last% %First%"};

std::string sample(Session& session, const controls::TextBox& format) {
  return format::UserName(session, format.text, "John", "Fred", "Smith");
}

/// The preset of an entry; empty for the custom one.
template <std::size_t Count>
std::string_view preset(const std::array<std::string_view, Count>& formats, int entry) {
  const auto place = static_cast<std::size_t>(entry);
  return place < Count ? formats[place] : std::string_view();
}

}  // namespace

void Check_Name_Format_Click(Session& session) {
  session.form1.testuserid.text = sample(session, session.form1.setupid);
  session.form1.TESTUSERALTID.text = sample(session, session.form1.ALTID);
}

void Check_FN_Format_Click(Session& session) {
  session.form1.FN_Format_Check.text = sample(session, session.form1.FN_Format);
  write_setting(session, kPreferences, "Custom_FN", session.form1.FN_Format.text.get());
}

void Option1_Click(Session& session) {
  const int entry = session.form1.Option1.index;
  write_setting(session, kSetup, "UserFormat", base::to_text(entry + 1));
  const std::string_view format = preset(kAccountFormats, entry);
  if (format.empty())
    return;
  session.form1.setupid.text = std::string(format);
  session.form1.testuserid.text = sample(session, session.form1.setupid);
}

void FullName_Format_Click(Session& session) {
  const int entry = session.form1.FullName_Format.index;
  write_setting(session, kPreferences, "FullName", base::to_text(entry + 1));
  const std::string_view format = preset(kFullNameFormats, entry);
  if (format.empty())
    return;
  session.form1.FN_Format.text = std::string(format);
  session.form1.FN_Format_Check.text = sample(session, session.form1.FN_Format);
}

void fill_empty_formats(Session& session) {
  Form1& form1 = session.form1;
  if (form1.setupid.text.get().empty())
    form1.setupid.text = std::string(preset(kAccountFormats, form1.Option1.index));
  if (form1.FN_Format.text.get().empty())
    form1.FN_Format.text = std::string(preset(kFullNameFormats, form1.FullName_Format.index));
}

}  // namespace twk::session
