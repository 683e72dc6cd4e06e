#pragma once

#include <QString>
#include <functional>
#include <optional>
#include <string>

#include "live/domain/connection_check.hpp"
#include "world/connection_options.hpp"

class QWidget;

namespace twk::app {

/// What a person chose about a real domain.
struct ChosenConnection {
  world::ConnectionOptions options;
  std::string password;         ///< typed into the window; empty when none was, and never stored
  bool without_domain = false;  ///< go on though the domain does not answer
};

/// Goes through a connection as `live::check_connection` does; another one in tests.
using ConnectionTest = std::function<std::vector<live::CheckStep>(
    const live::LiveSettings& settings, const live::Prompts& prompts,
    const std::function<void(const live::CheckStep&)>& tell)>;

/// Shows the window of the connection, filled with `options`, and what is wrong with it when `problem` is not
/// empty. Its test runs beside the window. None when the person cancelled. Nothing is stored here.
std::optional<ChosenConnection> choose_connection(const world::ConnectionOptions& options,
                                                  const QString& problem, QWidget* parent,
                                                  const ConnectionTest& test = {});

}  // namespace twk::app
