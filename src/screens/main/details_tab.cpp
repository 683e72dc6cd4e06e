#include <QHeaderView>
#include <QLabel>
#include <QShortcut>
#include <QStackedWidget>
#include <QTabWidget>
#include <functional>
#include <utility>
#include <vector>

#include "screens/groups/group_lists.hpp"
#include "screens/main/tabs.hpp"
#include "screens/widgets/form.hpp"
#include "screens/widgets/list_pane.hpp"
#include "screens/widgets/text.hpp"
#include "windows/account/details_tab.hpp"
#include "windows/state/details_changes.hpp"
#include "windows/state/form1.hpp"

namespace twk::screens {
namespace {

using windows::Desktop;

/// Rows of a form whose fields take the available width.
QFormLayout* add_box(QBoxLayout& column, const QString& title) {
  auto* const box = new QGroupBox(title, column.parentWidget());
  auto* const rows = new QFormLayout(box);
  rows->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  column.addWidget(box);
  return rows;
}

void add_general(QBoxLayout& column, windows::Form1& form) {
  QFormLayout& rows = *add_box(column, "General");
  add_text(rows, "&Full name:", "UM_Full_Name", form.UM_Full_Name);
  add_text(rows, "Descriptio&n:", "UM_Description", form.UM_Description);
  add_text(rows, "Fi&rst name:", "UM_First", form.UM_First);
  add_text(rows, "&Initials:", "UM_Initails", form.UM_Initails);
  add_text(rows, "L&ast name:", "UM_Last", form.UM_Last);
  add_text(rows, "&Office:", "UM_Office", form.UM_Office);
}

void add_profile(QBoxLayout& column, windows::Form1& form) {
  QFormLayout& rows = *add_box(column, "Profile");
  add_text(rows, "Profile pat&h:", "UM_Profile_Dir", form.UM_Profile_Dir);
  add_text(rows, "Logon s&cript:", "UM_Logon_Script", form.UM_Logon_Script);
  add_combo(rows, "Home dri&ve:", "UM_Drive_Letter", form.UM_Drive_Letter, {}, true);
  add_text(rows, "Home director&y:", "UM_Home_Dir", form.UM_Home_Dir);
}

/// The logon name followed by the domain's part, in one row.
void add_logon_name(QFormLayout& rows, windows::Form1& form) {
  auto* const pair = new QWidget(rows.parentWidget());
  auto* const line = new QHBoxLayout(pair);
  line->setContentsMargins({});
  auto* const name = new QLineEdit(pair);
  name->setObjectName("UM_Logon_Name");
  name->setAccessibleName("Logon name");
  auto* const domain = new QLineEdit(pair);
  domain->setObjectName("UM_W2KDomain_Name");
  domain->setAccessibleName("Domain of the logon name");
  line->addWidget(name, 1);
  line->addWidget(domain, 1);
  rows.addRow("Lo&gon name:", pair);
  bind_to(*name, form.UM_Logon_Name);
  bind_to(*domain, form.UM_W2KDomain_Name);
  pair->setFocusProxy(name);
  follow(*pair, form.UM_Logon_Name.visible, [pair](bool shown) { set_shown(*pair, shown); });
}

void add_account(QBoxLayout& column, windows::Form1& form) {
  QFormLayout& rows = *add_box(column, "Account");
  add_logon_name(rows, form);
  add_text(rows, "&Pre-2000 name:", "UM_PreW2K", form.UM_PreW2K);
  add_text(rows, "&Mail address:", "UM_MailAddress", form.UM_MailAddress);
  QLineEdit* const expires = add_text(rows, "E&xpires:", "AccExpires", form.AccExpires);
  expires->setPlaceholderText("day/month/year or Never");
  expires->setToolTip(
      "The account ends when this day begins, by the clock of this workstation; write \"end of\" before it "
      "for the last day");
}

void add_flags(QBoxLayout& column, windows::Form1& form) {
  auto* const box = new QGroupBox("Account options", column.parentWidget());
  auto& rows = *new QVBoxLayout(box);
  column.addWidget(box);
  add_check(rows, "Must change pass&word at next logon", "chkMustChange", form.chkMustChange);
  add_check(rows, "Cannot change password", "chkCantChange", form.chkCantChange);
  add_check(rows, "Password never expires", "chkPwdNever", form.chkPwdNever);
  add_check(rows, "Account is disa&bled", "chkAcctDisabled", form.chkAcctDisabled);
  add_check(rows, "Account is loc&ked out", "chkAcctLockedOut", form.chkAcctLockedOut);
}

/// The administrator's own attributes; the box is visible when at least one is.
void add_custom(QBoxLayout& column, windows::Form1& form) {
  QFormLayout& rows = *add_box(column, "Custom attributes");
  QWidget& box = *rows.parentWidget();
  const auto show_box = [&form, &box] {
    const auto& fields = form.Custom_Value;
    box.setVisible(std::any_of(fields.begin(), fields.end(),
                               [](const controls::TextBox& field) { return field.visible.get(); }));
  };
  for (std::size_t i = 0; i < form.Custom_Value.size(); ++i) {
    auto* const label = new QLabel(&box);
    auto* const field = new QLineEdit(&box);
    field->setObjectName("Custom_Value" + QString::number(i));
    label->setBuddy(field);
    rows.addRow(label, field);
    bind_to(*label, form.Custom_Label.at(i));
    bind_to(*field, form.Custom_Value.at(i));
    follow(*field, form.Custom_Label.at(i).caption,
           [field](const std::string& caption) { field->setAccessibleName(to_qt(caption)); });
    follow(box, form.Custom_Value.at(i).visible, [show_box](bool) { show_box(); });
  }
}

QWidget* make_account_page(Desktop& session, QWidget* parent) {
  auto* const page = new QWidget(parent);
  auto* const columns = new QHBoxLayout(page);
  auto* const left_side = new QWidget(page);
  auto* const right_side = new QWidget(page);
  for (QWidget* const side : {left_side, right_side}) {
    auto* const column = new QVBoxLayout(side);
    column->setContentsMargins({});
    columns->addWidget(side, 1);
  }
  auto& left = *static_cast<QVBoxLayout*>(left_side->layout());
  auto& right = *static_cast<QVBoxLayout*>(right_side->layout());
  add_general(left, session.form1);
  add_profile(left, session.form1);
  left.addStretch(1);
  add_account(right, session.form1);
  add_flags(right, session.form1);
  add_custom(right, session.form1);
  right.addStretch(1);
  return make_scrolled(*page, parent);
}

QWidget* make_groups_page(Desktop& session, QWidget* parent) {
  windows::Form1& form = session.form1;
  auto* const page = new QWidget(parent);
  auto* const column = new QVBoxLayout(page);
  QWidget* const lists =
      make_two_lists({.list = form.ListView3,
                      .name = "ListView3",
                      .caption = "Not a mem&ber of",
                      .columns = {"Group"},
                      .empty_text = "No groups.",
                      .button = form.UM_ADD_GROUP,
                      .button_name = "UM_ADD_GROUP",
                      .button_caption = "&Add",
                      .move = [&session] { windows::UM_ADD_GROUP_Click(session); },
                      .click = [&session] { windows::ListView3_Click(session); },
                      .double_click = [&session] { windows::ListView3_DblClick(session); }},
                     // The primary group comes first.
                     {.list = form.ListView4,
                      .name = "ListView4",
                      .caption = "Member &of",
                      .columns = {"Group", "Primary"},
                      .sorted = false,
                      .empty_text = "In no group.",
                      .button = form.UM_REMOVE_GROUP,
                      .button_name = "UM_REMOVE_GROUP",
                      .button_caption = "&Remove",
                      .move = [&session] { windows::UM_REMOVE_GROUP_Click(session); },
                      .click = [&session] { windows::ListView4_Click(session); },
                      .double_click = [&session] { windows::ListView4_DblClick(session); }},
                     page);
  lists->findChild<ListPane*>("ListView4")->on_delete = [&session] {
    windows::UM_REMOVE_GROUP_Click(session);
  };
  column->addWidget(lists);
  return page;
}

/// Fields that hold something else than the account are shown bold, and named beside "Save".
void mark_changes(Desktop& session, QWidget& page, QLabel& told) {
  windows::Form1& form = session.form1;
  using Text = const controls::Observable<std::string>*;
  const std::vector<std::pair<const char*, Text>> texts = {
      {"UM_Full_Name", &form.UM_Full_Name.text},
      {"UM_Description", &form.UM_Description.text},
      {"UM_First", &form.UM_First.text},
      {"UM_Initails", &form.UM_Initails.text},
      {"UM_Last", &form.UM_Last.text},
      {"UM_Office", &form.UM_Office.text},
      {"UM_Profile_Dir", &form.UM_Profile_Dir.text},
      {"UM_Logon_Script", &form.UM_Logon_Script.text},
      {"UM_Drive_Letter", &form.UM_Drive_Letter.text},
      {"UM_Home_Dir", &form.UM_Home_Dir.text},
      {"UM_Logon_Name", &form.UM_Logon_Name.text},
      {"UM_W2KDomain_Name", &form.UM_W2KDomain_Name.text},
      {"UM_PreW2K", &form.UM_PreW2K.text},
      {"UM_MailAddress", &form.UM_MailAddress.text},
      {"AccExpires", &form.AccExpires.text},
      {"Custom_Value0", &form.Custom_Value[0].text},
      {"Custom_Value1", &form.Custom_Value[1].text},
      {"Custom_Value2", &form.Custom_Value[2].text},
      {"Custom_Value3", &form.Custom_Value[3].text}};
  const std::vector<std::pair<const char*, const controls::CheckBox*>> boxes = {
      {"chkMustChange", &form.chkMustChange},
      {"chkCantChange", &form.chkCantChange},
      {"chkPwdNever", &form.chkPwdNever},
      {"chkAcctDisabled", &form.chkAcctDisabled},
      {"chkAcctLockedOut", &form.chkAcctLockedOut}};
  std::vector<std::pair<QWidget*, std::function<bool()>>> fields;
  for (const auto& [name, text] : texts)
    fields.emplace_back(page.findChild<QWidget*>(name),
                        [&session, text = text] { return session.details.differs(*text); });
  for (const auto& [name, box] : boxes)
    fields.emplace_back(page.findChild<QWidget*>(name),
                        [&session, box = box] { return session.details.differs(box->value); });
  const auto show = [&session, &told, fields = std::move(fields)] {
    const bool any = session.details.any();
    int changed = 0;
    for (const auto& [field, differs] : fields) {
      const bool marked = any && differs();
      changed += marked ? 1 : 0;
      QFont font = field->font();
      font.setBold(marked);
      field->setFont(font);
    }
    told.setText(!any           ? QString()
                 : changed == 1 ? QString("1 change is not saved.")
                                : QString("%1 changes are not saved.").arg(changed));
  };
  show();
  keep(told, session.details.watch(show));
  keep(told, form.USERID.text.watch(show));
}

/// The account's name above the pages, "Save" below them.
QWidget* make_user_page(Desktop& session, QWidget* parent) {
  windows::Form1& form = session.form1;
  auto* const page = new QWidget(parent);
  auto* const column = new QVBoxLayout(page);
  auto* const user = new QLabel(page);
  user->setObjectName("USERID");
  user->setTextFormat(Qt::PlainText);
  user->setTextInteractionFlags(Qt::TextSelectableByMouse);
  QFont font = user->font();
  font.setBold(true);
  user->setFont(font);
  follow(*user, form.USERID.text, [user](const std::string& name) { user->setText(to_qt(name)); });
  column->addWidget(user);

  auto* const pages = new QTabWidget(page);
  pages->setObjectName("details_pages");
  pages->addTab(make_account_page(session, pages), "Account");
  pages->addTab(make_groups_page(session, pages), "Groups");
  column->addWidget(pages, 1);

  auto* const line = new QHBoxLayout;
  column->addLayout(line);
  auto* const changes = new QLabel(page);
  changes->setObjectName("unsaved");
  line->addWidget(changes);
  line->addStretch(1);
  mark_changes(session, *page, *changes);
  auto* const save = new QPushButton("Save", page);
  save->setObjectName("Userman_Save");
  save->setAutoDefault(false);
  save->setToolTip("Save the changes to the account (Ctrl+S). Groups change at once.");
  line->addWidget(save);
  bind_to(*save, form.Userman_Save, [&session] { windows::Userman_Save_Click(session); });
  auto* const shortcut = new QShortcut(QKeySequence::Save, page);
  shortcut->setContext(Qt::WidgetWithChildrenShortcut);
  QObject::connect(shortcut, &QShortcut::activated, save, [save] { save->click(); });
  return page;
}

}  // namespace

QWidget* make_details_tab(Desktop& session, QWidget* parent) {
  auto* const tab = new QStackedWidget(parent);
  auto* const nobody = new QLabel(
      "No user is shown.\n\nDouble-click a user in the tree, or choose Details from its menu.", tab);
  nobody->setObjectName("no_user");
  nobody->setAlignment(Qt::AlignCenter);
  nobody->setWordWrap(true);
  nobody->setForegroundRole(QPalette::PlaceholderText);
  tab->addWidget(nobody);
  tab->addWidget(make_user_page(session, tab));
  follow(*tab, session.form1.USERID.text,
         [tab](const std::string& user) { tab->setCurrentIndex(user.empty() ? 0 : 1); });
  return tab;
}

}  // namespace twk::screens
