#!/usr/bin/env python3
"""Counts the end-to-end tests that passed on each machine.

    e2e-counts.py CTEST_JUNIT_XML WINE_GTEST_XML

The first report is CTest's (--output-junit) of the Linux build, where each
test case is a CTest test of its own; the second is GoogleTest's XML report of
the suite under Wine. A report that is missing counts as not run.
"""
import os
import sys
import xml.etree.ElementTree as ET

END_TO_END_SUITES = ("E2ETest.", "SmallWorldTest.")


def is_end_to_end(name):
    suite = name.split(".")[0] + "."
    return suite.endswith(END_TO_END_SUITES)


def linux_counts(path):
    passed = skipped = 0
    for case in ET.parse(path).getroot().iter("testcase"):
        if not is_end_to_end(case.get("name", "")):
            continue
        status = case.get("status")
        if status == "run":
            passed += 1
        elif status in ("notrun", "disabled", "skipped"):
            skipped += 1
    return passed, skipped


def wine_counts(path):
    passed = skipped = 0
    for case in ET.parse(path).getroot().iter("testcase"):
        if case.get("result") == "skipped" or case.find("skipped") is not None:
            skipped += 1
        elif case.find("failure") is None and case.get("status") == "run":
            passed += 1
    return passed, skipped


def main():
    if len(sys.argv) != 3:
        print(__doc__.strip(), file=sys.stderr)
        return 2
    linux, wine = sys.argv[1:]
    if os.path.exists(linux):
        passed, skipped = linux_counts(linux)
        print(f"  end-to-end on Linux:      {passed} passed, {skipped} skipped")
    else:
        print("  end-to-end on Linux:      not run")
    if os.path.exists(wine):
        passed, skipped = wine_counts(wine)
        print(f"  end-to-end under Wine:    {passed} passed, {skipped} skipped")
    else:
        print("  end-to-end under Wine:    not run")
    return 0


if __name__ == "__main__":
    sys.exit(main())
