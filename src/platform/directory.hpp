#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/value.hpp"

/// The directory seam: ADSI objects bound by an ADsPath, for the providers "LDAP:", "GC:" and "WinNT:".
///
/// Every call raises `base::RuntimeError` when it fails; the numbers below are the ones that callers test.
/// Nothing that a person types needs escaping for `Get`, `Put` and `SetPassword`; a relative name ("CN=…")
/// and a path carry RFC 4514 escapes.
namespace twk::platform {

namespace ads_error {

inline constexpr std::uint32_t kBadPathname = 0x80005000;       ///< the path is not one of the known forms
inline constexpr std::uint32_t kPropertyNotFound = 0x8000500D;  ///< the attribute has no value
inline constexpr std::uint32_t kNoSuchObject = 0x80072030;      ///< nothing has that name
inline constexpr std::uint32_t kObjectExists = 0x80071392;      ///< name or membership exists already
inline constexpr std::uint32_t kInvalidDn = 0x80072032;         ///< a name breaks the syntax of names
inline constexpr std::uint32_t kConstraint = 0x8007202F;        ///< a value breaks a rule of its attribute
inline constexpr std::uint32_t kNoSuchAttribute = 0x8007200A;   ///< the schema does not know the attribute
inline constexpr std::uint32_t kUnwilling = 0x80072035;         ///< the server will not do that
inline constexpr std::uint32_t kNotOnNonLeaf = 0x80072015;      ///< the object still has children
inline constexpr std::uint32_t kServerDown = 0x8007203A;        ///< no server answers
inline constexpr std::uint32_t kAccessDenied = 0x80070005;
inline constexpr std::uint32_t kNoSuchDomain = 0x8007054B;      ///< ERROR_NO_SUCH_DOMAIN
inline constexpr std::uint32_t kPasswordPolicy = 0x800708C5;    ///< NERR_PasswordTooShort: policy refuses it
inline constexpr std::uint32_t kUserNotFound = 0x800708AD;      ///< NERR_UserNotFound
inline constexpr std::uint32_t kGroupNotFound = 0x800708AC;     ///< NERR_GroupNotFound
inline constexpr std::uint32_t kUserExists = 0x800708B0;        ///< NERR_UserExists
inline constexpr std::uint32_t kGroupExists = 0x800708AF;       ///< NERR_GroupExists
inline constexpr std::uint32_t kMemberInGroup = 0x800708BC;     ///< NERR_UserInGroup
inline constexpr std::uint32_t kMemberNotInGroup = 0x80070529;  ///< ERROR_MEMBER_NOT_IN_GROUP (1321)
inline constexpr std::uint32_t kNotImplementedByProvider = 0x80004001;  ///< E_NOTIMPL
inline constexpr std::uint32_t kLogonFailure = 0x8007052E;              ///< wrong user or password
inline constexpr std::uint32_t kInvalidAccountName = 0x800708A2;        ///< NERR_BadUsername

}  // namespace ads_error

class DirectoryObject;
using ObjectPtr = std::shared_ptr<DirectoryObject>;

/// One bound object, usable until it is released; staged changes are lost with it.
///
/// `Get` reads staged values first, then those of the directory, which are fetched once at the first read.
/// Attribute names fold case. On an LDAP or GC object both the attribute ("displayName") and the property
/// ("FullName") are understood, as `platform/adsi.hpp` lists them.
class DirectoryObject {
 public:
  virtual ~DirectoryObject() = default;

  /// "CN=Jo Smith" of an LDAP object (attribute type in capitals), "jsmith" of a WinNT object.
  [[nodiscard]] virtual std::string Name() const = 0;
  /// "user", "group", "organizationalUnit", "container", "domainDNS" …; "User", "Group", "Domain" of WinNT.
  [[nodiscard]] virtual std::string Class() const = 0;
  [[nodiscard]] virtual std::string ADsPath() const = 0;
  /// ADsPath of the object above.
  [[nodiscard]] virtual std::string Parent() const = 0;

  /// Raises kPropertyNotFound when the attribute has no value.
  virtual Value Get(std::string_view attribute) = 0;
  /// Stages a value; nothing reaches the directory before `SetInfo`.
  virtual void Put(std::string_view attribute, const Value& value) = 0;
  /// Stages a change of a whole attribute: control 1 clears it (the value is ignored), 2 replaces it by
  /// the list, 3 appends to it, 4 deletes these values.
  virtual void PutEx(int control, std::string_view attribute, const Value& value) = 0;
  /// Writes all staged values at once or none; creates the object when it is new. On failure they stay
  /// staged.
  virtual void SetInfo() = 0;

