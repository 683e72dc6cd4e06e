# The Active Directory controller of with-domain.

export TWK_LIVE_DOMAIN=twk.test TWK_LIVE_SERVER=dc1.twk.test
export TWK_LIVE_ADMIN=Administrator TWK_LIVE_PASSWORD=Adm1n-of-twk
export TWK_LIVE_CONTROL="$here/ad-control"
export KRB5_CONFIG="$state/krb5.conf" KRB5CCNAME="FILE:$state/ticket"
export SASL_PATH="${SASL_PATH:-}"
[[ -n "$SASL_PATH" ]] || unset SASL_PATH

provision() {
  samba-tool domain provision --realm=TWK.TEST --domain=TWK --server-role=dc --dns-backend=SAMBA_INTERNAL \
    --adminpass="$TWK_LIVE_PASSWORD" --targetdir="$state/domain" --host-name=dc1 --host-ip=127.0.0.1 \
    --option="interfaces=lo" --option="bind interfaces only=yes" >"$state/provision.log" 2>&1 ||
    fail "the domain was not made: $(tail -3 "$state/provision.log")"
  local conf="$state/domain/etc/smb.conf"
  sed -i '/dns forwarder/d' "$conf"
  # Shares over RPC are kept by a script, in the server's registry.
  sed -i "/^\[global\]/a\\
	add share command = $here/share-command\\
	change share command = $here/share-command\\
	delete share command = $here/share-command\\
	load printers = no\\
	disable spoolss = yes\\
	registry shares = yes\\
	server services = -dns, -dnsupdate, -spoolss" "$conf"
  cat >>"$conf" <<END

[D\$]
	path = $state/srv/d
	read only = no

[C\$]
	path = $state/srv/c
	read only = no
END
  # What the service that was left out would do at the start.
  local name
  for name in ldap/dc1.twk.test GC/dc1.twk.test/twk.test; do
    samba-tool spn add "$name" 'DC1$' -s "$conf" >>"$state/provision.log" 2>&1
  done
}

prepare() {
  printf '127.0.0.1 dc1.twk.test dc1 DC1 twk.test TWK\n127.0.0.1 localhost\n' >"$state/hosts"
  mount --bind "$state/hosts" /etc/hosts
  # What the machine shares is none of the domain's, and clients are to look at loopback too.
  mkdir -p /etc/samba
  printf '[global]\n  interfaces = lo\n' >"$state/client.conf"
  [[ -e /etc/samba/smb.conf ]] || mount -t tmpfs none /etc/samba
  touch /etc/samba/smb.conf
  mount --bind "$state/client.conf" /etc/samba/smb.conf
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
