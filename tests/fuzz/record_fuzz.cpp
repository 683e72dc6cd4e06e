#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "records/old_records.hpp"
#include "records/records.hpp"

namespace {

/// A record that was read and written once stays as it is, and keeps its size.
template <typename Decode, typename Encode>
void round_trip(std::string_view bytes, std::size_t size, Decode decode, Encode encode) {
  if (bytes.size() < size)
    return;
  const auto record = decode(bytes);
  const std::string written = encode(record);
  if (written.size() != size || decode(written) != record)
    std::abort();
}

/// The bytes, cut off or followed by blanks.
std::string sized(std::string_view bytes, std::size_t size) {
  std::string text(bytes.substr(0, size));
  text.resize(size, ' ');
  return text;
}

/// A record of an older generation becomes one of today, as long as those are.
void upgrade(std::string_view bytes) {
  using namespace twk::records;
  bool whole = upgrade_site(sized(bytes, kOldSiteRecordSize)).size() == kSiteRecordSize &&
               upgrade_permission(sized(bytes, kOldPermissionRecordSize)).size() == kPermissionRecordSize;
  for (const auto generation :
       {TemplateGeneration::k1, TemplateGeneration::k20, TemplateGeneration::k21, TemplateGeneration::k22})
    whole =
        whole && upgrade_template(sized(bytes, old_template_record_size(generation)), generation).size() ==
                     kTemplateRecordSize;
  if (!whole)
    std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace twk::records;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  upgrade(bytes);
  round_trip(bytes, kSiteRecordSize, decode_site, encode_site);
  round_trip(bytes, kPermissionRecordSize, decode_permission, encode_permission);
  round_trip(bytes, kTemplateRecordSize, decode_template, encode_template);
  // A template is too long for a fuzzer to find, so the input is also used as its beginning and its end.
  std::string padded(kTemplateRecordSize, ' ');
  const std::size_t used = std::min(size, padded.size());
  padded.replace(0, used, bytes.substr(0, used));
  round_trip(padded, kTemplateRecordSize, decode_template, encode_template);
  padded.assign(kTemplateRecordSize, ' ');
  padded.replace(padded.size() - used, used, bytes.substr(0, used));
  round_trip(padded, kTemplateRecordSize, decode_template, encode_template);
  return 0;
}
