"""A browser without a window, and a suite that reports as GoogleTest does."""
import pathlib
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "support"))
import cases as suites  # noqa: E402

FLAGS = ("--headless --no-sandbox --disable-gpu --disable-quic --no-first-run "
         "--disable-background-networking --disable-component-update --disable-sync").split()


def missing():
    """Says what keeps the browser from running here; empty when nothing does."""
    absent = [name for name in ("chromium", "chromedriver") if not shutil.which(name)]
    try:
        import selenium  # noqa: F401
    except ImportError:
        absent.append("Python's selenium")
    return absent and "there is no " + " and no ".join(absent) + " on this machine"


def start(profile):
    from selenium import webdriver
    from selenium.webdriver.chrome.service import Service
    options = webdriver.ChromeOptions()
    options.binary_location = shutil.which("chromium")
    for flag in (*FLAGS, f"--user-data-dir={profile}"):
        options.add_argument(flag)
    options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
    return webdriver.Chrome(service=Service(shutil.which("chromedriver")), options=options)


class PageTest(unittest.TestCase):
    """Tests that share a browser; each begins with a page of its own."""
    havhost = None  # the program
    served = False  # whether it serves its pages, or writes them into files

    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory(prefix="havhost-browser-")
        cls.driver = start(pathlib.Path(cls.folder.name) / "profile")
        cls.addClassCleanup(cls.folder.cleanup)
        cls.addClassCleanup(cls.driver.quit)
        cls.pages = {}

    @classmethod
    def page_of(cls, name, mof):
        """Returns the address of the report on this MOF."""
        if name not in cls.pages:
            source = pathlib.Path(cls.folder.name) / f"{name}.mof"
            source.write_text(mof, encoding="utf-8")
            cls.pages[name] = cls.serve(source) if cls.served else cls.write(source)
        return cls.pages[name]

    @classmethod
    def write(cls, source):
        page = source.with_suffix(".html")
        subprocess.run([cls.havhost, "inventory", "--format", "html", "-o", page,
                        "--mof", source], check=True)
        return page.as_uri()

    @classmethod
    def serve(cls, source):
        server = subprocess.Popen(
            [cls.havhost, "serve", "--mof", source, "--listen", "127.0.0.1:0"],
            stdout=subprocess.PIPE, text=True)
        cls.addClassCleanup(server.wait)
        cls.addClassCleanup(server.terminate)
        cls.addClassCleanup(server.stdout.close)
        return server.stdout.readline().split()[-1]

    def show(self, address, width=1400, height=900, scheme="light"):
        self.look(width, height, scheme)
        self.driver.get("about:blank")
        self.driver.get_log("browser")
        self.driver.get(address)
        self.run_script("document.documentElement.style.scrollBehavior = 'auto'")

    def look(self, width, height, scheme):
        """Sets the size of the screen and whether it is light or dark."""
        self.driver.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", {
            "width": width, "height": height, "deviceScaleFactor": 1, "mobile": False})
        self.driver.execute_cdp_cmd("Emulation.setEmulatedMedia", {
            "features": [{"name": "prefers-color-scheme", "value": scheme}]})

    def run_script(self, script, *arguments):
        return self.driver.execute_script(script, *arguments)

    def all(self, selector):
        from selenium.webdriver.common.by import By
        return self.driver.find_elements(By.CSS_SELECTOR, selector)

    def one(self, selector):
        found = self.all(selector)
        self.assertEqual(len(found), 1, f"elements that match {selector}")
        return found[0]

    def texts(self, selector):
        return self.run_script(
            "return [...document.querySelectorAll(arguments[0])].map((e) => e.textContent)",
            selector)

    def scroll_to(self, selector):
        """Brings a part of the page to the screen and waits until it is drawn."""
        self.run_script("document.querySelector(arguments[0]).scrollIntoView()", selector)
        self.wait(lambda: not self.run_script(
            "return document.querySelector(arguments[0]).querySelector('.waiting')", selector))

    def wait(self, condition):
        end = time.monotonic() + 20
        while not condition():
            self.assertLess(time.monotonic(), end, "waited for too long")
            time.sleep(0.02)

    def assert_silent(self):
        """Nothing has been written to the browser's console."""
        self.assertEqual(self.driver.get_log("browser"), [])


def run(cases):
    """Returns the exit status of a run of this class of tests."""
    if why := missing():
        print(f"[ RUN      ] {cases.__name__}.InABrowser\n{why}\n"
              f"[  SKIPPED ] {cases.__name__}.InABrowser (0 ms)")
        return 0
    return suites.run(cases)
