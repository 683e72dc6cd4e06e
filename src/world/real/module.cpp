#include "live/domain/connection_check.hpp"
#include "live/domain/discover_domains.hpp"
#include "world/real/live_ground.hpp"
#include "world/real_domains.hpp"

namespace twk::world {
namespace {

class LiveDomains final : public RealDomains {
 public:
  std::vector<std::string> discover() override { return live::discover_domains(); }
  std::string usual() override { return live::usual_domain(); }
  std::vector<live::CheckStep> check_connection(
      const live::LiveSettings& settings, const live::Prompts& prompts, const live::CheckedPlace& place,
      const std::function<void(const live::CheckStep&)>& tell) override {
    return live::check_connection(settings, prompts, place, tell);
  }
  std::unique_ptr<Ground> make_ground(live::LiveSettings settings, live::Prompts prompts,
                                      const live::Folders& folders,
                                      std::optional<base::RuntimeError> refusal) override {
    return make_live_ground(std::move(settings), std::move(prompts), folders, std::move(refusal));
  }
};

}  // namespace
}  // namespace twk::world

extern "C" twk::world::RealDomains* twk_real_domains(const char* version) {
  static twk::world::LiveDomains domains;
  return std::string_view(version) == TWK_VERSION ? &domains : nullptr;
}
