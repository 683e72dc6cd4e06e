#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ads/basic_object.hpp"
#include "platform/adsi.hpp"
#include "platform/security_descriptor.hpp"

namespace twk::ads {

inline constexpr std::uint32_t kBadNetPath = 0x80070035;     ///< ERROR_BAD_NETPATH
inline constexpr std::uint32_t kShareNotFound = 0x80070906;  ///< NERR_NetNameNotFound
inline constexpr std::uint32_t kShareExists = 0x80070846;    ///< NERR_DuplicateShare

struct FileShare {
  std::string name;
  std::string path;  ///< on the server, "D:\Users"
  std::string comment;
  std::int32_t max_users = -1;
  std::optional<platform::SecurityDescriptor> descriptor{};  ///< none: everyone may do everything
  bool administrative = false;                               ///< a drive's own share
};

/// The shares of one file server.
class ShareStore {
 public:
  virtual ~ShareStore() = default;
  [[nodiscard]] virtual std::vector<FileShare> all() = 0;
  [[nodiscard]] virtual std::optional<FileShare> find(std::string_view name) = 0;
  /// Adds the share or changes the one of its name (`replace`). Raises kShareExists for a new share of a name
  /// in use.
  virtual void store(const FileShare& share, bool replace) = 0;
  /// Raises kShareNotFound.
  virtual void remove(std::string_view name) = 0;
};

/// "WinNT://FS1/lanmanserver": the container of a file server's shares, objects of class "FileShare".
class FileServerObject final : public BasicObject {
 public:
  /// `shares` outlives the object; `name` is what the path calls the server.
  FileServerObject(ShareStore& shares, std::string name);

  [[nodiscard]] std::string Name() const override { return "lanmanserver"; }
  [[nodiscard]] std::string Class() const override { return "FileService"; }
  [[nodiscard]] std::string ADsPath() const override;
  [[nodiscard]] std::string Parent() const override { return platform::winnt_path(name_); }

  void enumerate(std::span<const std::string> classes,
                 const std::function<bool(const platform::ObjectPtr&)>& visit) override;
  /// Raises kShareNotFound.
  platform::ObjectPtr GetObject(std::string_view object_class, std::string_view name) override;
  platform::ObjectPtr Create(std::string_view object_class, std::string_view name) override;
  void Delete(std::string_view object_class, std::string_view name) override;

 private:
  ShareStore& shares_;
  std::string name_;
};

}  // namespace twk::ads
