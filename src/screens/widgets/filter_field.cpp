#include "screens/widgets/filter_field.hpp"

#include <QTimer>

namespace twk::screens {
namespace {

constexpr std::size_t kLong = 5000;
constexpr int kPause = 150;  // milliseconds

}  // namespace

QLineEdit* make_filter(QWidget& view, const QString& placeholder,
                       const std::function<void(const QString& text)>& filter,
                       const std::function<std::size_t()>& size, QWidget* parent) {
  auto* const field = new QLineEdit(parent);
  field->setPlaceholderText(placeholder);
  field->setAccessibleName(placeholder);
  field->setClearButtonEnabled(true);
  auto* const pause = new QTimer(field);
  pause->setSingleShot(true);
  const auto apply = [filter, pause, field] {
    pause->stop();
    filter(field->text());
  };
  QObject::connect(pause, &QTimer::timeout, &view, apply);
  QObject::connect(field, &QLineEdit::textChanged, &view, [size, pause, apply] {
    if (size() < kLong)
      apply();
    else
      pause->start(kPause);
  });
  QObject::connect(field, &QLineEdit::editingFinished, &view, [pause, apply] {
    if (pause->isActive())
      apply();
  });
  return field;
}

}  // namespace twk::screens
