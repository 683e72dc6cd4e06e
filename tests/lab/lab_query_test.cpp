#include "contract/names_contract.hpp"
#include "contract/query_contract.hpp"
#include "lab_world.hpp"

namespace twk::contract {

INSTANTIATE_TEST_SUITE_P(Lab, QueryContract, testing::Values(&test::make_lab_world));
INSTANTIATE_TEST_SUITE_P(Lab, NamesContract, testing::Values(&test::make_lab_world));

}  // namespace twk::contract
