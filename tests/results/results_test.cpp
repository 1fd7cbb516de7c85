#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

#include "results/composite_file.h"
#include "results/differences.h"
#include "results/keyword_entries.h"
#include "results/log_entries.h"
#include "results/quon5_file.h"
#include "results/result_files.h"

namespace {

constexpr char kQuon5[] =
    "*5\n        12\n        2026-03-05T14:07:31\n         1         12\n         7          5\n"
    "       0\n         1      29.15 in_hg_32\n         6   no_value in_h2o\n         0\n"
    "@CYCLE_OVERRIDES\n     CVS_CD_NOX_MEA RANGE_HOLD \n\n@LEAK_TEST_VALIDATION\n"
    "     CONT_SAMPL 1 \\\n     12.5 lpm  0.03 lpm  \\\n     CVS_CD_CO_MEA  2026-03-05T12:41:08 \n"
    "\n\n\n\n@CYCLE_OVERRIDES\n     main IDLE_SPEED 700\n\n";

constexpr char kComposite[] =
    "LOG_TM,SYNC_CODE,CVS_CD_NOX_MEA\nsec,-,ppm\n0.000000,0.000000,4.600000\nsec,sec,sec\n$\n"
    "-1.0,10,0.15\n0.0,20,12.7\n1.0,20,nan\n*0\n";

// "line: text" of each problem.
std::string text_of(const std::vector<Problem>& problems) {
    std::string text;
    for (const Problem& problem : problems) {
        text += std::to_string(problem.line) + ": " + problem.text + "\n";
    }
    return text;
}

std::string replaced(std::string text, const std::string& old, const std::string& by) {
    const std::size_t at = text.find(old);
    EXPECT_NE(at, text.npos) << old;
    return text.replace(at, old.size(), by);
}

TEST(Quon5FileReader, ReadsEveryPartOfTheLastResult) {
    // A table of another program is joined behind it, an earlier result stands before it.
    const std::string text = "*5\n 1\n x\n0\n0\n" + std::string(kQuon5) + "*6\n 12\n 0\n";
    const Quon5File file = read_quon5_file(text);
    EXPECT_EQ(text_of(file.problems), "");
    EXPECT_EQ(file.results, 2);
    EXPECT_EQ(file.siblings, std::vector<std::string>{"*6"});
    EXPECT_EQ(file.complete_to, ResultPart::WHOLE);
    EXPECT_EQ(file.cell, 12);
    EXPECT_EQ(file.start_of_test, "2026-03-05T14:07:31");
    ASSERT_EQ(file.codes.size(), 2U);
    EXPECT_EQ(file.codes[1].value, 5);
    ASSERT_EQ(file.rows.size(), 2U);
    EXPECT_EQ(file.rows[0].value, 29.15);
    EXPECT_EQ(file.rows[0].units, "in_hg_32");
    EXPECT_FALSE(file.rows[1].has_value);
    ASSERT_EQ(file.blocks.size(), 3U);
    EXPECT_EQ(file.blocks[1].entries[0].words,
              (std::vector<std::string>{"CONT_SAMPL", "1", "12.5", "lpm", "0.03", "lpm",
                                        "CVS_CD_CO_MEA", "2026-03-05T12:41:08"}));
    EXPECT_FALSE(file.blocks[0].is_overrides_of_run());
    EXPECT_TRUE(file.blocks[2].is_overrides_of_run());
}

TEST(Quon5FileReader, NamesWhereAFileIsCutOrAnother) {
    const auto problems = [](const std::string& text) {
        return text_of(read_quon5_file(text).problems);
    };
    const std::string whole = kQuon5;
    EXPECT_EQ(problems("*5\n"), "2: the file ends in the header\n");
    EXPECT_EQ(problems(whole.substr(0, whole.find("       0\n"))),
              "6: the file ends in the integer codes\n");
    EXPECT_EQ(problems(whole.substr(0, whole.find("         6   no"))),
              "8: the file ends in the value rows\n");
    EXPECT_EQ(problems(replaced(whole, "29.15", "2x.15")),
              "7: <2x.15> is neither a number nor no_value\n");
    EXPECT_EQ(problems(replaced(whole, "         7          5", "7 5 5")),
              "5: <7 5 5> is no integer code\n");
    EXPECT_EQ(problems("<html>\n"), "1: no line *5 is found, this is no quon5 file\n");
    EXPECT_EQ(problems(""), "");
    EXPECT_EQ(read_quon5_file("").complete_to, ResultPart::NONE);
}

TEST(CompositeFileReader, ReadsHeadAndWantedValuesOfTheLastTable) {
    const std::string earlier = replaced(kComposite, "12.7", "99.9");
    const CompositeFile file =
        read_composite_file(earlier + kComposite,
                            [](const CompositeChannel& channel) { return channel.units == "ppm"; });
    EXPECT_EQ(text_of(file.problems), "");
    EXPECT_TRUE(file.whole);
    EXPECT_EQ(file.records, 3);
    ASSERT_EQ(file.channels.size(), 3U);
    const CompositeChannel& nox = file.channels[2];
    EXPECT_EQ(nox.keyword, "CVS_CD_NOX_MEA");
    EXPECT_EQ(nox.deskew_seconds(), 4.6);
    EXPECT_EQ(nox.decimals, 2);
    EXPECT_EQ(nox.values[1], 12.7);
    EXPECT_TRUE(std::isnan(nox.values[2]));
    EXPECT_EQ(file.channels[0].values, (std::vector<double>{-1.0, 0.0, 1.0}));
    EXPECT_TRUE(file.channels[1].values.empty());
}

TEST(CompositeFileReader, KeepsRecordsApartWhereValuesAreMissingOrBad) {
    const auto read = [](const std::string& old, const std::string& by) {
        return read_composite_file(replaced(kComposite, old, by));
    };
    const CompositeFile short_record = read("0.0,20,12.7", "0.0,20");
    EXPECT_EQ(text_of(short_record.problems), "7: only 2 values for 3 channels\n");
    EXPECT_TRUE(std::isnan(short_record.channels[2].values[1]));
    EXPECT_EQ(short_record.channels[2].values.size(), 3U);
    EXPECT_EQ(text_of(read("12.7", "12,7").problems), "7: more values than the 3 channels\n");
    EXPECT_EQ(text_of(read("12.7", "1_2").problems), "7: <1_2> is no number\n");
    EXPECT_EQ(text_of(read("*0\n", "").problems), "9: the file ends without *0\n");
    EXPECT_EQ(text_of(read(",nan\n*0\n", ",n").problems), "8: the file ends within a line\n");
    EXPECT_EQ(text_of(read("sec,-,ppm", "sec,-").problems), "2: 2 units for 3 channels\n");
    EXPECT_EQ(text_of(read("$", "#").problems),
              "5: the line $ is missing, this is no composite file\n");
    // Many channels and empty records must not take memory that the file does not have.
    const std::string commas(10000, ',');
    const CompositeFile hostile =
        read_composite_file(commas + "\n" + commas + "\n" + commas + "\n" + commas + "\n$\n" +
                            std::string(10000, '\n'));
    EXPECT_LT(hostile.records, 10);
}

TEST(KeywordEntries, HaveValueAndUnits) {
    const KeywordEntries file = read_keyword_entries("@A\n 6.0[sec]\n\n@B\n@C\n 1\nx\n");
    EXPECT_EQ(text_of(file.problems),
              "5: keyword <@B> has no value\n7: <x> stands below no keyword\n");
    ASSERT_EQ(file.entries.size(), 2U);
    EXPECT_EQ(file.entries[0].text + "|" + file.entries[0].units, "6.0|sec");
    EXPECT_EQ(file.text_of("@C"), "1");
}

TEST(ResultFiles, AreToldApartByTheirContents) {
    EXPECT_EQ(kind_of(kQuon5), ResultKind::QUON5);
    EXPECT_EQ(kind_of(kComposite), ResultKind::COMPOSITE);
    EXPECT_EQ(kind_of("@TEST_DURATION\n 6[sec]\n"), ResultKind::FILTER_DATA);
    EXPECT_EQ(kind_of("@VERSION\n7\n"), ResultKind::NONE);
    EXPECT_EQ(kind_of(""), ResultKind::NONE);
}

TEST(ErrorLogReader, ReadsBothFormsAndFindsTheMessage) {
    const LogEntries log = read_error_log(
        "2026-03-05T14:32:40 [4711] read_em_data:53 mode=65 code=30000 Species read XY was not "
        "found "
        "in the index map\n\t   line number=14   file=em_bench.42\n"
        "torn\n\tno entry either\n"
        "2026-03-05T14:32:41 quon5:7 mode=1 code=-51 Errors finding start of test time in file "
        "a-exiting-exiting\n"
        "2026-03-05T14:32:42 cell:7 mode=1 code=0 of another program\n");
    EXPECT_EQ(text_of(log.problems), "3: <torn> is no entry\n4: <?no entry either> is no entry\n");
    ASSERT_EQ(log.entries.size(), 3U);
    const LogEntry& first = log.entries[0];
    EXPECT_EQ(first.process, 4711);
    EXPECT_EQ(first.module, "read_em_data");
    EXPECT_EQ(first.source_line, 53);
    EXPECT_EQ(
        first.text,
        "Species read XY was not found in the index map\n   line number=14   file=em_bench.42");
    ASSERT_NE(first.message(), nullptr);
    EXPECT_STREQ(first.message()->name, "UNKNOWN_SPECIES");
    EXPECT_EQ(log.entries[1].process, 0);
    ASSERT_NE(log.entries[1].message(), nullptr);
    EXPECT_STREQ(log.entries[1].message()->name, "NO_START_OF_TEST");
    EXPECT_EQ(log.entries[2].message(), nullptr);
    EXPECT_STREQ(severity_of(65), "error");
}

TEST(ErrorLogReader, FindsTheEntriesOfOneRun) {
    setenv("TZ", "UTC", 1);
    tzset();
    std::vector<LogEntry> log;
    const auto add = [&](const char* time, int process) {
        log.push_back({std::string("2026-03-05T") + time, process, "", 0, 1, 0, "", 0});
    };
    add("10:00:00", 7);  // of an earlier run with the same process number
    add("14:00:00", 7);
    add("14:00:01", 8);
    add("14:00:02", 7);
    add("15:00:00", 9);
    const long long end = seconds_of("2026-03-05T14:00:03");
    EXPECT_EQ(end, 1772719203);
    EXPECT_EQ(entries_of_run(log, end - 120, end), (std::vector<std::size_t>{1, 3}));
    EXPECT_TRUE(entries_of_run(log, end + 10, end + 20).empty());
    EXPECT_EQ(entries_of_process(log, 8), std::vector<std::size_t>{2});
    EXPECT_TRUE(entries_of_process(log, 1).empty());
}

// "added row 4: 1 lb" of each difference, a line each.
template <class Contents>
std::string differences(const Contents& earlier, const Contents& later,
                        const Comparison& comparison = {}) {
    std::string text;
    for (const Difference& difference : compare(earlier, later, comparison)) {
        text += std::string(name_of(difference.change)) + " " + difference.place + ": " +
                described(difference) + "\n";
    }
    return text;
}

std::string quon5_differences(const std::string& old, const std::string& by,
                              const Comparison& comparison = {}) {
    return differences(read_quon5_file(kQuon5), read_quon5_file(replaced(kQuon5, old, by)),
                       comparison);
}

TEST(Differences, OfAQuon5FileAreNamedByRowAndEntry) {
    EXPECT_EQ(quon5_differences("29.15", "29.150"), "");
    EXPECT_EQ(quon5_differences("29.15 in", "29.16 in"),
              "changed row 1: 29.15 in_hg_32 -> 29.16 in_hg_32\n");
    EXPECT_EQ(quon5_differences("29.15 in", "29.16 in", {1e-3, {}}), "");
    EXPECT_EQ(quon5_differences("29.15 in", "29.16 in", {0, {"row 1"}}), "");
    EXPECT_EQ(quon5_differences("29.15 in", "29.16 in", {0, {"row"}}), "");
    EXPECT_NE(quon5_differences("29.15 in", "29.16 in", {0, {"row 11", "ro"}}), "");
    EXPECT_EQ(quon5_differences("no_value", "12.45"),
              "changed row 6: no_value in_h2o -> 12.45 in_h2o\n");
    EXPECT_EQ(quon5_differences("main IDLE_SPEED", "main FAN"),
              "added @CYCLE_OVERRIDES main FAN: 700\nlost @CYCLE_OVERRIDES main IDLE_SPEED: 700\n");
    EXPECT_EQ(quon5_differences("0.03 lpm", "0.04 lpm"),
              "changed @LEAK_TEST_VALIDATION CONT_SAMPL 1: 12.5 lpm 0.03 lpm CVS_CD_CO_MEA "
              "2026-03-05T12:41:08 -> 12.5 lpm 0.04 lpm CVS_CD_CO_MEA 2026-03-05T12:41:08\n");
}

TEST(Differences, OfACompositeFileAreCountedByChannel) {
    const CompositeFile earlier = read_composite_file(kComposite);
    const auto changed = [&](const std::string& old, const std::string& by) {
        return differences(earlier, read_composite_file(replaced(kComposite, old, by)));
    };
    EXPECT_EQ(differences(earlier, earlier), "");
    EXPECT_EQ(changed("0.15\n0.0,20,12.7", "0.25\n0.0,20,12.2"),
              "changed channel CVS_CD_NOX_MEA: 2 records differ, by 0.5 at most, at 0\n");
    EXPECT_EQ(changed("nan", "5"),
              "changed channel CVS_CD_NOX_MEA: 1 record differs, a value is missing, at 1\n");
    // A record less moves no other record.
    EXPECT_EQ(changed("0.0,20,12.7\n", ""), "lost records: 1 records\n");
    EXPECT_EQ(changed("*0", "2.0,30,1.0\n*0"), "added records: 1 records\n");
    EXPECT_EQ(changed("SYNC_CODE", "PHASE"),
              "added channel PHASE: -, deskew time 0.000000 sec\n"
              "lost channel SYNC_CODE: -, deskew time 0.000000 sec\n");
    EXPECT_EQ(changed("4.600000", "4.7"),
              "changed channel CVS_CD_NOX_MEA: ppm, deskew time 4.600000 sec -> ppm, deskew time "
              "4.7 sec\n");
}

}  // namespace
