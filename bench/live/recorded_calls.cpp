#include "recorded_calls.hpp"

#include <dlfcn.h>
#include <ldap.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

namespace twk::bench {
namespace {

bool recording = false;
std::vector<RecordedCall> record;

/// The library's own function of that name.
template <typename Function>
Function* of_library(const char* name) {
  void* const found = dlsym(RTLD_NEXT, name);
  if (found == nullptr) {
    std::fprintf(stderr, "libldap has no %s\n", name);
    std::abort();
  }
  return reinterpret_cast<Function*>(found);  // NOLINT: what dlsym is for
}

std::string text_of(const char* text) {
  return text == nullptr ? std::string() : std::string(text);
}

std::vector<std::string> texts_of(char** texts) {
  std::vector<std::string> all;
  for (; texts != nullptr && *texts != nullptr; ++texts)
    all.emplace_back(*texts);
  return all;
}

std::vector<RecordedControl> controls_of(LDAPControl** controls) {
  std::vector<RecordedControl> all;
  for (; controls != nullptr && *controls != nullptr; ++controls) {
    const LDAPControl& one = **controls;
    all.push_back({one.ldctl_oid, std::string(one.ldctl_value.bv_val, one.ldctl_value.bv_len),
                   one.ldctl_iscritical != 0});
  }
  return all;
}

std::vector<RecordedChange> changes_of(LDAPMod** mods) {
  std::vector<RecordedChange> all;
  for (; mods != nullptr && *mods != nullptr; ++mods) {
    RecordedChange change{(*mods)->mod_op, text_of((*mods)->mod_type), {}};
    for (berval** value = (*mods)->mod_bvalues; value != nullptr && *value != nullptr; ++value)
      change.values.emplace_back((*value)->bv_val, (*value)->bv_len);
    all.push_back(std::move(change));
  }
  return all;
}

int keep(RecordedCall&& call, int result) {
  call.result = result;
  if (recording)
    record.push_back(std::move(call));
  return result;
}

/// Controls, attribute names and changes in the library's form, of texts that are kept elsewhere.
class LibraryForm {
 public:
  explicit LibraryForm(const RecordedCall& call) {
    for (const RecordedControl& control : call.controls)
      controls_.push_back({bytes(control.oid), value(control.value), static_cast<char>(control.critical)});
    for (LDAPControl& control : controls_)
      control_list_.push_back(&control);
    control_list_.push_back(nullptr);
    for (const std::string& name : call.attributes)
      attributes_.push_back(bytes(name));
    attributes_.push_back(nullptr);
    for (const RecordedChange& change : call.changes)
      add(change);
    mods_.push_back(nullptr);
  }
  LibraryForm(const LibraryForm&) = delete;
  LibraryForm& operator=(const LibraryForm&) = delete;

  LDAPControl** controls() { return control_list_.size() == 1 ? nullptr : control_list_.data(); }
  char** attributes() { return attributes_.size() == 1 ? nullptr : attributes_.data(); }
  LDAPMod** mods() { return mods_.data(); }

 private:
  struct Change {
    LDAPMod mod{};
    std::vector<berval> values;
    std::vector<berval*> list;
  };

  static char* bytes(const std::string& text) { return const_cast<char*>(text.data()); }  // NOLINT: read only
  static berval value(const std::string& text) { return {text.size(), bytes(text)}; }
  void add(const RecordedChange& change) {
    Change& one = *changes_.emplace_back(std::make_unique<Change>());
    for (const std::string& text : change.values)
      one.values.push_back(value(text));
    for (berval& text : one.values)
      one.list.push_back(&text);
    one.list.push_back(nullptr);
    one.mod.mod_op = change.operation;
    one.mod.mod_type = bytes(change.attribute);
    one.mod.mod_bvalues = one.list.data();
    mods_.push_back(&one.mod);
  }

