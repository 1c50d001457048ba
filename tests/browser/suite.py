# suite.py - runs tests and prints them as the other suites do, so that they are counted alike
import fnmatch
import sys
import time
import unittest


class Result(unittest.TestResult):
    def startTest(self, test):
        super().startTest(test)
        self.began = time.monotonic()
        self.bad = False
        print(f"[ RUN      ] {self.name(test)}", flush=True)

    @staticmethod
    def name(test):
        return ".".join(test.id().split(".")[-2:])

    def note(self, test, error):
        self.bad = True
        print(self._exc_info_to_string(error, test), flush=True)
        if hasattr(test, "on_failure"):
            test.on_failure()

    def addFailure(self, test, err):
        super().addFailure(test, err)
        self.note(test, err)

    def addError(self, test, err):
        super().addError(test, err)
        self.note(test, err)
        if not hasattr(test, "_testMethodName"):  # the set-up of all tests
            print(f"[  FAILED  ] {test.id().replace(' ', '_')} (0 ms)", flush=True)

    def stopTest(self, test):
        mark = "[  FAILED  ]" if self.bad else "[       OK ]"
        print(f"{mark} {self.name(test)} ({(time.monotonic() - self.began) * 1000:.0f} ms)", flush=True)
        super().stopTest(test)


def run(case, arguments):
    """All tests of a case, or those that --gtest_filter=A:B names, with * for any text; never none."""
    patterns = ["*"]
    for argument in arguments:
        name, _, text = argument.partition("=")
        if name != "--gtest_filter":
            sys.exit(f"{argument} is not known; --gtest_filter=PATTERNS is")
        patterns = text.split(":")
    tests = unittest.TestSuite(
        case(name) for name in unittest.defaultTestLoader.getTestCaseNames(case)
        if any(fnmatch.fnmatchcase(f"{case.__name__}.{name}", pattern) for pattern in patterns))
    print(f"[==========] Running {tests.countTestCases()} tests.", flush=True)
    result = Result()
    tests.run(result)
    sys.exit(0 if result.wasSuccessful() and result.testsRun else 1)
