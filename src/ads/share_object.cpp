#include "ads/share_object.hpp"

#include "base/errors.hpp"
#include "base/text.hpp"
#include "platform/adsi.hpp"

namespace twk::ads {
namespace {

using platform::ObjectPtr;
using platform::Value;
namespace ads_error = platform::ads_error;

constexpr std::string_view kFileShare = "FileShare";

class FileShareObject final : public BasicObject {
 public:
  FileShareObject(ShareStore& shares, std::string server, FileShare share, bool is_new)
      : shares_(shares), server_(std::move(server)), share_(std::move(share)), new_(is_new) {}

  [[nodiscard]] std::string Name() const override { return share_.name; }
  [[nodiscard]] std::string Class() const override { return std::string(kFileShare); }
  [[nodiscard]] std::string ADsPath() const override { return Parent() + "/" + share_.name; }
  [[nodiscard]] std::string Parent() const override { return platform::shares_path(server_); }

  Value Get(std::string_view attribute) override {
    Value value;
    if (base::equals_fold(attribute, "Name"))
      value = share_.name;
    if (base::equals_fold(attribute, "Path"))
      value = share_.path;
    if (base::equals_fold(attribute, "Description"))
      value = share_.comment;
    if (base::equals_fold(attribute, "MaxUserCount"))
      value = share_.max_users;
    if (value.is_empty() || (!value.is_list() && value.text().empty())) {
      base::raise(ads_error::kPropertyNotFound, ADsPath() + " has no value for " + std::string(attribute));
    }
    return value;
  }

  void Put(std::string_view attribute, const Value& value) override {
    if (base::equals_fold(attribute, "Path")) {
      share_.path = value.text();
    } else if (base::equals_fold(attribute, "Description")) {
      share_.comment = value.text();
    } else if (base::equals_fold(attribute, "MaxUserCount")) {
      share_.max_users = value.integer();
    } else {
      base::raise(ads_error::kNoSuchAttribute, "A share has no property " + std::string(attribute));
    }
  }

  void SetInfo() override {
    shares_.store(share_, !new_);
    new_ = false;
  }

 private:
  ShareStore& shares_;
  std::string server_;
  FileShare share_;
  bool new_;
};

void require_share_class(std::string_view object_class) {
  if (object_class.empty() || base::equals_fold(object_class, kFileShare))
    return;
  base::raise(ads_error::kUnwilling, "A file server has no objects of class " + std::string(object_class));
}

}  // namespace

FileServerObject::FileServerObject(ShareStore& shares, std::string name)
    : shares_(shares), name_(std::move(name)) {}

std::string FileServerObject::ADsPath() const {
  return platform::shares_path(name_);
}

void FileServerObject::enumerate(std::span<const std::string> classes,
                                 const std::function<bool(const ObjectPtr&)>& visit) {
  if (!is_wanted(classes, kFileShare))
    return;
  for (FileShare& share : shares_.all()) {
    if (!visit(std::make_shared<FileShareObject>(shares_, name_, std::move(share), false)))
      return;
  }
}

ObjectPtr FileServerObject::GetObject(std::string_view object_class, std::string_view name) {
  require_share_class(object_class);
  auto share = shares_.find(name);
  if (!share)
    base::raise(kShareNotFound, name_ + " has no share " + std::string(name));
  return std::make_shared<FileShareObject>(shares_, name_, *std::move(share), false);
}

ObjectPtr FileServerObject::Create(std::string_view object_class, std::string_view name) {
  require_share_class(object_class);
  FileShare share;
  share.name = name;
  return std::make_shared<FileShareObject>(shares_, name_, std::move(share), true);
}

void FileServerObject::Delete(std::string_view object_class, std::string_view name) {
  require_share_class(object_class);
  shares_.remove(name);
}

}  // namespace twk::ads
