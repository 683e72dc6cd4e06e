#!/usr/bin/python3
"""Lets twk log on to an LDAP server of our own over TLS that never comes to an end, or whose certificate is not to be
trusted: the program leaves with a message, and in five seconds when it is asked to.

    hostile_server_test.py PATH-OF-TWK
"""

import os
import pathlib
import signal
import socket
import ssl
import subprocess
import sys
import tempfile
import threading
import time

TWK = sys.argv[1]
PASSWORD = "Welcome-2-Work"
failures = []


def expect(holds, what):
    if not holds:
        failures.append(what)


# --- What of LDAP is needed, in BER (RFC 4511, X.690) ---


def ber(tag, *parts):
    body = b"".join(parts)
    size = len(body)
    length = bytes([size]) if size < 128 else b"\x84" + size.to_bytes(4, "big")
    return bytes([tag]) + length + body


def text(value, tag=0x04):
    return ber(tag, value if isinstance(value, bytes) else value.encode())


def number(value, tag=0x02):
    return ber(tag, value.to_bytes(4, "big"))


def take(data, at=0):
    """The body and the end of the element at that place."""
    size, at = data[at + 1], at + 2
    if size & 0x80:
        count = size & 0x7F
        size, at = int.from_bytes(data[at:at + count], "big"), at + count
    return data[at:at + size], at + size


def elements(body):
    found, at = [], 0
    while at < len(body):
        tag = body[at]
        inner, at = take(body, at)
        found.append((tag, inner))
    return found


def result(tag, code=0, diagnostic="", referral=None):
    parts = [number(code, 0x0A), text(""), text(diagnostic)]
    if referral:
        parts.append(ber(0xA3, text(referral)))
    return ber(tag, *parts)


def entry(dn, attributes):
    listed = [ber(0x30, text(name), ber(0x31, *map(text, values))) for name, values in attributes.items()]
    return ber(0x64, text(dn), ber(0x30, *listed))


def page_control(cookie):
    value = ber(0x30, number(0), text(cookie))
    return ber(0xA0, ber(0x30, text("1.2.840.113556.1.4.319"), text(value)))


DOMAIN = "DC=bad,DC=test"
SID = bytes.fromhex("010400000000000515000000010000000200000003000000")
ROOT = {"defaultNamingContext": [DOMAIN], "rootDomainNamingContext": [DOMAIN], "namingContexts": [DOMAIN],
        "configurationNamingContext": ["CN=Configuration," + DOMAIN], "dnsHostName": ["dc1.bad.test"],
        "schemaNamingContext": ["CN=Schema,CN=Configuration," + DOMAIN], "supportedLDAPVersion": ["3"],
        "domainControllerFunctionality": ["7"]}


class Server:
    """Logs everybody on, has the entries that are read by their names, and answers searches by `search(reply, page)`,
    where `reply` sends an operation with controls and `page` counts them."""

    def __init__(self, certificate, search):
        self.context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        self.context.load_cert_chain(certificate)
        self.search = search
        self.searches = 0
        self.socket = socket.create_server(("127.0.0.1", 0))
        self.port = self.socket.getsockname()[1]
        threading.Thread(target=self.serve, daemon=True).start()

    def serve(self):
        while True:
            connection, _ = self.socket.accept()
            threading.Thread(target=self.talk, args=(connection,), daemon=True).start()

    def talk(self, raw):
        try:
            with self.context.wrap_socket(raw, server_side=True) as connection:
                data = b""
                while more := connection.recv(65536):
                    data += more
                    while len(data) > 6 and len(data) >= take(data)[1]:
                        body, end = take(data)
                        data = data[end:]
                        self.respond(connection, elements(body))
        except OSError:
            pass  # the program has left

    def respond(self, connection, request):
        message = int.from_bytes(request[0][1], "big")
        operation, body = request[1]

        def reply(answer, controls=b""):
            connection.sendall(ber(0x30, number(message), answer, controls))

        reply.raw = connection.sendall
        if operation == 0x60:
            reply(result(0x61))
        elif operation == 0x63:
            base, scope = (inner for _, inner in elements(body)[:2])
            if scope != b"\0" and b"Partitions" in base:
                reply(entry("CN=BAD," + base.decode(), {"nCName": [DOMAIN], "nETBIOSName": ["BAD"], "systemFlags": ["3"]}))
                reply(result(0x65))
            elif base and scope != b"\0":
                self.searches += 1
                self.search(reply, self.searches)
            else:
                reply(entry(base, {"objectSid": [SID], "objectClass": ["top", "domain"], "nTMixedDomain": ["0"]} if base else ROOT))
                reply(result(0x65))


def user(place):
    return entry(f"CN=u{place},{DOMAIN}", {"cn": [f"u{place}"], "samAccountName": [f"u{place}"]})


def empty_pages(reply, page):
    reply(result(0x65), page_control(b"on"))


