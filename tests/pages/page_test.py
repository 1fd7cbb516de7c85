"""The page of quon5-report in a real browser. Exit status 77, which counts as skipped, without one.

    page_test.py DIRECTORY_OF_PROGRAMS
"""

import re
import resource
import sys
import time
import unittest

import browser
from results import SmallTest

HOSTILE = "</script><script>document.title='broken'</script>"
MADE_WITHIN = 20.0  # seconds for both pages of the long test, with sanitizers
OPEN_WITHIN, ZOOM_WITHIN = 5.0, 150.0  # seconds, milliseconds; a sanitizer does not slow the browser


def made(test, *words):
    status, _, error = test.report("page=page.html", *words)
    assert status == 0, error
    return test.path("page.html")


class Page(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.browser = browser.Browser()

    @classmethod
    def tearDownClass(cls):
        cls.browser.__exit__()

    def open(self, page):
        self.browser.requests()  # those of the page before
        self.browser.log("browser")
        seconds = self.browser.open(page)
        self.assertEqual(self.browser.log("browser"), [])  # no error, nothing refused
        return seconds

    def texts(self, selector):
        return self.browser.run("return [...document.querySelectorAll(arguments[0])].map(e => e.textContent)",
                                selector)

    def trace(self, name, kind="now"):
        """Times and values of a channel as the page unpacks them."""
        return self.browser.run(
            "const view = quon5Traces, of = view.traces[arguments[1]].get(view.byName.get(arguments[0]));"
            "view.of(view.byName.get(arguments[0]));"
            "return Promise.all([of.times, of.values]).then(all => all.map(a => [...a].map(String)))",
            name, kind)

    def test_page_shows_the_result_and_asks_the_network_for_nothing(self):
        test = SmallTest()
        self.assertEqual(test.reduce(), 0)
        page = made(test)
        self.open(page)
        self.assertEqual([url for url in self.browser.requests() if not url.startswith("chrome:")
                          and not url.startswith("data:")], [f"file://{page}"])
        self.assertEqual(self.texts("#verdict"), ["Complete. 0 errors, 0 warnings."])
        rows = [line.split() for line in re.search(r"^ +0\n((?: +\d+ +\S+ \S+\n)+) +0\n", test.text(
            "results/M123/quon5.FTP"), re.M)[1].splitlines()]
        self.assertEqual(len(rows), 10)
        cells = self.texts("table.rows td")
        self.assertEqual([[cells[i], cells[i + 2], cells[i + 3]] for i in range(0, len(cells), 4)], rows)
        self.assertIn("The counts may differ", self.texts("#log")[0])
        self.assertEqual(self.trace("CVS_CD_NOX_MEA"),
                         [["-2", "-1", "0", "1", "2", "3", "4", "5"],
                          ["0.12", "0.15", "0.42", "4.6", "12.75", "8.3", "2.05", "0.61"]])
        self.assertEqual(self.trace("AT1_CW_NO_MEA@2")[1][6], "NaN")

    def test_channels_are_added_shifted_and_read_at_the_cursor(self):
        test = SmallTest()
        self.assertEqual(test.reduce(), 0)
        self.open(made(test))
        self.browser.run("document.getElementById('add-panel').click()")
        self.browser.run("const input = [...document.querySelectorAll('.add')].pop();"
                         "input.value = 'COOLANT_OUT_T'; input.dispatchEvent(new Event('change'))")
        self.assertEqual(self.texts(".panel:last-child .series b"), ["COOLANT_OUT_T"])
        self.browser.run("quon5Traces.showCursor(1.1)")
        shown = dict(zip(self.texts(".series b"), self.texts(".series .value")))
        self.assertEqual((shown["CVS_CD_NOX_MEA"], shown["COOLANT_OUT_T"]), ("4.60", "80.7"))
        # The deskew time is 4.6 s: at -1.6 stands what was logged at 3.0.
        self.browser.run("document.getElementById('deskew').click(); quon5Traces.showCursor(-1.6)")
        shown = dict(zip(self.texts(".series b"), self.texts(".series .value")))
        self.assertEqual((shown["CVS_CD_NOX_MEA"], shown["COOLANT_OUT_T"]), ("8.30", "80.1"))

    def test_hostile_texts_stay_texts(self):
        name = HOSTILE.replace(" ", "_").replace(",", "_")
        test = SmallTest(("ci_specs.dat", "COOLANT_OUT_T", name), ("em_bench.42", "@DESKEW_TIMES\n",
                         f"@DESKEW_TIMES\n{name}<img/src=x/onerror=alert(1)> 1 sec\n"))
        test.replace("call", "Development test", HOSTILE + "\xff__proto__")
        test.reduce()
        page = made(test)
        self.open(page)
        self.assertTrue(self.browser.run("return document.title").startswith("Test cell 12"))
        self.assertEqual(self.browser.run("return document.querySelectorAll('img, iframe').length"), 0)
        self.assertIn(HOSTILE, "".join(self.texts("#head")))
        self.assertIn(name, self.texts("#log .said")[0])
        self.assertEqual(self.browser.run("return quon5Traces.byName.has(arguments[0])", name), True)

    def test_equal_keywords_and_infinite_values(self):
        test = SmallTest()
        self.assertEqual(test.reduce(), 0)
        keywords, rest = test.text("quon_end.42").split("\n", 1)
        first = keywords.split(",")[2]
        test.write("quon_end.42", keywords.replace("CVS_CD_NOX_MEA", first) + "\n" + rest.replace("12.75", "inf"))
        self.open(made(test))
        name = f"{first} (2)"
        self.assertEqual(self.trace(name)[1][4], "Infinity")
        drawn = self.browser.run(
            "const view = quon5Traces; return view.addPanel([view.byName.get(arguments[0])])"
            ".then(panel => [panel.graph.yAxisRange()[1], panel.rows().map(row => String(row[1]))])", name)
        self.assertTrue(8.3 < drawn[0] < 20, drawn)
        self.assertEqual(drawn[1][4], "NaN")

    def test_failed_run_and_changes_are_shown(self):
        earlier, later = SmallTest(), SmallTest(("logr_data.42", "12.75", "13.00"))
        self.assertEqual((earlier.reduce(), later.reduce()), (0, 0))
        self.open(made(later, f"against={earlier.directory}"))
        self.assertIn("1 record differs, by 0.25, at 2", self.texts("#changes")[0])
        self.browser.run("document.querySelector('#changes .link').click()")
        self.assertEqual(self.browser.run("return quon5Traces.window.map(t => Math.round(t * 1000))"), [1825, 2175])
        self.assertEqual(self.trace("CVS_CD_NOX_MEA", "earlier")[1][4], "12.75")
        self.assertIn("CVS_CD_NOX_MEA (earlier)", self.texts(".series b"))
        failed = SmallTest()
        failed.path("em_bench.42").unlink()
        self.assertEqual(failed.reduce(), 1)
        self.open(made(failed))
        self.assertIn("Incomplete: the quon5 file is empty", self.texts("#verdict")[0])
        self.assertIn("2026-03-05 14:07:31", self.texts("#head")[0])  # as the log has it
        self.assertIn("Nothing: the result is not complete.", self.texts("#analysers")[0])
        self.assertIn("correct the argument", self.texts("#log .error")[0])
        self.assertIn("no records to draw", self.texts("#traces")[0])

    def test_long_test_opens_zooms_and_prints(self):
        test = SmallTest()
        records, channels = 18000, 400
        names = [f"CH_{c}" for c in range(channels)]
        with open(test.path("quon_end.42"), "w") as file:
            for line in (["LOG_TM", *names], ["sec"] + ["ppm"] * channels, ["0"] * (channels + 1),
                         ["sec"] * (channels + 1)):
                print(",".join(line), file=file)
            print("$", file=file)
            for i in range(records):
                values = ",".join(str(i * 7919 * (c + 1) % 1000 / 10) for c in range(8)) + f",{i}" * (channels - 8)
                print(f"{i / 10},{values}", file=file)
            print("*0", file=file)
        began = time.monotonic()
        chosen = made(test, f"channels={','.join(names[:20])}")
        self.assertLess(chosen.stat().st_size, 1e6)
        page = made(test)
        self.assertLess(time.monotonic() - began, MADE_WITHIN)
        self.assertLess(page.stat().st_size, 10e6)
        self.assertLess(resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss, 600e3)  # KiB
        self.assertLess(self.open(page), OPEN_WITHIN)
        panels = self.browser.run("return quon5Traces.addPanel([9, 10, 11]).then(() => quon5Traces.panels.length)")
        self.assertEqual(panels, 2)
        self.browser.drag(".plot", 0.1, 0.9)
        self.browser.drag(".plot", 0.25, 0.5)
        begin, end = self.browser.run("return quon5Traces.window")
        self.assertTrue(200 < begin < end < 1100, (begin, end))
        self.assertEqual(self.browser.run("return quon5Traces.panels.map(p => p.graph.xAxisRange())"),
                         [[begin, end]] * 2)
        zooms = self.browser.run("return performance.getEntriesByName('zoom').map(m => m.duration)")
        self.assertLess(min(zooms), ZOOM_WITHIN)
        # What dygraphs gets in a column is the smallest and the largest of its records.
        rows = self.browser.run("return quon5Traces.panels[0].rows()")
        seen = [row[1] for row in rows if begin <= row[0] <= end]
        logged = [i * 7919 % 1000 / 10 for i in range(records) if begin < i / 10 < end]
        self.assertEqual((min(seen), max(seen)), (min(logged), max(logged)))
        # A table that is too wide would make everything small.
        self.assertLess(self.browser.run("return document.documentElement.scrollWidth"), 1420)
        self.browser.run("window.printed = 0; addEventListener('beforeprint', () => {"
                         "printed = document.querySelectorAll('.printed path[d*=L]').length})")
        self.assertTrue(self.browser.pdf().startswith(b"%PDF"))
        self.assertEqual(self.browser.run("return printed"),
                         self.browser.run("return quon5Traces.panels.reduce((n, p) => n + p.series.length, 0)"))


if __name__ == "__main__":
    if not browser.is_there():
        print("chromium and chromedriver are not installed: the page is not tested in a browser")
        sys.exit(77)
    unittest.main(argv=sys.argv[:1])
