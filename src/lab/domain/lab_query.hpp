#pragma once

#include "lab/domain/lab_domain.hpp"
#include "platform/query.hpp"

namespace twk::lab {

/// Searches of the lab's directory, below LDAP and GC bases. All rows that match are found when the query is
/// executed and held as DNs; the values of a row are read when it is the current one. A row whose object was
/// deleted or renamed meanwhile stays, with the values that follow from its DN alone. `MoveFirst` and
/// `MoveLast` of an empty result do nothing; reading or moving on past the last row raises 3021, anything
/// after `Close` 3704.
///
/// An equality on "samAccountName", "userPrincipalName", "objectSid" or "primaryGroupID" that every row must
/// satisfy is answered from the store's indexes. The configuration is not part of a search below the domain.
class LabQuery final : public platform::QueryService {
 public:
  explicit LabQuery(const LabDomain& domain) : domain_(domain) {}
  std::unique_ptr<platform::Recordset> execute(const platform::QueryText& query,
                                               const platform::QueryOptions& options) override;

 private:
  const LabDomain& domain_;
};

}  // namespace twk::lab
