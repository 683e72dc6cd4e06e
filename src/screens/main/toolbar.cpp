#include "screens/main/toolbar.hpp"

#include <QContextMenuEvent>
#include <QMenu>
#include <QSettings>

#include "screens/widgets/bind.hpp"
#include "screens/widgets/icons.hpp"
#include "screens/widgets/text.hpp"
#include "windows/main_window.hpp"
#include "windows/state/form1.hpp"

namespace twk::screens {
namespace {

struct Look {
  const char* caption;
  const char* shortcut;
  bool separated = false;  ///< a line before it
};

/// In the order of the keys.
constexpr std::array<Look, windows::kToolbarKeys.size()> kLooks = {{{"New User", "Ctrl+N"},
                                                                    {"Delete User", ""},
                                                                    {"Find", "Ctrl+F"},
                                                                    {"Refresh", "F5"},
                                                                    {"Multi User", "", true},
                                                                    {"Groups", ""},
                                                                    {"Import", ""},
                                                                    {"View Log", ""},
                                                                    {"Help", "", true},
                                                                    {"Exit", ""}}};

constexpr const char* kCaptionsSetting = "form1/toolbarCaptions";

void show_captions(QToolBar& toolbar, bool shown) {
  toolbar.setToolButtonStyle(shown ? Qt::ToolButtonTextUnderIcon : Qt::ToolButtonIconOnly);
}

/// A toolbar without pictures would be empty without captions.
bool has_pictures(const QToolBar& toolbar) {
  const QList<QAction*> actions = toolbar.actions();
  return std::all_of(actions.begin(), actions.end(),
                     [](const QAction* action) { return action->isSeparator() || !action->icon().isNull(); });
}

void add_caption_switch(QToolBar& toolbar) {
  auto* const captions = new QAction("&Captions below the pictures", &toolbar);
  captions->setObjectName("captions");
  captions->setCheckable(true);
  captions->setChecked(!has_pictures(toolbar) || QSettings().value(kCaptionsSetting, true).toBool());
  captions->setEnabled(has_pictures(toolbar));
  show_captions(toolbar, captions->isChecked());
  QObject::connect(captions, &QAction::toggled, &toolbar, [&toolbar](bool shown) {
    QSettings().setValue(kCaptionsSetting, shown);
    show_captions(toolbar, shown);
  });
  toolbar.setContextMenuPolicy(Qt::CustomContextMenu);
  QObject::connect(&toolbar, &QWidget::customContextMenuRequested, &toolbar,
                   [&toolbar, captions](const QPoint& at) {
                     QMenu::exec({captions}, toolbar.mapToGlobal(at), nullptr, &toolbar);
                   });
}

}  // namespace

QToolBar* make_toolbar(QMainWindow& window, windows::Desktop& session) {
  QToolBar* const toolbar = window.addToolBar("Commands");
  toolbar->setObjectName("Toolbar1");
  toolbar->setMovable(false);
  for (std::size_t i = 0; i < kLooks.size(); ++i) {
    const std::string_view key = windows::kToolbarKeys.at(i);
    const Look& look = kLooks.at(i);
    if (look.separated)
      toolbar->addSeparator();
    QAction* const action = toolbar->addAction(icon(key), look.caption);
    action->setObjectName(to_qt(key));
    action->setShortcut(QKeySequence(look.shortcut));
    action->setAutoRepeat(false);
    bind_to(*action, session.form1.Toolbar1.at(i),
            [&session, key] { windows::Toolbar1_ButtonClick(session, key); });
  }
  add_caption_switch(*toolbar);
  return toolbar;
}

}  // namespace twk::screens
