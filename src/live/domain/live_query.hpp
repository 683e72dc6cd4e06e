#pragma once

#include "live/domain/live_domain.hpp"
#include "platform/query.hpp"

namespace twk::live {

/// Queries of a real directory, page by page as the rows are read. Sorting needs all rows first: it is done
/// here, which is faster than asking the server for it.
class LiveQuery final : public platform::QueryService {
 public:
  explicit LiveQuery(LiveDomain& domain) : domain_(domain) {}
  std::unique_ptr<platform::Recordset> execute(const platform::QueryText& query,
                                               const platform::QueryOptions& options) override;

 private:
  LiveDomain& domain_;
};

}  // namespace twk::live
