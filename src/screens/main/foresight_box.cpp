#include "screens/main/foresight_box.hpp"

#include <QElapsedTimer>
#include <QGridLayout>
#include <QLabel>
#include <QTimer>
#include <QVBoxLayout>
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

QLabel* add_label(QWidget& box, const char* name, controls::Label& control) {
  auto* const text = new QLabel(&box);
  text->setObjectName(name);
  text->setTextFormat(Qt::PlainText);
  text->setWordWrap(true);
  text->setTextInteractionFlags(Qt::TextSelectableByMouse);
  bind_to(*text, control);
  return text;
}

/// A fact and its name, two of them side by side.
void add_fact(QGridLayout& facts, int place, const QString& caption, const char* name,
              controls::Label& control) {
  QWidget& box = *facts.parentWidget();
  const int column = place % 2 * 2;
  facts.addWidget(new QLabel(caption, &box), place / 2, column, Qt::AlignTop);
  facts.addWidget(add_label(box, name, control), place / 2, column + 1, Qt::AlignTop);
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
  auto* const rows = new QVBoxLayout(box);
  auto* const facts = new QGridLayout;
  rows->addLayout(facts);
  facts->setColumnStretch(1, 1);
  facts->setColumnStretch(3, 1);
  facts->setHorizontalSpacing(12);
  add_fact(*facts, 0, "In", "foreseen_place", foresight.place);
  add_fact(*facts, 1, "Account", "foreseen_account", foresight.account);
  add_fact(*facts, 2, session::is_active_directory(session) ? "Display name" : "Full name",
           "foreseen_full_name", foresight.full_name);
  add_fact(*facts, 3, "UPN", "foreseen_principal_name", foresight.principal_name);
  add_fact(*facts, 4, "Home", "foreseen_home", foresight.home);
  add_fact(*facts, 5, "Profile", "foreseen_profile", foresight.profile);
  add_fact(*facts, 6, "Groups", "foreseen_groups", foresight.groups);
  rows->addWidget(add_label(*box, "foreseen_verdict", foresight.verdict));
  auto* const asker = new Asker(session, box);
  follow_fields(*asker, session);
  asker->start();
  return box;
}

}  // namespace twk::screens
