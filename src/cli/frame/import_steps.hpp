#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "cli/frame/context.hpp"

namespace twk::cli {

/// Starts a rehearsal of an import, and keeps the steps of a line until its number is known.
class ImportSteps {
 public:
  /// For the next session of the context.
  explicit ImportSteps(Context& context);
  ImportSteps(const ImportSteps&) = delete;
  ImportSteps& operator=(const ImportSteps&) = delete;
  ~ImportSteps() = default;

  /// From here on steps count, and show stars in place of the passwords that the log hides.
  void follow(const session::Session& session) { session_ = &session; }
  /// The steps of a line as results, { line, step }, in order; 0 for what precedes the first line.
  void print(std::int32_t line);

 private:
  Context& context_;
  const session::Session* session_ = nullptr;
  std::vector<std::string> steps_;
};

}  // namespace twk::cli
