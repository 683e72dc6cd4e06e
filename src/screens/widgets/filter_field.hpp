#pragma once

#include <QLineEdit>
#include <cstddef>
#include <functional>

namespace twk::screens {

/// A search field over a view: `filter` gets what is typed, at once over a short list. Over a long one, as
/// `size` says, it waits until typing pauses, but no longer than until the field loses the focus.
QLineEdit* make_filter(QWidget& view, const QString& placeholder,
                       const std::function<void(const QString& text)>& filter,
                       const std::function<std::size_t()>& size, QWidget* parent);

}  // namespace twk::screens
