"""The composite end-of-test file and the joining of the result files."""

from end_to_end import APPEND, COUNT_MISMATCH, EndToEndTest, SmallTest, expected, main


class Composite(EndToEndTest):
    def test_columns_deskew_and_decimals(self):
        cell = SmallTest("columns")
        cell.replace("log.dat", "\n70.0,30,98.0,10,12.7,", "\n70.0,30,98.0,10,,")
        cell.replace("log.dat", "300,6.0,1.5,9,9,9", "300,6.0")
        self.expect_run(cell, expected("columns/expected/error.log"))
        self.expect_file(cell, "composite.csv", expected("columns/expected/composite.csv"))

    def test_no_specified_channel_leaves_empty_lines(self):
        cell = SmallTest()
        cell.write("ci.dat", "@VERSION\n7\n@MAP M123\n@CYCLE FTP\n"
                   "REFERENCE_CYCLE_NAME FTP_REF\n@ACTIVITY DEV\n")
        self.expect_run(cell, COUNT_MISMATCH)
        self.expect_file(cell, "composite.csv", "\n\n\n\n$\n\n\n\n\n\n\n\n\n*0\n")

    def test_file_or_sync_channel_missing(self):
        self.expect_run(
            SmallTest(quon_end_out="none/c.csv"),
            "quon_end mode=65 code=-1 Could not open file none/c.csv, errno=No such file or "
            "directory\n")
        cell = SmallTest()
        cell.write("data/M123/q6.FTP", "Q6\n")
        cell.replace("orda.dat", "\nSYNC\n", "\nsync\n")
        cell.replace("ci.dat", "@VERSION\n7", "@VERSION\n6")
        self.assertEqual(cell.run(APPEND), 1)
        self.assertEqual(
            cell.entries()[-1], "quon_end mode=65 code=-1  Could not find chan sync in floger data "
            "composite file will be incomplete")
        self.expect_file(cell, "composite.csv", None)
        self.assertNotIn("Q6", cell.text("run7.quon5"))


class AppendMode(EndToEndTest):
    def test_each_run_adds_its_section_its_siblings_and_its_composite_block(self):
        cell = SmallTest()
        cell.write("data/M123/q6.FTP", "Q6\n")
        cell.write("q7.FTP", "Q7 without line end")
        cell.write("run7.quon5", "OLD\n")
        cell.write("composite.csv", "OLD\n")
        self.expect_run(cell, environment={"WRITE_APPEND": "no"})
        section, filter_data, block = cell.outputs()
        self.assertEqual((section[:3], block[:7]), ("*5\n", "LOG_TM,"))

        results = composite = "OLD\n"
        cell.write("run7.quon5", results)
        cell.write("composite.csv", composite)
        for yes in ("yes", "YES", "Yes"):
            self.expect_run(cell, environment={"WRITE_APPEND": yes})
            results += section + "Q6\nQ7 without line end"
            composite += block
            self.assertEqual(cell.outputs(), [results, filter_data, composite])

    def test_missing_sibling_and_the_result_file_itself(self):
        cell = SmallTest()
        self.expect_run(cell)
        section, filter_data, block = cell.outputs()
        cell.arguments["quon7"] = "./run7.quon5"
        self.expect_run(cell, """\
file_append mode=65 code=77 Could not open file data/M123/q6.FTP, errno=No such file or directory
file_append mode=65 code=30000 File ./run7.quon5 is the file run7.quon5 itself, it is not appended
""", environment=APPEND)
        self.assertEqual(cell.outputs(), [section * 2, filter_data, block * 2])


if __name__ == "__main__":
    main()
