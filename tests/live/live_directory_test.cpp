#include "contract/directory_contract.hpp"
#include "contract/names_contract.hpp"
#include "contract/query_contract.hpp"
#include "live/live_world.hpp"

namespace twk::contract {

INSTANTIATE_TEST_SUITE_P(Live, DirectoryContract, testing::Values(&test::make_live_world));
INSTANTIATE_TEST_SUITE_P(Live, QueryContract, testing::Values(&test::make_live_world));
INSTANTIATE_TEST_SUITE_P(Live, NamesContract, testing::Values(&test::make_live_world));

}  // namespace twk::contract
