#include "app/connection_steps.hpp"

#include <QGridLayout>
#include <QLabel>
#include <algorithm>

#include "screens/widgets/icons.hpp"
#include "screens/widgets/text.hpp"
#include "session/activity_log.hpp"

namespace twk::app {
namespace {

using live::StepOutcome;

constexpr int kLightSize = 16;

QIcon light_of(StepOutcome outcome) {
  switch (outcome) {
    case StepOutcome::kPassed:
      return screens::icon(session::kGreen);
    case StepOutcome::kWarning:
      return screens::icon(session::kYellow);
    case StepOutcome::kFailed:
      return screens::icon(session::kRed);
    case StepOutcome::kSkipped:
      break;
  }
  return {};
}

}  // namespace

QString time_text(std::chrono::milliseconds time) {
  return QString::number(std::chrono::duration<double>(time).count(), 'f', 1) + " s";
}

ConnectionSteps::ConnectionSteps(std::size_t count, QWidget* parent) : QWidget(parent) {
  constexpr int kDetailColumn = 2;
  auto* const grid = new QGridLayout(this);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setColumnStretch(kDetailColumn, 1);
  for (std::size_t i = 0; i < count; ++i)
    add_row(*grid, screens::to_qt(live::check_step_names().at(i)));
  grid->setRowStretch(static_cast<int>(count), 1);
}

void ConnectionSteps::add_row(QGridLayout& grid, const QString& name) {
  const int number = static_cast<int>(rows_.size());
  Row& row =
      rows_.emplace_back(Row{new QLabel(this), new QLabel(name, this), new QLabel(this), new QLabel(this)});
  row.light->setFixedWidth(kLightSize + 2);
  row.detail->setObjectName("step" + QString::number(number));
  row.detail->setTextFormat(Qt::PlainText);
  row.detail->setWordWrap(true);
  row.detail->setTextInteractionFlags(Qt::TextSelectableByMouse);
  row.time->setObjectName("time" + QString::number(number));
  row.time->setAlignment(Qt::AlignRight | Qt::AlignTop);
  int column = 0;
  for (QLabel* const label : {row.light, row.name, row.detail, row.time})
    grid.addWidget(label, number, column++, label == row.time ? Qt::Alignment() : Qt::AlignTop);
}

void ConnectionSteps::clear() {
  for (std::size_t i = 0; i < rows_.size(); ++i)
    show(i, {});
}

void ConnectionSteps::show(std::size_t row, const TimedStep& ended) {
  if (row >= rows_.size())
    return;
  const Row& shown = rows_[row];
  const bool was_tried = ended.step.outcome != StepOutcome::kSkipped;
  shown.light->setPixmap(light_of(ended.step.outcome).pixmap(kLightSize));
  shown.light->setAccessibleName(screens::to_qt(live::outcome_word(ended.step.outcome)));
  shown.name->setEnabled(was_tried);
  shown.detail->setEnabled(was_tried);
  shown.detail->setText(screens::to_qt(ended.step.detail));
  shown.time->setText(was_tried ? time_text(ended.time) : QString());
  fit();
}

void ConnectionSteps::show_running(std::size_t row, std::chrono::milliseconds time) {
  if (row >= rows_.size())
    return;
  for (QLabel* const label : {rows_[row].name, rows_[row].detail})
    label->setEnabled(true);
  rows_[row].detail->setText("trying…");
  rows_[row].time->setText(time_text(time));
}

void ConnectionSteps::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  fit();
}

void ConnectionSteps::fit() {
  // None for a width until the labels are shown.
  setMinimumHeight(std::max(layout()->totalHeightForWidth(width()), layout()->totalMinimumSize().height()));
}

}  // namespace twk::app
