#pragma once

#include <functional>
#include <optional>

#include "batch/property_order.hpp"

/// The tab "AD Properties": one property of many users, from the field `AD_CHANGE` or from a file of lines
/// "Username,ADValue".
namespace twk::windows {

struct Desktop;

/// Makes `AD_Properties` ready for the session's domain: filled once for a directory, empty in a WinNT
/// domain. A schema that cannot be read is reported in a box, and what was read stays.
void prepare_properties(Desktop& session);
/// Fills `AD_Properties`; none is chosen, and a value would be appended. Raises what the directory raises.
void fill_properties(Desktop& session);

/// A property was chosen: shows its syntax and opens or closes the frame "Multi Value". A property that the
/// schema does not know has no syntax, and `Label3` says why.
void AD_Properties_Click(Desktop& session);
/// The text of `AD_Properties` changed, perhaps while a name is being typed: only an offered name is looked
/// up.
void AD_Properties_Change(Desktop& session);
/// The field was left: what was typed is looked up.
void AD_Properties_Leave(Desktop& session);

/// What the tab asks for; none, which `Label3` explains, for no property and for one that the schema does not
/// know.
std::optional<batch::PropertyOrder> property_order(Desktop& session);

using PropertyObserver = std::function<void(const batch::PropertyOutcome&)>;

/// The button, whose caption says what it does: runs over the selection with the text of `AD_CHANGE`, or
/// ends a run after the current user. With an empty selection it does nothing; a property that the schema
/// does not know ends it before anything is changed, as `Label3` reports.
batch::PropertyCounts CHANGE_AD_Click(Desktop& session, const PropertyObserver& user_done = {});
/// The button: asks for a file and runs over it.
batch::PropertyCounts DELIMPORT_Click(Desktop& session, const PropertyObserver& user_done = {});

}  // namespace twk::windows
