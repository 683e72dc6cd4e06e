// How many account names a second the format language produces.
#include <benchmark/benchmark.h>

#include "bench_world.hpp"
#include "format/user_name.hpp"

namespace {

using namespace twk;

void user_names(benchmark::State& state, const char* format) {
  bench::Folder folder;
  lab::LabPlan plan;
  plan.users = 0;
  lab::create_lab(folder.path() / "lab", plan);
  lab::Lab lab(folder.path() / "lab", [](const std::string&) {});
  bench::NobodyThere dialogs;
  windows::Desktop session(lab.platform(dialogs), "", lab.database_path());
  for (auto _ : state) {
    benchmark::DoNotOptimize(format::UserName(session, format, "Maximiliane", "Élise", "Großmann"));
  }
  state.SetItemsProcessed(state.iterations());
}

}  // namespace

BENCHMARK_CAPTURE(user_names, plain, "%first%.%last%");
BENCHMARK_CAPTURE(user_names, initials_and_case, "#U1%first%1%middle%#L%last%3");
BENCHMARK_CAPTURE(user_names, serial_number, "%first%#1%last%%nnn%");
BENCHMARK_MAIN();
