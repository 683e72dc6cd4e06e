#include "world/lab_ground.hpp"

#include "lab/services/lab.hpp"

namespace twk::world {
namespace {

class LabGround final : public Ground {
 public:
  LabGround(const std::filesystem::path& folder, const std::function<void(const std::string&)>& warn)
      : folder_(folder), lab_(folder, warn) {}

  platform::Platform platform(platform::Dialogs& dialogs) override { return lab_.platform(dialogs); }
  platform::RegistryListing& registry_listing() override { return lab_.registry_listing(); }
  [[nodiscard]] std::string settings_folder() const override { return (folder_ / "settings").string(); }
  [[nodiscard]] std::string database_path() const override { return lab_.database_path(); }
  [[nodiscard]] std::string domain_name() const override { return lab::domain_name(lab_.config()); }
  [[nodiscard]] bool has_one_domain() const override { return false; }
  DomainNames names() override {
    return {domain_name(), lab_.config().netbios, lab_.config().kind != lab::DomainKind::kNt};
  }
  void connect() override { lab_.open_directory(); }
  lab::Lab* lab() override { return &lab_; }

 private:
  std::filesystem::path folder_;
  lab::Lab lab_;
};

}  // namespace

std::unique_ptr<Ground> make_lab_ground(const std::filesystem::path& folder,
                                        const std::function<void(const std::string&)>& warn) {
  return std::make_unique<LabGround>(folder, warn);
}

}  // namespace twk::world
