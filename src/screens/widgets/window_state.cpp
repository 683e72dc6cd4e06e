#include "screens/widgets/window_state.hpp"

#include <QDialog>
#include <QHeaderView>
#include <QScreen>
#include <QSettings>
#include <QSplitter>

#include "screens/widgets/list_pane.hpp"

namespace twk::screens {
namespace {

/// Under the name of the window that contains the part, which may be one besides the main window.
QString key(const QWidget& part, const char* what) {
  return part.window()->objectName() + "/" + part.objectName() + "/" + what;
}

QVariantList column_widths(const ListPane& list) {
  QVariantList widths;
  for (int i = 0; i < list.header()->count(); ++i)
    widths << list.header()->sectionSize(i);
  return widths;
}

void set_column_widths(const ListPane& list, const QVariantList& widths) {
  if (widths.size() != list.header()->count())
    return;
  for (int i = 0; i < list.header()->count(); ++i) {
    if (const int width = widths.at(i).toInt(); width >= list.header()->minimumSectionSize())
      list.header()->resizeSection(i, width);
  }
}

QString geometry_key(const QWidget& window) {
  return window.objectName() + "/geometry";
}

/// Not the key of old, under which windows that were never shown were kept.
QString place_key(const QDialog& dialog) {
  return dialog.objectName() + "/place";
}

void restore_parts(QWidget& window) {
  const QSettings settings;
  for (QSplitter* const splitter : window.findChildren<QSplitter*>())
    splitter->restoreState(settings.value(key(*splitter, "splitter")).toByteArray());
  for (const ListPane* const list : window.findChildren<ListPane*>())
    set_column_widths(*list, settings.value(key(*list, "columns")).toList());
}

}  // namespace

void save_place(const QDialog& dialog) {
  // One that was never shown is in the corner of the screen, where nobody put it.
  if (dialog.windowHandle() != nullptr)
    QSettings().setValue(place_key(dialog), dialog.saveGeometry());
}

void restore_place(QDialog& dialog) {
  dialog.restoreGeometry(QSettings().value(place_key(dialog)).toByteArray());
  const QSize room = dialog.screen()->availableSize();
  const QSize bounded = dialog.size().boundedTo(room);
  if (bounded != dialog.size())
    dialog.resize(bounded);
}

void save_window(const QMainWindow& window) {
  QSettings settings;
  settings.setValue(geometry_key(window), window.saveGeometry());
  for (const QDialog* const beside : window.findChildren<QDialog*>())
    save_place(*beside);
  for (const QSplitter* const splitter : window.findChildren<QSplitter*>())
    settings.setValue(key(*splitter, "splitter"), splitter->saveState());
  for (const ListPane* const list : window.findChildren<ListPane*>())
    settings.setValue(key(*list, "columns"), column_widths(*list));
}

void restore_window(QMainWindow& window) {
  window.restoreGeometry(QSettings().value(geometry_key(window)).toByteArray());
  for (QDialog* const beside : window.findChildren<QDialog*>())
    restore_place(*beside);
  restore_parts(window);
}

void restore_beside(QDialog& dialog) {
  restore_place(dialog);
  restore_parts(dialog);
}

}  // namespace twk::screens
