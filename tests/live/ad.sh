# The Active Directory controller of with-domain.

export TWK_LIVE_DOMAIN=twk.test TWK_LIVE_SERVER=dc1.twk.test
export TWK_LIVE_EXCHANGE=ex55.twk.test
# Not Administrator, whom the server takes for the superuser: no access list binds that one.
export TWK_LIVE_ADMIN=twkadmin TWK_LIVE_PASSWORD=Adm1n-of-twk
export TWK_LIVE_CONTROL="$here/controller-control"
export KRB5_CONFIG="$state/krb5.conf" KRB5CCNAME="FILE:$state/ticket"
export TWK_LIVE_SUPERUSER_TICKET="FILE:$state/superuser"
export SASL_PATH="${SASL_PATH:-}"
[[ -n "$SASL_PATH" ]] || unset SASL_PATH

provision() {
  samba-tool domain provision --realm=TWK.TEST --domain=TWK --server-role=dc --dns-backend=SAMBA_INTERNAL \
    --adminpass="$TWK_LIVE_PASSWORD" --targetdir="$state/domain" --host-name=dc1 --host-ip=127.0.0.1 \
    --option="interfaces=lo" --option="bind interfaces only=yes" >"$state/provision.log" 2>&1 ||
    fail "the domain was not made: $(tail -3 "$state/provision.log")"
  local conf="$state/domain/etc/smb.conf"
  { shares_conf; printf '\tserver services = -dns, -dnsupdate, -spoolss\n'; } >"$state/global.conf"
  sed -i "/dns forwarder/d; /^\[global\]/r $state/global.conf" "$conf"
  drives_conf "$state/srv/d" >>"$conf"
  samba-tool user create "$TWK_LIVE_ADMIN" "$TWK_LIVE_PASSWORD" -s "$conf" >>"$state/provision.log" 2>&1
  samba-tool group addmembers "Domain Admins" "$TWK_LIVE_ADMIN" -s "$conf" >>"$state/provision.log" 2>&1
  # The lists of the server alone are to count.
  local folder
  for folder in "$state/srv/d" "$state/srv/d/Users" "$state/srv/d/Profiles"; do
    samba-tool ntacl set -s "$conf" 'O:BAG:BAD:PAI(A;OICI;0x1f01ff;;;BA)(A;OICI;0x1f01ff;;;SY)(A;OICI;0x1200a9;;;BU)' "$folder" \
      >>"$state/provision.log" 2>&1
    chmod 0777 "$folder"
  done
  # What the service that was left out would do at the start.
  local name
  for name in ldap/dc1.twk.test GC/dc1.twk.test/twk.test; do
    samba-tool spn add "$name" 'DC1$' -s "$conf" >>"$state/provision.log" 2>&1
  done
}

# An Exchange 5.5 directory next to the domain, which knows the domain's tickets.
provision_exchange() {
  local folder="$state/exchange" conf="$state/domain/etc/smb.conf"
  mkdir -p "$folder/data"
  sed "s|@STATE@|$state|" "$here/exchange.conf.in" >"$folder/slapd.conf"
  {
    samba-tool user create ex55 --random-password -s "$conf"
    samba-tool spn add "ldap/$TWK_LIVE_EXCHANGE" ex55 -s "$conf"
    samba-tool domain exportkeytab "$folder/keytab" --principal="ldap/$TWK_LIVE_EXCHANGE" -s "$conf"
    slapadd -f "$folder/slapd.conf" -l "$here/exchange.ldif"
  } >>"$state/provision.log" 2>&1 || fail "the mail server was not made: $(tail -3 "$state/provision.log")"
}

prepare() {
  printf '127.0.0.1 dc1.twk.test dc1 DC1 twk.test TWK\n127.0.0.2 ex55.twk.test ex55\n127.0.0.1 localhost\n' >"$state/hosts"
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
  [[ -e "$state/domain/etc/smb.conf" ]] || { provision && provision_exchange; }
}
