"""Suites of unittest that report as GoogleTest does, so that their cases are counted."""
import time
import unittest


class Result(unittest.TestResult):
    """Writes each case in two lines."""

    def startTest(self, test):
        super().startTest(test)
        self.began, self.verdict = time.monotonic(), "OK"
        print("[ RUN      ]", self.name(test), flush=True)

    def stopTest(self, test):
        super().stopTest(test)
        milliseconds = int((time.monotonic() - self.began) * 1000)
        print(f"[ {self.verdict:>8} ] {self.name(test)} ({milliseconds} ms)", flush=True)

    def addSkip(self, test, reason):
        super().addSkip(test, reason)
        self.verdict = "SKIPPED"
        print(reason)

    def addFailure(self, test, err):
        super().addFailure(test, err)
        self.tell(self.failures)

    def addError(self, test, err):
        super().addError(test, err)
        self.tell(self.errors)

    def tell(self, found):
        self.verdict = "FAILED"
        print(found[-1][1])

    @staticmethod
    def name(test):
        return f"{type(test).__name__}.{test._testMethodName.removeprefix('test_')}"


def run(*cases):
    """Returns the exit status of a run of these classes of tests."""
    result = Result()
    for case in cases:
        unittest.defaultTestLoader.loadTestsFromTestCase(case).run(result)
    return 0 if result.testsRun and result.wasSuccessful() else 1
