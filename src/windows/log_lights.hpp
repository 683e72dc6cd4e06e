#pragma once

#include <vector>

namespace twk::windows {

struct Desktop;
struct LogBlock;

/// Gives the blocks, oldest first, the lights that somebody knows: the rows of the log tab of the blocks that
/// this session wrote, and the record of an import of those between its start and its end. "Log.txt" itself
/// holds none, so the others keep none.
void give_lights(Desktop& session, std::vector<LogBlock>& blocks);

}  // namespace twk::windows
