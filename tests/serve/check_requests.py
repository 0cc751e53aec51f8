"""What no client should send, over plain sockets; and that the server goes on all the same.

  check_requests.py HAVHOST
"""
import select
import socket
import subprocess
import sys
import time
import unittest

from server import Server, message, of_class, read_all, request, split

PROGRAM = sys.argv[1]
CLASSES = "EnumerateClassNames"


class RequestTest(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        cls.server = Server(PROGRAM, "--timeout", "2", "--connections", "16")

    @classmethod
    def tearDownClass(cls):
        status = cls.server.stop()
        errors = cls.server.process.stderr.read()
        cls.server.__exit__()
        assert (status, errors) == (0, ""), (status, errors)

    def tearDown(self):
        first, _, body = self.server.call(CLASSES)
        self.assertEqual("HTTP/1.1 200 OK", first)
        self.assertIn(b'<CLASSNAME NAME="T_Disk"></CLASSNAME>', body)

    def refused(self, data, first, error=None, text=None):
        answer = split(self.server.send(data))
        self.assertEqual(first, answer[0])
        self.assertEqual(error, answer[1].get("CIMError"))
        if text:
            self.assertEqual(text, answer[2].decode().strip())

    def test_truncated_requests_are_let_go(self):
        whole = request(CLASSES)
        for length in (1, 20, 100, len(whole) - 1):
            self.assertIn(split(self.server.send(whole[:length]))[0],
                          ("", "HTTP/1.1 400 Bad Request"))

    def test_length_that_is_too_small_ends_the_message_early(self):
        body = message(CLASSES)
        self.refused(request(CLASSES, Content_Length=str(len(body) - 5)),
                     "HTTP/1.1 400 Bad Request", "request-not-well-formed")

    def test_length_that_is_too_large_waits_in_vain(self):
        begin = time.monotonic()
        with self.server.connect() as connection:
            connection.sendall(request(CLASSES, Content_Length="5000"))
            self.assertEqual(b"", read_all(connection))
        self.assertLess(time.monotonic() - begin, 20)

    def test_lengths_that_are_none(self):
        for length in ("-1", "x", "99999999999999999999999", "1, 2"):
            self.refused(request(CLASSES, Content_Length=length), "HTTP/1.1 400 Bad Request")
        self.refused(request(CLASSES, Content_Length=None), "HTTP/1.1 411 Length Required")
        self.refused(request(CLASSES, Transfer_Encoding="chunked"), "HTTP/1.1 400 Bad Request")

    def test_long_requests_are_refused_before_they_are_read(self):
        self.refused(request(CLASSES, Content_Length=str(3 * 1024 * 1024)),
                     "HTTP/1.1 413 Payload Too Large", None,
                     "requests are not longer than 2097152 bytes")
        chunks = b"POST /cimom HTTP/1.1\r\nHost: localhost\r\nTransfer-Encoding: chunked\r\n\r\n"
        self.refused(chunks + b"400000\r\n" + b"x" * 0x300000, "HTTP/1.1 413 Payload Too Large")

    def test_long_headers_are_refused(self):
        self.refused(request(CLASSES, X_Long="x" * 20000),
                     "HTTP/1.1 431 Request Header Fields Too Large")

    def test_what_is_no_http(self):
        for data in (b"\0\1\2\3\r\n\r\n", b"GET\r\n\r\n", b"HELO there\r\n\r\n",
                     b"\x16\x03\x01\x02\x00\x01\x00\x01\xfc\x03\x03" + b"\r\n" * 4):
            self.refused(data, "HTTP/1.1 400 Bad Request")

    def test_slow_requests_are_let_go(self):
        for begin in (b"POST /cimom HTTP/1.1\r\nHost: loc", request(CLASSES)[:-10], b""):
            started = time.monotonic()
            with self.server.connect() as connection:
                connection.sendall(begin)
                self.assertEqual(b"", read_all(connection))
            self.assertGreater(time.monotonic() - started, 1)
            self.assertLess(time.monotonic() - started, 20)

    def test_dripping_does_not_gain_time(self):
        started = time.monotonic()
        with self.server.connect() as connection:
            try:
                for byte in request(CLASSES):
                    connection.sendall(bytes([byte]))
                    time.sleep(0.05)
            except OSError:
                pass
        self.assertLess(time.monotonic() - started, 15)

    def test_nesting_is_bounded(self):
        for depth in (65, 100000):
            self.refused(request(CLASSES, body=b"<A>" * depth + b"</A>" * depth),
                         "HTTP/1.1 400 Bad Request", "request-not-well-formed",
                         "line 1: elements are nested more than 64 deep")

    def test_entities_are_refused(self):
        bomb = b'<!DOCTYPE CIM [<!ENTITY a0 "aaaaaaaaaa">'
        for level in range(1, 10):
            bomb += b'<!ENTITY a%d "%s">' % (level, b"&a%d;" % (level - 1) * 10)
        self.refused(request(CLASSES, body=bomb + b"]><CIM>&a9;</CIM>"),
                     "HTTP/1.1 400 Bad Request", "request-not-well-formed",
                     "line 1: declarations of entities are refused")
        outside = b'<!DOCTYPE CIM [<!ENTITY x SYSTEM "file:///etc/hostname">]><CIM>&x;</CIM>'
        self.refused(request(CLASSES, body=outside), "HTTP/1.1 400 Bad Request",
                     "request-not-well-formed", "line 1: declarations of entities are refused")

    def test_unknown_encodings(self):
        self.refused(request(CLASSES, Content_Type='text/xml; charset="utf-32"'),
                     "HTTP/1.1 415 Unsupported Media Type")
        body = message(CLASSES).replace(b"utf-8", b"klingon")
        self.refused(request(CLASSES, body=body, Content_Type="text/xml"),
                     "HTTP/1.1 400 Bad Request", "request-not-well-formed",
                     "line 1: unknown encoding")
        self.refused(request(CLASSES, body=message(CLASSES).replace(b"<MESSAGE", b"\xff<MESSAGE")),
                     "HTTP/1.1 400 Bad Request", "request-not-well-formed")

    def test_pipelined_requests_are_answered_in_order(self):
        answers = self.server.send(
            request("GetClass", of_class("T_Disk")) + request(CLASSES) +
            request("GetClass", of_class("T_None"), Connection="close"))
        self.assertEqual(3, answers.count(b"HTTP/1.1 200 OK"))
        self.assertLess(answers.index(b'<CLASS NAME="T_Disk">'),
                        answers.index(b'<CLASSNAME NAME="T_System">'))
        self.assertLess(answers.index(b'<CLASSNAME NAME="T_System">'),
                        answers.index(b"there is no class"))

    def test_chunked_request_is_read(self):
        body = message(CLASSES)
        chunks = b"%x\r\n%s\r\n%x\r\n%s\r\n0\r\n\r\n" % (10, body[:10], len(body) - 10, body[10:])
        head = request(CLASSES, body=b"", Content_Length=None, Transfer_Encoding="chunked",
                       Connection="close")
        self.assertIn(b'<CLASSNAME NAME="T_Disk">', self.server.send(head + chunks))

    def test_expectation_is_met(self):
        with self.server.connect() as connection:
            head, _, body = request(CLASSES, Expect="100-continue",
                                    Connection="close").partition(b"\r\n\r\n")
            connection.sendall(head + b"\r\n\r\n")
            self.assertEqual(b"HTTP/1.1 100 Continue\r\n\r\n", connection.recv(100))
            connection.sendall(body)
            self.assertIn(b"HTTP/1.1 200 OK", read_all(connection))

    def test_old_clients_are_served(self):
        first, headers, body = split(self.server.send(
            request(CLASSES, version="1.0", Host=None)))
        self.assertEqual("HTTP/1.0 200 OK", first)
        self.assertEqual(len(body), int(headers["Content-Length"]))

    def test_other_methods_and_places(self):
        get = b"%s %s HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n\r\n"
        for method in (b"PUT", b"DELETE", b"OPTIONS", b"HEAD", b"TRACE", b"BREW"):
            self.refused(get % (method, b"/"), "HTTP/1.1 405 Method Not Allowed")
        for place in (b"/etc/passwd", b"/../../etc/passwd", b"//", b"/%00"):
            self.refused(get % (b"GET", place), "HTTP/1.1 404 Not Found")
        self.refused(request(CLASSES).replace(b"/cimom", b"/other"), "HTTP/1.1 404 Not Found")

    def test_browsers_lured_here_are_turned_away(self):
        # A page under another name, which was made to mean this machine.
        self.refused(request(CLASSES, Host="evil.example"), "HTTP/1.1 400 Bad Request", None,
                     "the header Host does not name this server")
        self.refused(b"GET / HTTP/1.1\r\nHost: evil.example:5988\r\n\r\n",
                     "HTTP/1.1 400 Bad Request")
        self.refused(request(CLASSES, Host=None), "HTTP/1.1 400 Bad Request")
        # A form that posts, which needs nobody's leave.
        self.refused(request(CLASSES, Content_Type="text/plain"),
                     "HTTP/1.1 415 Unsupported Media Type")

    def test_more_clients_than_are_served_are_told(self):
        held = [self.server.connect() for _ in range(16)]
        try:
            # Those of the test before may not have ended yet, and some of these be too many.
            for _ in range(4):
                time.sleep(0.3)
                refused = select.select(held, [], [], 0)[0]
                for connection in refused:
                    held.remove(connection)
                    connection.close()
                if not refused:
                    break
                held += [self.server.connect() for _ in refused]
            with self.server.connect() as connection:
                self.assertTrue(connection.recv(100).startswith(b"HTTP/1.1 503 "))
        finally:
            for connection in held:
                connection.close()
        time.sleep(0.5)

    def test_page_shows_the_namespace(self):
        page = b"GET / HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n\r\n"
        first, headers, body = split(self.server.send(page))
        self.assertEqual("HTTP/1.1 200 OK", first)
        self.assertEqual("text/html; charset=utf-8", headers["Content-Type"])
        self.assertEqual("nosniff", headers["X-Content-Type-Options"])
        self.assertEqual("no-store", headers["Cache-Control"])
        policy = headers["Content-Security-Policy"]
        self.assertIn("default-src 'none'", policy)
        self.assertNotIn("unsafe", policy.replace("'unsafe-hashes'", ""))
        self.assertTrue(b"T_FastDisk" in body)
        self.assertFalse(b"<tag7>" in body)


class PageTest(unittest.TestCase):
    def test_page_is_made_anew_each_time(self):
        page = b"GET / HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n\r\n"
        name = '<INSTANCENAME CLASSNAME="T_Disk"><KEYBINDING NAME="Name"><KEYVALUE>one</KEYVALUE>' \
               "</KEYBINDING></INSTANCENAME>"
        with Server(PROGRAM, "--writable") as server:
            self.assertTrue(b"7319" in server.send(page))
            server.call("DeleteInstance", f'<IPARAMVALUE NAME="InstanceName">{name}</IPARAMVALUE>')
            self.assertFalse(b"7319" in server.send(page))


class EndTest(unittest.TestCase):
    def test_it_ends_when_asked_whatever_is_open(self):
        for number in (2, 15):
            with Server(PROGRAM) as server:
                held = [server.connect() for _ in range(3)]
                held[1].sendall(request(CLASSES)[:50])
                held[2].sendall(request(CLASSES))
                time.sleep(0.2)
                self.assertEqual(0, server.stop(number))
                self.assertEqual("", server.process.stderr.read())
                for connection in held:
                    connection.close()

    def test_a_port_that_is_taken_is_told(self):
        with Server(PROGRAM) as server:
            done = subprocess.run(
                [PROGRAM, "serve", "--mof", server.path("model.mof"),
                 "--listen", f"127.0.0.1:{server.port}"],
                capture_output=True, text=True, timeout=60, check=False)
            self.assertEqual((1, f"havhost: cannot listen on 127.0.0.1, port {server.port}: "
                                 "Address already in use\n"), (done.returncode, done.stderr))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
