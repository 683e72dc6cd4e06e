#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "live/terms/check_step.hpp"
#include "live/terms/live_settings.hpp"
#include "live/terms/prompts.hpp"

/// The check of the file servers, `world::check_servers`, in a process of its own: the libraries that talk to
/// them keep their state for the whole process, in which a window may be at work by then, and wait for a
/// silent server as long as they like. A person who has had enough ends that process.
namespace twk::app {

/// Answers when this start of the program is that process; none for a start by a person.
std::optional<int> answer_server_trial(int argc, char** argv);

/// Checks the servers that the sites of that database name; an empty one is the person's own. Reports each
/// step as it ends, and ends when `prompts` say to stop. Raises only what `tell` raises.
std::vector<live::CheckStep> try_servers(const live::LiveSettings& settings, const std::string& database,
                                         const live::Prompts& prompts,
                                         const std::function<void(const live::CheckStep&)>& tell);

}  // namespace twk::app
