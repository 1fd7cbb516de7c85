"""quon5-report and quon5-compare from outside, on the small test of the documents.

    report_test.py DIRECTORY_OF_PROGRAMS
"""

import json
import os
import shutil
import sys
import unittest

from results import ROOT, SmallTest, run

sys.path.append("/usr/lib/python3/dist-packages")  # where Debian puts jsonschema
import jsonschema  # noqa: E402

CLD = ("em_bench.42", "@CONT_CHAN_UL_VAL\n",
       "@CONT_CHAN_PRETEST_SPAN\nNOX 90.0 ppm\n@CONT_CHAN_POSTTEST_SPAN\nNOX 87.3 ppm\n"
       "@CONT_CHAN_REF_SPAN\nNOX 90.0 ppm\n@CONT_CHAN_UL_VAL\n")
SCHEMA = json.loads((ROOT / "docs" / "report.schema.json").read_text())


class Report(unittest.TestCase):
    maxDiff = None

    def document(self, test, *words):
        status, text, error = test.report("json=-", *words)
        self.assertEqual((status, error), (0, ""))
        document = json.loads(text)
        jsonschema.validate(document, SCHEMA)
        return document

    def test_document_holds_what_the_files_say(self):
        test = SmallTest(CLD)
        self.assertEqual(test.reduce(), 0)
        document = self.document(test)
        self.assertEqual(document["verdict"]["text"], "Complete. 0 errors, 0 warnings.")
        self.assertEqual(document["verdict"]["notes"], ["drift beyond the limit at 1 analyser"])
        head = document["head"]
        self.assertEqual({name: head[name] for name in head if name not in ("reduced", "software")},
                         {"start_of_test": "2026-03-05T14:07:31", "cell": 12, "map": "M123",
                          "cycle": "FTP", "activity": "Development test", "run_number": "42",
                          "filter": "4711"})
        rows = {row["row"]: (row["value"], row["units"]) for row in document["rows"]}
        self.assertEqual(list(rows), [1, 2, 3, 4, 5, 6, 7, 8, 10, 35])
        self.assertEqual((rows[1], rows[35]), ((29.15, "in_hg_32"), (5.0, "in")))
        self.assertEqual([(row["code"], row["value"], row["explained"]) for row in document["codes"]][1],
                         (2, 2, "hot start"))
        self.assertEqual([row["text"] for row in document["filter_data"]],
                         ["6.000000", "29.146094", "0.205000", "2.750000", "0.110000"])
        nox = document["analysers"][0]
        self.assertEqual((nox["channel"], nox["method"], nox["upper"], round(nox["span_drift_percent"], 9),
                          nox["zero_drift_percent"], nox["deskew"]["value"]),
                         ("CVS_CD_NOX_MEA", "CLD", {"value": 100.0, "text": "100.0", "units": "ppm"},
                          -3.0, None, 4.6))
        self.assertEqual(document["leak_tests"][2],
                         {"train": "FTIR_SAMPL", "number": "1", "channels": ["AT1_CW_NO_MEA@2"],
                          "flow": {"value": 10.2, "text": "10.2", "units": "lpm"},
                          "leak": {"value": 0.01, "text": "0.01", "units": "lpm"},
                          "date": "2026-03-05T12:47"})
        self.assertEqual(document["statistics"],
                         [{"channel": "ECM_ENG_SPEED", "initial": 600.0, "mean": 1200.0,
                           "minimum": 600.0, "maximum": 1520.0, "standard_deviation": 464.9301,
                           "units": "rpm"}])
        self.assertEqual(document["emission_limits"], [{"limit": "BSNOX", "value": "0.27",
                                                        "units": "g/kw_hr", "digits": "2"}])
        self.assertEqual(document["overrides"][1], {"ecm": "main", "variable": "FAN_CLUTCH", "value": "OFF"})
        self.assertEqual(document["cell_configuration"][1],
                         {"option": "COMB_AIR", "value": "MEASURED", "keyword": "COMB_AIR_VP",
                          "section": "@CW_H2O_INPUT_OPTIONS"})
        self.assertEqual(document["composite"]["phases"],
                         [{"phase": "start", "from": -2.0, "to": -1.0},
                          {"phase": "cycle", "from": 0.0, "to": 4.0},
                          {"phase": "overrun", "from": 5.0, "to": 5.0}])
        self.assertEqual([(entry["module"], entry["severity"], entry["message"])
                          for entry in document["log"]["entries"]],
                         [("data_defn", "information", "CYCLE_COUNTS")])

    def test_failed_run_says_what_is_missing_and_why(self):
        test = SmallTest(("cell_cfg.dat", "FUEL_CONSUMED\n", "NO_SUCH\n"))
        self.assertEqual(test.reduce(), 1)
        document = self.document(test)
        self.assertEqual(document["verdict"]["text"],
                         "Incomplete: the quon5 file ends behind row 7, without emission configuration; "
                         "there is no composite file. 1 error, 1 warning.")
        self.assertEqual(document["files"][0]["problems"], [{"line": 18, "text": "the file ends in the value rows"}])
        self.assertEqual([row["row"] for row in document["rows"]], [1, 2, 3, 4, 5, 6, 7])
        names = [entry["message"] for entry in document["log"]["entries"]]
        self.assertIn("NO_FUEL_CONSUMED", names)
        self.assertIn("@FUEL_CONSUMED_LBL", document["log"]["messages"]["NO_FUEL_CONSUMED"]["to_do"])
        for _ in range(2):  # the second page takes the place of the first
            self.assertEqual(test.report("page=page.html", "json=document.json"), (0, "", ""))
        self.assertEqual(json.loads(test.text("document.json"))["verdict"], document["verdict"])

    def test_missing_values_and_outputs_of_an_earlier_run_are_named(self):
        test = SmallTest()
        self.assertEqual(test.reduce(), 0)
        test.write("restr", "")
        shutil.copy(test.path("restr"), test.path("tests/maps/M123/restr.dat"))
        os.chmod(test.path("quon_end.42"), 0)
        os.utime(test.path("quon_end.42"), (1, 1))
        test.replace("run", "quon_end.42", "results/M123/none/quon_end.42")
        self.assertEqual(test.reduce(), 0)
        os.chmod(test.path("quon_end.42"), 0o644)
        self.assertEqual(self.document(test)["verdict"]["missing"],
                         ["no value in row 6, 7",
                          "quon_end.42 is older than the quon5 file: that of an earlier run"])

    def test_refuses_what_would_lose_a_file_or_mislead(self):
        test = SmallTest()
        self.assertEqual(test.reduce(), 0)
        before = test.text("quon_end.42")
        for words, message in [
                (["page=quon_end.42"], "quon_end.42 is a file of the call, it is not written"),
                (["json=error.log"], "error.log is a file of the call, it is not written"),
                (["page=p", "step=1"], "call= and <step=1> are both given; the call has all words of the task"),
                ([], "neither page= nor json= is given, see quon5-report --help"),
                (["page=p", "channels=NOX"], "channels=<NOX> names no channel of the composite file"),
                (["page=p", "against=tests"], "against=tests holds none of the result files"),
                (["page=p", "drift_limit=-1"], "drift_limit= is no number of percent")]:
            with self.subTest(words=words):
                status, _, error = test.report(*words)
                self.assertEqual((status, error), (1, f"quon5-report: {message}\n"))
        self.assertEqual(test.text("quon_end.42"), before)


