#include <QCompleter>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QProgressBar>
#include <QVBoxLayout>

#include "screens/multi_user/multi_user_tabs.hpp"
#include "screens/widgets/form.hpp"
#include "windows/multi_user/properties_tab.hpp"
#include "windows/state/ad_properties.hpp"
#include "windows/state/multi_user.hpp"

namespace twk::screens {
namespace {

using windows::ADProperties;
using windows::Desktop;

void add_fields(QBoxLayout& columns, Desktop& session, QWidget* parent) {
  ADProperties& tab = session.ad_properties;
  auto* const fields = new QFormLayout;
  columns.addLayout(fields, 1);
  QComboBox* const property = add_combo(
      *fields, "P&roperty:", "AD_Properties", tab.AD_Properties,
      [&session] { windows::AD_Properties_Change(session); }, true);
  property->setMinimumContentsLength(28);
  offer_matches(*property);
  QObject::connect(property->lineEdit(), &QLineEdit::editingFinished, property,
                   [&session] { windows::AD_Properties_Leave(session); });
  add_text(*fields, "Chan&ge to:", "AD_CHANGE", session.multi_user.AD_CHANGE)
      ->setToolTip("%UserName% is replaced by the name of the user");
  auto* const syntax = new QLabel(parent);
  syntax->setObjectName("Syntax");
  syntax->setTextFormat(Qt::PlainText);
  fields->addRow("Syntax:", syntax);
  bind_to(*syntax, tab.Syntax);
}

void add_multi_value(QBoxLayout& columns, ADProperties& tab, QWidget* parent) {
  auto* const frame = new QGroupBox("Multi Value", parent);
  frame->setObjectName("Multi_Value");
  columns.addWidget(frame, 0, Qt::AlignTop);
  auto* const rows = new QVBoxLayout(frame);
  auto* const append = new QRadioButton("&Append", frame);
  append->setObjectName("AD_Append");
  auto* const replace = new QRadioButton("Rep&lace", frame);
  replace->setObjectName("AD_Replace");
  rows->addWidget(append);
  rows->addWidget(replace);
  bind_pair(*append, tab.AD_Append, {}, *replace, tab.AD_Replace, {});
  follow(*frame, tab.multi_value, [frame](bool usable) { frame->setEnabled(usable); });
}

QProgressBar* make_progress(ADProperties& tab, QWidget* parent) {
  auto* const bar = new QProgressBar(parent);
  bar->setObjectName("ChangeProgress");
  bar->setAccessibleName("Progress of the change");
  QSizePolicy policy = bar->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  bar->setSizePolicy(policy);
  bind_to(*bar, tab.progress);
  follow(*bar, tab.progress_visible, [bar](bool shown) { bar->setVisible(shown); });
  return bar;
}

}  // namespace

void offer_matches(QComboBox& box) {
  auto* const completer = new QCompleter(box.model(), &box);
  completer->setCompletionMode(QCompleter::PopupCompletion);
  completer->setFilterMode(Qt::MatchContains);
  completer->setCaseSensitivity(Qt::CaseInsensitive);
  completer->setMaxVisibleItems(12);
  box.setCompleter(completer);
  box.setMaxVisibleItems(20);
}

QWidget* make_multi_properties_tab(Desktop& session, QWidget* parent) {
  ADProperties& tab = session.ad_properties;
  auto* const page = new QWidget(parent);
  auto* const rows = new QVBoxLayout(page);
  auto* const frame = new QGroupBox("Change AD Properties", page);
  rows->addWidget(frame);
  auto* const columns = new QHBoxLayout(frame);
  add_fields(*columns, session, frame);
  add_multi_value(*columns, tab, frame);
  auto* const foot = new QHBoxLayout;
  rows->addLayout(foot);
  add_button(*foot, "C&hange", "CHANGE_AD", tab.CHANGE_AD, [&session] { windows::CHANGE_AD_Click(session); });
  add_button(*foot, "&Import File", "DELIMPORT", session.multi_user.DELIMPORT, [&session] {
    windows::DELIMPORT_Click(session);
  })->setToolTip("Import file of user names");
  foot->addWidget(make_progress(tab, page), 1);
  rows->addStretch(1);
  return page;
}

}  // namespace twk::screens
