#pragma once

#include <filesystem>
#include <string>

#include "lab/making/lab_create.hpp"
#include "platform/dialogs.hpp"
#include "session/session.hpp"
#include "world/world.hpp"

/// New labs, for both programs.
namespace twk::world {

/// The kind of a lab as people write it: "native", "mixed", "nt" in any case. Raises 5 for another word.
lab::DomainKind kind_named(const std::string& word);
std::string kind_text(lab::DomainKind kind);

/// Puts a domain's name into the plan, whose kind is already set. A name without a dot is a pre-2000 one,
/// which only a lab of kind nt can have, and must have. An empty name means the default. Raises 5 with what
/// is wrong.
void name_domain(lab::LabPlan& plan, const std::string& domain);

/// Stores a new lab's domain in its settings.
void record_domain(World& world);

/// Adds to a new lab what a newcomer needs before the first session: an organizational unit "New Starters",
/// the group "Staff", shares on the file server FS1, and settings for names and passwords. Stages that are
/// not built are switched off.
void prepare_sample(World& world);

/// The rest, through the windows of a started session: the site "Head Office" with its Exchange 5.5
/// server, the template "Staff", the side tables. Raises a runtime error when one of the system's own
/// routines refuses.
void fill_sample_stores(session::Session& session);

/// All of the above: makes a lab in a new or empty folder, including the sample. Raises what
/// `lab::create_lab` raises.
void make_sample_lab(const std::filesystem::path& folder, const lab::LabPlan& plan,
                     platform::Dialogs& dialogs);

}  // namespace twk::world
