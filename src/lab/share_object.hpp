#pragma once

#include <string>

#include "ads/basic_object.hpp"
#include "lab/file_server.hpp"

namespace twk::lab {

/// "WinNT://FS1/lanmanserver": the container of a file server's shares, objects of class "FileShare".
class FileServerObject final : public ads::BasicObject {
 public:
  /// `server` stays open as long as the lab; `name` is what the path calls it.
  FileServerObject(FileServer& server, std::string name);

  [[nodiscard]] std::string Name() const override { return "lanmanserver"; }
  [[nodiscard]] std::string Class() const override { return "FileService"; }
  [[nodiscard]] std::string ADsPath() const override;
  [[nodiscard]] std::string Parent() const override { return "WinNT://" + name_; }

  void enumerate(std::span<const std::string> classes,
                 const std::function<bool(const platform::ObjectPtr&)>& visit) override;
  /// Raises kShareNotFound.
  platform::ObjectPtr GetObject(std::string_view object_class, std::string_view name) override;
  platform::ObjectPtr Create(std::string_view object_class, std::string_view name) override;
  void Delete(std::string_view object_class, std::string_view name) override;

 private:
  FileServer& server_;
  std::string name_;
};

}  // namespace twk::lab
