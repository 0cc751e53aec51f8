"""havhost serve as a process of a test, and plain sockets to talk to it."""
import pathlib
import re
import signal
import socket
import subprocess
import tempfile

MODEL = """
Qualifier Association : boolean = false, Scope(association), Flavor(DisableOverride, ToSubclass);
Qualifier Description : string = null, Scope(any), Flavor(EnableOverride, ToSubclass);
Qualifier Key : boolean = false, Scope(property, reference), Flavor(DisableOverride, ToSubclass);

[Description("A disk.")] class T_Disk {
  [Key] string Name;
  uint64 Size;
  string Labels[];
  uint32 Reset(uint16 Mode);
};
class T_FastDisk : T_Disk {
  real64 Speed;
};
class T_System {
  [Key] string Name;
};
class T_Unused {
  [Key] string Name;
};
[Association] class T_Contains {
  [Key] T_System REF Group;
  [Key] T_Disk REF Part;
};
instance of T_System as $Box { Name = "box"; };
instance of T_Disk as $One { Name = "one"; Size = 7319; Labels = {"a", "<tag7>"}; };
instance of T_FastDisk as $Two { Name = "two"; Speed = 0.5; };
instance of T_Contains { Group = $Box; Part = $One; };
instance of T_Contains { Group = $Box; Part = $Two; };
"""


class Server:
    """The program with a model in MOF, on a free port of the loopback address."""

    def __init__(self, program, *options, model=MODEL, check=True):
        self.folder = tempfile.TemporaryDirectory()
        path = self.path("model.mof")
        path.write_text(model, encoding="utf-8")
        if "--listen" not in options:
            options = ("--listen", "127.0.0.1:0", *options)
        self.process = subprocess.Popen(
            [program, "serve", "--mof", str(path), *options],
            stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        self.port = 0
        self.line = self.process.stdout.readline()
        if found := re.search(r"://127\.0\.0\.1:(\d+)$", self.line):
            self.port = int(found[1])
        elif check:
            raise RuntimeError(f"no server: {self.line}{self.process.stderr.read()}")

    def path(self, name):
        return pathlib.Path(self.folder.name) / name

    def __enter__(self):
        return self

    def __exit__(self, *_):
        if self.process.poll() is None:
            self.stop()
        self.process.stdout.close()
        self.process.stderr.close()
        self.folder.cleanup()

    def stop(self, number=signal.SIGTERM):
        """Asks it to end, and returns its exit status."""
        self.process.send_signal(number)
        return self.process.wait(timeout=60)

    def memory(self):
        """Its resident memory, in KiB."""
        text = pathlib.Path(f"/proc/{self.process.pid}/status").read_text(encoding="ascii")
        return int(re.search(r"VmRSS:\s+(\d+)", text)[1])

    def connect(self, timeout=30):
        return socket.create_connection(("127.0.0.1", self.port), timeout=timeout)

    def send(self, data):
        """Sends bytes and returns what comes back until the server closes."""
        with self.connect() as connection:
            connection.sendall(data)
            connection.shutdown(socket.SHUT_WR)
            return read_all(connection)

    def call(self, operation, parameters="", **headers):
        """Returns (status line, headers, body) of an operation on root/cimv2."""
        return split(self.send(request(operation, parameters, **headers)))


def read_all(connection):
    pieces = []
    try:
        while piece := connection.recv(65536):
            pieces.append(piece)
    except ConnectionResetError:
        pass
    return b"".join(pieces)


def split(answer):
    head, _, body = answer.partition(b"\r\n\r\n")
    first, *lines = head.decode("latin-1").split("\r\n")
    return first, dict(line.split(": ", 1) for line in lines if ": " in line), body


def message(operation, parameters=""):
    return ('<?xml version="1.0" encoding="utf-8"?><CIM CIMVERSION="2.0" DTDVERSION="2.0">'
            '<MESSAGE ID="1" PROTOCOLVERSION="1.0"><SIMPLEREQ>'
            f'<IMETHODCALL NAME="{operation}"><LOCALNAMESPACEPATH><NAMESPACE NAME="root"/>'
            f'<NAMESPACE NAME="cimv2"/></LOCALNAMESPACEPATH>{parameters}</IMETHODCALL>'
            '</SIMPLEREQ></MESSAGE></CIM>').encode()


def of_class(name):
    return f'<IPARAMVALUE NAME="ClassName"><CLASSNAME NAME="{name}"/></IPARAMVALUE>'


def request(operation, parameters="", body=None, version="1.1", **changes):
    """The bytes of a request; `changes` are headers, with _ for -; None takes one away."""
    body = message(operation, parameters) if body is None else body
    headers = {"Host": "127.0.0.1", "Content-Type": "application/xml; charset=utf-8",
               "CIMOperation": "MethodCall", "CIMMethod": operation,
               "CIMObject": "root%2Fcimv2", "Content-Length": str(len(body))}
    headers |= {name.replace("_", "-"): value for name, value in changes.items()}
    lines = [f"{name}: {value}" for name, value in headers.items() if value is not None]
    return "\r\n".join([f"POST /cimom HTTP/{version}", *lines, "", ""]).encode() + body
