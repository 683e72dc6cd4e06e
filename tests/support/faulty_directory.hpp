#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/directory.hpp"

namespace twk::test {

/// A directory that lets a test step in before each operation. `before` gets the operation's name
/// ("SetInfo", "GetObject" …) and the path it is made on; what it raises, the operation raises, and nothing
/// is done.
class FaultyDirectory final : public platform::DirectoryService {
 public:
  using Before = std::function<void(std::string_view operation, std::string_view path)>;

  explicit FaultyDirectory(platform::DirectoryService& real) : real_(real) {}

  Before before;
  bool writes_at_once = false;  ///< an account's fields and password in one request

  platform::ObjectPtr GetObject(std::string_view path) override;
  platform::ObjectPtr OpenDSObject(std::string_view path, std::string_view user,
                                   std::string_view password) override;
  void begin_batch() override { real_.begin_batch(); }
  void end_batch() override;

  platform::ObjectPtr wrap(platform::ObjectPtr object);
  void step(std::string_view operation, std::string_view path) const {
    if (before)
      before(operation, path);
  }

 private:
  platform::DirectoryService& real_;
};

/// A hook that raises `number` at the n-th (from 1) call of an operation.
FaultyDirectory::Before fail_at(std::string operation, int n, std::uint32_t number);

}  // namespace twk::test
