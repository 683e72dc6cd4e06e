#include <QClipboard>
#include <QGridLayout>
#include <QGroupBox>
#include <QGuiApplication>
#include <QLabel>
#include <QProgressBar>

#include "screens/main/foresight_box.hpp"
#include "screens/main/tabs.hpp"
#include "screens/widgets/application.hpp"
#include "screens/widgets/bind.hpp"
#include "screens/widgets/form.hpp"
#include "screens/widgets/icons.hpp"
#include "screens/widgets/light.hpp"
#include "screens/widgets/text.hpp"
#include "session/loaded_domain.hpp"
#include "windows/create_user.hpp"
#include "windows/main_window.hpp"
#include "windows/setting_controls.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/new_user.hpp"

namespace twk::screens {
namespace {

using windows::Desktop;
using windows::Form1;

QWidget* make_person(Desktop& session, QWidget* parent) {
  Form1& form = session.form1;
  auto* const group = new QGroupBox("Person", parent);
  auto* const rows = new QFormLayout(group);
  add_combo(*rows, "Tem&plate:", "nutemplate", form.nutemplate);
  add_combo(*rows, "S&ite:", "NUsitename", form.NUsitename);
  const Action create = [&session] { windows::CreateUser_Click(session); };
  const auto add_name = [&](const char* caption, const char* name, controls::TextBox& control,
                            const Action& edited = {}) {
    QLineEdit* const field = add_text(*rows, caption, name, control, edited);
    QObject::connect(field, &QLineEdit::returnPressed, field, [create] { run_guarded(create); });
    return field;
  };
  const Action edited = [&session] { windows::New_User_Name_Edited(session); };
  add_name("&First name:", "strFirst", form.strFirst, edited);
  add_name("&Middle name:", "StrMiddle", form.StrMiddle, edited);
  add_name("L&ast name:", "strLast", form.strLast, edited);
  add_name("User I&D:", "UserID_Box", form.UserID_Box)
      ->setPlaceholderText("formed from the names if left empty");
  add_name("Descripti&on:", "Description", form.Description);
  auto* const box = new QCheckBox("Copy the &groups of the selected user", group);
  box->setObjectName("Copy_User");
  rows->addRow(QString(), box);
  bind_to(*box, form.Copy_User);
  return group;
}

struct Stage {
  const char* caption;
  const char* name;
  controls::CheckBox& gate;
  controls::Label& light;
};

QWidget* make_stages(Desktop& session, QWidget* parent) {
  Form1& form = session.form1;
  auto* const group = new QGroupBox("Steps", parent);
  auto* const grid = new QGridLayout(group);
  const std::initializer_list<Stage> stages = {
      {"User account", "Create_User_Account", form.Create_User_Account, form.UserAccount},
      {"Directories", "Create_Dirs", form.Create_Dirs, form.Createdirs},
      {"Shares", "Create_Shares", form.Create_Shares, form.Sharedirs},
      {"Directory security", "Dir_Security", form.Dir_Security, form.Security},
      {"Mail account", "Create_Mail_Account", form.Create_Mail_Account, form.MailAccount},
      {"Run command", "Run_script", form.Run_script, form.run}};
  int row = 0;
  for (const Stage& stage : stages) {
    auto* const box = new QCheckBox(stage.caption, group);
    box->setObjectName(stage.name);
    bind_to(*box, stage.gate, [&session, &gate = stage.gate] { windows::store_box(session, gate); });
    auto* const light = new Light(stage.light, group);
    light->setObjectName(QString(stage.name) + "_light");
    light->setAccessibleName(stage.caption);
    grid->addWidget(box, row, 0);
    grid->addWidget(light, row++, 1);
  }
  grid->setColumnStretch(1, 1);
  grid->setRowStretch(row, 1);
  return group;
}

/// Progress is painted as soon as it changes: a creation lets no event in before its end.
QLayout* make_progress(Desktop& session, QWidget* parent) {
  Form1& form = session.form1;
  auto* const column = new QVBoxLayout();
  auto* const caption = new QLabel(parent);
  caption->setObjectName("progress");
  bind_paced(*caption, form.progress);
  auto* const bar = new QProgressBar(parent);
  bar->setObjectName("ProgressBar1");
  bar->setAccessibleName("Progress of the creation");
  bind_to(*bar, form.ProgressBar1);
  auto* const counted = new QLabel(parent);
  counted->setObjectName("Import_Text");
  bind_paced(*counted, form.Import_Text);
  follow_paced(*counted, form.Import_Text.caption,
               [counted](const std::string& text) { counted->setVisible(!text.empty()); });
  column->addWidget(caption);
  column->addWidget(bar);
  column->addWidget(counted);
  return column;
}

/// What the last creation came to; hidden until there is one.
QWidget* make_card(Desktop& session, QWidget* parent) {
  windows::NewUser& state = session.new_user;
  auto* const card = new QGroupBox("Result", parent);
  card->setObjectName("new_user_card");
  card->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
  auto* const row = new QHBoxLayout(card);
  auto* const text = new QLabel(card);
  text->setObjectName("new_user_result");
  text->setAlignment(Qt::AlignTop | Qt::AlignLeft);
  text->setWordWrap(true);
  text->setTextInteractionFlags(Qt::TextSelectableByMouse);
  bind_to(*text, state.card);
  row->addWidget(text, 1);
  auto* const buttons = new QVBoxLayout;
  row->addLayout(buttons);
  add_button(*buttons, "Show", "Show_Made", state.Show_Made,
             [&session] { windows::Show_Made_Click(session); });
  add_button(*buttons, "Copy", "Copy_Made", [text] { QGuiApplication::clipboard()->setText(text->text()); });
  add_button(*buttons, "Another", "Another_User",
             [&session] { windows::Toolbar1_ButtonClick(session, "NewUser"); });
  buttons->addStretch(1);
  follow(*card, state.card_visible, [card](bool shown) { card->setVisible(shown); });
  return card;
}

QString hint_of(const Desktop& session) {
  if (session.form1.NUsitename.items().empty() || session.form1.nutemplate.items().empty())
    return "A new user needs a site, which says where its data is kept, and a template, which says what it "
           "gets. "
           "Make them first, on the tabs Site and Template.";
  if (!session::is_active_directory(session))
    return "Choose a template and a site, and type the names. With the groups of a user to copy, select that "
           "user "
           "in the tree.";
  return "Select an OU in the tree, then a template and a site. With the groups of a user to copy, select "
         "that "
         "user instead.";
}

/// What comes first, in this domain and with these databases.
QLabel* make_hint(Desktop& session, QWidget* parent) {
  auto* const hint = new QLabel(parent);
  hint->setObjectName("new_user_hint");
  hint->setWordWrap(true);
  const auto show = [&session, hint] { hint->setText(hint_of(session)); };
  show();
  keep(*hint, session.domain.mode_known.watch(show));
  // Whoever made one knows it, and the room is for what was made.
  follow(*hint, session.new_user.card_visible, [hint](bool shown) { hint->setVisible(!shown); });
  keep(*hint, session.form1.NUsitename.watch_items(show));
  keep(*hint, session.form1.nutemplate.watch_items(show));
  return hint;
}

}  // namespace

QWidget* make_new_user_tab(Desktop& session, QWidget* parent) {
  auto* const tab = new QWidget(parent);
  auto* const outer = new QVBoxLayout(tab);
  outer->setContentsMargins(0, 0, 0, 0);
  auto* const page = new QWidget(tab);
  auto* const column = new QVBoxLayout(page);
  auto* const groups = new QHBoxLayout();
  column->addLayout(groups);
  groups->addWidget(make_person(session, page), 3);
  groups->addWidget(make_stages(session, page), 2);
  column->addWidget(make_foresight(session, page));
  column->addWidget(make_card(session, page));
  column->addWidget(make_hint(session, page));
  column->addStretch();
  outer->addWidget(make_scrolled(*page, tab), 1);
  // In sight however small the window is.
  auto* const foot = new QHBoxLayout();
  foot->setContentsMargins(9, 0, 9, 9);
  outer->addLayout(foot);
  foot->addLayout(make_progress(session, tab), 1);
  auto* const create = new QPushButton(icon("newuser"), "&Create User", tab);
  create->setObjectName("CreateUser");
  // In a line with the bar, whatever texts stand above that.
  foot->addWidget(create, 0, Qt::AlignBottom);
  on_click(*create, [&session] { windows::CreateUser_Click(session); });
  return tab;
}

}  // namespace twk::screens
