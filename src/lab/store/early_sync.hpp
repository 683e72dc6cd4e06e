#pragma once

#include <linux/aio_abi.h>

namespace twk::lab {

/// A sync of one open file that the kernel does while the program goes on: IOCB_CMD_FDSYNC of io_submit(2),
/// without a thread. One at a time.
class EarlySync {
 public:
  EarlySync() = default;
  EarlySync(const EarlySync&) = delete;
  EarlySync& operator=(const EarlySync&) = delete;
  ~EarlySync();

  /// False when the kernel does none here; the file may be closed meanwhile.
  bool begin(int file);
  [[nodiscard]] bool is_begun() const { return begun_; }
  /// Waits for the one that was begun; 0 or the error number of fdatasync(2).
  int wait();

 private:
  aio_context_t context_ = 0;
  bool begun_ = false;
};

}  // namespace twk::lab
