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

ConnectionSteps::ConnectionSteps(std::vector<std::string> names, QWidget* parent)
    : QWidget(parent), names_(std::move(names)), clock_(new QTimer(this)) {
  constexpr std::chrono::milliseconds kPace(500);
  constexpr int kDetailColumn = 2;
  constexpr int kPlaceBelow = 1000;
  constexpr int kGap = 6;  // to a scroll bar
  auto* const grid = new QGridLayout(this);
  grid->setContentsMargins(0, 0, kGap, 0);
  grid->setColumnStretch(kDetailColumn, 1);
  grid->setRowStretch(kPlaceBelow, 1);
  for (const std::string& name : names_)
    add_row(screens::to_qt(name));
  clock_->setInterval(kPace);
  connect(clock_, &QTimer::timeout, this, [this] { show_running(); });
}

void ConnectionSteps::add_row(const QString& name) {
  const int number = static_cast<int>(rows_.size());
  Row& row =
      rows_.emplace_back(Row{new QLabel(this), new QLabel(name, this), new QLabel(this), new QLabel(this)});
  row.light->setFixedWidth(kLightSize + 2);
  row.name->setTextFormat(Qt::PlainText);
  row.detail->setObjectName("step" + QString::number(number));
  row.detail->setTextFormat(Qt::PlainText);
  row.detail->setWordWrap(true);
  row.detail->setTextInteractionFlags(Qt::TextSelectableByMouse);
  row.time->setObjectName("time" + QString::number(number));
  row.time->setAlignment(Qt::AlignRight | Qt::AlignTop);
  auto& grid = static_cast<QGridLayout&>(*layout());
  int column = 0;
  for (QLabel* const label : {row.light, row.name, row.detail, row.time})
    grid.addWidget(label, number, column++, label == row.time ? Qt::Alignment() : Qt::AlignTop);
}

void ConnectionSteps::clear() {
  for (; rows_.size() > names_.size(); rows_.pop_back()) {
    const Row& last = rows_.back();
    for (QLabel* const label : {last.light, last.name, last.detail, last.time})
      delete label;
  }
  for (std::size_t i = 0; i < rows_.size(); ++i)
    show(i, {{.name = names_[i], .outcome = StepOutcome::kSkipped, .detail = {}}, {}});
  running_ = 0;
}

void ConnectionSteps::show(std::size_t row, const TimedStep& ended) {
  while (row >= rows_.size())
    add_row({});
  const Row& shown = rows_[row];
  const bool was_tried = ended.step.outcome != StepOutcome::kSkipped;
  shown.light->setPixmap(light_of(ended.step.outcome).pixmap(kLightSize));
  shown.light->setAccessibleName(screens::to_qt(live::outcome_word(ended.step.outcome)));
  shown.name->setText(screens::to_qt(ended.step.name));
  shown.name->setEnabled(was_tried);
  shown.detail->setEnabled(was_tried);
  shown.detail->setText(screens::to_qt(ended.step.detail));
  shown.time->setText(was_tried ? time_text(ended.time) : QString());
  running_ = row + 1;
  since_.restart();
  fit();
}

void ConnectionSteps::begin() {
  since_.start();
  clock_->start();
}

void ConnectionSteps::end(const QString& text) {
  clock_->stop();
  if (running_ < rows_.size() && !text.isEmpty())
    rows_[running_].detail->setText(text);
}

void ConnectionSteps::show_running() {
  if (running_ >= rows_.size())
    return;
  for (QLabel* const label : {rows_[running_].name, rows_[running_].detail})
    label->setEnabled(true);
  rows_[running_].detail->setText("trying…");
  rows_[running_].time->setText(time_text(std::chrono::milliseconds(since_.elapsed())));
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
