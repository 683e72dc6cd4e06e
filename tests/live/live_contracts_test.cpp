#include "contract/directory_contract.hpp"
#include "contract/files_contract.hpp"
#include "contract/names_contract.hpp"
#include "contract/network_contract.hpp"
#include "contract/query_contract.hpp"
#include "contract/security_contract.hpp"
#include "live/live_world.hpp"

namespace twk::contract {

const auto kLive = testing::Values(&test::make_live_world);
INSTANTIATE_TEST_SUITE_P(Live, DirectoryContract, kLive);
INSTANTIATE_TEST_SUITE_P(Live, FilesContract, kLive);
INSTANTIATE_TEST_SUITE_P(Live, NamesContract, kLive);
INSTANTIATE_TEST_SUITE_P(Live, QueryContract, kLive);
INSTANTIATE_TEST_SUITE_P(Live, SecurityContract, kLive);
// The server stores access lists of shares only for its superuser.
INSTANTIATE_TEST_SUITE_P(Live, NetworkContract, testing::Values(&test::make_superuser_world));

}  // namespace twk::contract
