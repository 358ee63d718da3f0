"""qln-fp-tree page, looked at in a real browser. Run by scripts/test page."""

import json
import os
import pathlib
import subprocess
import unittest

from browser import Browser
from harness import PROGRAM, EndToEnd, record

TOOL = pathlib.Path(PROGRAM).with_name("qln-fp-tree")
ODD = (b'</script><script>alert("1")</script><!-- &amp; \\u003c \'\xff\xe2\x82\xac '
       b'\xf0\x9f\x98\x80\xe2\x80\xa8\x00//-V501 \xe2\x80\xae\r\n')
AT = ODD.index(b"//-V501")
ODD_SHOWN = ('</script><script>alert("1")</script><!-- &amp; \\u003c \'\ufffd\u20ac '
             '\U0001f600\ufffd\u2400//-V501 \ufffd')


class Page(EndToEnd):
    @classmethod
    def setUpClass(cls):
        cls.browser = Browser()
        cls.addClassCleanup(cls.browser.close)

    def tearDown(self):
        self.assertEqual(self.browser.complaints, [])

    def open_page(self, *reports):
        subprocess.run([TOOL, "page", "-r", self.root, "-o", "page.html", *reports], check=True,
                       cwd=self.scratch, env={**os.environ, "TMPDIR": str(self.temp)})
        self.browser.open(self.scratch / "page.html")

    def text(self, selector):
        """What a reader sees of the elements."""
        return self.browser.evaluate(
            f"[...document.querySelectorAll({json.dumps(selector)})].map((one) => one.innerText)")

    def choose(self, field, value):
        self.browser.evaluate(f"""{{
            const field = document.querySelector('form').elements[{json.dumps(field)}];
            field.value = {json.dumps(value)};
            (field[0] ?? field).dispatchEvent(new Event('input', {{ bubbles: true }}));
        }}""")

    def click(self, selector, text):
        self.browser.evaluate(f"""[...document.querySelectorAll({json.dumps(selector)})].find(
            (one) => one.innerText.includes({json.dumps(text)})).click()""")

    def small_project(self):
        """Three sources and two reports, of which the second knows two of them."""
        contents = {"src/odd.cpp": b"\xff\n" + ODD + b"z //-V502//-V503\n",
                    "src/deep/b.cpp": b"//-V502\n", "other.cpp": b"//-V7\n"}
        odd, deep, other = contents
        first = {odd: {2: [(501, AT, AT + 7)], 3: [(502, 2, 9), (503, 9, 16)]},
                 deep: {1: [(502, 0, 7)]}, other: {1: [(7, 0, 5)]}}
        second = {odd: {2: [(501, AT, AT + 7)], 3: [(502, 2, 9)]}, deep: {}}
        for name, content in contents.items():
            self.source(name, content)
        return [self.raw_report(name, *(record(self.root / path, contents[path], lines)
                                        for path, lines in report.items()))
                for name, report in (("one.json", first), ("two.json", second))]

    def test_numbers_and_filters(self):
        reports = self.small_project()
        self.open_page(*reports)
        goes = sum(len(codes) for lines in self.merged(*reports).values()
                   for codes in lines.values())
        self.assertEqual(self.text(".fact"), [f"{goes} markers go", "3 markers stay"])
        self.assertEqual(self.text("#codes .row"), [
            "V502\n0 go 2 stay", "V007\n1 goes 0 stay", "V501\n1 goes 0 stay", "V503\n0 go 1 stays"])
        self.assertEqual(self.text("#folders .row"), [
            "src/\n1 goes 3 stay", "files in this folder itself\n1 goes 0 stay"])
        everything = ["other.cpp", "src/deep/b.cpp", "src/odd.cpp"]
        self.assertEqual(self.text(".file"), everything)
        for field, value, files in (
                ("fate", "goes", [everything[0], everything[2]]),
                ("fate", "disagrees", everything[1:]), ("fate", "unnamed", everything[:1]),
                ("fate", "all", everything), ("name", "ODD", everything[2:]), ("name", "", everything)):
            self.choose(field, value)
            self.assertEqual(self.text(".file"), files, (field, value))
        self.click("#folders button", "src/")
        self.assertEqual(self.text(".file"), everything[1:])
        self.click("#folders button", "deep/")
        self.assertEqual(self.text("#shown"), [
            "1 marker in 1 file (in src/deep): 0 go, 1 stays."])
        self.click("#trail button", "All folders")
        self.click("#codes button", "V502")
        self.assertEqual(self.text(".file"), everything[1:])
        self.assertEqual(self.text("#codes [aria-pressed=true] .label"), ["V502"])
        self.click("form button", "Show all")
        self.browser.evaluate("new Promise((done) => setTimeout(done))")
        self.assertEqual(self.text("#shown"), ["5 markers in 3 files: 2 go, 3 stay."])

    def test_a_file_opened_with_the_keyboard(self):
        self.open_page(*self.small_project())
        self.browser.evaluate("document.querySelectorAll('thead button')[2].focus()")
        for key in "Tab", " ", "Tab", "Tab", "Enter":
            self.browser.press(key)
        self.assertEqual(self.text("[aria-expanded=true]"), ["other.cpp", "src/odd.cpp"])
        self.assertEqual(self.text(".note"), ["named by 1 of 2 reports"])
        self.assertEqual(self.text(".line code")[1:], ["\ufffd", ODD_SHOWN, "z //-V502//-V503"])
        self.assertEqual(self.text(".line del"), ["//-V7", "//-V501"])
        self.assertEqual(self.text(".line mark"), ["//-V502", "//-V503"])
        self.assertEqual(self.text(".said li"), [
            "V007 goes one.json lists it. two.json does not name the file.",
            "V501 goes Both reports list it.",
            "V502 stays one.json lists it with V503. two.json lists it alone.",
            "V503 stays one.json lists it with V502. two.json lists other markers there: V502."])

    def test_sources_that_are_not_as_analyzed(self):
        reports = self.small_project()
        (self.root / "other.cpp").unlink()
        (self.root / "src/odd.cpp").write_bytes(b"changed")
        self.open_page(*reports)
        self.browser.evaluate("document.querySelectorAll('.file').forEach((one) => one.click())")
        self.assertIn("2 sources are missing or not as analyzed", self.text("#notices")[0])
        self.assertEqual(self.text(".note"), [
            "missing; named by 1 of 2 reports", "changed since the analysis"])
        self.assertEqual(self.text(".line code"), ["//-V502"])
        self.assertEqual(self.text(".bare"), ["Line 1", "Line 2", "Line 3"])

    def test_fits_a_telephone_and_the_dark(self):
        self.browser.call("Emulation.setDeviceMetricsOverride", width=360, height=740,
                          deviceScaleFactor=1, mobile=True)
        self.browser.call("Emulation.setEmulatedMedia",
                          features=[{"name": "prefers-color-scheme", "value": "dark"}])
        self.open_page(*self.small_project())
        self.browser.evaluate("document.querySelectorAll('.file').forEach((one) => one.click())")
        self.assertLessEqual(self.browser.evaluate("document.documentElement.scrollWidth"), 360)
        self.assertEqual(self.browser.evaluate(
            "getComputedStyle(document.documentElement).backgroundColor"), "rgb(20, 24, 29)")
        self.browser.call("Emulation.clearDeviceMetricsOverride")
        self.browser.call("Emulation.setEmulatedMedia", features=[])

    def test_forty_thousand_markers(self):
        records = []
        for file in range(400):
            codes = [500 + (file + line) % 40 for line in range(100)]
            content = b"".join(b"//-V%d\n" % code for code in codes)
            path = self.source(f"{file % 7}/{file}.cpp", content)
            records.append(record(path, content, {
                line: [(code, 0, 7)] for line, code in enumerate(codes, 1)}))
        self.open_page(self.raw_report("one.json", *records))
        self.assertEqual(self.text("#shown"), ["40,000 markers in 400 files: 40,000 go, 0 stay."])
        self.click("#codes button", "V500")
        self.assertIn("(V500): 1,000 go", self.text("#shown")[0])
        self.click("#folders button", "3/")
        self.click("#pager button", "Next files")
        self.assertEqual(self.text("#pager span"), ["51 to 57 of 57"])
        self.click(".file", "3/")
        self.assertEqual(len(self.text(".listed")), 100)

    def test_more_lines_than_a_call_takes_arguments(self):
        content = b"//-V5\n" * 150_000
        path = self.source("long.cpp", content)
        self.open_page(self.raw_report("one.json", record(path, content, {
            line: [(5, 0, 5)] for line in range(1, 150_001)})))
        self.click(".file", "long")
        self.assertEqual(len(self.text(".listed")), 10_000)
        self.assertEqual(self.text(".more"), ["Show more of this file (1,400 places left)"])


if __name__ == "__main__":
    unittest.main()
