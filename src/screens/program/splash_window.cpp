#include <QCoreApplication>
#include <QFrame>
#include <QGuiApplication>
#include <QLabel>
#include <QProgressBar>
#include <QScreen>
#include <QVBoxLayout>

#include "screens/program/program_windows.hpp"
#include "screens/widgets/bind.hpp"
#include "screens/widgets/icons.hpp"
#include "screens/widgets/text.hpp"
#include "windows/state/import_windows.hpp"

namespace twk::screens {
namespace {

constexpr int kWidth = 420;
constexpr int kSplashPicture = 64;

/// No input is let in while the session starts.
void paint_now() {
  QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

QLabel* add_line(QVBoxLayout& layout, const QString& text, int points, bool bold) {
  auto* const label = new QLabel(text, layout.parentWidget());
  label->setTextFormat(Qt::PlainText);
  QFont font = label->font();
  font.setPointSizeF(font.pointSizeF() + points);
  font.setBold(bold);
  label->setFont(font);
  layout.addWidget(label);
  return label;
}

void place_in_the_middle(QWidget& window) {
  const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
  window.move(screen.center() - window.rect().center());
}

}  // namespace

std::unique_ptr<QWidget> make_splash(windows::Desktop& session) {
  auto splash = std::make_unique<QFrame>(nullptr, Qt::SplashScreen | Qt::FramelessWindowHint);
  splash->setObjectName("frmSplash");
  splash->setFrameStyle(QFrame::StyledPanel | QFrame::Plain);
  auto* const row = new QHBoxLayout(splash.get());
  row->setContentsMargins(24, 24, 24, 24);
  row->setSpacing(20);
  auto* const picture = new QLabel(splash.get());
  picture->setPixmap(icon("tarnwick").pixmap(kSplashPicture));
  row->addWidget(picture, 0, Qt::AlignTop);
  auto* const texts = new QWidget(splash.get());
  row->addWidget(texts, 1);
  auto* const layout = new QVBoxLayout(texts);
  layout->setContentsMargins(0, 0, 0, 0);
  add_line(*layout, "Tarnwick", 8, true);
  add_line(*layout, QString("Version ") + TWK_VERSION, 0, false);
  layout->addSpacing(12);
  QLabel* const phase = add_line(*layout, " ", 0, false);
  phase->setObjectName("Splash_TxT");
  auto* const bar = new QProgressBar(texts);
  bar->setRange(0, 0);
  bar->setTextVisible(false);
  bar->setAccessibleName("Starting");
  layout->addWidget(bar);
  splash->setFixedWidth(kWidth);
  splash->adjustSize();
  place_in_the_middle(*splash);

  follow(*phase, session.splash.Splash_TxT.caption, [phase](const std::string& text) {
    phase->setText(text.empty() ? QString(" ") : to_qt(text));
    paint_now();
  });
  follow(*splash, session.splash.visible, [window = splash.get()](bool shown) {
    window->setVisible(shown);
    paint_now();
  });
  return splash;
}

}  // namespace twk::screens
