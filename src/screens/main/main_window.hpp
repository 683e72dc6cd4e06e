#pragma once

#include <QMainWindow>
#include <QTabWidget>
#include <QToolBar>
#include <memory>

#include "screens/widgets/tree_pane.hpp"
#include "windows/state/desktop.hpp"

namespace twk::screens {

/// `form1`: the tree on the left, the tabs on the right, menus, toolbar and status bar around them.
class MainWindow final : public QMainWindow {
 public:
  explicit MainWindow(windows::Desktop& session);
  ~MainWindow() override;

  [[nodiscard]] TreePane& tree() const { return *tree_; }
  [[nodiscard]] QTabWidget& tabs() const { return *tabs_; }
  [[nodiscard]] QTabWidget& setup_tabs() const { return *setup_tabs_; }

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  void make_panes();
  void make_tabs();
  void make_status_bar();
  void make_commands();
  void follow_session();
  void show_groups(bool shown);

  windows::Desktop& session_;
  TreePane* tree_ = nullptr;
  QTabWidget* tabs_ = nullptr;
  QTabWidget* setup_tabs_ = nullptr;
  QToolBar* toolbar_ = nullptr;
  std::unique_ptr<QDialog> cancel_import_;
  std::unique_ptr<QDialog> file_progress_;
  std::unique_ptr<QDialog> groups_;  ///< none before it is first shown: it sorts all users
};

}  // namespace twk::screens
