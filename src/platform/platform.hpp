#pragma once

#include "platform/clock.hpp"
#include "platform/dialogs.hpp"
#include "platform/directory.hpp"
#include "platform/environment.hpp"
#include "platform/files.hpp"
#include "platform/mailbox.hpp"
#include "platform/network.hpp"
#include "platform/process.hpp"
#include "platform/query.hpp"
#include "platform/registry.hpp"
#include "platform/security.hpp"

namespace twk::platform {

/// The services a session works with. The owner keeps them alive as long as the session.
struct Platform {
  RegistryAccess& registry;
  DirectoryService& directory;
  QueryService& query;
  Files& files;
  Network& network;
  Security& security;
  MailboxService& mailboxes;
  Process& process;
  Environment& environment;
  Clock& clock;
  Dialogs& dialogs;
};

}  // namespace twk::platform
