"""Every command of wbemcli against a running server, with the answer that is expected.

  check_wbemcli.py HAVHOST WBEMCLI
"""
import subprocess
import sys
import unittest

from server import Server

PROGRAM, CLIENT = sys.argv[1], sys.argv[2]


def client(*arguments):
    """Runs wbemcli under its own name, which it puts into its messages."""
    return subprocess.run(["wbemcli", *arguments], executable=CLIENT, capture_output=True,
                          text=True, timeout=60, check=False)


class WbemcliTest(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        cls.server = Server(PROGRAM, "--writable")
        cls.base = f"127.0.0.1:{cls.server.port}/root/cimv2"

    @classmethod
    def tearDownClass(cls):
        cls.server.__exit__()

    def run_client(self, command, path, *values):
        return client(*command.split(), f"http://{self.base}{path}", *values)

    def expect(self, lines, command, path="", *values):
        """Lines of output; BASE stands for where the server is."""
        done = self.run_client(command, path, *values)
        expected = "".join(f"{line}\n" for line in lines).replace("BASE", self.base)
        self.assertEqual((expected, "", 0), (done.stdout, done.stderr, done.returncode))

    def expect_error(self, text, command, path="", *values):
        done = self.run_client(command, path, *values)
        self.assertEqual(("", f"*\n* wbemcli: Cim: {text}\n*\n"), (done.stdout, done.stderr))

    def test_ecn(self):
        self.expect(["BASE:T_Disk", "BASE:T_FastDisk", "BASE:T_System", "BASE:T_Unused",
                     "BASE:T_Contains"], "ecn")
        self.expect(["BASE:T_FastDisk"], "ecn", ":T_Disk")

    def test_ec(self):
        self.expect(["BASE:T_FastDisk Labels=,Name=,Size=,Speed="], "ec", ":T_Disk")

    def test_gc(self):
        self.expect(["BASE:T_Disk Labels[]=,Name#=,Size="], "gc -t", ":T_Disk")
        self.expect_error("(6) CIM_ERR_NOT_FOUND: there is no class 'T_None' in namespace "
                          "root/cimv2", "gc", ":T_None")

    def test_gcd(self):
        self.expect(
            ['<CLASS NAME="T_FastDisk" SUPERCLASS="T_Disk"><PROPERTY.ARRAY NAME="Labels" '
             'TYPE="string" PROPAGATED="true"></PROPERTY.ARRAY><PROPERTY NAME="Name" '
             'TYPE="string" PROPAGATED="true"></PROPERTY><PROPERTY NAME="Size" TYPE="uint64" '
             'PROPAGATED="true"></PROPERTY><PROPERTY NAME="Speed" TYPE="real64"></PROPERTY>'
             '<METHOD NAME="Reset" TYPE="uint32" PROPAGATED="true"><PARAMETER NAME="Mode" '
             'TYPE="uint16"></PARAMETER></METHOD></CLASS>'], "gcd", ":T_FastDisk")

    def test_ein(self):
        self.expect(['BASE:T_Disk.Name="one"', 'BASE:T_FastDisk.Name="two"'], "ein", ":T_Disk")

    def test_ei(self):
        self.expect(['BASE:T_System.Name="box" Name="box"'], "ei", ":T_System")
        self.expect(['BASE:T_Contains.Group={T_System.Name="box"},Part={T_Disk.Name="one"} '
                     'Group={T_System.Name="box"},Part={T_Disk.Name="one"}',
                     'BASE:T_Contains.Group={T_System.Name="box"},Part={T_FastDisk.Name="two"} '
                     'Group={T_System.Name="box"},Part={T_FastDisk.Name="two"}'],
                    "ei -dr", ":T_Contains")

    def test_gi(self):
        self.expect(['BASE:T_Disk.Name="one"', '-Labels="a","<tag7>"', '-Name="one"', "-Size=7319",
                     ""], "gi -nl", ':T_Disk.Name="one"')
        self.expect(['BASE:T_FastDisk.Name="two" Speed=0.5'], "gi",
                    ':T_FastDisk.Name="two"', "Speed")
        self.expect_error('(6) CIM_ERR_NOT_FOUND: there is no instance T_Disk.Name="no" in '
                          "namespace root/cimv2", "gi", ':T_Disk.Name="no"')

    def test_ain(self):
        both = ['BASE:T_Disk.Name="one"', 'BASE:T_FastDisk.Name="two"']
        self.expect(both, "ain", ':T_System.Name="box"')
        self.expect(both[1:], "ain -ac T_Contains -arc T_FastDisk -ar Group -arr Part",
                    ':T_System.Name="box"')
        self.expect([], "ain -ar Part", ':T_System.Name="box"')

    def test_ai(self):
        self.expect(['BASE:T_System.Name="box" Name="box"'], "ai", ':T_FastDisk.Name="two"')

    def test_rin(self):
        self.expect(['BASE:T_Contains.Group={T_System.Name="box"},Part={T_Disk.Name="one"}'],
                    "rin -dr", ':T_Disk.Name="one"')
        self.expect([], "rin -ar Group", ':T_Disk.Name="one"')

    def test_ri(self):
        self.expect(['BASE:T_Contains.Group={T_System.Name="box"},Part={T_Disk.Name="one"} '
                     'Group={T_System.Name="box"},Part={T_Disk.Name="one"}'],
                    "ri -dr -arc T_Contains", ':T_Disk.Name="one"')

    def test_class_as_an_instance_without_keys(self):
        # wbemcli asks about classes like this, and reads paths of instances only.
        done = self.run_client("ain -dx", ":T_System")
        self.assertIn('<CLASSNAME NAME="T_Disk"></CLASSNAME>', done.stdout + done.stderr)

    def test_gp_and_sp(self):
        self.create("set")
        self.expect([], "sp", ':T_Disk.Name="set"', "Size=77")
        self.expect(["77"], "gp", ':T_Disk.Name="set"', "Size")
        self.expect([], "di", ':T_Disk.Name="set"')

    def create(self, name):
        self.expect([f'BASE:T_Disk.Name="{name}"'], "ci", f':T_Disk.Name="{name}"',
                    f'Name="{name}",Size=1')

    def test_ci_mi_and_di(self):
        self.create("new")
        self.expect_error('(11) CIM_ERR_ALREADY_EXISTS: there is an instance T_Disk.Name="new" '
                          "already", "ci", ':T_Disk.Name="new"', 'Name="new",Size=1')
        self.expect([], "mi", ':T_Disk.Name="new"', 'Size=2,Labels="x","y"')
        self.expect(['BASE:T_Disk.Name="new" Labels="x","y",Name="new",Size=2'], "gi",
                    ':T_Disk.Name="new"')
        self.expect([], "di", ':T_Disk.Name="new"')
        self.expect_error('(6) CIM_ERR_NOT_FOUND: there is no instance T_Disk.Name="new" in '
                          "namespace root/cimv2", "di", ':T_Disk.Name="new"')

    def test_dc(self):
        self.expect_error("(8) CIM_ERR_CLASS_HAS_CHILDREN:  class T_Disk has subclasses", "dc",
                          ":T_Disk")
        with Server(PROGRAM, "--writable") as server:
            path = f"http://127.0.0.1:{server.port}/root/cimv2:T_Unused"
            self.assertEqual(("", ""), (client("dc", path).stdout, client("dc", path).stdout))
            self.assertIn("(6) CIM_ERR_NOT_FOUND: there is no class 'T_Unused'",
                          client("gc", path).stderr)

    def test_cm_and_cmx(self):
        self.expect_error("(16) CIM_ERR_METHOD_NOT_AVAILABLE: no method is run here", "cm",
                          ':T_Disk.Name="one"', "Reset.Mode=5")
        self.assertIn('<ERROR CODE="17" DESCRIPTION="class T_Disk has no method \'Spin\'">',
                      self.run_client("cmx", ':T_Disk.Name="one"', "Spin").stdout)

    def test_namespaces_are_found_by_interop(self):
        done = client("ein", f"http://127.0.0.1:{self.server.port}/interop:CIM_Namespace")
        self.assertIn('Name="root/cimv2"', done.stdout)
        self.assertIn('Name="root/interop"', done.stdout)

    def test_reading_only(self):
        with Server(PROGRAM) as server:
            done = client("di", f'http://127.0.0.1:{server.port}/root/cimv2:T_Disk.Name="one"')
            self.assertIn("(2) CIM_ERR_ACCESS_DENIED: the namespace root/cimv2 is served for "
                          "reading only", done.stderr)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
