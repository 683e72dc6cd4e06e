# A domain whose file servers are members of it: a controller, FS1 and FS2, each in namespaces of its own and with a root
# of its own; names come from the controller's DNS. Nothing goes unsealed or unsigned, and the NetBIOS name is not the
# first label of the domain's.

export TWK_LIVE_DOMAIN=hq.north.example TWK_LIVE_SERVER=dc1.hq.north.example
export TWK_LIVE_ADMIN=Administrator TWK_LIVE_PASSWORD=Adm1n-of-polar
export TWK_LIVE_CONTROL="$here/members-control"
export KRB5_CONFIG="$state/krb5.conf" KRB5CCNAME="FILE:$state/ticket"
export TWK_LIVE_SUPERUSER_TICKET="$KRB5CCNAME"

# One link for each server to a bridge next to the command; a process holds the server's namespaces.
hold() {
  local server="$1" address="$2" holder
  mkdir -p "$state/$server"
  echo "$address" >"$state/$server/address"
  setsid unshare --net --mount --uts -- bash -c '
    hostname "$0"
    ip link set lo up
    until ip link set eth0 up 2>/dev/null; do sleep 0.02; done
    ip address add "$1/24" dev eth0
    mkdir -p /run/samba && mount -t tmpfs none /run/samba
    exec "$3/own-root" "$2" sleep infinity' "$server" "$address" "$state/$server" "$here" &
  holder=$!
  echo "$holder" >"$state/$server/holder"
  until [[ "$(readlink "/proc/$holder/ns/net")" != "$(readlink /proc/self/ns/net)" ]]; do sleep 0.02; done
  ip link add "to-$server" type veth peer name eth0 netns "$holder"
  ip link set "to-$server" master twk0 up
  until [[ "$(cat "/proc/$holder/comm")" == sleep ]]; do sleep 0.02; done
}

member_conf() {
  local folder="$state/$1"
  mkdir -p "$folder"/{private,state,lock,cache}
  cat >"$folder/smb.conf" <<END
[global]
	workgroup = POLAR
	realm = HQ.NORTH.EXAMPLE
	netbios name = ${1^^}
	security = ads
	interfaces = lo eth0
	bind interfaces only = yes
	idmap config * : backend = autorid
	idmap config * : range = 100000-9999999
	username map = $state/users.map
	min domain uid = 0
	private dir = $folder/private
	state directory = $folder/state
	lock directory = $folder/lock
	cache directory = $folder/cache
	vfs objects = acl_xattr
$(shares_conf)
	server signing = mandatory
$(drives_conf "$folder/srv/d")
	# Of the machine nothing is to be seen there, and nothing to be lost.
	veto files = $(printf '/%s' $(ls /))/
END
}

provision() {
  local conf="$state/dc1/smb.conf"
  "$TWK_LIVE_CONTROL" on dc1 samba-tool domain provision --realm=HQ.NORTH.EXAMPLE --domain=POLAR --server-role=dc \
    --dns-backend=SAMBA_INTERNAL --adminpass="$TWK_LIVE_PASSWORD" --targetdir="$state/dc1/domain" --host-name=dc1 \
    --host-ip=192.0.2.10 --option="interfaces=lo eth0" --option="bind interfaces only=yes" || return
  sed "/dns forwarder/d; /^\[global\]/r /dev/stdin" "$state/dc1/domain/etc/smb.conf" >"$conf" <<<"$(shares_conf)
	server signing = mandatory
	ldap server require strong auth = yes"
  member_conf fs1
  member_conf fs2
  # The access lists of shares are for root alone, privileges or not.
  echo '!root = POLAR\Administrator' >"$state/users.map"
}

prepare() {
  [[ -e "$state/etc" ]] || cp -a /etc "$state/etc"
  mount --bind "$state/etc" /etc
  mkdir -p /etc/samba
  rm -f /etc/resolv.conf
  printf 'search hq.north.example\nnameserver 192.0.2.10\nnameserver 192.0.2.13\n' >/etc/resolv.conf
  printf '127.0.0.1 localhost\n' >/etc/hosts
  printf '[global]\n  client signing = mandatory\n' >/etc/samba/smb.conf
  printf '[libdefaults]\n  default_realm = HQ.NORTH.EXAMPLE\n  rdns = false\n' >"$KRB5_CONFIG"
  ip link add twk0 type bridge
  ip link set twk0 up
  ip address add 192.0.2.1/24 dev twk0
  hold dc1 192.0.2.10
  hold fs1 192.0.2.11
  hold fs2 192.0.2.12
  # A second controller, which the command may start.
  hold dc2 192.0.2.13
  [[ -e "$state/users.map" ]] || provision >"$state/provision.log" 2>&1 ||
    fail "the domain was not made: $(tail -3 "$state/provision.log")"
}
