#include "live/logon/ticket.hpp"

#include <gssapi/gssapi_krb5.h>
#include <krb5.h>
#include <profile.h>

#include <algorithm>
#include <array>

#include "base/errors.hpp"
#include "base/text.hpp"
#include "live/logon/kerberos_errors.hpp"
#include "platform/directory.hpp"

namespace twk::live {
namespace {

namespace ads_error = platform::ads_error;

/// One context of the library and what is open in it.
class Context {
 public:
  Context() {
    if (krb5_init_context(&context_) != 0)
      base::raise(ads_error::kLogonFailure, "The Kerberos configuration (krb5.conf) cannot be read");
  }
  Context(const Context&) = delete;
  Context& operator=(const Context&) = delete;
  ~Context() { krb5_free_context(context_); }
  operator krb5_context() const { return context_; }  // NOLINT: it acts as the handle

  [[nodiscard]] std::string text_of(krb5_error_code code) const {
    const char* const message = krb5_get_error_message(context_, code);
    std::string text = base::to_valid_utf8(message);
    krb5_free_error_message(context_, message);
    return text;
  }
  [[nodiscard]] std::string name_of(krb5_const_principal principal) const {
    char* name = nullptr;
    if (krb5_unparse_name(context_, principal, &name) != 0)
      return {};
    std::string text = base::to_valid_utf8(name);
    krb5_free_unparsed_name(context_, name);
    return text;
  }

 private:
  krb5_context context_ = nullptr;
};

class Principal {
 public:
  explicit Principal(const Context& context) : context_(context) {}
  Principal(const Principal&) = delete;
  Principal& operator=(const Principal&) = delete;
  ~Principal() { krb5_free_principal(context_, principal_); }
  krb5_principal* out() { return &principal_; }
  operator krb5_principal() const { return principal_; }  // NOLINT: it acts as the handle
  [[nodiscard]] std::string realm() const { return {principal_->realm.data, principal_->realm.length}; }

 private:
  const Context& context_;
  krb5_principal principal_ = nullptr;
};

/// Calls `visit` with each cache of the collection; which says whether to go on. A collection that cannot be
/// listed has none.
template <typename Visit>
void each_cache(const Context& context, const Visit& visit) {
  krb5_cccol_cursor cursor = nullptr;
  if (krb5_cccol_cursor_new(context, &cursor) != 0)
    return;
  krb5_ccache cache = nullptr;
  bool more = true;
  while (more && krb5_cccol_cursor_next(context, cursor, &cache) == 0 && cache != nullptr) {
    more = visit(cache);
    krb5_cc_close(context, cache);
  }
  krb5_cccol_cursor_free(context, &cursor);
}

/// The realm of a cache's owner; empty for a cache that holds nothing.
std::string realm_of(const Context& context, krb5_ccache cache) {
  Principal owner(context);
  return krb5_cc_get_principal(context, cache, owner.out()) == 0 ? owner.realm() : std::string();
}

/// "jo@TWK.TEST", for each form in which people write their name. The domain looks up a name after "@" that
/// is not its own.
std::string principal_name(std::string_view user, const std::string& realm, int& flags) {
  if (const std::size_t slash = user.find('\\'); slash != base::npos)
    user.remove_prefix(slash + 1);
  const std::size_t at = user.rfind('@');
  std::string name;
  for (const char c : user.substr(0, at == base::npos || base::equals_fold(user.substr(at + 1), realm)
                                         ? std::min(at, user.size())
                                         : user.size())) {
    if (c == '/' || c == '\\' || (c == '@' && at == base::npos))
      name += '\\';
    name += c;
  }
  if (at != base::npos && !base::equals_fold(user.substr(at + 1), realm))
    flags = KRB5_PRINCIPAL_PARSE_ENTERPRISE;
  return flags == 0 ? name + "@" + realm : name;
}

}  // namespace

struct Ticket::Cache {
  Context context;
  krb5_ccache cache = nullptr;
  std::string name;

