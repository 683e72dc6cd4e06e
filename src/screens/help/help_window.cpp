#include <QAction>
#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QRegularExpression>
#include <QScreen>
#include <QSplitter>
#include <QStatusBar>
#include <QTextBlock>
#include <QTextBrowser>
#include <QToolBar>

#include "screens/help/advice.hpp"
#include "screens/help/help_pages.hpp"
#include "screens/help/help_topics.hpp"
#include "screens/program/program_windows.hpp"
#include "screens/widgets/application.hpp"
#include "screens/widgets/icons.hpp"

namespace twk::screens {
namespace {

QString page_of(const QString& topic) {
  return "qrc:/help/" + topic.toLower() + ".html";
}

constexpr const char* kGuide = "qrc:/help/guide/";
constexpr const char* kFaults = "when-something-goes-wrong.md";

QString text_of(const QString& resource) {
  QFile file(resource);
  return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// Shows the pages of the help and the guide, with the references filled in.
class HelpBrowser final : public QTextBrowser {
 public:
  using QTextBrowser::QTextBrowser;

 protected:
  QVariant loadResource(int type, const QUrl& name) override {
    const QVariant loaded = QTextBrowser::loadResource(type, name);
    return type == QTextDocument::HtmlResource ? with_references(QString::fromUtf8(loaded.toByteArray()))
                                               : loaded;
  }
};

class HelpWindow final : public QMainWindow {
 public:
  explicit HelpWindow(QWidget* parent) : QMainWindow(parent, Qt::Window) {
    setObjectName("frmHelp");
    setWindowTitle("Help");
    make_panes();
    make_toolbar();
    resize(QSize(920, 600).boundedTo(screen()->availableSize()));
  }

  void open(const QString& topic) {
    const bool known = QFile::exists(":/help/" + topic.toLower() + ".html");
    browser_->setSource(QUrl(page_of(known ? topic : "main")));
  }

  void open_advice(const QString& message) {
    browser_->setSource(QUrl(kGuide + QString(kFaults)));
    if (const auto cell = find_advice(text_of(QString(":/help/guide/") + kFaults), message))
      select_paragraph(*cell);
  }

 private:
  void select_paragraph(const QString& text) {
    for (QTextBlock block = browser_->document()->begin(); block.isValid(); block = block.next()) {
      if (block.text() != text)
        continue;
      QTextCursor cursor(block);
      cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
      browser_->setTextCursor(cursor);
      return browser_->ensureCursorVisible();
    }
  }

  void make_panes() {
    auto* const panes = new QSplitter(this);
    panes->setChildrenCollapsible(false);
    contents_ = new QListWidget(panes);
    contents_->setObjectName("contents");
    contents_->setAccessibleName("Contents");
    contents_->setSpacing(2);
    contents_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    for (const HelpTopic& topic : kHelpTopics)
      add_page(topic.title, page_of(topic.name));
    add_page("The command line", "qrc:/help/command-line.md");
    add_page("The files", "qrc:/help/file-formats.md");
    add_guide();
    browser_ = new HelpBrowser(panes);
    browser_->setObjectName("page");
    browser_->setAccessibleName("Page");
    browser_->setOpenExternalLinks(false);
    browser_->document()->setDocumentMargin(14);
    panes->setStretchFactor(0, 0);
    panes->setStretchFactor(1, 1);
    panes->setSizes({260, 660});
    setCentralWidget(panes);
    connect(contents_, &QListWidget::currentItemChanged, this, [this](const QListWidgetItem* item) {
      const QUrl page(item->data(Qt::UserRole).toString());
      if (browser_->source().adjusted(QUrl::RemoveFragment) != page)
        browser_->setSource(page);
    });
    connect(browser_, &QTextBrowser::sourceChanged, this, [this](const QUrl& page) { mark(page); });
  }

  void add_page(const QString& title, const QString& page) {
    auto* const item = new QListWidgetItem(title, contents_);
    item->setData(Qt::UserRole, page);
    item->setToolTip(title);
  }

  /// Its contents are a page of it.
  void add_guide() {
    static const QRegularExpression link("\\[([^\\]]+)\\]\\(([-a-z0-9]+\\.md)\\)");
    auto* const heading = new QListWidgetItem("Guide", contents_);
    heading->setFlags(Qt::NoItemFlags);
    auto links = link.globalMatch(text_of(":/help/guide/README.md"));
    while (links.hasNext()) {
      const QRegularExpressionMatch found = links.next();
      add_page(found.captured(1), kGuide + found.captured(2));
    }
  }

  void make_toolbar() {
    QToolBar* const bar = addToolBar("Help");
    bar->setObjectName("help_bar");
    bar->setMovable(false);
    bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    const auto add = [&](const char* picture, const QString& caption, const QKeySequence& key, auto slot) {
      QAction* const action = bar->addAction(icon(picture), caption);
      action->setShortcut(key);
      connect(action, &QAction::triggered, this, slot);
      return action;
    };
    QAction* const back = add("back", "Back", QKeySequence::Back, [this] { browser_->backward(); });
    QAction* const forward =
        add("forward", "Forward", QKeySequence::Forward, [this] { browser_->forward(); });
    back->setEnabled(false);
    forward->setEnabled(false);
    connect(browser_, &QTextBrowser::backwardAvailable, back, &QAction::setEnabled);
    connect(browser_, &QTextBrowser::forwardAvailable, forward, &QAction::setEnabled);
    bar->addSeparator();
    find_ = new QLineEdit(bar);
    find_->setObjectName("find");
    find_->setPlaceholderText("Find in this page");
    find_->setAccessibleName("Find in this page");
    find_->setClearButtonEnabled(true);
    bar->addWidget(find_);
    add("find", "Find Next", QKeySequence::FindNext, [this] { find_next(); })->setObjectName("find_next");
    connect(find_, &QLineEdit::returnPressed, this, [this] { find_next(); });
    auto* const find_key = new QAction(this);
    find_key->setShortcut(QKeySequence::Find);
    addAction(find_key);
    connect(find_key, &QAction::triggered, find_, [this] { find_->setFocus(Qt::ShortcutFocusReason); });
    auto* const close_key = new QAction(this);
    close_key->setShortcut(Qt::Key_Escape);
    addAction(close_key);
    connect(close_key, &QAction::triggered, this, &QWidget::close);
  }

  /// The page in the contents.
  void mark(const QUrl& page) {
    for (int i = 0; i < contents_->count(); ++i) {
      if (contents_->item(i)->data(Qt::UserRole).toString() == page.toString(QUrl::RemoveFragment))
        contents_->setCurrentRow(i);
    }
  }

  /// Continues at the top after the last match.
  void find_next() {
    const QString text = find_->text();
    statusBar()->clearMessage();
    if (text.isEmpty() || browser_->find(text))
      return;
    browser_->moveCursor(QTextCursor::Start);
    if (!browser_->find(text))
      statusBar()->showMessage("Not found: " + text);
  }

  QListWidget* contents_ = nullptr;
  QTextBrowser* browser_ = nullptr;
  QLineEdit* find_ = nullptr;
};

HelpWindow& help_of(QWidget* parent) {
  auto* help =
      parent == nullptr
          ? nullptr
          : dynamic_cast<HelpWindow*>(parent->findChild<QMainWindow*>("frmHelp", Qt::FindDirectChildrenOnly));
  if (help == nullptr)
    help = new HelpWindow(parent);
  if (parent == nullptr)
    help->setAttribute(Qt::WA_DeleteOnClose);
  return *help;
}

void bring_up(QWidget& help) {
  help.show();
  help.raise();
  help.activateWindow();
}

}  // namespace

void show_help(QWidget* parent, const QString& topic) {
  HelpWindow& help = help_of(parent);
  help.open(topic);
  bring_up(help);
}

void show_advice(QWidget* parent, const QString& message) {
  HelpWindow& help = help_of(parent);
  help.open_advice(message);
  bring_up(help);
}

}  // namespace twk::screens
