#include <QCloseEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QSplitter>
#include <QVBoxLayout>

#include "screens/program/windows.hpp"
#include "screens/widgets/application.hpp"
#include "screens/widgets/form.hpp"
#include "screens/widgets/icons.hpp"
#include "screens/widgets/list_pane.hpp"
#include "screens/widgets/text.hpp"
#include "screens/widgets/tool_tip.hpp"
#include "windows/groups/groups_window.hpp"
#include "windows/state/group_windows.hpp"

namespace twk::screens {
namespace {

using windows::Desktop;
using windows::Groupsfrm;

/// Stays unchanged while hidden. Its cross and Esc act as "Exit".
class GroupsWindow final : public QDialog {
 public:
  GroupsWindow(Desktop& session, QWidget* parent) : QDialog(parent), session_(session) {
    setWindowModality(Qt::WindowModal);
    setWindowFlag(Qt::WindowMaximizeButtonHint);
  }
  void reject() override {
    run_guarded([this] { windows::Groupsfrm_ExitButton_Click(session_); });
  }

 protected:
  void closeEvent(QCloseEvent* event) override {
    reject();
    event->accept();
  }

 private:
  Desktop& session_;
};

struct Pane {
  controls::ListView& list;
  const char* name;
  QString caption;
  QString filter;
  ListLook look;
};

/// A list under its caption and the field that filters it.
ListPane* add_pane(QBoxLayout& column, const Pane& what, QWidget* parent) {
  auto* const pane = new ListPane(what.list, what.look, parent);
  pane->setObjectName(what.name);
  pane->setAccessibleName(QString(what.caption).remove('&').remove(':'));
  auto* const label = new QLabel(what.caption, parent);
  label->setBuddy(pane);
  column.addWidget(label);
  QLineEdit* const filter = add_filter(*pane, what.filter, parent);
  filter->setObjectName(QString(what.name) + "_filter");
  column.addWidget(filter);
  column.addWidget(pane, 1);
  return pane;
}

QPushButton* add_picture_button(QBoxLayout& box, const QString& caption, const char* picture,
                                const char* name, controls::Button& control, const Action& clicked) {
  QPushButton* const button = add_button(box, caption, name, control, clicked);
  button->setIcon(icon(picture));
  return button;
}

/// The heading of a column sorts through the routine, so that the order is the session's.
void follow_order(ListPane& pane, Desktop& session) {
  Groupsfrm& state = session.groups;
  pane.header()->setSectionsClickable(true);
  pane.header()->setSortIndicatorShown(true);
  const auto show = [&pane, &state] {
    pane.sortByColumn(state.SortKey, state.SortDescending ? Qt::DescendingOrder : Qt::AscendingOrder);
  };
  follow(pane, state.SortKey, [show](int) { show(); });
  follow(pane, state.SortDescending, [show](bool) { show(); });
  QObject::connect(pane.header(), &QHeaderView::sectionClicked, &pane, [&session, show](int column) {
    run_guarded([&] { windows::Groupsfrm_ListView1_ColumnClick(session, column); });
    show();  // the heading has turned its arrow meanwhile
  });
}

QWidget* make_groups_side(Desktop& session, QWidget* parent) {
  Groupsfrm& state = session.groups;
  auto* const side = new QWidget(parent);
  auto* const column = new QVBoxLayout(side);
  column->setContentsMargins(0, 0, 0, 0);
  ListPane* const pane =
      add_pane(*column,
               {state.ListView1,
                "ListView1",
                "&Groups:",
                "Filter groups",
                {.headings = {"Group", "Type"},
                 .empty_text = "No groups. The AD options may leave them out of the load."}},
               side);
  pane->header()->resizeSection(0, 160);
  follow_order(*pane, session);
  pane->on_click = [&session] { windows::Groupsfrm_ListView1_Click(session); };
  pane->on_activate = [&session] { windows::Groupsfrm_ListView1_DblClick(session); };
  pane->on_delete = [&session] { windows::Groupsfrm_Delete_Group_Click(session); };
  auto* const buttons = new QHBoxLayout;
  column->addLayout(buttons);
  add_picture_button(*buttons, "S&how", "find", "Group_Details", state.Group_Details,
                     [&session] { windows::Groupsfrm_Group_Details_Click(session); });
  add_picture_button(*buttons, "&New…", "new", "Add_Group", state.Add_Group,
                     [&session] { windows::Groupsfrm_Add_Group_Click(session); });
  add_picture_button(*buttons, "&Delete", "delete", "Delete_Group", state.Delete_Group,
                     [&session] { windows::Groupsfrm_Delete_Group_Click(session); });
  add_button(*buttons, "&Copy…", "COPY_GRP", state.COPY_GRP,
             [&session] { windows::Groupsfrm_COPY_GRP_Click(session); });
  buttons->addStretch();
  return side;
}

void add_comment(QBoxLayout& column, Desktop& session, QWidget* parent) {
  auto* const row = new QHBoxLayout;
  column.addLayout(row);
  auto* const label = new QLabel("C&omment:", parent);
  auto* const field = new QLineEdit(parent);
  field->setObjectName("Decsription_Text");
  label->setBuddy(field);
  bind_to(*field, session.groups.Decsription_Text);
  row->addWidget(label);
  row->addWidget(field, 1);
}

QWidget* make_users_side(Desktop& session, QWidget* parent) {
  Groupsfrm& state = session.groups;
  auto* const side = new QWidget(parent);
  auto* const rows = new QVBoxLayout(side);
  rows->setContentsMargins(4, 0, 0, 0);
  add_comment(*rows, session, side);
  auto* const lists = new QHBoxLayout;
  rows->addLayout(lists, 1);
  auto* const left = new QVBoxLayout;
  lists->addLayout(left, 1);
  ListPane* const members =
      add_pane(*left,
               {state.Members,
                "Members",
                "&Members:",
                "Filter members",
                {.headings = {"User", ""}, .many_selected = true, .sorted = true, .empty_text = {}}},
               side);
  members->setHeaderHidden(true);
  members->header()->setStretchLastSection(false);
  members->header()->setSectionResizeMode(0, QHeaderView::Stretch);
  members->header()->setSectionResizeMode(1, QHeaderView::ResizeToContents);
  members->on_click = [&session] { windows::Groupsfrm_Members_Click(session); };
  members->on_activate = [&session] { windows::Groupsfrm_Members_DblClick(session); };
  members->on_delete = [&session] { windows::Groupsfrm_Command1_Click(session); };
  follow(*members, state.ShownGroup, [members](const std::string& key) {
    members->set_empty_text(key.empty() ? "Show a group to see its members." : "No users are in this group.");
  });
  auto* const buttons = new QVBoxLayout;
  lists->addLayout(buttons);
  buttons->addStretch();
  add_picture_button(*buttons, "&Add", "add", "Command2", state.Command2,
                     [&session] { windows::Groupsfrm_Command2_Click(session); });
  add_picture_button(*buttons, "&Remove", "remove", "Command1", state.Command1,
                     [&session] { windows::Groupsfrm_Command1_Click(session); });
  buttons->addStretch();
  auto* const right = new QVBoxLayout;
  lists->addLayout(right, 1);
  ListPane* const others =
      add_pane(*right,
               {state.NotMembers,
                "NotMembers",
                "Not mem&bers:",
                "Filter users",
                {.headings = {"User"},
                 .many_selected = true,
                 .sorted = true,
                 .empty_text = "No users. \"Show all users\" reads those of the domain."}},
               side);
  others->on_click = [&session] { windows::Groupsfrm_NotMembers_Click(session); };
  return side;
}

/// Painted at once: what follows lets no event in before its end.
QLabel* add_panel(QBoxLayout& box, const char* name, const controls::Observable<std::string>& text,
                  QWidget* parent) {
  auto* const panel = new QLabel(parent);
  panel->setObjectName(name);
  panel->setTextFormat(Qt::PlainText);
  panel->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  follow_paced(*panel, text, [panel](const std::string& shown) {
    panel->setText(to_qt(shown));
    panel->setToolTip(as_tool_tip(to_qt(shown)));
  });
  box.addWidget(panel, 1);
  return panel;
}

}  // namespace

std::unique_ptr<QDialog> make_groups(Desktop& session, QWidget* parent) {
  auto window = std::make_unique<GroupsWindow>(session, parent);
  QDialog* const dialog = window.get();
  dialog->setObjectName("Groupsfrm");
  dialog->setWindowTitle("Global Groups");
  auto* const rows = new QVBoxLayout(dialog);
  auto* const panes = new QSplitter(dialog);
  panes->setObjectName("panes");
  panes->setChildrenCollapsible(false);
  panes->addWidget(make_groups_side(session, panes));
  panes->addWidget(make_users_side(session, panes));
  panes->setStretchFactor(0, 1);
  panes->setStretchFactor(1, 1);
  panes->setSizes({430, 540});
  rows->addWidget(panes, 1);
  auto* const bottom = new QHBoxLayout;
  rows->addLayout(bottom);
  add_panel(*bottom, "panel1", session.groups.StatusBar1.panel1, dialog);
  add_panel(*bottom, "panel2", session.groups.StatusBar1.panel2, dialog)
      ->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  add_button(*bottom, "Show all &users", "btn_showGrpusers", session.groups.btn_showGrpusers,
             [&session] { windows::Groupsfrm_btn_showGrpusers_Click(session); });
  add_button(*bottom, "E&xit", "ExitButton", session.groups.ExitButton, [dialog] { dialog->reject(); });
  dialog->resize(980, 580);
  return window;
}

}  // namespace twk::screens