  Cache() = default;
  Cache(const Cache&) = delete;
  Cache& operator=(const Cache&) = delete;
  ~Cache() {
    if (cache != nullptr)
      krb5_cc_destroy(context, cache);
  }
};

Ticket::Ticket() : cache_(std::make_unique<Cache>()) {}

Ticket::~Ticket() = default;

void Ticket::fail(std::int32_t code, const std::string& what) const {
  const std::size_t at = principal_.rfind('@');
  const KerberosFailure failure =
      explain_kerberos(code, principal_, at == base::npos ? std::string() : principal_.substr(at + 1), what,
                       cache_->context.text_of(code));
  base::raise(failure.number, failure.text);
}

void Ticket::read_facts() {
  const Context& context = cache_->context;
  Principal owner(context);
  if (const auto code = krb5_cc_get_principal(context, cache_->cache, owner.out()); code != 0)
    fail(code, {});
  principal_ = context.name_of(owner);
  char* full = nullptr;
  if (const auto code = krb5_cc_get_full_name(context, cache_->cache, &full); code != 0)
    fail(code, {});
  cache_->name = full;
  krb5_free_string(context, full);
  const std::string granting = "krbtgt/" + owner.realm() + "@" + owner.realm();
  krb5_cc_cursor cursor = nullptr;
  if (const auto code = krb5_cc_start_seq_get(context, cache_->cache, &cursor); code != 0)
    fail(code, {});
  krb5_creds one{};
  while (krb5_cc_next_cred(context, cache_->cache, &cursor, &one) == 0) {
    if (context.name_of(one.server) == granting)
      ends_ = std::max(ends_, static_cast<std::time_t>(static_cast<std::uint32_t>(one.times.endtime)));
    krb5_free_cred_contents(context, &one);
  }
  krb5_cc_end_seq_get(context, cache_->cache, &cursor);
  if (ends_ == 0)
    fail(KRB5_CC_NOTFOUND, {});
}

std::unique_ptr<Ticket> Ticket::current(std::string_view realm) {
  std::unique_ptr<Ticket> ticket(new Ticket);
  Cache& own = *ticket->cache_;
  const Context& context = own.context;
  krb5_ccache source = nullptr;
  if (const auto code = krb5_cc_default(context, &source); code != 0)
    ticket->fail(code, {});
  if (!base::equals_fold(realm_of(context, source), realm)) {
    each_cache(context, [&](krb5_ccache& candidate) {
      if (!base::equals_fold(realm_of(context, candidate), realm))
        return true;
      std::swap(source, candidate);
      return false;
    });
  }
  Principal owner(context);
  auto code = krb5_cc_get_principal(context, source, owner.out());
  if (code == 0)
    code = krb5_cc_new_unique(context, "MEMORY", nullptr, &own.cache);
  if (code == 0)
    code = krb5_cc_initialize(context, own.cache, owner);
  if (code == 0)
    code = krb5_cc_copy_creds(context, source, own.cache);
  krb5_cc_close(context, source);
  if (code != 0)
    ticket->fail(code, {});
  ticket->read_facts();
  if (ticket->has_ended()) {
    base::raise(ads_error::kLogonFailure, "The Kerberos ticket of " + ticket->principal_ + " ended at " +
                                              ticket->end_text() + ". Renew it with `kinit`");
  }
  return ticket;
}

std::unique_ptr<Ticket> Ticket::with_password(std::string_view user, std::string_view domain,
                                              const std::string& password) {
  std::unique_ptr<Ticket> ticket(new Ticket);
  Cache& own = *ticket->cache_;
  const Context& context = own.context;
  const std::string realm = base::upper(domain);
  int flags = 0;
  const std::string name = principal_name(user, realm, flags);
  ticket->principal_ = flags == 0 ? name : std::string(user) + "@" + realm;
  krb5_set_default_realm(context, realm.c_str());
  Principal person(context);
  auto code = krb5_parse_name_flags(context, name.c_str(), flags, person.out());
  if (code != 0)
    ticket->fail(code, {});
  krb5_get_init_creds_opt* options = nullptr;
  code = krb5_get_init_creds_opt_alloc(context, &options);
  if (code != 0)
    ticket->fail(code, {});
  krb5_get_init_creds_opt_set_canonicalize(options, flags != 0 ? 1 : 0);
  krb5_creds credentials{};
  code = krb5_get_init_creds_password(context, &credentials, person, password.c_str(), nullptr, nullptr, 0,
                                      nullptr, options);
  krb5_get_init_creds_opt_free(context, options);
  if (code == 0) {
    code = krb5_cc_new_unique(context, "MEMORY", nullptr, &own.cache);
    if (code == 0)
      code = krb5_cc_initialize(context, own.cache, credentials.client);
    if (code == 0)
      code = krb5_cc_store_cred(context, own.cache, &credentials);
    krb5_free_cred_contents(context, &credentials);
  }
  if (code != 0)
    ticket->fail(code, {});
  ticket->read_facts();
  return ticket;
}

bool Ticket::has_ended() const {
  return std::time(nullptr) >= ends_;
}

bool Ticket::is_about_to_end() const {
  constexpr std::time_t kLeast = 300;
  return std::time(nullptr) + kLeast > ends_;
}

std::string Ticket::end_text() const {
  std::tm parts{};
  std::array<char, 32> text{};
  localtime_r(&ends_, &parts);
  std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M", &parts);
  return text.data();
}

void Ticket::ask_for_service(const std::string& service, const std::string& host) const {
  const Context& context = cache_->context;
  Principal client(context);
  Principal server(context);
  auto code = krb5_cc_get_principal(context, cache_->cache, client.out());
  if (code == 0)
    code = krb5_sname_to_principal(context, host.c_str(), service.c_str(), KRB5_NT_SRV_HST, server.out());
  if (code != 0)
    fail(code, host);
  krb5_creds wanted{};
  wanted.client = client;
  wanted.server = server;
  krb5_creds* got = nullptr;
  code = krb5_get_credentials(context, 0, cache_->cache, &wanted, &got);
  if (code != 0)
    fail(code, host);
  krb5_free_creds(context, got);
}

Ticket::InUse::InUse(const Ticket& ticket) {
  OM_uint32 minor = 0;
  gss_krb5_ccache_name(&minor, ticket.cache_->name.c_str(), nullptr);
}

Ticket::InUse::~InUse() {
  OM_uint32 minor = 0;
  gss_krb5_ccache_name(&minor, nullptr, nullptr);
}

KnownRealms known_realms() {
  KnownRealms known;
  krb5_context raw = nullptr;
  if (krb5_init_context(&raw) != 0)
    return known;
  krb5_free_context(raw);
  const Context context;
  const auto add = [&](std::string realm) {
    if (!realm.empty() &&
        std::find(known.of_tickets.begin(), known.of_tickets.end(), realm) == known.of_tickets.end())
      known.of_tickets.push_back(std::move(realm));
  };
  krb5_ccache first = nullptr;
  if (krb5_cc_default(context, &first) == 0) {
    add(realm_of(context, first));
    krb5_cc_close(context, first);
  }
  each_cache(context, [&](krb5_ccache cache) {
    add(realm_of(context, cache));
    return true;
  });
  char* realm = nullptr;
  if (krb5_get_default_realm(context, &realm) == 0) {
    known.by_default = realm;
    krb5_free_default_realm(context, realm);
  }
  profile_t profile = nullptr;
  if (krb5_get_profile(context, &profile) != 0)
    return known;
  std::array<const char*, 2> section = {"realms", nullptr};
  char** names = nullptr;
  if (profile_get_subsection_names(profile, section.data(), &names) == 0) {
    for (char** name = names; *name != nullptr; ++name)
      known.configured.emplace_back(*name);
    profile_free_list(names);
  }
  profile_release(profile);
  return known;
}

}  // namespace twk::live
