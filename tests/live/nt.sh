# The NT4-style controller of with-domain.

export TWK_LIVE_DOMAIN=OLDNT TWK_LIVE_SERVER=OLDPDC
export TWK_LIVE_ADMIN=root TWK_LIVE_PASSWORD=Adm1n-of-oldnt
export TWK_LIVE_CONTROL="$here/controller-control"

# An account of the domain is one of the machine too: the servers have files of accounts of their own.
own_accounts() {
  [[ -e "$state/etc" ]] || cp -a /etc "$state/etc"
  mount --bind "$state/etc" /etc
  printf '127.0.0.1 OLDPDC oldpdc OLDNT localhost\n' >/etc/hosts
  mkdir -p /etc/samba
  printf '[global]\n  interfaces = lo\n' >/etc/samba/smb.conf
}

make_group() {
  groupadd "$1"
  net --configfile="$conf" groupmap add ntgroup="$2" unixgroup="$1" "$3" type="$4"
}

provision() {
  local conf="$state/smb.conf" folder
  for folder in private state lock cache pid ncalrpc; do mkdir -p "$state/nt/$folder"; done
  cat >"$conf" <<END
[global]
	workgroup = OLDNT
	netbios name = OLDPDC
	server role = classic primary domain controller
	domain logons = yes
	domain master = yes
	passdb backend = tdbsam
	interfaces = lo
	bind interfaces only = yes
	private dir = $state/nt/private
	state directory = $state/nt/state
	lock directory = $state/nt/lock
	cache directory = $state/nt/cache
	pid directory = $state/nt/pid
	ncalrpc dir = $state/nt/ncalrpc
	logon home =
	logon path =
	add user script = $here/account-command $state user %u
	delete user script = $here/account-command $state delete %u
	rename user script = $here/account-command $state rename %uold %unew
	add group script = $here/account-command $state group
	delete group script = /usr/sbin/groupdel %g
	add user to group script = $here/account-command $state join %u %g
	delete user from group script = $here/account-command $state leave %u %g
	set primary group script = $here/account-command $state primary %u %g
	vfs objects = acl_xattr
$(shares_conf)
$(drives_conf "$state/srv/d")
END
  printf '%s\n%s\n' "$TWK_LIVE_PASSWORD" "$TWK_LIVE_PASSWORD" | smbpasswd -c "$conf" -s -a root
  make_group ntadmins "Domain Admins" rid=512 domain
  make_group ntusers "Domain Users" rid=513 domain
  # The service makes local groups only with a winbind next to it.
  make_group nthelpers Helpers rid=2001 local
  make_group ntbuiltin Administrators sid=S-1-5-32-544 local
}

prepare() {
  own_accounts
  [[ -e "$state/smb.conf" ]] || provision >"$state/provision.log" 2>&1 ||
    fail "the domain was not made: $(tail -3 "$state/provision.log")"
}
