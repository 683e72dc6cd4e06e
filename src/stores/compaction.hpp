#pragma once

namespace twk::controls {
class ListView;
}
namespace twk::session {
struct Session;
}

/// Compaction of "Site.dat" and "Template.dat": records marked as deleted are removed, the others close up
/// and get new numbers, while nobody else can add or change one. The files keep their access rights and
/// links. Each file is replaced at once, so that a failure, which is raised, leaves it as it was.
namespace twk::stores {

void compact_sites(session::Session& session);

/// "Log.txt" lists what was removed. Groups that are not among those of the domain are removed from the
/// templates; without a list every group stays.
void compact_templates(session::Session& session, const controls::ListView* domain_groups);

/// Removes groups that the domain does not have from `ActiveTemplate`; "Log.txt", which is open, names
/// them.
void Check_Template_Groups(session::Session& session, const controls::ListView& domain_groups);

}  // namespace twk::stores