  std::vector<LDAPControl> controls_;
  std::vector<LDAPControl*> control_list_;
  std::vector<char*> attributes_;
  std::vector<std::unique_ptr<Change>> changes_;
  std::vector<LDAPMod*> mods_;
};

void replace_all(std::string& text, const std::string& from, const std::string& to) {
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
}

}  // namespace

void start_recording() {
  record.clear();
  recording = true;
}

std::vector<RecordedCall> stop_recording() {
  recording = false;
  return std::move(record);
}

RecordedCall renamed(RecordedCall call, const std::string& from, const std::string& to) {
  for (std::string* const text : {&call.dn, &call.filter, &call.new_rdn, &call.new_parent})
    replace_all(*text, from, to);
  for (RecordedChange& change : call.changes) {
    for (std::string& value : change.values)
      replace_all(value, from, to);
  }
  return call;
}

int replay(const RecordedCall& call) {
  LibraryForm form(call);
  switch (call.kind) {
    case RecordedCall::Kind::kSearch: {
      LDAPMessage* answer = nullptr;
      timeval patience{60, 0};
      const int result = ldap_search_ext_s(call.connection, call.dn.c_str(), call.scope, call.filter.c_str(),
                                           form.attributes(), 0, form.controls(), nullptr, &patience,
                                           LDAP_NO_LIMIT, &answer);
      ldap_msgfree(answer);
      return result;
    }
    case RecordedCall::Kind::kAdd:
      return ldap_add_ext_s(call.connection, call.dn.c_str(), form.mods(), form.controls(), nullptr);
    case RecordedCall::Kind::kModify:
      return ldap_modify_ext_s(call.connection, call.dn.c_str(), form.mods(), form.controls(), nullptr);
    case RecordedCall::Kind::kRemove:
      return ldap_delete_ext_s(call.connection, call.dn.c_str(), form.controls(), nullptr);
    case RecordedCall::Kind::kRename:
      break;
  }
  return ldap_rename_s(call.connection, call.dn.c_str(), call.new_rdn.c_str(),
                       call.new_parent.empty() ? nullptr : call.new_parent.c_str(), 1, form.controls(),
                       nullptr);
}

}  // namespace twk::bench

using twk::bench::RecordedCall;

// The names below are the library's: the program's calls come here first.
extern "C" {

int ldap_search_ext_s(LDAP* connection, const char* base, int scope, const char* filter, char** attributes,
                      int types_only, LDAPControl** controls, LDAPControl** client_controls, timeval* timeout,
                      int size_limit, LDAPMessage** answer) {
  static const auto call = twk::bench::of_library<decltype(ldap_search_ext_s)>("ldap_search_ext_s");
  RecordedCall kept{.kind = RecordedCall::Kind::kSearch,
                    .connection = connection,
                    .dn = twk::bench::text_of(base),
                    .scope = scope,
                    .filter = twk::bench::text_of(filter),
                    .attributes = twk::bench::texts_of(attributes),
                    .controls = twk::bench::controls_of(controls)};
  return twk::bench::keep(std::move(kept), call(connection, base, scope, filter, attributes, types_only,
                                                controls, client_controls, timeout, size_limit, answer));
}

int ldap_add_ext_s(LDAP* connection, const char* dn, LDAPMod** mods, LDAPControl** controls,
                   LDAPControl** client_controls) {
  static const auto call = twk::bench::of_library<decltype(ldap_add_ext_s)>("ldap_add_ext_s");
  RecordedCall kept{.kind = RecordedCall::Kind::kAdd,
                    .connection = connection,
                    .dn = twk::bench::text_of(dn),
                    .changes = twk::bench::changes_of(mods),
                    .controls = twk::bench::controls_of(controls)};
  return twk::bench::keep(std::move(kept), call(connection, dn, mods, controls, client_controls));
}

int ldap_modify_ext_s(LDAP* connection, const char* dn, LDAPMod** mods, LDAPControl** controls,
                      LDAPControl** client_controls) {
  static const auto call = twk::bench::of_library<decltype(ldap_modify_ext_s)>("ldap_modify_ext_s");
  RecordedCall kept{.kind = RecordedCall::Kind::kModify,
                    .connection = connection,
                    .dn = twk::bench::text_of(dn),
                    .changes = twk::bench::changes_of(mods),
                    .controls = twk::bench::controls_of(controls)};
  return twk::bench::keep(std::move(kept), call(connection, dn, mods, controls, client_controls));
}

int ldap_delete_ext_s(LDAP* connection, const char* dn, LDAPControl** controls,
                      LDAPControl** client_controls) {
  static const auto call = twk::bench::of_library<decltype(ldap_delete_ext_s)>("ldap_delete_ext_s");
  RecordedCall kept{.kind = RecordedCall::Kind::kRemove,
                    .connection = connection,
                    .dn = twk::bench::text_of(dn),
                    .controls = twk::bench::controls_of(controls)};
  return twk::bench::keep(std::move(kept), call(connection, dn, controls, client_controls));
}

int ldap_rename_s(LDAP* connection, const char* dn, const char* new_rdn, const char* new_parent,
                  int delete_old, LDAPControl** controls, LDAPControl** client_controls) {
  static const auto call = twk::bench::of_library<decltype(ldap_rename_s)>("ldap_rename_s");
  RecordedCall kept{.kind = RecordedCall::Kind::kRename,
                    .connection = connection,
                    .dn = twk::bench::text_of(dn),
                    .new_rdn = twk::bench::text_of(new_rdn),
                    .new_parent = twk::bench::text_of(new_parent),
                    .controls = twk::bench::controls_of(controls)};
  return twk::bench::keep(std::move(kept),
                          call(connection, dn, new_rdn, new_parent, delete_old, controls, client_controls));
}

}  // extern "C"
