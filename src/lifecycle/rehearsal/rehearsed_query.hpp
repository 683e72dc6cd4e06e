#pragma once

#include <memory>

#include "lifecycle/rehearsal/made_objects.hpp"
#include "platform/query.hpp"

namespace twk::lifecycle {

/// Queries with real answers, to which are added the units and groups that would have been made, and to a
/// look-up of a name that must be unique the account that would have been made with it. A filter that asks
/// for more than their class and names finds none of them.
class RehearsedQuery final : public platform::QueryService {
 public:
  RehearsedQuery(platform::QueryService& real, ReportingDirectory& directory)
      : real_(real), directory_(directory) {}

  std::unique_ptr<platform::Recordset> execute(const platform::QueryText& query,
                                               const platform::QueryOptions& options) override;

 private:
  platform::QueryService& real_;
  ReportingDirectory& directory_;
};

}  // namespace twk::lifecycle
