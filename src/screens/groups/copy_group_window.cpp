#include <QCompleter>
#include <QVBoxLayout>

#include "screens/program/windows.hpp"
#include "screens/widgets/application.hpp"
#include "screens/widgets/form.hpp"
#include "screens/widgets/list_pane.hpp"
#include "windows/groups/copy_group.hpp"
#include "windows/state/group_windows.hpp"

namespace twk::screens {
namespace {

using windows::Desktop;
using windows::frmCopy_Group;

/// A box with the groups in alphabetical order; typing finds those that contain the text.
class GroupBox final : public QComboBox {
 public:
  GroupBox(controls::ListView& groups, QWidget* parent) : QComboBox(parent), groups_(groups) {
    auto* const rows = new ListModel(groups, {"Group"}, this);
    order_ = new ListOrder(*rows, this);
    order_->sort(0);
    setModel(order_);
    setEditable(true);
    setInsertPolicy(NoInsert);
    setSizeAdjustPolicy(AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(24);
    lineEdit()->setPlaceholderText("Choose a group, or type part of its name");
    auto* const finder = new QCompleter(order_, this);
    finder->setFilterMode(Qt::MatchContains);
    finder->setCaseSensitivity(Qt::CaseInsensitive);
    finder->setCompletionMode(QCompleter::PopupCompletion);
    setCompleter(finder);
    show_choice();
    connect(this, &QComboBox::currentIndexChanged, this, [this](int index) { choose(index); });
    // A text that is not a group's name is not a choice.
    connect(lineEdit(), &QLineEdit::textEdited, this,
            [this](const QString& text) { choose(findText(text, Qt::MatchFixedString)); });
    connect(lineEdit(), &QLineEdit::editingFinished, this, [this] { show_choice(); });
  }

  Action chosen;

 private:
  void choose(int index) {
    controls::ListRow* const row =
        index < 0 ? nullptr : order_->model().row(order_->mapToSource(order_->index(index, 0)));
    if (row != groups_.selected())
      groups_.select(row);
    run_guarded(chosen);
  }
  void show_choice() {
    const controls::ListRow* const row = groups_.selected();
    const int place =
        row == nullptr
            ? -1
            : order_->mapFromSource(order_->model().index(static_cast<int>(groups_.place_of(*row)), 0)).row();
    setCurrentIndex(place);
    setEditText(place < 0 ? QString() : itemText(place));
  }

  controls::ListView& groups_;
  ListOrder* order_ = nullptr;
};

void add_groups(QFormLayout& form, Desktop& session, const QString& caption, const char* name,
                controls::ListView& groups) {
  auto* const box = new GroupBox(groups, form.parentWidget());
  box->setObjectName(name);
  box->chosen = [&session] { windows::frmCopy_Group_ImageCombo_Click(session); };
  form.addRow(caption, box);
}

QLayout* make_fields(Desktop& session, QWidget* parent) {
  frmCopy_Group& state = session.copy_group;
  auto* const both = new QHBoxLayout;
  const auto add_side = [&](const QString& title, const QString& caption, const char* domain_name,
                            controls::TextBox& domain, const char* name, controls::ListView& groups) {
    auto* const frame = new QGroupBox(title, parent);
    both->addWidget(frame, 1);
    auto* const form = new QFormLayout(frame);
    add_text(*form, "Domain:", domain_name, domain)->setFocusPolicy(Qt::NoFocus);
    add_groups(*form, session, caption, name, groups);
  };
  add_side("From", "&Group:", "Domain_Source", state.Domain_Source, "ImageCombo1", state.ImageCombo1);
  add_side("To", "G&roup:", "Domain_Destination", state.Domain_Destination, "ImageCombo2", state.ImageCombo2);
  return both;
}

QProgressBar* make_bar(frmCopy_Group& state, QWidget* parent) {
  auto* const bar = new QProgressBar(parent);
  bar->setObjectName("ProgressBar1");
  bar->setAccessibleName("Progress of the copy");
  bind_to(*bar, state.ProgressBar1);
  return bar;
}

/// Esc and the window's cross stop a running copy.
class CopyWindow final : public QDialog {
 public:
  CopyWindow(Desktop& session, QWidget* parent) : QDialog(parent), session_(session) {}
  void reject() override {
    if (windows::frmCopy_Group_btnCancel_Click(session_))
      QDialog::reject();
  }

 private:
  Desktop& session_;
};

}  // namespace

std::unique_ptr<QDialog> make_copy_group(Desktop& session, QWidget* parent) {
  frmCopy_Group& state = session.copy_group;
  auto window = std::make_unique<CopyWindow>(session, parent);
  QDialog* const dialog = window.get();
  dialog->setObjectName("frmCopy_Group");
  dialog->setWindowTitle("Copy Group");
  auto* const rows = new QVBoxLayout(dialog);
  rows->addLayout(make_fields(session, dialog));
  auto* const results =
      new ListPane(state.ListView1,
                   {.headings = {"Result"}, .empty_text = "The result for each user appears here."}, dialog);
  results->setObjectName("ListView1");
  results->setAccessibleName("Results");
  rows->addWidget(results, 1);
  rows->addWidget(make_bar(state, dialog));
  auto* const bottom = new QHBoxLayout;
  rows->addLayout(bottom);
  auto* const told = new QLabel(dialog);
  told->setObjectName("Label1");
  told->setWordWrap(true);
  bind_to(*told, state.Label1);
  bottom->addWidget(told, 1);
  add_button(*bottom, "&Copy", "btnCopy_Group", state.btnCopy_Group, [&session] {
    windows::frmCopy_Group_btnCopy_Group_Click(session);
  })->setDefault(true);
  add_button(*bottom, "C&lose", "btnCancel", state.btnCancel, [dialog] { dialog->reject(); });
  dialog->resize(640, 440);
  return window;
}

}  // namespace twk::screens
