#pragma once

#include "lifecycle/lifecycle_world.hpp"

namespace twk::lifecycle {

using lab::DomainKind;
using test::LifecycleWorld;
using Names = std::set<std::string>;

inline const auto kKinds = testing::Values(DomainKind::kNative, DomainKind::kMixed, DomainKind::kNt);

/// Everything but mail and command is ticked.
inline void tick_all(LifecycleWorld& world) {
  windows::MultiUser& window = world.session.multi_user;
  for (controls::CheckBox* const box : {&window.Del_Shares, &window.Delete_NT_Account, &window.Delete_Data})
    box->value = 1;
}

/// jo with her own share for home and profile, and a neighbour.
inline void give_own_shares(LifecycleWorld& world) {
  world.put("FS1/D/Users/jo/a.txt");
  world.put("FS1/D/Users/jo/Mail/b.txt");
  world.put("FS1/D/Profiles/jo/NTUser.dat");
  world.put("FS1/D/Users/ann/c.txt");
  world.share("FS1", "jo$", "D:\\Users\\jo");
  world.share("FS1", "jo.prf$", "D:\\Profiles\\jo");
}

inline const Names kAll = {
    "Users/",         "Users/ann/",          "Users/ann/c.txt", "Users/jo/",    "Users/jo/Mail/",
    "Users/jo/a.txt", "Users/jo/Mail/b.txt", "Profiles/",       "Profiles/jo/", "Profiles/jo/NTUser.dat"};

}  // namespace twk::lifecycle
