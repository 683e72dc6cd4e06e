#include "screens/help/help_topics.hpp"

#include <QApplication>
#include <QKeyEvent>
#include <utility>

#include "screens/program/program_windows.hpp"
#include "windows/state/form1.hpp"

namespace twk::screens {
namespace {

constexpr std::array<const char*, 6> kTabs = {"new-user", "user-details", "log",
                                              "site",     "template",     "set-up"};
constexpr std::array<const char*, 5> kSetupTabs = {"set-up", "preferences", "mail", "w2k", "wts"};
constexpr std::array<std::pair<const char*, const char*>, 25> kDialogs = {{{"frmADOptions", "options"},
                                                                           {"CSV_Import", "import"},
                                                                           {"ImportGrps", "import"},
                                                                           {"CancelImport", "import"},
                                                                           {"frmFindW2KUser", "find"},
                                                                           {"Groupsfrm", "groups"},
                                                                           {"GroupAdd", "groups"},
                                                                           {"frmCopy_Group", "groups"},
                                                                           {"MultiUser", "multi-user"},
                                                                           {"Select_OU", "tree"},
                                                                           {"Choose_OU", "tree"},
                                                                           {"LogWindow", "log"},
                                                                           {"RenameUser", "tree"},
                                                                           {"Rename_NT", "tree"},
                                                                           {"WKS_PROFILE", "tree"},
                                                                           {"FileProgress", "tree"},
                                                                           {"Serach_Mail", "mail"},
                                                                           {"Edit_Properties", "w2k"},
                                                                           {"Custom", "user-details"},
                                                                           {"Logon_Hours", "template"},
                                                                           {"Permissions", "set-up"},
                                                                           {"frmSharePoints", "template"},
                                                                           {"Varibles_Form", "variables"},
                                                                           {"RunPreview", "multi-user"},
                                                                           {"start", "lab"}}};

/// A key that no field, menu or window uses arrives here last.
class HelpKey final : public QObject {
 public:
  explicit HelpKey(QObject* parent) : QObject(parent) { qApp->installEventFilter(this); }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::KeyPress ||
        !static_cast<QKeyEvent*>(event)->matches(QKeySequence::HelpContents))
      return QObject::eventFilter(watched, event);
    const auto* const widget = qobject_cast<QWidget*>(watched);
    if (widget == nullptr || widget->window()->objectName() == "frmHelp")
      return QObject::eventFilter(watched, event);
    show_help(widget->window(), help_topic_of(widget->window()));
    return true;
  }
};

}  // namespace

QString help_topic(int tab, int setup_tab) {
  if (tab == windows::tab::kSetup)
    return kSetupTabs.at(static_cast<std::size_t>(setup_tab));
  return kTabs.at(static_cast<std::size_t>(tab));
}

QString help_topic_of(const QWidget* window) {
  if (const auto* const main = dynamic_cast<const MainWindow*>(window))
    return help_topic(main->tabs().currentIndex(), main->setup_tabs().currentIndex());
  for (const auto& [name, topic] : kDialogs) {
    if (window->objectName() == name)
      return topic;
  }
  return "main";
}

void open_help_with_f1(QObject& owner) {
  new HelpKey(&owner);
}

}  // namespace twk::screens
