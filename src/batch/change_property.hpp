#pragma once

#include <string>

#include "batch/property_order.hpp"

namespace twk::session {
class RunView;
struct Session;
}  // namespace twk::session

/// One property of many users.
namespace twk::batch {

/// Changes the users of the selection, each reported in the log and to the view, until the run is stopped. A
/// user who cannot be changed and a row that cannot be read are counted, and the run goes on; only a server
/// that does not answer ends it.
PropertyCounts change_selection(session::Session& session, const PropertyOrder& order,
                                const std::string& value, session::RunView& view);

}  // namespace twk::batch
