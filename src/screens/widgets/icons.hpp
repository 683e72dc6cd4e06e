#pragma once

#include <QIcon>
#include <string_view>

namespace twk::screens {

/// The program's own picture of that name: the image keys of lists and tree ("USER", "OU", "GREEN" …), the
/// keys of the toolbar ("NewUser" …). An empty icon for a name that has none. It suits the colours of the
/// desktop, light or dark, as they are when it is asked for.
QIcon icon(std::string_view name);

}  // namespace twk::screens
