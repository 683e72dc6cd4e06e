#pragma once

#include <string>

/// Where this program keeps a person's own files, below the XDG base directories (version 0.8).
namespace twk::local {

/// "$XDG_CONFIG_HOME/tarnwick", "~/.config/tarnwick" without that variable. Neither is made.
std::string user_config_folder();
/// "$XDG_DATA_HOME/tarnwick", "~/.local/share/tarnwick" without that variable.
std::string user_data_folder();

}  // namespace twk::local