  /// The password takes effect at once. Raises kPasswordPolicy when the domain refuses it.
  virtual void SetPassword(std::string_view password) = 0;
  /// `SetInfo` of a new account and its first `SetPassword` in one request, where the directory can: a server
  /// spends most of a small write on making it durable. A staged "userAccountControl" and "pwdLastSet" are
  /// written along with the password. False for a stored object, where the directory cannot do this, or when
  /// either part was refused: nothing is written then, and the two separate calls show which part it is.
  /// Raises kServerDown.
  virtual bool SetInfoWithPassword(std::string_view /*password*/) { return false; }

  // For containers.

  /// Calls `visit` for each child whose class is one of `classes` (any class when empty), until it returns
  /// False.
  virtual void enumerate(std::span<const std::string> classes,
                         const std::function<bool(const ObjectPtr&)>& visit) = 0;
  virtual ObjectPtr GetObject(std::string_view object_class, std::string_view relative_name) = 0;
  /// A new child, not stored until its `SetInfo`.
  virtual ObjectPtr Create(std::string_view object_class, std::string_view relative_name) = 0;
  virtual void Delete(std::string_view object_class, std::string_view relative_name) = 0;
  /// Moves the object at `source_path` here, under a new relative name or the one it has.
  virtual ObjectPtr MoveHere(std::string_view source_path, const std::optional<std::string>& new_name) = 0;

  // For groups. `Add` and `Remove` act at once.

  /// For an existing member, an LDAP group raises kObjectExists, a WinNT group kMemberInGroup.
  virtual void Add(std::string_view path) = 0;
  /// `Add` of all these paths in one request, where the directory can. False where it cannot, or when one of
  /// them was refused: nobody is added then, and separate calls show whom it is. Raises kServerDown.
  virtual bool AddTogether(std::span<const std::string> /*paths*/) { return false; }
  virtual void Remove(std::string_view path) = 0;
  /// `Remove` of all these paths, as `AddTogether` adds them.
  virtual bool RemoveTogether(std::span<const std::string> /*paths*/) { return false; }
  /// True where the two above can do anything. Elsewhere a run loses nothing by going user by user.
  [[nodiscard]] virtual bool takes_many() const { return false; }
  virtual bool IsMember(std::string_view path) = 0;
  /// The direct members; in an AD domain without those by primary group.
  virtual std::vector<ObjectPtr> Members() = 0;

  /// The groups of a user, direct memberships. In an AD domain the primary group is not among them on the
  /// LDAP object; on the WinNT object it is.
  virtual std::vector<ObjectPtr> Groups() = 0;

  // For schema objects ("LDAP://Schema/…"); other objects raise kNotImplementedByProvider.

  /// Name of an attribute's syntax: "String", "Integer", "Boolean", "INTEGER8", "OctetString", "DN",
  /// "UTCTime" …
  virtual std::string Syntax() = 0;
  virtual bool MultiValued() = 0;
};

/// Binds objects. Path forms; the server part is optional: "LDAP://RootDSE", "LDAP://<dns domain>",
/// "LDAP://[<server>/]<dn>", "GC://…" likewise, "LDAP:", "GC:", "WinNT:" (the namespaces),
/// "WinNT://<domain>[/<name>[,<class>]]", "WinNT://<server>/lanmanserver[/<share>]", "LDAP://Schema/<class>".
class DirectoryService {
 public:
  virtual ~DirectoryService() = default;

  /// Raises kBadPathname, kNoSuchObject, kServerDown or an account's own not-found number.
  virtual ObjectPtr GetObject(std::string_view path) = 0;
  /// The same with a user's credentials; an empty user means the current logon. Raises kLogonFailure.
  virtual ObjectPtr OpenDSObject(std::string_view path, std::string_view user, std::string_view password) = 0;

  /// Between the two, the work on one user, a directory that keeps its own files may put off making writes
  /// safe against a power cut; everyone still sees at once what was written. It and the services beside it
  /// need to look once only at what other programs changed, and again before each write. `end_batch` returns
  /// when all of it is on the disk and raises when that fails. Batches nest. `begin_sync` starts what
  /// `end_batch` waits for, when little more will be written to the directory but the work goes on elsewhere.
  /// A remote directory does nothing here.
  virtual void begin_batch() {}
  virtual void begin_sync() {}
  virtual void end_batch() {}
};

/// Holds a batch open for a scope. `commit` ends it and raises when the writes could not be made durable; a
/// scope left without it ends the batch and ignores that failure, since another one is being raised.
class WriteBatch {
 public:
  explicit WriteBatch(DirectoryService& directory) : directory_(&directory) { directory.begin_batch(); }
  WriteBatch(const WriteBatch&) = delete;
  WriteBatch& operator=(const WriteBatch&) = delete;
  ~WriteBatch();
  void begin_sync() {
    if (directory_ != nullptr)
      directory_->begin_sync();
  }
  void commit();

 private:
  DirectoryService* directory_;
};

}  // namespace twk::platform
