// Reading measurement files: what they may hold, what they may not, and what is left of those.

#include "graph/measure_file_reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "common/run_time_error.h"
#include "common/text_file.h"
#include "support/prefixes.h"
#include "support/samples.h"
#include "unit/measure_store.h"

namespace tarnlink {
namespace {

const std::string kBegin = "any title\r\n 1 \r\n 2 \r\n 3 \r\n 4 \r\n 5 \r\n 16 \r\n";
const std::string kLine =
    "Attribute\r\n 4 \r\n 241 \r\n 770 \r\n 9 \r\nfixed\r\nTrue\r\nFalse\r\nalias\r\n"
    "description\r\n 255 \r\n 2 \r\n 3 \r\n .1 \r\n 1 \r\n";

std::string Lines() {
  std::string text = kBegin;
  for (int i = 0; i < 17; ++i) text += kLine;
  return text;
}

// A whole file whose first channel has these lines.
std::string FileWith(const std::string& samples, const std::string& bound = " 90000 ") {
  return Lines() + " 1 \r\nMeasurement 0\r\n" + bound + "\r\n" + samples +
         "Measurement 1\r\n 90000 \r\n00000000000000 0\r\n";
}

// The same, with the channel's end.
std::string FileOf(const std::string& samples) {
  return FileWith(samples + "00000000000000 0\r\n");
}

std::string FirstSamples(const std::string& file) { return SamplesText(Read(file).Channels[0]); }

// The reason for which a file is refused, empty if it is not.
std::string Reason(const std::string& file, bool with_measurements = true) {
  try {
    Read(file, with_measurements);
  } catch (const RunTimeError& error) {
    return error.what();
  }
  return {};
}

std::string ReasonOfSample(const std::string& line) {
  const std::string reason = Reason(FileOf(line + "\r\n"));
  const std::string begin = "\"file\" could not be read: line 266: ";
  return reason.substr(0, begin.size()) == begin ? reason.substr(begin.size()) : "?? " + reason;
}

// --- What it reads -------------------------------------------------------------------------------

TEST(MeasureFileReader, TakesTheFieldsByTheirPosition) {
  const Graphic data = Read(FileOf(""));
  EXPECT_EQ(data.Colors, (GraphColors{1, 2, 3, 4, 5}));
  ASSERT_EQ(data.Attributes.size(), 17U);
  const GraphAttribute expected = {.Class = 4,
                                   .ID = 241,
                                   .Data = 770,
                                   .SlaveAddress = 9,
                                   .FixedCaption = "fixed",
                                   .ShowLine = true,
                                   .ShowCaption = false,
                                   .Alias = "alias",
                                   .Description = "description",
                                   .LineColor = 255,
                                   .LineStyle = 2,
                                   .Unit = 3,
                                   .Factor = 0.1F,
                                   .StoredAs = 1};
  for (const GraphAttribute& line : data.Attributes) EXPECT_EQ(line, expected);
  ASSERT_EQ(data.Channels.size(), 2U);
}

TEST(MeasureFileReader, PutsTheSamplesWhereTheyWere) {
  const Graphic data = Read(FileOf("20240305140800 65535\r\n20240305140710 0\r\n"));
  EXPECT_EQ(data.Channels[0].UpperBound(), 90'000);
  EXPECT_EQ(data.Channels[0][90'000].Value, 65535);
  EXPECT_EQ(data.Channels[0][89'999], (MeasureSample{0, At(1)}));
  EXPECT_EQ(data.Channels[0].Count(), 2);
  EXPECT_EQ(ToSeconds(data.FirstTime), At(1));
  EXPECT_EQ(ToSeconds(data.LastTime), At(51));
}

TEST(MeasureFileReader, TheRangeIsThatOfAllSamplesInAnyOrder) {
  const std::string file = Lines() +
                           " 1 \r\nM\r\n 90000 \r\n20240305140710 1\r\n20240305140720 1\r\n"
                           "00000000000000 0\r\nM\r\n 90000 \r\n20240305140730 1\r\n"
                           "20240305140700 1\r\n0000\r\n";
  const Graphic data = Read(file);
  EXPECT_EQ(ToSeconds(data.FirstTime), At(-9));
  EXPECT_EQ(ToSeconds(data.LastTime), At(21));
}

TEST(MeasureFileReader, WithoutAnySampleTheRangeStays) {
  Graphic data = DefaultStore();
  data.FirstTime = 5;
  data.LastTime = 7;
  ReadInto(data, FileOf(""));
  EXPECT_EQ(data.FirstTime, 5);
  EXPECT_EQ(data.LastTime, 7);
}

TEST(MeasureFileReader, AYearBelow1000IsReadAndOnlyFourZerosEndAChannel) {
  EXPECT_EQ(FirstSamples(FileOf("09991231235959 5\r\n01000101000000 6\r\n")),
            "0999-12-31 23:59:59 5\n0100-01-01 00:00:00 6\n");
  EXPECT_EQ(FirstSamples(FileWith("20240305140709 1\r\n00001231235959 7\r\n")),
            "2024-03-05 14:07:09 1\n");
  EXPECT_EQ(FirstSamples(FileWith("20240305140709 1\r\n0000\r\n")), "2024-03-05 14:07:09 1\n");
}

TEST(MeasureFileReader, AValueBeginsAtCharacter15) {
  EXPECT_EQ(FirstSamples(FileOf("202403051407091234\r\n20240305140708   7  \r\n"
                                "20240305140707 -5\r\n20240305140706 2147483647\r\n")),
            "2024-03-05 14:07:09 1234\n2024-03-05 14:07:08 7\n2024-03-05 14:07:07 -5\n"
            "2024-03-05 14:07:06 2147483647\n");
}

TEST(MeasureFileReader, BlanksAroundANumberAreAllowed) {
  EXPECT_EQ(FirstSamples(FileOf(" 999 1 1 1 1 1 5\r\n")), "0999-01-01 01:01:01 5\n");
}

TEST(MeasureFileReader, BooleansCountInAnyCase) {
  std::string file = FileOf("");
  file.replace(file.find("True"), 4, "tRUE");
  file.replace(file.find("False"), 5, "FALSE");
  const Graphic data = Read(file);
  EXPECT_TRUE(data.Attributes[0].ShowLine);
  EXPECT_FALSE(data.Attributes[0].ShowCaption);
}

TEST(MeasureFileReader, FactorsHaveAPointOrAComma) {
  for (const char* factor : {" ,1 ", " .1 ", "0.1", "0,1"}) {
    std::string file = FileOf("");
    file.replace(file.find(" .1 "), 4, factor);
    EXPECT_EQ(Read(file).Attributes[0].Factor, 0.1F) << factor;
  }
}

TEST(MeasureFileReader, LinesMayEndInALineFeedAndTheLastOneInNothing) {
  std::string file = FileOf("20240305140709 1\r\n");
  file.resize(file.size() - 2);
  std::erase(file, '\r');
  EXPECT_EQ(FirstSamples(file), "2024-03-05 14:07:09 1\n");
}

TEST(MeasureFileReader, PiecesMayEndAnywhere) {
  const std::string file =
      FileOf("20240305140800 65535\r\n20240305140710 0\r\n202403051407095\r\n");
  for (const std::size_t size : PieceSizes(file)) {
    Graphic data;
    ReadInto(data, file, true, size);
    EXPECT_EQ(SamplesText(data.Channels[0]),
              "2024-03-05 14:08:00 65535\n2024-03-05 14:07:10 0\n2024-03-05 14:07:09 5\n")
        << size;
    EXPECT_EQ(data.Attributes[16].Alias, "alias");
  }
}

TEST(MeasureFileReader, AChannelOfBoundZeroTakesItsEndWithIt) {
  const Graphic data = Read(FileWith("00000000000000 0\r\n", " 0 "));
  EXPECT_EQ(data.Channels[0].UpperBound(), 0);
  EXPECT_EQ(data.Channels[1].UpperBound(), 90'000);
}

TEST(MeasureFileReader, AFullChannelNeedsNoEnd) {
  // Positions 2 and 1 are filled, and the next line belongs to the next channel.
  EXPECT_EQ(FirstSamples(FileWith("20240305140710 1\r\n20240305140709 2\r\n", " 2 ")),
            "2024-03-05 14:07:10 1\n2024-03-05 14:07:09 2\n");
  EXPECT_EQ(FirstSamples(FileWith("20240305140710 1\r\n", " 1 ")), "2024-03-05 14:07:10 1\n");
}

TEST(MeasureFileReader, NothingIsLookedAtBehindTheLastChannel) {
  EXPECT_EQ(Reason(FileOf("") + "what\r\never"), "");
}

TEST(MeasureFileReader, TakesOtherNumbersOfLines) {
  for (const int last : {16, 17, 31, 200, 1015}) {
    Graphic data;
    data.Attributes = std::vector<GraphAttribute>(static_cast<std::size_t>(last) + 1);
    data.Channels = std::vector<MeasureChannel>(static_cast<std::size_t>(last) - 14);
    const Graphic read = Read(FileText(data));
    EXPECT_EQ(read.LastAttribute(), last);
    EXPECT_EQ(read.LastChannel(), last - 15);
  }
}

TEST(MeasureFileReader, TakesOtherNumbersOfChannelsThanTheLinesWouldHave) {
  for (const std::size_t channels : {1U, 5U, 40U, 1016U}) {
    Graphic data = SmallStore();
    data.Channels = std::vector<MeasureChannel>(channels);
    data.Channels.back().Dimension(MeasureChannel::kUpperBound);
    data.Channels.back().Append({7, At(0)});
    const Graphic read = Read(FileText(data));
    EXPECT_EQ(read.LastAttribute(), 16);
    ASSERT_EQ(read.Channels.size(), channels);
    EXPECT_EQ(read.Channels.back()[90'000], data.Channels.back()[90'000]);
    EXPECT_EQ(read.GetCursorValue(read.LastAttribute(), 0), 0.0F);
  }
}

// Day 0 of the clock is a time as any other in a file; an element of that time holds no sample.
TEST(MeasureFileReader, ASampleOfDayZeroIsReadAndCountsAsNone) {
  const Graphic read = Read(FileOf("20240305140709 1\r\n18991230000000 2\r\n20240305140708 3\r\n"));
  EXPECT_EQ(read.Channels[0][90'000].Value, 1);
  EXPECT_EQ(read.Channels[0][89'999].Time, 0);
  EXPECT_EQ(read.Channels[0][89'998].Value, 3);
  EXPECT_EQ(ToSeconds(read.FirstTime), 0);
}

// --- Lines alone ---------------------------------------------------------------------------------

TEST(MeasureFileReader, LinesAloneBeginWithEmptyChannels) {
  Graphic data = DefaultStore();
  Add(data, 100, 1, 5);
  data.FirstTime = 5;
  data.LastTime = 7;
  Graphic saved = DefaultStore();
  Line(saved, 3).ShowLine = true;
  Line(saved, 8).ShowCaption = true;
  ReadInto(data, FileText(saved, {.with_measurements = false}), false);
  EXPECT_EQ(data.Attributes, saved.Attributes);
  ASSERT_EQ(data.LastChannel(), 100);
  for (int i = 0; i <= 100; ++i) {
    EXPECT_EQ(Channel(data, i).UpperBound(), i == 3 || i == 8 || i == 100 ? 90'000 : 0) << i;
    EXPECT_EQ(Channel(data, i).Count(), 0) << i;
  }
  EXPECT_EQ(data.FirstTime, 5);
  EXPECT_EQ(data.LastTime, 7);
}

TEST(MeasureFileReader, OfAMeasurementFileTheLinesAloneCanBeTaken) {
  const Graphic data = Read(Lines() + "what follows is not looked at", false);
  EXPECT_EQ(data.LastAttribute(), 16);
  EXPECT_EQ(data.Channels[0].UpperBound(), 90'000);
}

TEST(MeasureFileReader, WantsNoMoreOnceItHasTheLines) {
  MeasureFileReader reader("file", false);
  EXPECT_TRUE(reader.Take(Lines().substr(0, 100)));
  EXPECT_FALSE(reader.Take(Lines().substr(100)));
}

TEST(MeasureFileReader, AFileOfLinesIsNoMeasurementFile) {
  EXPECT_EQ(Reason(Lines()), "\"file\" could not be read: it ends behind line 262.");
}

// --- What it refuses -----------------------------------------------------------------------------

TEST(MeasureFileReader, RefusesCountsThatCannotBe) {
  const std::string begin = "\"file\" could not be read: line 7: ";
  for (const char* count : {"15", "0", "-1", "1016", "100000000"}) {
    std::string file = FileOf("");
    file.replace(file.find(" 16 "), 4, count);
    EXPECT_EQ(Reason(file), begin + "the number of the last line is " + count +
                                ", which is not between 16 and 1015.");
  }
  for (const char* count : {"2147483648", "-2147483649"}) {
    std::string file = FileOf("");
    file.replace(file.find(" 16 "), 4, count);
    EXPECT_EQ(Reason(file), begin + "\"" + count + "\" is not between -2147483648 and 2147483647.");
  }
}

TEST(MeasureFileReader, RefusesChannelsThatCannotBe) {
  for (const char* count : {"-1", "1016", "100000000"}) {
    std::string file = FileOf("");
    file.replace(file.find(" 1 \r\nMeasurement"), 3, count);
    EXPECT_EQ(Reason(file), std::string("\"file\" could not be read: line 263: the number of the "
                                        "last channel is ") +
                                count + ", which is not between 0 and 1015.");
  }
}

TEST(MeasureFileReader, TakesWholeNumbersOnlyAsTheyAreWritten) {
  EXPECT_EQ(Reason(FileWith("2024 3 514 7 9  +1 \r\n00000000000000 0\r\n", " 2 ")), "");
  for (const char* sample :
       {"20240305140709 1.5", "20240305140709 1e2", "20240305.70709 1", "2024030514070. 1",
        "2024-305140709 1", "+02403051407091 1", "20240305140-09 1"}) {
    EXPECT_NE(Reason(FileWith(std::string(sample) + "\r\n00000000000000 0\r\n", " 2 ")), "")
        << sample;
  }
  for (const char* bound : {"2.0", "2e0", "1.6", "", "two"}) {
    EXPECT_NE(Reason(FileWith("", bound)), "") << bound;
  }
}

TEST(MeasureFileReader, RefusesBoundsThatCannotBe) {
  for (const char* bound : {"-1", "90001", "100000000"}) {
    EXPECT_EQ(Reason(FileWith("", bound)),
              std::string("\"file\" could not be read: line 265: the size of a channel is ") +
                  bound + ", which is not between 0 and 90000.");
  }
  EXPECT_NE(Reason(FileWith("", "2147483648")), "");
}

TEST(MeasureFileReader, RefusesMoreSamplesThanTheBoundHasPlacesFor) {
  // The third is the next channel's title, its end that channel's bound.
  EXPECT_EQ(Reason(FileWith("20240305140710 1\r\n20240305140709 1\r\n20240305140708 1\r\n"
                            "00000000000000 0\r\n",
                            " 2 ")),
            "\"file\" could not be read: line 269: \"00000000000000 0\" is no number.");
}

TEST(MeasureFileReader, RefusesImpossibleDatesAndTimes) {
  for (const char* stamp :
       {"20241301000000", "20240001000000", "20240230000000", "20230229000000", "20240100000000",
        "20240132000000", "20240101240000", "20240101006000", "20240101000060", "00990101000000"}) {
    EXPECT_EQ(ReasonOfSample(std::string(stamp) + " 1"),
              "\"" + std::string(stamp) + "\" is no date and time.");
  }
  EXPECT_EQ(FirstSamples(FileOf("20240229235959 1\r\n")), "2024-02-29 23:59:59 1\n");
}

TEST(MeasureFileReader, RefusesWhatIsNoNumber) {
  EXPECT_EQ(ReasonOfSample(""), "\"\" is no number.");
  EXPECT_EQ(ReasonOfSample("2024030514070"), "\"\" is no number.");
  EXPECT_EQ(ReasonOfSample("20240305140709"), "\"\" is no number.");
  EXPECT_EQ(ReasonOfSample("20240305140709 "), "\" \" is no number.");
  EXPECT_EQ(ReasonOfSample("20240305140709 12x"), "\" 12x\" is no number.");
  EXPECT_EQ(ReasonOfSample("20240305140709 1 2"), "\" 1 2\" is no number.");
  EXPECT_EQ(ReasonOfSample("20240305140709\t5"), "\"\t5\" is no number.");
  EXPECT_EQ(ReasonOfSample("2024O305140709 1"), "\"O3\" is no number.");
  EXPECT_EQ(ReasonOfSample("20240305140709 2147483648"),
            "\"2147483648\" is not between -2147483648 and 2147483647.");
  EXPECT_EQ(ReasonOfSample("000"), "\"\" is no number.");
  EXPECT_EQ(ReasonOfSample("20240305140709 12\r34"), "\" 12 34\" is no number.");
}

// Each field of a line with something that does not fit it.
TEST(MeasureFileReader, RefusesFieldsThatDoNotFit) {
  const std::vector<std::pair<std::string, std::vector<std::string>>> fields = {
      {" 4 \r\n 241 ", {"256\r\n 241 ", "-1\r\n 241 ", "\r\n 241 ", "x\r\n 241 "}},
      {" 241 ", {"2147483648", "1 2", "", "&H10"}},
      {" 770 ", {"-2147483649", "7,5", "1.2.3"}},
      {" 9 ", {"300", "True"}},
      {"True", {"Tru", "1", "", "Wahr", "True "}},
      {"False", {"0", "no"}},
      {" 255 ", {"4294967295", "red"}},
      {" 2 \r\n 3 ", {"32768\r\n 3 ", "-32769\r\n 3 "}},
      {" 3 \r\n .1 ", {"x\r\n .1 "}},
      {" .1 ", {"1.000,5", ".", "", "1e99", "0x1"}},
      {" 1 \r\nAttribute", {"\r\nAttribute", "one\r\nAttribute"}}};
  for (const auto& [good, bad_ones] : fields) {
    for (const std::string& bad : bad_ones) {
      std::string file = FileOf("");
      file.replace(file.find(good, kBegin.size()), good.size(), bad);
      EXPECT_NE(Reason(file), "") << good << " as " << bad;
    }
  }
  EXPECT_EQ(Reason(FileOf("")), "");
}

TEST(MeasureFileReader, RefusesColoursThatAreNone) {
  for (const char* colour : {" 1 ", " 2 ", " 3 ", " 4 ", " 5 "}) {
    std::string file = FileOf("");
    file.replace(file.find(colour), 3, "");
    EXPECT_NE(Reason(file), "") << colour;
  }
}

TEST(MeasureFileReader, RefusesAFileThatIsCutAnywhere) {
  const std::string file = FileOf("20240305140710 12\r\n20240305140709 34\r\n");
  // Four zeros of the last line are as good as all of it.
  const std::size_t whole = file.size() - std::string("0000000000 0\r\n").size();
  ForEveryPrefix(file, [&](std::string_view prefix) {
    EXPECT_EQ(Reason(std::string(prefix)).empty(), prefix.size() >= whole);
  });
  const std::string lines = Lines();
  ForEveryPrefix(lines, [&](std::string_view prefix) {
    // The number of the last field, and a blank behind it or not.
    EXPECT_EQ(Reason(std::string(prefix), false).empty(), prefix.size() >= lines.size() - 3);
  });
}

TEST(MeasureFileReader, RefusesOneLongLine) {
  EXPECT_NE(Reason(std::string(1'000'000, 'x')), "");
  EXPECT_NE(Reason(kBegin + std::string(1'000'000, ' ')), "");
}

// --- What is left of a file that was refused -----------------------------------------------------

// What `data` holds after the failure.
void ReadBad(Graphic& data, const std::string& file) {
  MeasureFileReader reader("file", true);
  EXPECT_THROW(
      {
        reader.Take(file);
        reader.Finish();
      },
      RunTimeError);
  reader.HandOver(data);
}

TEST(MeasureFileReader, BeforeTheLinesOnlyColoursAreReplaced) {
  Graphic data = DefaultStore();
  Add(data, 100, 1, 5);
  const std::vector<GraphAttribute> lines = data.Attributes;
  ReadBad(data, "title\r\n 1 \r\n 2 \r\nx\r\n");
  EXPECT_EQ(data.Colors, (GraphColors{1, 2, 0xFFFFFF, 0x0000FF, 0}));
  EXPECT_EQ(data.Attributes, lines);
  EXPECT_EQ(Channel(data, 100).Count(), 1);
}

TEST(MeasureFileReader, InsideTheLinesTheOldOnesAreGoneAndTheSamplesStay) {
  Graphic data = DefaultStore();
  Add(data, 100, 1, 5);
  ReadBad(data, kBegin + kLine + "Attribute 1\r\n 7 \r\nx\r\n");
  ASSERT_EQ(data.LastAttribute(), 16);
  EXPECT_EQ(Line(data, 0).Alias, "alias");
  EXPECT_EQ(Line(data, 1).Class, 7);
  EXPECT_EQ(Line(data, 2).Alias, "");
  EXPECT_FALSE(Line(data, 2).IsShown());
  EXPECT_EQ(data.LastChannel(), 100);
  EXPECT_EQ(Channel(data, 100).Count(), 1);
}

TEST(MeasureFileReader, InsideTheSamplesThoseInFrontAreThere) {
  Graphic data = DefaultStore();
  ReadBad(data, FileOf("20240305140710 1\r\n20240305140709 2\r\nx\r\n"));
  ASSERT_EQ(data.LastChannel(), 1);
  EXPECT_EQ(SamplesText(Channel(data, 0)), "2024-03-05 14:07:10 1\n2024-03-05 14:07:09 2\n");
  EXPECT_EQ(Channel(data, 1).UpperBound(), 0);
  EXPECT_EQ(ToSeconds(data.LastTime), At(1));
  EXPECT_EQ(ToSeconds(data.FirstTime), At(0));
}

// --- Texts ---------------------------------------------------------------------------------------

TEST(MeasureFileReader, TextsAreUtf8OnlyIfAllOfThemAre) {
  Graphic data = SmallStore();
  Line(data, 0).Alias = "Größe";
  Line(data, 1).Alias = "Ã¤";  // whose bytes in Windows-1252 are a letter in UTF-8
  EXPECT_EQ(Read(FileText(data)).Attributes, data.Attributes);
  Line(data, 2).Description = "温度";
  EXPECT_EQ(Read(FileText(data)).Attributes, data.Attributes);
}

// --- Reader and writer ---------------------------------------------------------------------------

TEST(MeasureFile, ReadingAFullChannelLeaves89999Samples) {
  Graphic data = SmallStore();
  for (int i = 1; i <= 90'001; ++i) Add(data, 0, i, i % 1000);
  const Graphic read = Read(FileText(data));
  EXPECT_EQ(read.Channels[0].Count(), 89'999);
  EXPECT_EQ(read.Channels[0][90'000], data.Channels[0][90'000]);
  EXPECT_EQ(read.Channels[0][2], data.Channels[0][2]);
  EXPECT_EQ(read.Channels[0][1], MeasureSample());
  EXPECT_EQ(ToSeconds(read.FirstTime), At(3));
}

TEST(MeasureFile, AfterALoadWithoutSamplesASaveHasNone) {
  const Graphic read = Read(FileText(SmallStore()));
  EXPECT_EQ(FileText(read), FileText(SmallStore()));
}

TEST(MeasureFile, TheSampleIsSavedAsItWasLoaded) {
  const std::string bytes = SampleBytes("burner_start.mss");
  const Graphic data = Read(bytes);
  EXPECT_EQ(FileText(data), bytes);
  EXPECT_EQ(data.Channels[0].Count(), 900);
  EXPECT_EQ(data.Channels[100].Count(), 900);
  const std::string lines = SampleBytes("burner.grp");
  EXPECT_EQ(FileText(data, {.with_measurements = false}), lines);
  const Graphic fresh = Read(lines, false);
  EXPECT_EQ(fresh.Attributes, data.Attributes);
  EXPECT_EQ(fresh.Channels[0].UpperBound(), 90'000);
}

// What a file cannot hold of a store: its lowest two elements, and the range that was on screen.
void DropLowest(Graphic& data) {
  for (MeasureChannel& channel : data.Channels) {
    std::vector<MeasureSample> kept;
    for (int i = channel.UpperBound(); i >= std::max(channel.FirstIndex(), 2); --i) {
      kept.push_back(channel[i]);
    }
    channel.Fill(channel.UpperBound(), kept);
  }
}

TEST(MeasureFile, WhatIsSavedAndLoadedAndSavedIsTheSame) {
  for (unsigned seed = 1; seed <= 60; ++seed) {
    SCOPED_TRACE(seed);
    Graphic data = RandomStore(seed);
    const std::string separator = seed % 2 == 0 ? "." : ",";
    const std::string file = FileText(data, {.decimal_separator = separator});
    Graphic read;
    ReadInto(read, file, true, 1 + seed * 97);
    EXPECT_EQ(FileText(read, {.decimal_separator = separator}), file);
    DropLowest(data);
    EXPECT_EQ(read.Colors, data.Colors);
    EXPECT_EQ(read.Attributes, data.Attributes);
    ASSERT_EQ(read.Channels.size(), data.Channels.size());
    for (int i = 0; i <= data.LastChannel(); ++i) {
      EXPECT_EQ(Channel(read, i).UpperBound(), Channel(data, i).UpperBound());
      EXPECT_EQ(SamplesText(Channel(read, i)), SamplesText(Channel(data, i))) << i;
    }
  }
}

// A line of a damaged file may hold anything, and as much as it likes.
TEST(MeasureFileReader, ShowsOnlyTheBeginningOfALineThatIsWrong) {
  const std::string zeros(60'000, '0');
  const std::string odd("20240305140709 \x1B\0\x80.5", 20);
  for (const std::string& line :
       {"20240305140709 1." + zeros, odd, std::string(14, '\0'), "2024" + zeros + ".5"}) {
    const std::string reason = ReasonOfSample(line);
    EXPECT_TRUE(reason.ends_with('.')) << reason;
    EXPECT_LT(reason.size(), 400U);
    EXPECT_TRUE(std::none_of(reason.begin(), reason.end(), [](char c) {
      return c >= 0 && c < ' ';
    })) << reason;
    EXPECT_EQ(DecodeText(reason), reason);
  }
}

}  // namespace
}  // namespace tarnlink
