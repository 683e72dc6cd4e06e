#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "screens/program/windows.hpp"
#include "screens/widgets/form.hpp"
#include "screens/widgets/text.hpp"
#include "windows/state/directory_windows.hpp"
#include "windows/tree/ad_options.hpp"

namespace twk::screens {
namespace {

using windows::frmADOptions;

/// Describes the control that gets the focus.
class HelpOnFocus final : public QObject {
 public:
  HelpOnFocus(QDialog& dialog, windows::Desktop& session) : QObject(&dialog), session_(session) {
    for (QWidget* const control : dialog.findChildren<QWidget*>())
      control->installEventFilter(this);
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::FocusIn)
      windows::show_option_help(session_, from_qt(watched->objectName()));
    return false;
  }

 private:
  windows::Desktop& session_;
};

struct Choice {
  const char* caption;
  const char* name;
  controls::OptionButton& control;
};

QGroupBox* make_pair(const QString& title, const Choice& first, const Choice& second, QWidget* parent) {
  auto* const box = new QGroupBox(title, parent);
  auto* const rows = new QVBoxLayout(box);
  const auto add = [&](const Choice& choice) {
    auto* const button = new QRadioButton(choice.caption, box);
    button->setObjectName(choice.name);
    rows->addWidget(button);
    return button;
  };
  QRadioButton* const one = add(first);
  QRadioButton* const other = add(second);
  rows->addStretch();
  bind_pair(*one, first.control, {}, *other, second.control, {});
  return box;
}

QGroupBox* make_numbers(windows::Desktop& session, QWidget* parent) {
  auto* const box = new QGroupBox("Sizes", parent);
  auto* const form = new QFormLayout(box);
  frmADOptions& window = session.ad_options;
  add_text(*form, "&Page size:", "PageSize", window.PageSize,
           [&session] { windows::PageSize_Change(session); });
  add_text(*form, "&User limit:", "UserLimit", window.UserLimit,
           [&session] { windows::UserLimit_Change(session); });
  return box;
}

QGroupBox* make_skips(windows::Desktop& session, QWidget* parent) {
  auto* const box = new QGroupBox("At the start", parent);
  auto* const rows = new QVBoxLayout(box);
  frmADOptions& window = session.ad_options;
  add_check(*rows, "Skip us&ers", "SkipUsers", window.SkipUsers,
            [&session] { windows::show_option_help(session, "SkipUsers"); });
  add_check(*rows, "Skip g&roups", "SkipGroups", window.SkipGroups,
            [&session] { windows::show_option_help(session, "SkipGroups"); });
  add_check(*rows, "Groups for the &template tab only", "TemplateGroups", window.TemplateGroups);
  rows->addStretch();
  return box;
}

/// As high as the longest text, so that nothing moves when the text changes.
QGroupBox* make_description(windows::Desktop& session, QWidget* parent) {
  auto* const box = new QGroupBox("Description", parent);
  auto* const rows = new QVBoxLayout(box);
  auto* const text = new QLabel(box);
  text->setObjectName("txtDescription");
  text->setTextFormat(Qt::PlainText);
  text->setWordWrap(true);
  text->setAlignment(Qt::AlignTop | Qt::AlignLeft);
  text->setMinimumHeight(5 * text->fontMetrics().lineSpacing());
  rows->addWidget(text);
  bind_to(*text, session.ad_options.txtDescription);
  return box;
}

void add_buttons(QVBoxLayout& rows, windows::Desktop& session, QDialog& dialog) {
  auto* const row = new QHBoxLayout;
  rows.addLayout(row);
  row->addStretch();
  auto* const apply = new QPushButton("&Apply", &dialog);
  apply->setObjectName("btnApply");
  apply->setDefault(true);
  row->addWidget(apply);
  on_click(*apply, [&session] { windows::btnApply_Click(session); });
  // The first text stays until a person goes to an option.
  apply->setFocus();
  auto* const close = new QPushButton("E&xit", &dialog);
  close->setObjectName("btnExit");
  close->setAutoDefault(false);
  row->addWidget(close);
  QObject::connect(close, &QPushButton::clicked, &dialog, &QDialog::reject);
}

}  // namespace

std::unique_ptr<QDialog> make_ad_options(windows::Desktop& session, QWidget* parent) {
  auto window = std::make_unique<QDialog>(parent);
  QDialog* const dialog = window.get();
  dialog->setObjectName("frmADOptions");
  dialog->setWindowTitle("AD Options");
  frmADOptions& state = session.ad_options;
  auto* const rows = new QVBoxLayout(dialog);
  auto* const grid = new QGridLayout;
  rows->addLayout(grid);
  grid->addWidget(
      make_pair("Users in the tree",
                {"&Load all at the start", "LoadAllUsersoption", state.LoadAllUsersoption},
                {"Load when an &OU is opened", "DontLoadAllUsers", state.DontLoadAllUsers}, dialog),
      0, 0);
  grid->addWidget(make_pair("Ask", {"&Global catalog", "UseGC", state.UseGC},
                            {"&Domain controller (LDAP)", "UseLDAP", state.UseLDAP}, dialog),
                  0, 1);
  grid->addWidget(make_pair("Order of users", {"&Sorted", "Sorton", state.Sorton},
                            {"&Not sorted", "Sortoff", state.Sortoff}, dialog),
                  1, 0);
  grid->addWidget(make_numbers(session, dialog), 1, 1);
  grid->addWidget(make_skips(session, dialog), 2, 0, 1, 2);
  rows->addWidget(make_description(session, dialog));
  add_buttons(*rows, session, *dialog);
  new HelpOnFocus(*dialog, session);
  dialog->resize(520, dialog->sizeHint().height());
  return window;
}

}  // namespace twk::screens