class Compare(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        self.earlier, self.later = SmallTest(), SmallTest(
            ("logr_data.42", "12.75", "13.00"), ("ci_specs.dat", "0.27", "0.28"))
        self.assertEqual((self.earlier.reduce(), self.later.reduce()), (0, 0))

    def compare(self, *words, old="", new=""):
        return run("quon5-compare", str(self.earlier.path(old)), str(self.later.path(new)), *words)

    def test_directories_differ_by_name_row_and_channel(self):
        status, text, error = self.compare()
        self.assertEqual((status, error), (1, ""))
        self.assertEqual(text,
                         "quon_end.42: changed channel CVS_CD_NOX_MEA: 1 record differs, by 0.25, at 2\n"
                         "results/M123/quon5.FTP: changed @FEL_VAL BSNOX: 0.27 g/kw_hr 2 -> 0.28 g/kw_hr 2\n")
        self.assertEqual(self.compare("ignore=@FEL_VAL,channel CVS_CD_NOX_MEA"), (0, "", ""))
        self.assertEqual(self.compare("tolerance=0.1"), (0, "", ""))
        found = json.loads(self.compare("format=json")[1])
        self.assertEqual([(row["place"], row.get("at_time")) for row in found["differences"]],
                         [("channel CVS_CD_NOX_MEA", 2.0), ("@FEL_VAL BSNOX", None)])
        self.later.path("filter_data.42").unlink()
        self.assertIn("filter_data.42: lost file: filter_data.42\n", self.compare()[1])

    def test_trouble_is_told_from_difference(self):
        quon5, composite, filtered = "results/M123/quon5.FTP", "quon_end.42", "filter_data.42"
        within = self.later.text(quon5).partition("@PROP_SMPL_VALIDATION\n")[0]
        for name, content, message in [
                (composite, self.later.text(composite)[:-3], "14: the file ends without *0"),
                (composite, "<html>\n", "1: this is no result of quon5"),
                (filtered, "".join(self.later.text(filtered).splitlines(True)[:4]), "5: the file has 2 of its 5 entries"),
                (quon5, within, f"{within.count(chr(10)) + 1}: the file ends in the emission configuration")]:
            self.later.write(name, content)
            self.assertEqual(self.compare(old=name, new=name),
                             (2, "", f"quon5-compare: {self.later.path(name)}:{message}\n"))
        status, _, error = self.compare(old=quon5, new=filtered)
        self.assertEqual(status, 2)
        self.assertIn(" is a quon5 file, ", error)
        self.assertEqual(self.compare("tolerance=x")[0], 2)
        self.assertIn("there is no", self.compare(old="none")[2])

    def test_report_has_the_same_changes(self):
        status, text, _ = self.later.report("json=-", f"against={self.earlier.directory}")
        self.assertEqual(status, 0)
        document = json.loads(text)
        jsonschema.validate(document, SCHEMA)
        self.assertEqual([(row["file"], row["place"]) for row in document["changes"]["differences"]],
                         [("quon5 file", "@FEL_VAL BSNOX"), ("composite file", "channel CVS_CD_NOX_MEA")])


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
