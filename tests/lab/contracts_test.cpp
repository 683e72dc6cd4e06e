#include "contract/directory_contract.hpp"
#include "contract/files_contract.hpp"
#include "contract/names_contract.hpp"
#include "contract/network_contract.hpp"
#include "contract/query_contract.hpp"
#include "contract/security_contract.hpp"
#include "lab_world.hpp"

namespace twk::contract {

const auto kLab = testing::Values(&test::make_lab_world);
INSTANTIATE_TEST_SUITE_P(Lab, DirectoryContract, kLab);
INSTANTIATE_TEST_SUITE_P(Lab, FilesContract, kLab);
INSTANTIATE_TEST_SUITE_P(Lab, NamesContract, kLab);
INSTANTIATE_TEST_SUITE_P(Lab, NetworkContract, kLab);
INSTANTIATE_TEST_SUITE_P(Lab, QueryContract, kLab);
INSTANTIATE_TEST_SUITE_P(Lab, SecurityContract, kLab);

}  // namespace twk::contract
