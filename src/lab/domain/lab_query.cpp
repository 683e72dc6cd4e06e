#include "lab/domain/lab_query.hpp"

#include <utility>

#include "ads/ads_path.hpp"
#include "ads/dn.hpp"
#include "ads/query_columns.hpp"
#include "ads/schema.hpp"
#include "base/text.hpp"
#include "lab/domain/account_path.hpp"
#include "lab/domain/entry_search.hpp"
#include "lab/domain/entry_view.hpp"
#include "lab/store/errors.hpp"
#include "platform/adsi.hpp"

namespace twk::lab {
namespace {

using platform::Value;

using Column = ads::QueryColumn;
namespace recordset_error = ads::recordset_error;

class LabRecordset final : public platform::Recordset {
 public:
  LabRecordset(const LabDomain& domain, std::string prefix, std::vector<Column> columns,
               std::vector<FoundEntry> rows)
      : domain_(domain),
        prefix_(std::move(prefix)),
        columns_(std::move(columns)),
        rows_(std::move(rows)),
        version_(domain.store.version()) {}

  [[nodiscard]] bool at_eof() const override {
    require_open();
    return current_ >= rows_.size();
  }
  [[nodiscard]] bool at_bof() const override {
    require_open();
    return rows_.empty();
  }

  [[nodiscard]] Value field(std::size_t index) const override {
    require_row();
    if (index >= columns_.size())
      raise(recordset_error::kNoSuchField, "The query has no field " + std::to_string(index));
    const std::string& dn = rows_[current_].dn;
    const Column& column = columns_[index];
    if (column.is_path)
      return prefix_ + dn;
    if (const Entry* const entry = current_entry())
      return ads::to_value(column.schema, read_attribute(domain_, *entry, column.attribute));
    return from_name(dn, column.attribute);
  }

  void MoveNext() override {
    require_row();
    ++current_;
  }
  void MoveFirst() override {
    require_open();
    current_ = 0;
  }
  void MoveLast() override {
    require_open();
    if (!rows_.empty())
      current_ = rows_.size() - 1;
  }
  void Close() override {
    closed_ = true;
    rows_.clear();
  }

 private:
  void require_open() const {
    if (closed_)
      raise(recordset_error::kClosed, "The result of the query is closed");
  }
  void require_row() const {
    if (at_eof())
      raise(recordset_error::kNoCurrentRow, "The result of the query has no current row");
  }
  /// As it is now; none when it was removed meanwhile.
  [[nodiscard]] const Entry* current_entry() const {
    const FoundEntry& row = rows_[current_];
    return domain_.store.version() == version_ ? row.entry : domain_.store.find(row.dn);
  }
  static Value from_name(const std::string& dn, std::string_view attribute) {
    if (base::equals_fold(attribute, "distinguishedName"))
      return dn;
    ads::Rdn rdn = ads::parse_rdn(ads::first_rdn(dn));
    const bool named = base::equals_fold(attribute, "name") || base::equals_fold(attribute, rdn.type);
    return named ? Value(std::move(rdn.value)) : Value{};
  }

  const LabDomain& domain_;
  std::string prefix_;
  std::vector<Column> columns_;
  std::vector<FoundEntry> rows_;
  std::uint64_t version_;  ///< of the store, when the rows were found
  std::size_t current_ = 0;
  bool closed_ = false;
};

}  // namespace

std::unique_ptr<platform::Recordset> LabQuery::execute(const platform::QueryText& query,
                                                       const platform::QueryOptions& options) {
  const ads::AdsPath base = ads::parse_ads_path(query.base);
  if (base.provider == ads::Provider::kWinnt || base.kind != ads::AdsPath::Kind::kEntry) {
    raise(ads_error::kBadPathname, "A query cannot begin at " + query.base);
  }
  domain_.store.refresh();
  const std::string base_dn = resolve_entry(domain_, base);
  std::vector<FoundEntry> rows = search_entries(domain_, base_dn, query.scope, parse_filter(query.filter));
  if (!options.sort_on.empty())
    sort_by_attribute(domain_, rows, platform::ldap_attribute(options.sort_on));
  return std::make_unique<LabRecordset>(domain_, ads::path_prefix(base.provider, base.server),
                                        ads::make_query_columns(query.attributes, ads::find_attribute),
                                        std::move(rows));
}

}  // namespace twk::lab
