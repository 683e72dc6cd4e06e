#include "live/domain/live_query.hpp"

#include <algorithm>

#include "ads/ads_path.hpp"
#include "ads/query_columns.hpp"
#include "base/errors.hpp"
#include "base/text.hpp"
#include "platform/adsi.hpp"
#include "platform/directory.hpp"

namespace twk::live {
namespace {

using platform::Value;

using Column = ads::QueryColumn;
namespace recordset_error = ads::recordset_error;

constexpr std::int32_t kPageSize = 1000;

class LiveRecordset final : public platform::Recordset {
 public:
  using IsWanted = std::function<bool(const LdapEntry&)>;

  LiveRecordset(LdapConnection& connection, LdapSearch search, IsWanted is_wanted, std::string prefix,
                std::vector<Column> columns)
      : connection_(connection),
        search_(std::move(search)),
        is_wanted_(std::move(is_wanted)),
        prefix_(std::move(prefix)),
        columns_(std::move(columns)) {
    first_page();
  }

  /// Reads the remaining rows and sorts all of them by an attribute, without regard to case; rows
  /// without it come first.
  void sort_by(std::string_view attribute) {
    while (cursor_.has_more())
      append_page();
    std::vector<std::pair<std::string, LdapEntry>> keyed;
    keyed.reserve(rows_.size());
    for (LdapEntry& row : rows_) {
      std::string key = base::upper(row.first(attribute));
      keyed.emplace_back(std::move(key), std::move(row));
    }
    std::stable_sort(keyed.begin(), keyed.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    for (std::size_t i = 0; i < keyed.size(); ++i)
      rows_[i] = std::move(keyed[i].second);
  }

  [[nodiscard]] bool at_eof() const override {
    require_open();
    return current_ >= rows_.size();
  }
  [[nodiscard]] bool at_bof() const override {
    require_open();
    return first_page_ && rows_.empty();
  }

  [[nodiscard]] Value field(std::size_t index) const override {
    require_row();
    if (index >= columns_.size())
      base::raise(recordset_error::kNoSuchField, "The query has no field " + std::to_string(index));
    const LdapEntry& row = rows_[current_];
    const Column& column = columns_[index];
    if (column.is_path)
      return prefix_ + row.dn;
    if (base::equals_fold(column.attribute, "distinguishedName"))
      return row.dn;
    const auto* const values = row.find(column.attribute);
    return values == nullptr ? Value{} : ads::to_value(column.schema, *values);
  }

  void MoveNext() override {
    require_row();
    ++current_;
    if (current_ < rows_.size() || !cursor_.has_more())
      return;
    rows_.clear();
    current_ = 0;
    first_page_ = false;
    // A page may be empty without being the last one.
    while (rows_.empty() && cursor_.has_more())
      append_page();
  }

  void MoveFirst() override {
    require_open();
    if (!first_page_)
      first_page();
    current_ = 0;
  }

  void MoveLast() override {
    require_open();
    cursor_.restart();
    if (!rows_.empty())
      current_ = rows_.size() - 1;
  }

  void Close() override {
    closed_ = true;
    cursor_.restart();
    rows_.clear();
  }

 private:
  void first_page() {
    rows_.clear();
    cursor_.restart();
    current_ = 0;
    first_page_ = true;
    do {
      append_page();
    } while (rows_.empty() && cursor_.has_more());
  }
  void append_page() {
    for (LdapEntry& entry : connection_.search_page(search_, cursor_)) {
      if (!is_wanted_ || is_wanted_(entry))
        rows_.push_back(std::move(entry));
    }
  }
  void require_open() const {
    if (closed_)
      base::raise(recordset_error::kClosed, "The result of the query is closed");
  }
  void require_row() const {
    if (at_eof())
      base::raise(recordset_error::kNoCurrentRow, "The result of the query has no current row");
  }

  LdapConnection& connection_;
  LdapSearch search_;
  IsWanted is_wanted_;  ///< empty: every row is
  std::string prefix_;
  std::vector<Column> columns_;
  std::vector<LdapEntry> rows_;  ///< of the current page
  LdapCursor cursor_;
  std::size_t current_ = 0;
  bool first_page_ = true;
  bool closed_ = false;
};

}  // namespace

std::unique_ptr<platform::Recordset> LiveQuery::execute(const platform::QueryText& query,
                                                        const platform::QueryOptions& options) {
  const ads::AdsPath from = ads::parse_ads_path(query.base);
  if (from.provider == ads::Provider::kWinnt || from.kind != ads::AdsPath::Kind::kEntry)
    base::raise(platform::ads_error::kBadPathname, "A query cannot begin at " + query.base);
  LdapSearch search;
  search.base = from.name.empty() ? domain_.root_dn(from.server) : from.name;
  search.scope = query.scope;
  search.filter = query.filter;
  search.page_size = options.page_size.value_or(kPageSize);
  search.timeout_seconds = options.timeout_seconds;
  std::vector<Column> columns = ads::make_query_columns(
      query.attributes, [this](std::string_view name) { return domain_.attribute(name); });
  const auto want = [&](const std::string& attribute) {
    if (std::find(search.attributes.begin(), search.attributes.end(), attribute) == search.attributes.end())
      search.attributes.push_back(attribute);
  };
  for (const Column& column : columns) {
    if (!column.is_path && !base::equals_fold(column.attribute, "distinguishedName"))
      want(column.attribute);
  }
  const std::string order(platform::ldap_attribute(options.sort_on));
  if (!order.empty())
    want(order);
  if (search.attributes.empty())
    search.attributes = {"1.1"};  // no attribute at all, RFC 4511 4.5.1.8
  const bool catalogue = from.provider == ads::Provider::kGc;
  LiveRecordset::IsWanted is_wanted;
  if (catalogue)
    is_wanted = [this](const LdapEntry& entry) { return !domain_.is_beside_catalogue(entry.dn); };
  auto recordset = std::make_unique<LiveRecordset>(
      domain_.ldap(from.server, catalogue), std::move(search), std::move(is_wanted),
      ads::path_prefix(from.provider, from.server), std::move(columns));
  if (!order.empty())
    recordset->sort_by(order);
  return recordset;
}

}  // namespace twk::live
