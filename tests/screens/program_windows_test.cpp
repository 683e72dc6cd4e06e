#include "screens/program/program_windows.hpp"
#include "windows/state/form1.hpp"

#include <set>

#include "base/errors.hpp"
#include "screens/help/help_topics.hpp"
#include "screens/screen_test.hpp"
#include "screens/widgets/application.hpp"
#include "screens/widgets/icons.hpp"
#include "windows/state/import_windows.hpp"
#include "windows/tips.hpp"

namespace twk::test {
namespace {

class ProgramWindowsTest : public ScreenTest {
 protected:
  ProgramWindowsTest() { QSettings().remove("tips"); }
  ~ProgramWindowsTest() override { QSettings().remove("tips"); }

  void put_tips(std::string_view text) {
    lab.services.files.write(lab.session.dbpath + std::string(windows::kTipFile), text);
  }
  [[nodiscard]] QTextBrowser& page(QWidget* of) {
    return *find<QTextBrowser>("page", find<QMainWindow>("frmHelp", of));
  }
};

TEST_F(ProgramWindowsTest, TipsFollowOneAnotherAndContinueWhereTheyStopped) {
  open();
  put_tips("One.\nTwo.\nThree.\n");
  for (const char* const tip : {"One.", "Three."}) {
    expect_window([&](QWidget& shown) {
      EXPECT_EQ(find<QLabel>("tip", &shown)->text(), tip);
      click("next_tip", &shown);
      EXPECT_NE(find<QLabel>("tip", &shown)->text(), tip);
      click("ok", &shown);
    });
    screens::show_tip(window.get(), lab.session);
  }
  put_tips("");
  screens::show_tip(window.get(), lab.session);
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << "there is nothing to say";
}

TEST_F(ProgramWindowsTest, APersonWhoWantsNoTipsAtTheStartGetsThemOnRequestOnly) {
  open();
  expect_window([&](QWidget& shown) {
    click("show_tips", &shown);
    click("ok", &shown);
  });
  screens::show_tip_at_start(window.get(), lab.session);
  screens::show_tip_at_start(window.get(), lab.session);
  expect_window([&](QWidget& shown) { click("ok", &shown); });
  screens::show_tip(window.get(), lab.session);
}

TEST_F(ProgramWindowsTest, TheSplashShowsThePhaseAndClosesWhenTheSessionHasStarted) {
  const auto splash = screens::make_splash(lab.session);
  QStringList phases;
  const auto watch = lab.session.splash.Splash_TxT.caption.watch([&] {
    phases << find<QLabel>("Splash_TxT", splash.get())->text();
    EXPECT_TRUE(splash->isVisible());
  });
  lab.start();
  EXPECT_TRUE(phases.contains("Loading Databases..."));
  EXPECT_FALSE(splash->isVisible());
}

TEST_F(ProgramWindowsTest, F1OpensThePageOfTheCurrentTab) {
  open();
  QObject owner;
  screens::open_help_with_f1(owner);
  for (int tab = 0; tab < window->tabs().count(); ++tab) {
    window->tabs().setCurrentIndex(tab);
    QTest::keyClick(window.get(), Qt::Key_F1);
    const QString topic = screens::help_topic(tab, window->setup_tabs().currentIndex());
    EXPECT_EQ(page(window.get()).source(), QUrl("qrc:/help/" + topic + ".html"));
    EXPECT_FALSE(page(window.get()).toPlainText().isEmpty());
  }
  for (int inner = 0; inner < window->setup_tabs().count(); ++inner)
    EXPECT_TRUE(QFile::exists(":/help/" + screens::help_topic(windows::tab::kSetup, inner) + ".html"));
}

TEST_F(ProgramWindowsTest, EveryHelpPageIsInTheContentsAndItsLinksLeadToPages) {
  std::set<QString> known;
  for (const screens::HelpTopic& topic : screens::kHelpTopics)
    known.insert(QString(topic.name) + ".html");
  const QStringList pages = QDir(":/help").entryList({"*.html"});
  EXPECT_EQ(static_cast<std::size_t>(pages.size()), known.size());
  static const QRegularExpression link("href=\"([^\"]*)\"");
  for (const QString& name : pages) {
    EXPECT_TRUE(known.contains(name)) << name.toStdString();
    QFile file(":/help/" + name);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    auto links = link.globalMatch(QString::fromUtf8(file.readAll()));
    while (links.hasNext()) {
      const QString target = links.next().captured(1);
      EXPECT_TRUE(known.contains(target)) << name.toStdString() << " leads to " << target.toStdString();
    }
  }
}

TEST_F(ProgramWindowsTest, HelpShowsTheGuideAndTheReferencesOfTheProgram) {
  open();
  screens::show_help(window.get(), "main");
  auto* const help = find<QMainWindow>("frmHelp");
  const auto* const contents = find<QListWidget>("contents", help);
  const auto shown = [&](const QString& title) {
    const auto items = contents->findItems(title, Qt::MatchExactly);
    if (items.size() == 1)
      items.front()->listWidget()->setCurrentItem(items.front());
    return page(window.get()).toPlainText();
  };
  EXPECT_TRUE(shown("A school year").contains("twk plan run"));
  EXPECT_TRUE(shown("NT4-style domains").contains("OLDNT"));
  EXPECT_TRUE(shown("The command line").contains("--dry-run"));
  EXPECT_TRUE(shown("Settings").contains("Setup\\IncNumber"));
  EXPECT_TRUE(shown("Variables").contains("%NTServer%"));
  static const QRegularExpression link("\\]\\(([^)#]+\\.md)");
  for (const QString& name : QDir(":/help/guide").entryList({"*.md"})) {
    QFile file(":/help/guide/" + name);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    auto links = link.globalMatch(QString::fromUtf8(file.readAll()));
    while (links.hasNext()) {
      const QString target = links.next().captured(1);
      EXPECT_TRUE(QFile::exists(QDir::cleanPath(":/help/guide/" + target)))
          << name.toStdString() << target.toStdString();
    }
  }
}

TEST_F(ProgramWindowsTest, AnErrorBoxLeadsToWhatTheGuideSaysOfItsMessage) {
  open();
  expect_window([this](QWidget& box) {
    click("help", &box);
    EXPECT_EQ(page(&box).source().fileName(), "when-something-goes-wrong.md");
    EXPECT_EQ(page(&box).textCursor().selectedText(), "\"the account name … is in use\"");
    EXPECT_TRUE(box.isVisible());
    click("copy", &box);
    EXPECT_TRUE(QGuiApplication::clipboard()->text().contains("The account name jo.smith is in use"));
    box.close();
  });
  screens::show_failure(base::RuntimeError(424, "The account name jo.smith is in use"));
}

TEST_F(ProgramWindowsTest, HelpFindsInThePageAndGoesBack) {
  open();
  screens::show_help(window.get(), "names");
  auto* const help = find<QMainWindow>("frmHelp");
  type("find", "ohnSmith", help);
  QTest::keyClick(find<QLineEdit>("find", help), Qt::Key_Return);
  EXPECT_EQ(page(window.get()).textCursor().selectedText(), "ohnSmith");
  find<QListWidget>("contents", help)->setCurrentRow(0);
  EXPECT_EQ(page(window.get()).source(), QUrl("qrc:/help/main.html"));
  page(window.get()).backward();
  EXPECT_EQ(page(window.get()).source(), QUrl("qrc:/help/names.html"));
  EXPECT_EQ(find<QListWidget>("contents", help)->currentItem()->text(), "Name formats");
}

TEST_F(ProgramWindowsTest, EveryPictureOfListsTreeAndToolbarIsThere) {
  for (const char* const name :
       {"DOMAIN",    "OU",      "USER",    "Global",     "Local",   "MAIL",  "SITE",   "GREEN",
        "YELLOW",    "RED",     "NewUser", "deleteuser", "Refresh", "Help",  "Vlog",   "Exit1",
        "MultiUser", "IMPORTU", "Groups",  "FIND",       "w2kgrp",  "add",   "remove", "tarnwick",
        "new",       "edit",    "save",    "delete",     "clock",   "folder"})
    EXPECT_FALSE(screens::icon(name).isNull()) << name;
}

}  // namespace
}  // namespace twk::test
