#pragma once

#include <QString>

namespace twk::screens {

/// The page with what stands for a reference, "<!--formats-->", "<!--variables-->" or "<!--settings-->",
/// replaced by the table that the program itself goes by.
QString with_references(QString html);

}  // namespace twk::screens
