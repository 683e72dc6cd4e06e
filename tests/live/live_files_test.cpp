#include "contract/files_contract.hpp"
#include "contract/security_contract.hpp"
#include "live/live_world.hpp"

namespace twk::contract {

INSTANTIATE_TEST_SUITE_P(Live, FilesContract, testing::Values(&test::make_live_world));
INSTANTIATE_TEST_SUITE_P(Live, SecurityContract, testing::Values(&test::make_live_world));

}  // namespace twk::contract
