#include "contract/directory_contract.hpp"
#include "lab_world.hpp"

namespace twk::contract {

INSTANTIATE_TEST_SUITE_P(Lab, DirectoryContract, testing::Values(&test::make_lab_world));

}  // namespace twk::contract
