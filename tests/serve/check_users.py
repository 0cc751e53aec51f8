"""Users, TLS, and what the server refuses to listen on.

  check_users.py HAVHOST OPENSSL
"""
import base64
import pathlib
import ssl
import stat
import subprocess
import sys
import tempfile
import unittest

from server import Server, read_all, request, split

PROGRAM, OPENSSL = sys.argv[1], sys.argv[2]
CLASSES = "EnumerateClassNames"


def passwd(file, user, password):
    return subprocess.run([PROGRAM, "passwd", str(file), user], input=password, text=True,
                          capture_output=True, timeout=60, check=False)


def basic(user, password):
    return "Basic " + base64.b64encode(f"{user}:{password}".encode()).decode()


class UsersTest(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.users = pathlib.Path(self.folder.name) / "users.txt"

    def test_passwords_are_kept_as_hashes(self):
        done = passwd(self.users, "ann", "secret\n")
        self.assertEqual((0, "", ""), (done.returncode, done.stdout, done.stderr))
        self.assertEqual(0, passwd(self.users, "bob", "other").returncode)
        text = self.users.read_text(encoding="utf-8")
        self.assertRegex(text, r"^ann:scrypt:16384:8:1:[0-9a-f]{32}:[0-9a-f]{64}\n"
                               r"bob:scrypt:16384:8:1:[0-9a-f]{32}:[0-9a-f]{64}\n$")
        self.assertEqual(0o600, stat.S_IMODE(self.users.stat().st_mode))
        self.assertEqual(0, passwd(self.users, "ann", "new").returncode)
        again = self.users.read_text(encoding="utf-8")
        self.assertEqual(text.splitlines()[1], again.splitlines()[1])
        self.assertNotEqual(text.splitlines()[0], again.splitlines()[0])

    def test_what_is_no_user_or_password_is_refused(self):
        for user, password, error in (
                ("a:b", "x", "a user's name has no colon, no # and no control character in it"),
                ("", "x", "a user needs a name"), ("ann", "", "no password is given on standard "
                                                              "input"),
                ("ann", "\n", "a password is not empty")):
            done = passwd(self.users, user, password)
            self.assertEqual((1, f"havhost: {error}\n"), (done.returncode, done.stderr))
        self.assertFalse(self.users.exists())

    def test_only_users_are_let_in(self):
        passwd(self.users, "ann", "s:ecret")
        passwd(self.users, "bob", "other")
        with Server(PROGRAM, "--users", str(self.users)) as server:
            good = (basic("ann", "s:ecret"), basic("bob", "other"), basic("ann", "s:ecret"),
                    basic("ann", "s:ecret").replace("Basic", "BASIC"))
            bad = (None, "", "Basic", "Basic !!!!", basic("ann", "other"), basic("ann", ""),
                   basic("eve", "s:ecret"), basic("", ""), basic("ANN", "s:ecret"),
                   "Basic " + base64.b64encode(b"ann").decode(), "Bearer abc",
                   "Basic " + "A" * 8000, basic("ann", "s:ecret")[:-4])
            for credentials in bad + good + bad:
                first, headers, body = server.call(CLASSES, Authorization=credentials)
                if credentials in good:
                    self.assertEqual("HTTP/1.1 200 OK", first)
                else:
                    self.assertEqual("HTTP/1.1 401 Unauthorized", first, credentials)
                    self.assertEqual('Basic realm="havhost", charset="UTF-8"',
                                     headers["WWW-Authenticate"])
                    self.assertFalse(b"T_Disk" in body)
            page = split(server.send(b"GET / HTTP/1.1\r\nHost: localhost\r\n\r\n"))
            self.assertEqual("HTTP/1.1 401 Unauthorized", page[0])

    def test_strangers_are_not_read_on(self):
        passwd(self.users, "ann", "secret")
        with Server(PROGRAM, "--users", str(self.users)) as server:
            head = request(CLASSES, Content_Length="2000000").partition(b"\r\n\r\n")[0]
            with server.connect() as connection:
                connection.sendall(head + b"\r\n\r\n")
                self.assertTrue(connection.recv(100).startswith(b"HTTP/1.1 401 "))

    def test_files_that_hold_no_users_are_told(self):
        for text, error in (
                ("", f"the user file '{self.users}' has no user"),
                ("# none\n", f"the user file '{self.users}' has no user"),
                ("ann:secret\n", f"user file '{self.users}', line 1: no user with a hashed password "
                                 "(havhost passwd writes them)"),
                ("\nann:scrypt:16384:8:1:00:11\n", f"user file '{self.users}', line 2: no user with "
                                                   "a hashed password (havhost passwd writes them)")):
            self.users.write_text(text, encoding="utf-8")
            self.expect_failure(1, error, "--users", str(self.users))
        self.expect_failure(1, "cannot read the user file 'nowhere'", "--users", "nowhere")

    def expect_failure(self, status, error, *options):
        with Server(PROGRAM, *options, check=False) as server:
            self.assertEqual(status, server.process.wait(timeout=60))
            self.assertEqual(f"havhost: {error}\n", server.process.stderr.read())

    def test_other_addresses_need_users_and_tls(self):
        open_door = "listening on 0.0.0.0, which is no loopback address, needs "
        self.expect_failure(2, open_door + "--users", "--listen", "0.0.0.0:0")
        passwd(self.users, "ann", "secret")
        self.expect_failure(2, open_door + "--certificate", "--listen", "0.0.0.0:0", "--users",
                            str(self.users))
        self.expect_failure(2, "--key needs --certificate", "--key", "key.pem")
        self.expect_failure(2, "'here' is no address to listen on (an IPv4 or IPv6 address)",
                            "--listen", "here:1")
        self.expect_failure(2, "'70000' is no port (0 to 65535)", "--listen", "127.0.0.1:70000")
        self.expect_failure(2, "'' is no port (0 to 65535)", "--listen", "127.0.0.1:")

    def test_tls(self):
        certificate, key = (pathlib.Path(self.folder.name) / name for name in ("c.pem", "k.pem"))
        subprocess.run([OPENSSL, "req", "-x509", "-newkey", "ec", "-pkeyopt",
                        "ec_paramgen_curve:prime256v1", "-nodes", "-keyout", key, "-out",
                        certificate, "-days", "2", "-subj", "/CN=localhost", "-addext",
                        "subjectAltName=IP:127.0.0.1,DNS:localhost"],
                       check=True, capture_output=True)
        passwd(self.users, "ann", "secret")
        with Server(PROGRAM, "--users", str(self.users), "--certificate", str(certificate),
                    "--key", str(key)) as server:
            self.assertEqual(f"Serving root/cimv2 at https://127.0.0.1:{server.port}\n",
                             server.line)
            context = ssl.create_default_context(cafile=certificate)
            data = request(CLASSES, Authorization=basic("ann", "secret"), Connection="close")
            with context.wrap_socket(server.connect(), server_hostname="localhost") as connection:
                self.assertIn(connection.version(), ("TLSv1.2", "TLSv1.3"))
                connection.sendall(data)
                self.assertIn(b"HTTP/1.1 200 OK", read_all(connection))
            # Without TLS there is no answer that means anything.
            self.assertNotIn(b"200 OK", server.send(data))
            old = ssl.SSLContext(ssl.PROTOCOL_TLS_CLIENT)
            old.load_verify_locations(certificate)
            old.maximum_version = ssl.TLSVersion.TLSv1_1
            with self.assertRaises(ssl.SSLError):
                old.wrap_socket(server.connect(), server_hostname="localhost")
        with Server(PROGRAM, "--certificate", "nowhere", check=False) as server:
            self.assertEqual(1, server.process.wait(timeout=60))
            self.assertTrue(server.process.stderr.read().startswith(
                "havhost: cannot use the certificate in 'nowhere': "))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
