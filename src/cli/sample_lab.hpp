#pragma once

#include "cli/context.hpp"

namespace twk::cli {

/// Puts into the lab what a newcomer needs to create a first user: an organizational unit "New Starters", a
/// group and a template "Staff", a site "Head Office" on the file server FS1 with its shares, the side
/// tables, and settings for names and passwords. Stages that are not built are switched off. Raises `Refused`
/// when one of the system's own routines refuses.
void fill_sample_lab(Context& context);

}  // namespace twk::cli
