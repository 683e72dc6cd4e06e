#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "base/errors.hpp"
#include "lab/store/ldif.hpp"

namespace {

using twk::lab::LdifRecord;

bool same_record(const LdifRecord& a, const LdifRecord& b) {
  return a.type == b.type && a.dn == b.dn && a.attributes == b.attributes &&
         a.modifications == b.modifications && a.new_rdn == b.new_rdn &&
         a.delete_old_rdn == b.delete_old_rdn && a.new_superior == b.new_superior;
}

/// What was read is written and must be read again as the same record.
void check_round_trip(const LdifRecord& record) {
  std::string text;
  twk::lab::append_ldif(text, record);
  std::vector<LdifRecord> again;
  twk::lab::read_ldif(text, [&](LdifRecord&& one) { again.push_back(std::move(one)); });
  if (again.size() != 1 || !same_record(again.front(), record) || again.front().end != text.size())
    std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  std::vector<LdifRecord> records;
  try {
    twk::lab::read_ldif(text, [&](LdifRecord&& record) { records.push_back(std::move(record)); });
  } catch (const twk::base::RuntimeError& failure) {
    if (failure.number() != twk::lab::kInvalidLdif)
      std::abort();
  }
  for (const LdifRecord& record : records)
    check_round_trip(record);
  return 0;
}
