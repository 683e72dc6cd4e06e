#include "screens/widgets/list_order.hpp"

#include <algorithm>

#include "base/text.hpp"
#include "screens/widgets/text.hpp"

namespace twk::screens {
namespace {

using controls::ListRow;

constexpr char16_t kFirstForeign = 0x80;

QString folded(const std::string& text) {
  return to_qt(text).toUpper();
}

/// Alphabetical, of texts in upper case. Most names differ in a plain letter; from the first other character
/// on, the rules of the language apply.
bool is_before(QStringView left, QStringView right) {
  const qsizetype common = std::min(left.size(), right.size());
  for (qsizetype i = 0; i < common; ++i) {
    if (left[i] >= kFirstForeign || right[i] >= kFirstForeign)
      return QString::localeAwareCompare(left.mid(i), right.mid(i)) < 0;
    if (left[i] != right[i])
      return left[i] < right[i];
  }
  return left.size() < right.size();
}

/// A row, with the first characters of its text as one number, which decides most comparisons.
struct Named {
  static constexpr qsizetype kLength = 8;

  Named(const QString& text, std::size_t row) : place(static_cast<std::uint32_t>(row)) {
    for (qsizetype i = 0; i < kLength; ++i) {
      const char16_t c = i < text.size() ? text[i].unicode() : u'\0';
      is_plain = is_plain && c < kFirstForeign;
      start = start << 8 | c;
    }
  }

  std::uint64_t start = 0;
  std::uint32_t place;
  bool is_plain = true;  ///< only then the number counts
};

}  // namespace

ListOrder::ListOrder(ListModel& model, QObject* parent)
    : QSortFilterProxyModel(parent), model_(&model), list_(&model.list()) {
  // Before the proxy hears of it.
  connect(&model, &ListModel::modelAboutToBeReset, this, [this] {
    forget_ranks();
    sorts_all_ = true;
  });
  connect(&model, &ListModel::rowsAboutToBeInserted, this, &ListOrder::forget_ranks);
  connect(&model, &ListModel::rowsAboutToBeRemoved, this, &ListOrder::forget_ranks);
  connect(&model, &ListModel::dataChanged, this, &ListOrder::forget_ranks);
  setSourceModel(&model);
}

ListOrder::~ListOrder() {
  if (!filter_.empty())
    list_->set_filter({});
}

void ListOrder::set_filter(const QString& text) {
  filter_ = base::upper(from_qt(text.trimmed()));
  // One new order instead of a removal for each range of rows, each of which would cost a walk over the
  // others.
  sorts_all_ = true;
  invalidate();
  if (filter_.empty())
    list_->set_filter({});
  else
    list_->set_filter(
        [this, columns = model_->columnCount()](const ListRow& row) { return accepts(row, columns); });
}

void ListOrder::sort(int column, Qt::SortOrder order) {
  sorts_all_ = true;
  QSortFilterProxyModel::sort(column, order);
}

void ListOrder::rank(int column) const {
  std::vector<Named> names;
  std::vector<QString> texts;
  names.reserve(list_->size());
  texts.reserve(list_->size());
  for (std::size_t place = 0; place < list_->size(); ++place) {
    texts.push_back(folded(column_text(list_->at(place), column)));
    names.emplace_back(texts.back(), place);
  }
  const auto before = [&texts](const Named& left, const Named& right) {
    if (left.is_plain && right.is_plain && left.start != right.start)
      return left.start < right.start;
    return is_before(texts[left.place], texts[right.place]);
  };
  std::ranges::stable_sort(names, before);
  ranks_.resize(names.size());
  std::uint32_t rank = 0;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (i > 0 && before(names[i - 1], names[i]))
      ++rank;
    ranks_[names[i].place] = rank;
  }
  ranked_column_ = column;
}

void ListOrder::forget_ranks() {
  ranked_column_ = -1;
  ranks_.clear();
  sorts_all_ = false;
}

bool ListOrder::accepts(const ListRow& row, int columns) const {
  for (int column = 0; column < columns; ++column) {
    if (base::upper(column_text(row, column)).find(filter_) != std::string::npos)
      return true;
  }
  return false;
}

bool ListOrder::lessThan(const QModelIndex& left, const QModelIndex& right) const {
  if (sorts_all_ && ranked_column_ != left.column() && !model_->is_resetting())
    rank(left.column());
  if (ranked_column_ == left.column())
    return ranks_[static_cast<std::size_t>(left.row())] < ranks_[static_cast<std::size_t>(right.row())];
  const ListRow* const first = model_->row(left);
  const ListRow* const second = model_->row(right);
  return first != nullptr && second != nullptr &&
         is_before(folded(column_text(*first, left.column())), folded(column_text(*second, right.column())));
}

bool ListOrder::filterAcceptsRow(int row, const QModelIndex& /*parent*/) const {
  if (filter_.empty())
    return true;
  const ListRow* const shown = model_->row(model_->index(row, 0));
  return shown != nullptr && accepts(*shown, model_->columnCount());
}

}  // namespace twk::screens
