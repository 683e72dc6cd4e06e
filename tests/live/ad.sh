# The Active Directory controller of with-domain.

export TWK_LIVE_DOMAIN=twk.test TWK_LIVE_SERVER=dc1.twk.test
# Not Administrator, whom the server takes for the superuser: no access list binds that one.
export TWK_LIVE_ADMIN=twkadmin TWK_LIVE_PASSWORD=Adm1n-of-twk
export TWK_LIVE_CONTROL="$here/ad-control"
export KRB5_CONFIG="$state/krb5.conf" KRB5CCNAME="FILE:$state/ticket"
export SASL_PATH="${SASL_PATH:-}"
[[ -n "$SASL_PATH" ]] || unset SASL_PATH

provision() {
  samba-tool domain provision --realm=TWK.TEST --domain=TWK --server-role=dc --dns-backend=SAMBA_INTERNAL \
    --adminpass="$TWK_LIVE_PASSWORD" --targetdir="$state/domain" --host-name=dc1 --host-ip=127.0.0.1 \
    --option="interfaces=lo" --option="bind interfaces only=yes" >"$state/provision.log" 2>&1 ||
    fail "the domain was not made: $(tail -3 "$state/provision.log")"
  mkdir -p "$state/srv/d/Users" "$state/srv/d/Profiles" "$state/srv/c"
  local conf="$state/domain/etc/smb.conf"
  sed -i '/dns forwarder/d' "$conf"
  # Shares over RPC are kept by a script, in a file that is included at the very end.
  sed -i "/^\[global\]/a\\
	add share command = $here/share-command $state\\
	change share command = $here/share-command $state\\
	delete share command = $here/share-command $state\\
	load printers = no\\
	disable spoolss = yes\\
	server services = -dns, -dnsupdate, -spoolss" "$conf"
  cat >>"$conf" <<END

[D\$]
	path = $state/srv/d
	read only = no
	acl_xattr:ignore system acls = yes
	acl_xattr:default acl style = windows

[C\$]
	path = $state/srv/c
	read only = no
	acl_xattr:ignore system acls = yes
	acl_xattr:default acl style = windows

include = $state/shares.conf
END
  : >"$state/shares.conf"
  samba-tool user create "$TWK_LIVE_ADMIN" "$TWK_LIVE_PASSWORD" -s "$conf" >>"$state/provision.log" 2>&1
  samba-tool group addmembers "Domain Admins" "$TWK_LIVE_ADMIN" -s "$conf" >>"$state/provision.log" 2>&1
  local folder
  for folder in "$state/srv/c" "$state/srv/d" "$state/srv/d/Users" "$state/srv/d/Profiles"; do
    samba-tool ntacl set -s "$conf" 'O:BAG:BAD:PAI(A;OICI;0x1f01ff;;;BA)(A;OICI;0x1f01ff;;;SY)(A;OICI;0x1200a9;;;BU)' "$folder" \
      >>"$state/provision.log" 2>&1
  done
  # What the service that was left out would do at the start.
  local name
  for name in ldap/dc1.twk.test GC/dc1.twk.test/twk.test; do
    samba-tool spn add "$name" 'DC1$' -s "$conf" >>"$state/provision.log" 2>&1
  done
}

prepare() {
  printf '127.0.0.1 dc1.twk.test dc1 DC1 twk.test TWK\n127.0.0.1 localhost\n' >"$state/hosts"
  mount --bind "$state/hosts" /etc/hosts
  cat >"$state/krb5.conf" <<END
[libdefaults]
  default_realm = TWK.TEST
  dns_lookup_kdc = false
  dns_lookup_realm = false
  rdns = false
  dns_canonicalize_hostname = false
[realms]
  TWK.TEST = {
    kdc = 127.0.0.1
    admin_server = 127.0.0.1
  }
[domain_realm]
  .twk.test = TWK.TEST
  twk.test = TWK.TEST
END
  [[ -e "$state/domain/etc/smb.conf" ]] || provision
}
