#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace twk::session {
struct ImportState;
}

namespace twk::batch {

/// The users of an import file, one after the other, whatever the form of the file.
class ImportSource {
 public:
  virtual ~ImportSource() = default;

  /// Goes to the next user; False at the end.
  virtual bool next() = 0;
  /// The line of the file at which the current one begins, counted from 1.
  [[nodiscard]] virtual std::int32_t number() const = 0;
  /// The number of the last one.
  [[nodiscard]] virtual std::int32_t last_number() const = 0;
  /// The current one becomes the next one again.
  virtual void put_back() = 0;
  /// The current one as text, as "Import.err" keeps it.
  [[nodiscard]] virtual std::string text() const = 0;
  /// Its bytes in the file, its line end included.
  [[nodiscard]] virtual std::string_view raw() const = 0;
  /// The heading line as text; empty without one.
  [[nodiscard]] virtual std::string heading() const { return {}; }
  /// Puts the current one into the state: `ImportLine`, `ImportFields` and their number.
  virtual void take_up(session::ImportState& state) const = 0;
};

}  // namespace twk::batch
