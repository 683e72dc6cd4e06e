#pragma once

#include <QString>
#include <functional>
#include <optional>
#include <string>

#include "live/terms/check_step.hpp"
#include "live/terms/prompts.hpp"
#include "world/connection_options.hpp"

class QWidget;

namespace twk::app {

/// A person's choices for a real domain.
struct ChosenConnection {
  world::ConnectionOptions options;
  std::string password;         ///< typed into the window, or empty; never stored
  bool without_domain = false;  ///< continue although the domain does not answer
};

/// Tests a connection as `RealDomains::check_connection` does; replaced in tests.
using ConnectionTest = std::function<std::vector<live::CheckStep>(
    const live::LiveSettings& settings, const live::Prompts& prompts,
    const std::function<void(const live::CheckStep&)>& tell)>;

/// Shows the connection window, filled with `options`, and with `problem` if not empty. Its test runs in the
/// background. None when the person cancelled. Nothing is stored here.
std::optional<ChosenConnection> choose_connection(const world::ConnectionOptions& options,
                                                  const QString& problem, QWidget* parent,
                                                  const ConnectionTest& test = {});

}  // namespace twk::app
