#pragma once

#include <QIcon>
#include <string_view>

namespace twk::screens {

/// The program's own picture of that name: the image keys of lists and tree ("USER", "OU", "GREEN" …), the
/// keys of the toolbar ("NewUser" …). An empty icon for an unknown name. It suits the current colours of the
/// desktop, light or dark.
QIcon icon(std::string_view name);

}  // namespace twk::screens
