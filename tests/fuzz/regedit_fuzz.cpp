#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "base/errors.hpp"
#include "local/regedit.hpp"

/// A text is refused, or reads as the same tree after formatting.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace twk::local;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  RegistryTree tree;
  try {
    tree = parse_regedit(regedit_text(text));
  } catch (const twk::base::RuntimeError&) {
    return 0;
  }
  const std::string formatted = format_regedit(tree);
  if (format_regedit(parse_regedit(formatted)) != formatted)
    std::abort();
  return 0;
}
