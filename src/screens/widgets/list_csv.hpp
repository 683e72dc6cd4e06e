#pragma once

#include <QString>

class QTreeView;

namespace twk::screens {

/// The selected rows of a list as CSV in the order shown, below their headings when there are several
/// columns; columns that are hidden are left out.
QString selection_as_csv(const QTreeView& view);

}  // namespace twk::screens
