#pragma once

#include <QString>
#include <optional>
#include <string>
#include <vector>

#include "app/background_check.hpp"
#include "world/connection_options.hpp"

class QWidget;

namespace twk::app {

/// A person's choices for a real domain.
struct ChosenConnection {
  world::ConnectionOptions options;
  std::string password;         ///< typed into the window, or empty; never stored
  bool without_domain = false;  ///< continue although the domain does not answer
};

/// An attempt to connect that came to nothing.
struct FailedConnection {
  QString problem;  ///< the step, the reason and the remedy; empty when nothing failed
  std::vector<TimedStep> steps;
};

/// Shows the connection window, filled with `options`, and with what failed before. Its test runs in the
/// background, and does not hold up the window's end. None when the person cancelled. Nothing is stored here.
std::optional<ChosenConnection> choose_connection(const world::ConnectionOptions& options,
                                                  const FailedConnection& failed, QWidget* parent,
                                                  const ConnectionTest& test = {});

}  // namespace twk::app
