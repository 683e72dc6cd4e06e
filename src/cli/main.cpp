#include <CLI/CLI.hpp>

int main(int argc, char** argv) {
  CLI::App app("User accounts of Windows domains", "twk");
  CLI11_PARSE(app, argc, argv);
  return 0;
}