def one_page_again_and_again(reply, page):
    reply(user(1))
    reply(result(0x65), page_control(b"on"))


def ever_new_pages(reply, page):
    for place in range(10):
        reply(user(page * 10 + place))
    reply(result(0x65), page_control(str(page)))


def entries_without_end(reply, page):
    place = 0
    while True:
        reply(user(place := place + 1))


def referral(reply, page):
    reply(result(0x65, 10, referral="ldap://elsewhere.test/DC=elsewhere"))


def page_without_a_mark(reply, page):
    reply(result(0x65), ber(0xA0, ber(0x30, text("1.2.840.113556.1.4.319"))))


def message_of_two_gigabytes(reply, page):
    reply.raw(b"\x30\x84\x7f\xff\xff\xff\x02\x01\x09")
    time.sleep(600)


def silence(reply, page):
    time.sleep(600)


# Where the system keeps the authorities that it trusts; for this program alone it is another file.
SYSTEM = "/etc/ssl/certs/ca-certificates.crt"


def twk(port, *arguments, trusted="cert.pem", system=None):
    trusted = ["--ca-file", trusted] if trusted else []
    namespace = ["unshare", "--mount"] if os.geteuid() == 0 else ["unshare", "--map-root-user", "--mount"]
    mount = [*namespace, "sh", "-ec", f'mount --bind {system} {SYSTEM}; exec "$@"', "sh"] if system else []
    return subprocess.Popen([*mount, TWK, "--domain", "bad.test", "--server", "127.0.0.1", "--port", str(port), "--method", "ldaps", "--user", "u",
                             *trusted, "--logon-password-file", "password", *arguments], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                            stderr=subprocess.PIPE, text=True)


def nobody(reply, page):
    reply(result(0x65))


def ends(search, words, code=2, shown="both.pem", **trust):
    """The program leaves by itself."""
    child = twk(Server(shown, search).port, "group", "list", **trust)
    out, told = child.communicate(timeout=60)
    expect(words in told and child.returncode == code, f"{search.__name__}: {child.returncode}, {told}")


def is_left(search, how):
    """The program leaves in five seconds when it is asked to."""
    server = Server("both.pem", search)
    child = twk(server.port, "group", "list")
    while child.poll() is None and server.searches == 0:
        time.sleep(0.05)
    time.sleep(1)
    expect(child.poll() is None, f"{search.__name__}: left before it was asked to")
    start = time.monotonic()
    child.send_signal(how)
    out, told = child.communicate(timeout=60)
    waited = time.monotonic() - start
    expect(waited < 5 and child.returncode == 1 and "Stopped" in told,
           f"{search.__name__}, {how.name}: {child.returncode} after {waited:.1f} s, {told}")


def main():
    pathlib.Path("password").write_text("Welcome-2-Work\n")
    # A file that the library would read in the current folder, and that would switch off the check.
    pathlib.Path("ldaprc").write_text("TLS_REQCERT never\nTLS_CACERT other.pem\nURI ldap://127.0.0.1:1\nNETWORK_TIMEOUT 1\n")
    certificate("cert.pem", "both.pem", "DNS:localhost,IP:127.0.0.1")
    certificate("other.pem", "other-both.pem", "DNS:localhost,IP:127.0.0.1")
    certificate("name.pem", "name-both.pem", "DNS:elsewhere.test")
    certificate("address.pem", "address-both.pem", "IP:127.0.0.2")
    ends(nobody, "", 0)
    ends(nobody, "no authority of the file", trusted="other.pem")
    ends(nobody, "names another host, or another address", shown="name-both.pem", trusted="name.pem")
    ends(nobody, "names another host, or another address", shown="address-both.pem", trusted="address.pem")
    ends(nobody, "", 0, trusted=None, system="cert.pem")
    ends(nobody, "no authority that this system trusts", trusted=None, system="other.pem")
    ends(empty_pages, "nothing but empty pages")
    ends(one_page_again_and_again, "the same page again")
    ends(entries_without_end, "more than was requested")
    ends(page_without_a_mark, "", 0)
    ends(message_of_two_gigabytes, "Search below DC=bad,DC=test")
    ends(referral, "refers to another one")
    for how in (signal.SIGTERM, signal.SIGINT):
        is_left(ever_new_pages, how)
        is_left(silence, how)


def certificate(certificate, with_key, names):
    subprocess.run(["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-keyout", "key.pem", "-out", certificate, "-days", "2",
                    "-subj", "/CN=tarnwick test", "-addext", "subjectAltName=" + names], check=True, stderr=subprocess.DEVNULL)
    pathlib.Path(with_key).write_text(pathlib.Path(certificate).read_text() + pathlib.Path("key.pem").read_text())


with tempfile.TemporaryDirectory() as folder:
    os.chdir(folder)
    main()
if failures:
    sys.exit("\n\n".join(failures))
