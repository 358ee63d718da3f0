"""qln-fp-tree page, looked at in a real browser. Run by scripts/test page."""

import collections
import csv
import json
import os
import pathlib
import random
import shlex
import shutil
import subprocess
import time
import unittest
import urllib.parse

from browser import Browser
from harness import BACKUP, PROGRAM, EndToEnd, record

TOOL = pathlib.Path(PROGRAM).with_name("qln-fp-tree")
AXE = TOOL.parents[1] / "axe"
ODD = (b'// </script><script>alert("1")</script><!-- &amp; \\u003c \'\xff\xe2\x82\xac '
       b'\xf0\x9f\x98\x80\xe2\x80\xa8\x00//-V501 \xe2\x80\xae\r\n')
AT = ODD.index(b"//-V501")
ODD_SHOWN = ('// </script><script>alert("1")</script><!-- &amp; \\u003c \'\ufffd\u20ac '
             '\U0001f600<U+2028>\u2400//-V501 <U+202E>')
GOES, STATES = ("agreed", "unjudged"), ("missing", "changed", "blocked")
HELD = (*STATES, "unsafe")
TAIL = b" would be code"
Marker = collections.namedtuple("Marker", "path line code fate keepers")


def kind_of(fate):
    return "goes" if fate in GOES else "held" if fate in HELD else "stays"


def in_words(markers):
    """As the page says how many of them go, are held back, and stay."""
    kinds = collections.Counter(kind_of(marker.fate) for marker in markers)
    words = {"goes": ("goes", "go"), "held": ("held back",) * 2, "stays": ("stays", "stay")}
    return {kind: f"{kinds[kind]} {words[kind][kinds[kind] != 1]}" for kind in words}


def judged(reports, contents, states):
    """The markers that raw reports {name: {path: {line: [(code, begin, end)]}}} list."""
    for path in sorted({path for report in reports.values() for path in report}):
        votes = {name: report[path] for name, report in reports.items() if path in report}
        for line in sorted({line for lines in votes.values() for line in lines}):
            lists = {name: lines.get(line) for name, lines in votes.items()}
            union = sorted({one for markers in lists.values() for one in markers or []},
                           key=lambda one: one[1])
            keepers = [name for name, markers in lists.items() if markers != union]
            fate = ("unlisted" if None in lists.values() else "differing") if keepers else (
                states.get(path) or ("unsafe" if TAIL in contents[path].split(b"\n")[line - 1]
                                     else GOES[len(votes) < len(reports)]))
            yield from (Marker(path, line, f"V{code:03}", fate, keepers) for code, _, _ in union)


class View(dict):
    """What is chosen; a dimension that is not in it lets everything pass."""

    def passes(self, marker, states, but=""):
        return all(key == but or {
            "fate": lambda: values in (marker.fate, kind_of(marker.fate)),
            "code": lambda: marker.code in values,
            "in": lambda: any(marker.path.startswith(folder + "/") for folder in values),
            "kept-by": lambda: but == "keepers" or set(values) & set(marker.keepers),
            "alone": lambda: but == "keepers" or len(marker.keepers) == 1,
            "source": lambda: states.get(marker.path) == values,
            "name": lambda: values in marker.path}[key]() for key, values in self.items())

    def address(self):
        return "#" + "&".join(f"{key}={urllib.parse.quote(value)}" for key, values in self.items()
                              for value in ([values] if isinstance(values, str) else values))


