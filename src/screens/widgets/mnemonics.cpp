#include "screens/widgets/mnemonics.hpp"

#include <QAbstractButton>
#include <QGroupBox>
#include <QLabel>
#include <QMainWindow>
#include <QMenuBar>
#include <QPushButton>
#include <QTabWidget>
#include <algorithm>
#include <functional>
#include <vector>

namespace twk::screens {
namespace {

/// A caption that can be changed.
struct Caption {
  QString text;
  std::function<void(const QString&)> set;
};

/// Of the ampersand that marks the letter; -1 for none. Two mean the character itself.
qsizetype mark_in(const QString& text) {
  for (qsizetype i = 0; i + 1 < text.size(); ++i) {
    if (text[i] != '&')
      continue;
    if (text[i + 1] != '&')
      return i;
    ++i;
  }
  return -1;
}

QChar letter_of(const QString& text) {
  const qsizetype mark = mark_in(text);
  return mark < 0 ? QChar() : text[mark + 1].toUpper();
}

/// First letters of words are found more easily than others.
QString with_free_letter(QString text, const QString& taken) {
  text.remove(mark_in(text), 1);
  for (const bool starts : {true, false}) {
    for (qsizetype i = 0; i < text.size(); ++i) {
      const bool starts_word = i == 0 || text[i - 1] == ' ';
      if (text[i].isLetter() && starts_word == starts && !taken.contains(text[i].toUpper()))
        return text.insert(i, '&');
    }
  }
  return text;
}

class Settling {
 public:
  explicit Settling(QString taken) : taken_(std::move(taken)) {}

  void settle(QWidget& root) {
    collect(root);
    std::vector<Caption*> losers;
    for (std::vector<Caption>* const rank : {&tabs_, &buttons_, &others_}) {
      for (Caption& caption : *rank) {
        const QChar letter = letter_of(caption.text);
        if (letter.isNull())
          continue;
        if (taken_.contains(letter))
          losers.push_back(&caption);
        else
          taken_ += letter;
      }
    }
    for (Caption* const caption : losers) {
      caption->text = with_free_letter(caption->text, taken_);
      caption->set(caption->text);
      if (const QChar letter = letter_of(caption->text); !letter.isNull())
        taken_ += letter;
    }
    for (QWidget* const page : pages_)
      Settling(taken_).settle(*page);
  }

 private:
  void collect(QWidget& root) {
    for (QObject* const child : root.children()) {
      auto* const widget = qobject_cast<QWidget*>(child);
      if (widget == nullptr || widget->isWindow())
        continue;
      if (auto* const tabs = qobject_cast<QTabWidget*>(widget))
        collect_tabs(*tabs);
      else
        collect_one(*widget);
    }
  }

  void collect_tabs(QTabWidget& tabs) {
    for (int i = 0; i < tabs.count(); ++i) {
      tabs_.push_back({tabs.tabText(i), [&tabs, i](const QString& text) { tabs.setTabText(i, text); }});
      // A tab widget as a page shares its bar's letters with the outer one.
      if (auto* const inner = qobject_cast<QTabWidget*>(tabs.widget(i)))
        collect_tabs(*inner);
      else
        pages_.push_back(tabs.widget(i));
    }
  }

  void collect_one(QWidget& widget) {
    if (auto* const button = qobject_cast<QAbstractButton*>(&widget)) {
      (qobject_cast<QPushButton*>(button) != nullptr ? buttons_ : others_)
          .push_back({button->text(), [button](const QString& text) { button->setText(text); }});
    } else if (auto* const group = qobject_cast<QGroupBox*>(&widget)) {
      others_.push_back({group->title(), [group](const QString& text) { group->setTitle(text); }});
    } else if (auto* const label = qobject_cast<QLabel*>(&widget); label != nullptr && label->buddy()) {
      others_.push_back({label->text(), [label](const QString& text) { label->setText(text); }});
    }
    collect(widget);
  }

  QString taken_;
  std::vector<Caption> tabs_;
  std::vector<Caption> buttons_;
  std::vector<Caption> others_;
  std::vector<QWidget*> pages_;
};

}  // namespace

QString letters_of_menus(const QWidget& window) {
  QString letters;
  if (const auto* const main = qobject_cast<const QMainWindow*>(&window)) {
    for (const QAction* const menu : main->menuBar()->actions())
      letters += letter_of(menu->text());
  }
  return letters;
}

void settle_mnemonics(QWidget& window, QString taken) {
  Settling(std::move(taken)).settle(window);
}

}  // namespace twk::screens
