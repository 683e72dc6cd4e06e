#include "format/user_name.hpp"

#include <cstdint>
#include <cstdlib>

#include "format/passwords.hpp"
#include "format/tags.hpp"
#include "format/variables.hpp"
#include "fuzz/fuzz_world.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/import_windows.hpp"

namespace {

/// The next line of the input.
std::string_view take_line(std::string_view& rest) {
  const std::size_t end = std::min(rest.find('\n'), rest.size());
  const std::string_view line = rest.substr(0, end);
  rest.remove_prefix(std::min(end + 1, rest.size()));
  return line;
}

}  // namespace

/// Lines: a format, three names, an import field, the name and the value of a variable.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view rest(reinterpret_cast<const char*>(data), size);
  twk::test::FuzzWorld world;
  twk::windows::Desktop& session = world.session;
  const std::string format(take_line(rest));
  const std::string_view first = take_line(rest);
  const std::string_view middle = take_line(rest);
  const std::string_view last = take_line(rest);
  session.import.Importing = true;
  session.import.ImportFieldCount = 2;
  session.import.ImportFields[1] = take_line(rest);
  session.import.ImportFields[2] = first;
  session.variables.ListView1.add({}, std::string(take_line(rest)), {}, {std::string(take_line(rest))});

  const std::string name = twk::format::UserName(session, format, first, middle, last);
  if (name.starts_with(' ') || name.ends_with(' '))
    std::abort();
  // A text may exceed the limit by one expansion before it stops.
  const std::size_t most = 2 * twk::format::kMostText + size * size;
  if (name.size() > most || twk::format::Replace_Variables(session, format).size() > most)
    std::abort();
  twk::format::new_password_text(session, {{}, format, true}, name, first, middle, last);
  return 0;
}
