#include "lab/store/early_sync.hpp"

#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

namespace twk::lab {

EarlySync::~EarlySync() {
  if (context_ != 0)
    syscall(SYS_io_destroy, context_);
}

bool EarlySync::begin(int file) {
  if (context_ == 0 && syscall(SYS_io_setup, 1, &context_) != 0)
    return false;
  iocb request{};
  request.aio_fildes = static_cast<__u32>(file);
  request.aio_lio_opcode = IOCB_CMD_FDSYNC;
  iocb* requests[] = {&request};
  begun_ = syscall(SYS_io_submit, context_, 1, requests) == 1;
  return begun_;
}

int EarlySync::wait() {
  begun_ = false;
  io_event event{};
  while (syscall(SYS_io_getevents, context_, 1, 1, &event, nullptr) != 1) {
    if (errno != EINTR)
      return errno;
  }
  return static_cast<int>(-event.res);
}

}  // namespace twk::lab
