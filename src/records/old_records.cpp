#include "records/old_records.hpp"

#include <algorithm>
#include <array>

#include "platform/logon_hours.hpp"
#include "records/records.hpp"

namespace twk::records {
namespace {

constexpr std::size_t kGroupLength = 21;
constexpr std::size_t kVariableNameLength = 15;
constexpr std::size_t kVariableValueLength = 30;
constexpr std::size_t kPrimaryGroupLength = 21;

/// The offsets of moved fields in an old record; 0 for a field that it lacks.
struct OldTemplate {
  std::size_t record_size;
  std::size_t logon_hours;
  std::size_t primary_group;
  std::size_t groups;
  std::size_t group_slots;
  std::size_t variable_names;
  std::size_t variable_values;
  std::size_t variable_slots;
};

constexpr std::array<OldTemplate, 4> kOldTemplates = {{
    {2407, 0, 0, 391, 51, 1462, 1777, 21},
    {3757, 0, 0, 391, 51, 1462, 2227, 51},
    {3778, 391, 0, 412, 51, 1483, 2248, 51},
    {4324, 391, 412, 433, 76, 2029, 2794, 51},
}};

const OldTemplate& layout_of(TemplateGeneration generation) {
  return kOldTemplates.at(static_cast<std::size_t>(generation));
}

/// Appends `length` bytes of an old record, padded with blanks to today's field.
class Upgrade {
 public:
  explicit Upgrade(std::string_view old_record) : old_(old_record) {}

  Upgrade& field(std::size_t offset, std::size_t length, std::size_t new_length) {
    const std::size_t end = bytes_.size() + new_length;
    bytes_ += old_.substr(offset, length);
    bytes_.resize(end, ' ');
    return *this;
  }
  Upgrade& field(std::size_t offset, std::size_t length) { return field(offset, length, length); }
  Upgrade& text(std::string_view value, std::size_t length) {
    bytes_ += value;
    bytes_.resize(bytes_.size() + length - value.size(), ' ');
    return *this;
  }
  Upgrade& raw(std::string_view value) {
    bytes_ += value;
    return *this;
  }
  std::string take() { return std::move(bytes_); }

 private:
  std::string_view old_;
  std::string bytes_;
};

/// The count of used group slots, at most as many as the old record holds.
std::string group_count(std::string_view old_record, const OldTemplate& layout) {
  const auto low = static_cast<unsigned char>(old_record[2]);
  const auto high = static_cast<unsigned char>(old_record[3]);
  const auto stored = static_cast<std::int16_t>(low | (high << 8U));
  const auto most = static_cast<std::int16_t>(std::min(layout.group_slots, kMostGroups));
  const auto count = static_cast<std::uint16_t>(std::clamp(stored, std::int16_t{0}, most));
  return {static_cast<char>(count & 0xFFU), static_cast<char>(count >> 8U)};
}

}  // namespace

std::size_t old_template_record_size(TemplateGeneration generation) {
  return layout_of(generation).record_size;
}

std::string upgrade_site(std::string_view old_record) {
  return Upgrade(old_record).field(0, 4 + 3 * 20).field(64, 20, 30).field(84, 18, 30).text({}, 30).take();
}

std::string upgrade_template(std::string_view old_record, TemplateGeneration generation) {
  const OldTemplate& old = layout_of(generation);
  Upgrade record(old_record);
  record.field(0, 2).raw(group_count(old_record, old)).field(4, 365);
  record.text({}, 100).text({}, 100).field(369, 22);
  if (old.logon_hours == 0) {
    record.raw(std::string(platform::kLogonHoursSize, '\xFF'));
  } else {
    record.field(old.logon_hours, platform::kLogonHoursSize);
  }
  if (old.primary_group == 0) {
    record.text("Domain Users", kPrimaryGroupLength);
  } else {
    record.field(old.primary_group, kPrimaryGroupLength);
  }
  return record.field(old.groups, old.group_slots * kGroupLength, kGroupSlots * kGroupLength)
      .field(old.variable_names, old.variable_slots * kVariableNameLength,
             kVariableSlots * kVariableNameLength)
      .field(old.variable_values, old.variable_slots * kVariableValueLength,
             kVariableSlots * kVariableValueLength)
      .take();
}

std::string upgrade_permission(std::string_view old_record) {
  return Upgrade(old_record).field(0, kOldPermissionRecordSize).text({}, 50).take();
}

}  // namespace twk::records
