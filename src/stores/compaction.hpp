#pragma once

namespace twk::controls {
class ListView;
}
namespace twk::session {
struct Session;
}

/// Compaction of "Site.dat" and "Template.dat": the records that are marked as deleted go, the others close
/// up and get new numbers, while nobody else can make or change one. The files keep access and links. Each
/// file is replaced at once, so that a failure, which is raised, leaves it as it was.
namespace twk::stores {

void compact_sites(session::Session& session);

/// "Log.txt" lists what was taken away. Groups that are not among those of the domain go from the templates;
/// without a list every group stays.
void compact_templates(session::Session& session, const controls::ListView* domain_groups);

/// Takes the groups that the domain does not have out of `ActiveTemplate`; "Log.txt", which is open, names
/// them.
void Check_Template_Groups(session::Session& session, const controls::ListView& domain_groups);

}  // namespace twk::stores
