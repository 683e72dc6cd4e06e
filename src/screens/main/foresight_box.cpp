#include "screens/main/foresight_box.hpp"

#include <QElapsedTimer>
#include <QFormLayout>
#include <QLabel>
#include <QTimer>
#include <algorithm>

#include "screens/widgets/application.hpp"
#include "screens/widgets/bind.hpp"
#include "session/loaded_domain.hpp"
#include "windows/foresight.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/new_user.hpp"

namespace twk::screens {
namespace {

using windows::Desktop;
using windows::Form1;

constexpr int kPause = 150;  // milliseconds
constexpr int kLongestPause = 5000;

/// Asks once the person pauses. A server that answers slowly is asked the less often.
class Asker final : public QTimer {
 public:
  Asker(Desktop& session, QObject* parent) : QTimer(parent), session_(session) {
    setSingleShot(true);
    setInterval(kPause);
    connect(this, &QTimer::timeout, this, [this] { ask(); });
  }

  /// What was loaded is another.
  void ask_anew() {
    windows::forget_foresight(session_);
    start();
  }

 private:
  void ask() {
    const Form1& form = session_.form1;
    if (form.SSTab1 != windows::tab::kNewUser || !form.enabled || form.mouse_pointer != 0)
      return;
    QElapsedTimer clock;
    clock.start();
    run_guarded([this] { windows::foresee_new_user(session_); });
    setInterval(std::clamp(static_cast<int>(clock.elapsed()) * 4, kPause, kLongestPause));
  }

  Desktop& session_;
};

void add_line(QFormLayout& lines, const QString& caption, const char* name, controls::Label& control) {
  auto* const text = new QLabel(lines.parentWidget());
  text->setObjectName(name);
  text->setTextFormat(Qt::PlainText);
  text->setWordWrap(true);
  text->setTextInteractionFlags(Qt::TextSelectableByMouse);
  bind_to(*text, control);
  lines.addRow(caption, text);
}

void follow_fields(Asker& asker, Desktop& session) {
  Form1& form = session.form1;
  const auto ask = [&asker] { asker.start(); };
  const auto ask_anew = [&asker] { asker.ask_anew(); };
  for (controls::TextBox* const box :
       {&form.strFirst, &form.StrMiddle, &form.strLast, &form.UserID_Box, &form.Description})
    keep(asker, box->text.watch(ask));
  for (controls::ComboBox* const box : {&form.nutemplate, &form.NUsitename})
    keep(asker, box->text.watch(ask));
  for (controls::CheckBox* const box : {&form.Copy_User, &form.Create_Dirs, &form.Create_User_Account})
    keep(asker, box->value.watch(ask));
  keep(asker, form.TreeView1.watch([ask, ask_anew](const controls::TreeChange& change) {
    using Kind = controls::TreeChange::Kind;
    if (change.kind == Kind::kSelected)
      ask();
    else if (change.kind == Kind::kReset || change.kind == Kind::kInserted || change.kind == Kind::kRemoved ||
             change.kind == Kind::kChanged)
      ask_anew();
  }));
  // Another tab may have changed a template, a site or a format; a run may have made anything.
  keep(asker, form.SSTab1.watch(ask_anew));
  keep(asker, form.enabled.watch(ask_anew));
  keep(asker, session.domain.mode_known.watch(ask_anew));
}

}  // namespace

QGroupBox* make_foresight(Desktop& session, QWidget* parent) {
  windows::Foresight& foresight = session.new_user.foresight;
  auto* const box = new QGroupBox("Would be created", parent);
  box->setObjectName("foresight");
  auto* const lines = new QFormLayout(box);
  lines->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  add_line(*lines, "In", "foreseen_place", foresight.place);
  add_line(*lines, "Account", "foreseen_account", foresight.account);
  add_line(*lines, session::is_active_directory(session) ? "Display name" : "Full name", "foreseen_full_name",
           foresight.full_name);
  add_line(*lines, "UPN", "foreseen_principal_name", foresight.principal_name);
  add_line(*lines, "Home", "foreseen_home", foresight.home);
  add_line(*lines, "Profile", "foreseen_profile", foresight.profile);
  add_line(*lines, "Groups", "foreseen_groups", foresight.groups);
  auto* const verdict = new QLabel(box);
  verdict->setObjectName("foreseen_verdict");
  verdict->setTextFormat(Qt::PlainText);
  verdict->setWordWrap(true);
  bind_to(*verdict, foresight.verdict);
  lines->addRow(verdict);
  auto* const asker = new Asker(session, box);
  follow_fields(*asker, session);
  asker->start();
  return box;
}

}  // namespace twk::screens
