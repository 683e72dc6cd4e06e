#include "app/command_line.hpp"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <span>
#include <string_view>

#include "base/text.hpp"

namespace twk::app {
namespace {

constexpr std::string_view kDebug = "/DEBUG";
constexpr std::string_view kLoadLines = "/DEBUG1";

std::string variable(const char* name) {
  const char* value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe): one thread
  return value == nullptr ? std::string() : value;
}

bool has_word(int argc, char** argv, std::initializer_list<std::string_view> words) {
  const std::span<char*> arguments(argv, static_cast<std::size_t>(argc));
  return std::any_of(arguments.begin() + 1, arguments.end(), [&](const char* argument) {
    return std::find(words.begin(), words.end(), argument) != words.end();
  });
}

bool has_screen(int argc, char** argv) {
  return !variable("DISPLAY").empty() || !variable("WAYLAND_DISPLAY").empty() ||
         !variable("QT_QPA_PLATFORM").empty() || has_word(argc, argv, {"-platform", "--platform"});
}

int refuse(std::string_view what) {
  std::fprintf(stderr, "tarnwick: %.*s. Try `tarnwick --help`.\n", static_cast<int>(what.size()),
               what.data());
  return kExitUsage;
}

/// The first argument that cannot be a folder's name.
std::optional<std::string> find_unusable(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    const std::string_view argument = argv[i];
    if (!base::is_valid_utf8(argument))
      return "argument " + std::to_string(i) + " is not valid UTF-8";
    if (const auto control = base::find_control_character(argument))
      return "argument " + std::to_string(i) + " holds the control character " + *control;
  }
  return std::nullopt;
}

}  // namespace

std::optional<int> answer_without_screen(int argc, char** argv) {
  if (has_word(argc, argv, {"--help", "-h", "--version"})) {
    Options unused;
    return parse(argc, argv, unused);
  }
  if (has_screen(argc, argv))
    return std::nullopt;
  std::fputs("tarnwick: there is no screen to show a window on; `twk` does the same on the command line\n",
             stderr);
  return kExitFault;
}

std::optional<int> parse(int argc, char** argv, Options& options) {
  if (const auto unusable = find_unusable(argc, argv))
    return refuse(*unusable);
  options.lab = variable("TWK_LAB");
  if (argc == 2 && (base::equals_fold(argv[1], kDebug) || base::equals_fold(argv[1], kLoadLines))) {
    options.command_line = base::upper(argv[1]);
    return std::nullopt;
  }
  CLI::App app("User accounts of Windows domains", "tarnwick");
  app.footer(
      "The switch /DEBUG, as the only word, is the same as --debug; /DEBUG1 writes the steps of the\n"
      "domain's load to Log.txt and nothing else.");
  app.set_version_flag("--version", std::string("tarnwick ") + TWK_VERSION +
                                        "\nLicense GPL-3.0-or-later; there is no warranty.");
  app.add_option("--lab", options.lab, "Folder of the lab to work in; default: TWK_LAB from the environment")
      ->type_name("DIR");
  app.add_option("--db", options.database, "Database directory for this run")->type_name("DIR");
  app.add_flag_callback(
      "--debug", [&options] { options.command_line = kDebug; },
      "Details in Log.txt, passwords included; a fault ends the program");
  for (const world::ConnectionOption& one : world::connection_options())
    app.add_option(one.name, options.connection.*one.text, one.help)
        ->type_name(one.type)
        ->group("A real domain");
  try {
    app.parse(argc, argv);
    if (!world::says_anything(options.connection))
      return std::nullopt;
    if (app.count("--lab") != 0)
      return refuse("--lab and the options of a real domain exclude each other");
    options.lab.clear();
    return std::nullopt;
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() != 0)
      return refuse(error.what());
    app.exit(error, std::cout, std::cerr);
    std::cout.flush();
    return 0;
  }
}

}  // namespace twk::app
