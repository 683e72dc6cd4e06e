#pragma once

#include <string>
#include <vector>

struct ldap;

/// What this process asks of LDAP servers, as calls of libldap that can be made again. Linking this file puts
/// it between the program and the library.
namespace twk::bench {

struct RecordedChange {
  int operation = 0;  ///< LDAP_MOD_ADD and its like
  std::string attribute;
  std::vector<std::string> values;
};

struct RecordedControl {
  std::string oid;
  std::string value;
  bool critical = false;
};

struct RecordedCall {
  enum class Kind { kSearch, kAdd, kModify, kRemove, kRename };

  Kind kind = Kind::kSearch;
  ldap* connection = nullptr;
  std::string dn{};
  int scope = 0;
  std::string filter{};
  std::vector<std::string> attributes{};
  std::vector<RecordedChange> changes{};
  std::string new_rdn{};
  std::string new_parent{};
  std::vector<RecordedControl> controls{};
  int result = 0;  ///< code of RFC 4511
};

/// Begins with an empty record.
void start_recording();
std::vector<RecordedCall> stop_recording();

/// The call with each occurrence of a text replaced, in names, filters and values.
RecordedCall renamed(RecordedCall call, const std::string& from, const std::string& to);

/// Makes the call on the connection that it was recorded on. Returns the result's code.
int replay(const RecordedCall& call);

}  // namespace twk::bench
