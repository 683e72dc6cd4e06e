#pragma once

#include <gtest/gtest.h>

#include <fstream>

#include "contract/world.hpp"
#include "lab/making/lab_create.hpp"
#include "lab/services/lab.hpp"
#include "support/scripted_dialogs.hpp"
#include "support/temporary_directory.hpp"

namespace twk::test {

inline lab::LabPlan small_plan() {
  lab::LabPlan plan;
  plan.users = 0;
  plan.groups = 0;
  plan.ous = 0;
  plan.administrator = "tester";
  return plan;
}

inline lab::LabPlan plan_of(lab::DomainKind kind) {
  lab::LabPlan plan = small_plan();
  plan.kind = kind;
  plan.netbios = "TWK";
  return plan;
}

/// A new lab, open, with an empty unit "Tests".
class LabWorld final : public contract::World {
 public:
  explicit LabWorld(const lab::LabPlan& plan = small_plan()) {
    lab::create_lab(folder(), plan);
    reopen();
    if (plan.kind == lab::DomainKind::kNt)
      return;
    contract::get_entry(*this, root())->Create("organizationalUnit", "OU=Tests")->SetInfo();
  }

  platform::DirectoryService& directory() override { return platform().directory; }
  platform::QueryService& query() override { return platform().query; }
  platform::Files& files() override { return platform().files; }
  platform::Security& security() override { return platform().security; }
  platform::Network& network() override { return platform().network; }
  [[nodiscard]] std::string unit() const override { return "OU=Tests,DC=twk,DC=test"; }
  [[nodiscard]] std::string file_server() const override { return "FS1"; }

  [[nodiscard]] std::filesystem::path folder() const { return directory_.path() / "lab"; }
  [[nodiscard]] lab::Lab& lab() { return *lab_; }
  [[nodiscard]] platform::Platform platform() { return lab_->platform(dialogs_); }
  [[nodiscard]] std::unique_ptr<lab::Lab> open_again() const {
    return std::make_unique<lab::Lab>(folder(), [](const std::string& warning) { ADD_FAILURE() << warning; });
  }
  /// Adds lines to "lab.conf" and opens the lab again.
  void configure(std::string_view lines) {
    std::ofstream(folder() / "lab.conf", std::ios::app) << lines;
    reopen();
  }
  void reopen() {
    lab_.reset();
    lab_ = open_again();
  }

 private:
  TemporaryDirectory directory_;
  ScriptedDialogs dialogs_;
  std::unique_ptr<lab::Lab> lab_;
};

/// A second program that has the lab of a world open.
class OtherProgram {
 public:
  explicit OtherProgram(const LabWorld& world) : lab_(world.open_again()) {}
  [[nodiscard]] platform::Platform platform() { return lab_->platform(dialogs_); }

 private:
  ScriptedDialogs dialogs_;
  std::unique_ptr<lab::Lab> lab_;
};

inline std::unique_ptr<contract::World> make_lab_world() {
  return std::make_unique<LabWorld>();
}

}  // namespace twk::test
