#include "records/records.hpp"

#include <algorithm>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "platform/logon_hours.hpp"

namespace twk::records {
namespace {

/// Writes fields one after the other.
class Encoder {
 public:
  explicit Encoder(std::size_t size) { bytes_.reserve(size); }

  void flag(bool value) { number(value ? std::int16_t{-1} : std::int16_t{0}); }
  void number(std::int16_t value) {
    const auto bits = static_cast<std::uint16_t>(value);
    bytes_.push_back(static_cast<char>(bits & 0xFFU));
    bytes_.push_back(static_cast<char>(bits >> 8U));
  }
  void text(std::string_view value, std::size_t length) {
    std::optional<std::string> ansi = base::to_ansi(value);
    // Code that accepts a text reports this before it gets here.
    if (!ansi)
      base::raise(base::error::kTypeMismatch, code_page_refusal(value));
    std::string& field = *ansi;
    field.resize(length, ' ');
    bytes_ += field;
  }
  void raw(const base::Bytes& value, std::size_t length) {
    for (std::size_t i = 0; i < length; ++i)
      bytes_.push_back(i < value.size() ? static_cast<char>(value[i]) : '\0');
  }

  std::string take() { return std::move(bytes_); }

 private:
  std::string bytes_;
};

/// Reads fields one after the other; there are known to be enough bytes.
class Decoder {
 public:
  Decoder(std::string_view bytes, std::size_t size) : rest_(bytes) {
    if (bytes.size() < size) {
      throw base::RuntimeError(base::error::kOutOfBounds,
                               "A record has " + base::to_text(static_cast<std::int64_t>(bytes.size())) +
                                   " bytes instead of " + base::to_text(static_cast<std::int64_t>(size)));
    }
  }

  void flag(bool& value) {
    std::int16_t stored = 0;
    number(stored);
    value = stored != 0;
  }
  void number(std::int16_t& value) {
    const std::string_view field = take(2);
    const auto low = static_cast<unsigned char>(field[0]);
    const auto high = static_cast<unsigned char>(field[1]);
    value = static_cast<std::int16_t>(low | (high << 8U));
  }
  void text(std::string& value, std::size_t length) {
    value = base::from_ansi(base::trim_right(take(length)));
  }
  void raw(base::Bytes& value, std::size_t length) {
    const std::string_view field = take(length);
    value.assign(field.begin(), field.end());
  }

 private:
  std::string_view take(std::size_t length) {
    const std::string_view field = rest_.substr(0, length);
    rest_.remove_prefix(length);
    return field;
  }

  std::string_view rest_;
};

// The fields of each record in the order of the file, for both directions.

template <typename Record, typename Coder>
void site_fields(Record& record, Coder& coder) {
  coder.flag(record.Deleted);
  coder.flag(record.Exchange2000);
  coder.text(record.Name, kSiteNameLength);
  coder.text(record.NTServer, 20);
  coder.text(record.ExchangeServer, 20);
  coder.text(record.ExchangeOrg, 30);
  coder.text(record.ExchangeSite, 30);
  coder.text(record.MailStore, 30);
}

template <typename Record, typename Coder>
void template_fields(Record& record, Coder& coder) {
  coder.flag(record.Deleted);
  coder.number(record.GroupCount);
  coder.text(record.Name, kTemplateNameLength);
  coder.text(record.ProfilePath, 75);
  coder.text(record.HomeDir, 75);
  coder.text(record.ProfileDirPath, 75);
  coder.text(record.HomeDirPath, 75);
  coder.text(record.ProfileShare, 20);
  coder.text(record.HomeShare, 20);
  coder.text(record.HomeSharePoint, 100);
  coder.text(record.ProfileSharePoint, 100);
  coder.text(record.LogonScript, 20);
  coder.text(record.HomeDrive, 2);
  coder.raw(record.LogonHours, platform::kLogonHoursSize);
  coder.text(record.PrimaryGroup, 21);
  for (auto& group : record.Groups)
    coder.text(group, 21);
  for (auto& name : record.VariableNames)
    coder.text(name, 15);
  for (auto& value : record.VariableValues)
    coder.text(value, 30);
}

template <typename Record, typename Coder>
void permission_fields(Record& record, Coder& coder) {
  coder.flag(record.NewSecurity);
  coder.text(record.Account, 50);
  coder.text(record.Access, 12);
  coder.text(record.Owner, 50);
}

}  // namespace

std::string encode_site(const SiteRecord& record) {
  Encoder encoder(kSiteRecordSize);
  site_fields(record, encoder);
  return encoder.take();
}

std::string encode_template(const TemplateRecord& record) {
  Encoder encoder(kTemplateRecordSize);
  template_fields(record, encoder);
  return encoder.take();
}

std::string encode_permission(const PermissionRecord& record) {
  Encoder encoder(kPermissionRecordSize);
  permission_fields(record, encoder);
  return encoder.take();
}

SiteRecord decode_site(std::string_view bytes) {
  SiteRecord record;
  Decoder decoder(bytes, kSiteRecordSize);
  site_fields(record, decoder);
  return record;
}

TemplateRecord decode_template(std::string_view bytes) {
  TemplateRecord record;
  Decoder decoder(bytes, kTemplateRecordSize);
  template_fields(record, decoder);
  record.GroupCount = std::clamp(record.GroupCount, std::int16_t{0}, std::int16_t{kMostGroups});
  return record;
}

PermissionRecord decode_permission(std::string_view bytes) {
  PermissionRecord record;
  Decoder decoder(bytes, kPermissionRecordSize);
  permission_fields(record, decoder);
  return record;
}

std::string code_page_refusal(std::string_view text) {
  const auto outside = base::find_outside_ansi(text);
  return outside
             ? "\"" + std::string(text) + "\" cannot be stored: code page 1252 has no place for " + *outside
             : std::string();
}

std::string padded_template_name(std::string_view name) {
  std::string padded(base::left(name, kTemplateNameLength));
  return padded.append(kTemplateNameLength - base::length(padded), ' ');
}

bool is_deleted(std::string_view bytes) {
  return bytes.substr(0, 2) != std::string_view("\0\0", 2);
}

void mark_deleted(std::string& bytes) {
  bytes.replace(0, 2, "\xFF\xFF");
}

std::string listed_template_name(std::string_view bytes) {
  return base::from_ansi(bytes.substr(4, kTemplateNameLength));
}

}  // namespace twk::records
