#pragma once

#include <QString>
#include <optional>

namespace twk::screens {

/// What the page of faults says about a message: the first cell of the row of a table that fits. A cell is
/// the name of a step of the connection, or a message in quotes, in which "…" stands for anything. None when
/// no row does.
std::optional<QString> find_advice(const QString& page, const QString& message);

}  // namespace twk::screens
