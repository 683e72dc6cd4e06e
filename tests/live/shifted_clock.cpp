#include <dlfcn.h>
#include <sys/time.h>

#include <cstdlib>
#include <ctime>

/// Overrides the library's own: the clock of this program, and of the libraries in it, is TWK_CLOCK_SHIFT
/// seconds ahead.
namespace {

time_t shift() {
  const char* const text = std::getenv("TWK_CLOCK_SHIFT");
  return text == nullptr ? 0 : std::atol(text);
}

template <typename Function>
Function next(const char* name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" {

int gettimeofday(timeval* value, void* zone) noexcept {
  const int result = next<int (*)(timeval*, void*)>("gettimeofday")(value, zone);
  value->tv_sec += shift();
  return result;
}

int clock_gettime(clockid_t clock, timespec* value) noexcept {
  const int result = next<int (*)(clockid_t, timespec*)>("clock_gettime")(clock, value);
  if (clock == CLOCK_REALTIME)
    value->tv_sec += shift();
  return result;
}

time_t time(time_t* value) noexcept {
  const time_t now = next<time_t (*)(time_t*)>("time")(nullptr) + shift();
  if (value != nullptr)
    *value = now;
  return now;
}
}
