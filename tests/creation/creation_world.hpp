#pragma once

#include "platform/adsi.hpp"
#include "support/lab_session.hpp"
#include "windows/create_user.hpp"
#include "windows/state/form1.hpp"
#include "windows/state/import_windows.hpp"

namespace twk::creation {

using lab::DomainKind;

/// A lab session in which a user, Jo Smith, is created by the button.
class CreationWorld : public test::LabSession {
 public:
  using LabSession::LabSession;

  void create() {
    type_names("Jo", "", "Smith");
    windows::CreateUser_Click(session);
  }
  void start_and_create() {
    start();
    create();
  }
};

/// One that has started.
class StartedCreation : public CreationWorld {
 public:
  explicit StartedCreation(DomainKind kind = DomainKind::kNative) : CreationWorld(kind) { start(); }
};

inline std::string caption(const controls::Label& light) {
  return light.caption;
}

class InEveryKindOfDomain : public testing::TestWithParam<DomainKind>, public CreationWorld {
 protected:
  InEveryKindOfDomain() : CreationWorld(GetParam()) {}
};

inline const auto kKinds = testing::Values(DomainKind::kNative, DomainKind::kMixed, DomainKind::kNt);

}  // namespace twk::creation