class Page(EndToEnd):
    @classmethod
    def setUpClass(cls):
        if not AXE.exists():
            subprocess.run(["npm", "install", "--silent", "--prefix", AXE, "axe-core"], check=True)
        cls.axe = (AXE / "node_modules/axe-core/axe.min.js").read_text()
        cls.browser = Browser()
        cls.addClassCleanup(cls.browser.close)

    def setUp(self):
        super().setUp()
        self.browser.look()

    def tearDown(self):
        self.assertEqual(self.browser.complaints, [])

    def make_page(self, *reports, root="root"):
        return subprocess.run([TOOL, "page", "-r", root, "-o", "page.html", *reports], text=True,
                              cwd=self.scratch, capture_output=True,
                              env={**os.environ, "TMPDIR": str(self.temp)})

    def open_page(self, *reports, address=""):
        done = self.make_page(*reports)
        self.assertEqual((done.returncode, done.stderr), (0, ""))
        self.browser.open(self.scratch / "page.html", address)

    def text(self, selector):
        """What a reader sees of the elements."""
        return self.browser.evaluate(
            f"[...document.querySelectorAll({json.dumps(selector)})].map((one) => one.innerText)")

    def click(self, selector, text=""):
        self.browser.evaluate(f"""[...document.querySelectorAll({json.dumps(selector)})].find(
            (one) => one.innerText.includes({json.dumps(text)})).click()""")

    def after_event(self, event, action):
        self.browser.evaluate(f"""new Promise((done) => {{
            addEventListener('{event}', () => setTimeout(done), {{ once: true }});
            {action};
        }})""")

    def focus(self):
        return self.browser.evaluate("document.activeElement.innerText.split('\\n')[0]")

    def address(self):
        return self.browser.evaluate("decodeURIComponent(location.hash)")

    def report_all(self, contents, reports):
        for path, content in contents.items():
            self.source(path, content)
        return [self.raw_report(name, *(record(self.root / path, contents[path], lines)
                                        for path, lines in report.items()))
                for name, report in reports.items()]

    def small_project(self):
        """Three sources and two reports, of which the second knows two of them."""
        contents = {"src/odd.cpp": b"\xff\n" + ODD + b"z //-V502//-V503\n",
                    "src/deep/b.cpp": b"//-V502\n", "other.cpp": b"//-V7\n"}
        odd, deep, other = contents
        return self.report_all(contents, {
            "one.json": {odd: {2: [(501, AT, AT + 7)], 3: [(502, 2, 9), (503, 9, 16)]},
                         deep: {1: [(502, 0, 7)]}, other: {1: [(7, 0, 5)]}},
            "two.json": {odd: {2: [(501, AT, AT + 7)], 3: [(502, 2, 9)]}, deep: {}}})

    def random_project(self, chance):
        contents, reports = {}, {f"build-{name}.json": {} for name in "abcde"}
        for number in range(40):
            path = f"{chance.choice('pqr')}/{chance.choice('st')}/{number}.cpp"
            codes = [[chance.randrange(1, 9) for _ in range(chance.choice((1, 1, 2)))]
                     for _ in range(12)]
            contents[path] = b"".join(
                b"".join(b"//-V%d" % code for code in line) + TAIL * (chance.random() < 0.2 and not {2, 3} & {*line}) + b"\n"
                for line in codes)
            whole = {number: [(code, 5 * at, 5 * at + 5) for at, code in enumerate(line)]
                     for number, line in enumerate(codes, 1)}
            for index, report in enumerate(reports.values()):
                if index == 0 or chance.random() < 0.8:
                    report[path] = {line: markers[:chance.choice((9, 9, 9, 1))]
                                    for line, markers in whole.items() if chance.random() < 0.93}
        return contents, reports

    def test_every_number_in_random_views(self):
        chance = random.Random(20)
        contents, reports = self.random_project(chance)
        names = self.report_all(contents, reports)
        states = dict(zip(chance.sample(sorted(contents), 9), STATES * 3))
        for path, state in states.items():
            {"missing": (self.root / path).unlink, "changed": lambda: self.source(path, b"changed"),
             "blocked": lambda: self.source(path + BACKUP, b"other")}[state]()
        markers = list(judged(reports, contents, states))
        self.compare_all(markers, states, names)
        self.compare_all([one for one in markers if one.path[0] in "pq" and one.code not in ("V002", "V003")],
                         states, names, "--path", "p", "--path", "q/", "--without-code", "2,V003")

    def compare_all(self, markers, states, names, *filters):
        chance = random.Random(len(markers))
        self.open_page(*filters, *names)
        for name in "codes", "folders", "keepers":
            self.browser.evaluate(f"byId('{name}-fold').hidden || byId('{name}-fold').click()")
        for kind in "goes", "held", "stays":
            own = [marker for marker in markers if kind_of(marker.fate) == kind]
            fates = collections.Counter(marker.fate for marker in own)
            shown = [int(text.split()[0]) for text in self.text(f"div:has(> .fact.{kind}) .fact")]
            self.assertEqual((shown[0], sorted(shown[1:])), (len(own), sorted(fates.values())))
        for _ in range(40):
            self.compare_view(self.random_view(chance, markers, names), markers, states, names)

    def random_view(self, chance, markers, names):
        some = lambda values, most: chance.sample(sorted(values), chance.randint(1, most))
        view = {"fate": chance.choice(["goes", "held", "stays", *GOES, *HELD, "unlisted", "differing"]),
                "code": some({one.code for one in markers}, 4), "kept-by": some(names, 3),
                "in": some({part for one in markers for part in (one.path[0], one.path[:3])}, 3), "alone": "1",
                "source": chance.choice(STATES), "name": chance.choice(["1", "s/2", ".cpp"])}
        return View({key: value for key, value in view.items() if chance.random() < 0.3})

    def compare_view(self, view, markers, states, names):
        self.browser.evaluate("history.replaceState(null, '', '#other')")
        self.after_event("hashchange", f"location.hash = {json.dumps(view.address())}")
        rows = lambda id: {row[0].removeprefix("✓ "): row[1] for row in self.browser.evaluate(
            f"[...document.querySelectorAll('#{id} .row')].map((row) => [row.children[0].innerText, "
            "row.children[2].innerText.trim()])") if row[1]}
        by = lambda but, of: {key: " ".join(words for words in in_words(group).values() if words[:2] != "0 ")
                              for key, group in grouped(
                                  [one for one in markers if view.passes(one, states, but)], of).items()}
        shown = [one for one in markers if view.passes(one, states)]
        self.assertEqual(rows("codes"), by("code", lambda one: one.code), view)
        self.assertEqual(rows("folders"), by("in", lambda one: one.path[0] + "/"), view)
        alone = collections.Counter()
        for one in markers:
            if view.passes(one, states, "keepers"):
                alone.update((name, len(one.keepers) == 1) for name in one.keepers)
        self.assertEqual(rows("keepers"), {name[6]: " ".join(
            f"{alone[name, is_alone]} {word}" for is_alone, word in ((True, "alone"), (False, "shared"))
            if alone[name, is_alone]) for name in names if alone[name, True] + alone[name, False]}, view)
        kinds = in_words(shown)
        count = len({one.path for one in shown})
        self.assertEqual(self.text("#shown")[0], "No markers are like that." if not shown else (
            f"{len(shown)} marker{'s' * (len(shown) > 1)} in {count} file{'s' * (count > 1)}: " + ", ".join(
                words for kind, words in kinds.items() if kind != "held" or words[0] != "0") + "."), view)
        table = [row.split("\t") for row in self.text("#table tbody tr")]
        self.assertEqual({row[0].split("\n")[0]: [int(cell) for cell in row[-3:]] for row in table}, {
            path: [sum(kind_of(one.fate) == kind for one in group) for kind in ("goes", "held", "stays")]
            for path, group in grouped(shown, lambda one: one.path).items()}, view)
        sums = [sum(map(int, row[-3:])) for row in table]
        self.assertEqual(sums, sorted(sums, reverse=True))
        lines = list(csv.reader(self.browser.evaluate("csv()").splitlines()))[1:]
        self.assertEqual(sorted(lines), sorted(
            [one.path, str(one.line), one.code, kind_of(one.fate), one.fate,
             "; ".join(name[6] for name in one.keepers)] for one in shown), view)
        self.compare_command([one for one in shown if one.fate in GOES], markers)

    def compare_command(self, goes, markers):
        """The view's command has what goes of the view, and else only what no cleanup can take out."""
        words = shlex.split(self.text("#command")[0])
        if not goes:
            self.assertEqual(" ".join(words), "Nothing of this can be cleaned.")
            return
        self.assertEqual(words[:3], ["qln-fp-tree", "clean", "--skip"])
        subprocess.run([TOOL, "select", "-o", "part.json", *words[3:]], check=True, cwd=self.scratch)
        files = json.loads((self.scratch / "part.json").read_bytes())["files"]
        taken = {(file["path"], line["line"], f"V{marker['code']:03}") for file in files
                 for line in file["lines"] for marker in line["markers"]}
        held, wanted = ({one[:3] for one in some if one.fate in fates}
                        for some, fates in ((markers, HELD), (goes, GOES)))
        self.assertEqual({(path.removeprefix("|?|/"), *rest) for path, *rest in taken} - held, wanted)

    def test_the_address(self):
        reports = self.small_project()
        self.open_page(*reports, address="#fate=stays&code=V502,V503&file=src/odd.cpp:3")
        self.assertEqual(self.text("#shown"), ["3 markers in 2 files: 0 go, 3 stay."])
        self.assertEqual((self.focus(), self.text("[aria-current]")), ("3", ["3"]))
        self.assertEqual(self.text(".chip"), ["stays ✕", "V502 ✕", "V503 ✕"])
        self.click(".chip", "V503")
        self.after_event("hashchange", "document.querySelector('#table .line-number[href]').click()")
        self.assertEqual(self.address(), "#fate=stays&code=V502&file=src/odd.cpp:2")
        self.browser.evaluate("choose({ name: 'deep' })")
        self.browser.load("Page.reload")
        state = lambda: (self.text(".file"), self.browser.evaluate("byId('filter').elements.name.value"))
        self.assertEqual(state(), (["src/deep/b.cpp"], "deep"))
        self.after_event("hashchange", "history.back()")
        self.assertEqual(state(), (["src/deep/b.cpp", "src/odd.cpp"], ""))
        self.click("#show-all")
        self.assertEqual((self.address(), len(self.text(".file"))), ("", 3))

    def test_keys_and_focus(self):
        self.open_page(*self.small_project())
        for key, address in (("n", "src/odd.cpp:2"), ("n", "src/odd.cpp:3"), ("n", "other.cpp:1"),
                             ("n", "src/deep/b.cpp:1"), ("n", "src/deep/b.cpp:1"), ("p", "other.cpp:1")):
            self.browser.press(key)
            self.assertEqual((self.address(), self.focus()), (f"#file={address}", address[-1]))
        self.browser.press("?")
        self.assertEqual(self.focus(), "")
        self.assertTrue(self.browser.evaluate("byId('keys').open"))
        self.browser.press("Escape")
        self.browser.evaluate("document.querySelector('.look').focus()")
        self.browser.press("Enter")
        self.assertEqual(self.focus(), "src")
        self.browser.evaluate("document.querySelector('#trail button').focus()")
        self.browser.press("Enter")
        self.assertEqual(self.focus(), "By folder")
        for selector in "#codes .row", "#folders .row", ".chip", ".chip", ".file", "#keepers .row", ".fact":
            self.browser.evaluate(f"document.querySelector({json.dumps(selector)}).focus()")
            self.browser.press("Enter")
            self.assertNotEqual(self.browser.evaluate("document.activeElement.tagName"), "BODY", selector)

    def test_what_is_said(self):
        self.open_page(*self.small_project())
        self.browser.evaluate("document.querySelectorAll('.file').forEach((one) => one.click())")
        self.assertEqual(self.text(".note"), ["named by 1 of 2 reports"])
        self.assertEqual(self.text(".line code"), [
            "\ufffd", ODD_SHOWN, "z //-V502//-V503", "//-V7", "//-V502"])
        self.assertEqual(self.text(".line del"), ["//-V501", "//-V7"])
        self.assertEqual(self.text(".line mark"), ["//-V502", "//-V503", "//-V502"])
        self.assertEqual(self.text(".said li"), [
            "V501 goes: both reports list it.",
            "V502 and V503 stay: two lists only V502 there; one lists them.",
            "V007 goes: two does not name the file; one lists it.",
            "V502 stays: two does not list the line; one lists it."])

    def test_many_reports_fold(self):
        content = b"//-V5\n"
        path = self.source("a.cpp", content)
        reports = [self.raw_report(f"nightly-{name}.json", record(path, content, lines))
                   for name, lines in [("x", {}), *((f"n{at}", {1: [(5, 0, 5)]}) for at in range(9))]]
        self.open_page(*reports, address="#file=a.cpp")
        self.assertEqual(self.text(".said"), ["V005 stays: x does not list the line; 9 others list it."])
        self.assertEqual(self.text("#keepers .row"), ["x\n1 alone"])
        self.click(".fold")
        self.assertIn("n7 and n8 list it", self.text(".said")[0])

    def test_whether_it_can_be_trusted(self):
        path, content = "a.cpp", b"//-V5\n//-V6\n"
        whole = {1: [(5, 0, 5)], 2: [(6, 0, 5)]}
        one, cut, empty = self.report_all({path: content}, {
            "one.json": {path: whole}, "cut.json": {path: whole}, "empty.json": {}})
        text = (self.scratch / cut).read_text()
        (self.scratch / cut).write_text(text + text[:70])
        done = self.make_page(one, cut, empty, "none.json", "../" + self.scratch.name + "/one.json")
        self.assertEqual(done.returncode, 1)
        self.assertEqual(len(done.stderr.splitlines()), 4)
        self.browser.open(self.scratch / "page.html")
        self.assertEqual(self.text("#warnings li"), [
            line.removeprefix("qln-fp-tree: ") for line in done.stderr.splitlines()])
        three, few = self.report_all(dict.fromkeys("abc", content), {
            "three.json": dict.fromkeys("abc", whole), "few.json": {"a": whole}})
        shutil.copy(self.scratch / three, self.scratch / "other.json")
        self.open_page(three, few, "other.json")
        self.assertIn("three and other say the same", self.text("#notices")[0])
        self.assertEqual([text[:16] for text in self.text("#warnings li")], ["few names 1 file"])
        os.rename(self.root / path, self.root / "b.cpp")
        self.open_page(one)
        self.assertEqual(self.text("#warnings:not([hidden])"), [])
        self.assertEqual(self.text(".fact"), ["0 can go", "2 agreed on, but held back", "2 in 1 missing file",
                                              "0 stay"])
        self.assertIn("wrong folder", self.text("#notices")[0])
        self.click("#notices button")
        self.assertEqual((self.text(".file"), self.address()), ([path], "#source=missing"))
        self.click(".file")
        self.assertEqual(self.text(".line code"), ["not shown"] * 2)
        none = self.raw_report("none.json", record(self.root / "b.cpp", content, {}))
        self.open_page(none)
        self.assertEqual(self.text("#none"), ["No report lists a redundant marker."])

    def test_what_is_not_safe(self):
        content = b"int a; //-V5\nint b; //-V6 tail\n"
        self.open_page(*self.report_all({"a.cpp": content}, {
            "one.json": {"a.cpp": {1: [(5, 7, 12)], 2: [(6, 7, 12)]}}}), address="#fate=unsafe&file=a.cpp:2")
        self.assertEqual(self.text(".fact"), ["1 can go", "1 judged by every report", "1 agreed on, but held back",
                                              "1 not safe to take out", "0 stay"])
        self.assertRegex(self.text(".said li")[1], r"^V006 goes, but is not safe to take out \(.*\): the report lists it\.$")

    def test_names_and_texts_that_hide(self):
        hidden = "".join(map(chr, (0x61c, 0x200b, 0x200f, 0x202e, 0x2060, 0x2065, 0x2069, 0xfeff, 0xa0)))
        content = f"{hidden}//-V5\n".encode()
        at = content.index(b"/")
        name = f" a{hidden}.cpp"
        self.open_page(*self.report_all({name: content}, {f"o{hidden}e": {name: {1: [(5, at, at + 5)]}}}))
        self.click(".file")
        seen = self.browser.evaluate("document.title + document.body.innerText + csv()")
        self.assertFalse(set(hidden) & set(seen))
        shown = "".join(f"<U+{ord(one):04X}>" for one in hidden)
        self.assertEqual(self.text(".file"), [f"\u2423a{shown}.cpp"])
        self.assertEqual(self.text(".line code"), [f"{shown}//-V5"])

    def test_looks(self):
        reports = self.small_project()
        (self.root / "other.cpp").unlink()
        self.browser.call("Page.addScriptToEvaluateOnNewDocument", source="""window.shift = 0;
            new PerformanceObserver((list) => list.getEntries().forEach(({ value }) => { shift += value; }))
                .observe({ type: 'layout-shift', buffered: true });""")
        for width, scheme, forced in ((1280, "light", "none"), (1280, "dark", "none"), (360, "light", "none"),
                                      (360, "dark", "none"), (1280, "light", "active"), (360, "dark", "active")):
            with self.subTest(width=width, scheme=scheme, forced=forced):
                self.browser.look(width, prefers_color_scheme=scheme, forced_colors=forced)
                self.open_page(*reports)
                self.assertEqual(self.browser.evaluate(
                    "new Promise((done) => setTimeout(() => done(shift), 200))"), 0)
                self.click("#sums .fact", "stay")
                self.browser.evaluate("""document.querySelectorAll('details').forEach((one) => { one.open = true; });
                    document.querySelectorAll('.file').forEach((one) => one.click());""")
                self.assertLessEqual(self.browser.evaluate("document.documentElement.scrollWidth"), width)
                self.browser.evaluate(self.axe + "; 0")
                self.assertEqual(self.browser.evaluate("""axe.run().then(({ violations }) =>
                    violations.map(({ id, nodes }) => [id, nodes[0].html]))"""), [])
                self.assertEqual(self.browser.evaluate(
                    "getComputedStyle(document.querySelector('del')).textDecorationLine"),
                    "line-through" if forced == "active" else "none")
                self.assertEqual(forced == "active", self.browser.evaluate("""getComputedStyle(
                    document.querySelector('mark')).color === getComputedStyle(document.body).color"""))
        self.assertEqual(self.browser.evaluate("document.querySelectorAll('nav [aria-pressed], .look[aria-pressed]').length"), 0)
        self.browser.look(media="print")
        self.browser.evaluate("dispatchEvent(new Event('beforeprint'))")
        self.assertEqual(self.text("#printed"), ["2 of 2 files, 2 of them opened; from the reports one.json and two.json."])
        self.assertIsNone(self.browser.evaluate("byId('filter').offsetParent"))
        # What is drawn as a button is not repeated on each page.
        self.assertEqual(self.browser.evaluate("getComputedStyle(document.querySelector('thead button')).display"), "contents")

    def test_large(self):
        lines = 70_000
        content = b"//-V5\n" * lines + b"x" * 20_000 + b"//-V6\n"
        codes = b"".join(b"//-V%d\n" % code for code in range(1000, 4000))
        self.open_page(*self.report_all({"long.cpp": content, "codes.cpp": codes}, {"one.json": {
            "long.cpp": {**{line: [(5, 0, 5)] for line in range(1, lines + 1)},
                         lines + 1: [(6, 20_000, 20_005)]},
            "codes.cpp": {line: [(999 + line, 0, 8)] for line in range(1, 3001)}}}))
        self.assertIn("with no others", self.text("#made-of")[0])
        self.click("#codes-fold")
        self.assertLess(len(self.text("#codes .row")), 200)
        self.click(".file", "long")
        self.assertLess(len(self.text(".listed")), 1000)
        self.after_event("hashchange", f"location.hash = '#file=long.cpp:{lines + 1}&name=long'")
        self.assertEqual(self.text(".line:has([aria-current]) code"),
                         ["[… 19800 bytes left out …]" + "x" * 200 + "//-V6"])

    def test_copies_and_saves(self):
        self.open_page(*self.small_project(), address="#file=src/odd.cpp")
        self.browser.call("Browser.setDownloadBehavior", behavior="allow", downloadPath=str(self.scratch))
        for selector, told in ((".copy", "Copied: src/odd.cpp:2"),
                               ("#copy-command", "Copied: qln-fp-tree clean -r root one.json two.json")):
            self.browser.evaluate(f"document.querySelector('{selector}').focus()")
            self.browser.press("Enter")
            self.assertEqual(self.text("#told"), [told])
        self.click("#csv")
        saved = self.scratch / "markers.csv"
        for _ in range(100):
            if saved.exists():
                break
            time.sleep(0.1)
        self.assertIn("other.cpp,1,V007,goes,unjudged,", saved.read_text().splitlines())


def grouped(markers, of):
    groups = collections.defaultdict(list)
    for marker in markers:
        groups[of(marker)].append(marker)
    return groups


if __name__ == "__main__":
    unittest.main()
