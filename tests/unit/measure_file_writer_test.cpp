// The text of a measurement file, byte by byte.

#include "graph/measure_file_writer.h"

#include <gtest/gtest.h>

#include <limits>
#include <set>
#include <utility>

#include "unit/measure_store.h"

namespace tarnlink {
namespace {

// A line of the default table as the file has it.
struct DefaultRow {
  const char* caption;
  int data_class;
  int id;
  int unit;
  const char* factor;
  int stored_as;
};

const std::vector<DefaultRow> kFirstRows = {
    {"Sensor 1", 4, 241, 1, "1", 0},       {"Sensor 2", 4, 770, 1, "1", 0},
    {"Sensor 3", 4, 817, 1, "1", 0},       {"Sensor 4", 4, 855, 1, "1", 0},
    {"Sensor 5", 4, 856, 1, "1", 0},       {"Contr setp", 1, 4011, 1, "1", 0},
    {"Calc TTB trip", 4, 4627, 1, "1", 0}, {"CH setpoint", 5, 1389, 1, "1", 0},
    {"DHW setpoint", 5, 1524, 1, "1", 0},  {"Storage setp", 5, 2311, 1, "1", 0},
    {"Req fan", 4, 4572, 2, "30", 0},      {"Fan speed", 4, 4572, 2, "30", 1},
    {"Flame current", 4, 868, 0, "1", 0},  {"Flow sensor", 4, 3854, 0, "1", 0},
    {"Valve current", 4, 4034, 0, "1", 0}, {"Output level", 4, 4045, 4, "1", 0},
    {"Measured load", 4, 4383, 4, "1", 0}, {"Water pres", 4, 4368, 3, ".1", 0},
    {"CH anti cycle", 4, 4576, 0, "1", 0}, {"DHW anti cycle", 4, 4576, 0, "1", 1}};
const std::vector<const char*> kLanes16 = {
    "CH mode",    "DHW mode", "TEST mode", "Flame status", "Exhaust status", "Water filling",
    "Cal. start", "Cal. min", "Fault",     "Valve 1",      "Valve 2",        "APS",
    "Fan",        "CH pump",  "DHW pump",  "Frost mode"};

std::string Number(long number) { return " " + std::to_string(number) + " \r\n"; }

std::string DefaultLine(int index) {
  static const std::vector<int> kColours = {255, 65280, 16711680, 16711935, 16776960, 0};
  const std::string item = "Item " + std::to_string(index);
  DefaultRow row = {item.c_str(), 0, 0, 1, "1", 0};
  std::string factor;
  if (index < 20) row = kFirstRows.at(static_cast<std::size_t>(index));
  if (index >= 100) {
    const int lane = index - 100;
    factor = std::to_string(lane % 8);
    row = {kLanes16.at(static_cast<std::size_t>(lane)), 1, 1, 5, factor.c_str(), lane / 8};
  }
  const std::string caption = std::string(row.caption) + "\r\n";
  return "Attribute " + std::to_string(index) + "\r\n" + Number(row.data_class) + Number(row.id) +
         Number(0) + Number(0) + caption + "False\r\nFalse\r\n" + caption + "\r\n" +
         Number(kColours.at(static_cast<std::size_t>(index % 6))) + Number(0) + Number(row.unit) +
         " " + row.factor + " \r\n" + Number(row.stored_as);
}

TEST(MeasureFileWriter, WritesTheDefaultLinesByteByByte) {
  std::string expected =
      "TarnLink Version 2.0.0\r\n 0 \r\n 16777215 \r\n 16777215 \r\n 255 \r\n 0 \r\n"
      " 115 \r\n";
  for (int i = 0; i <= 115; ++i) expected += DefaultLine(i);
  EXPECT_EQ(FileText(DefaultStore(), {.with_measurements = false}), expected);
}

TEST(MeasureFileWriter, PutsAMinusSignInPlaceOfTheBlank) {
  Graphic data = SmallStore();
  data.Colors.GridColor = -2147483647 - 1;
  Line(data, 0) = {.Class = 255,
                   .ID = -1,
                   .Data = 2147483647,
                   .SlaveAddress = 9,
                   .FixedCaption = "fixed",
                   .ShowLine = true,
                   .ShowCaption = false,
                   .Alias = "  alias ",
                   .Description = "",
                   .LineColor = -5,
                   .LineStyle = -32768,
                   .Unit = 3,
                   .Factor = -0.25F,
                   .StoredAs = 2};
  const std::string text = FileText(data);
  EXPECT_NE(text.find("\r\n-2147483648 \r\n 16777215 \r\n"), std::string::npos);
  EXPECT_NE(
      text.find("Attribute 0\r\n 255 \r\n-1 \r\n 2147483647 \r\n 9 \r\nfixed\r\nTrue\r\nFalse\r\n"
                "  alias \r\n\r\n-5 \r\n-32768 \r\n 3 \r\n-.25 \r\n 2 \r\nAttribute 1\r\n"),
      std::string::npos)
      << text;
}

TEST(MeasureFileWriter, WritesFactorsAsShortAsTheyReadBackWithTheSystemsSeparator) {
  const std::vector<std::pair<float, std::string>> factors = {
      {1.0F, " 1 "},          {0.0F, " 0 "},
      {30.0F, " 30 "},        {0.1F, " .1 "},
      {-0.5F, "-.5 "},        {1.5F, " 1.5 "},
      {-2.75F, "-2.75 "},     {0.333F, " .333 "},
      {1e-7F, " .0000001 "},  {16777216.0F, " 16777216 "},
      {100000.0F, " 100000 "}};
  for (const auto& [factor, text] : factors) {
    Graphic data = SmallStore();
    Line(data, 0).Factor = factor;
    EXPECT_NE(FileText(data).find("\r\n" + text + "\r\n 0 \r\nAttribute 1\r\n"), std::string::npos)
        << text;
    std::string with_comma = text;
    for (char& c : with_comma) c = c == '.' ? ',' : c;
    EXPECT_NE(FileText(data, {.decimal_separator = ","})
                  .find("\r\n" + with_comma + "\r\n 0 \r\nAttribute 1\r\n"),
              std::string::npos)
        << with_comma;
  }
}

TEST(MeasureFileWriter, WritesTheSamplesOfEachChannelNewestFirst) {
  Graphic data = SmallStore();
  Add(data, 0, 0, 1234);
  Add(data, 0, 1, 0);
  Add(data, 0, 51, 65535);  // the next minute
  EXPECT_EQ(Measurements(data),
            " 1 \r\nMeasurement 0\r\n 90000 \r\n20240305140800 65535\r\n20240305140710 0\r\n"
            "20240305140709 1234\r\n00000000000000 0\r\nMeasurement 1\r\n 90000 \r\n"
            "00000000000000 0\r\n");
}

TEST(MeasureFileWriter, WritesAnyValueAndAnyYear) {
  Graphic data = SmallStore();
  Channel(data, 0).Append({-7, ToSeconds(ToDate({999, 12, 31, 23, 59, 59}))});
  Channel(data, 0).Append({2147483647, ToSeconds(ToDate({9999, 1, 1, 0, 0, 0}))});
  Channel(data, 0).Append({65536, -5});
  EXPECT_EQ(Measurements(data),
            " 1 \r\nMeasurement 0\r\n 90000 \r\n18991229235955 65536\r\n"
            "99990101000000 2147483647\r\n09991231235959 -7\r\n00000000000000 0\r\n"
            "Measurement 1\r\n 90000 \r\n00000000000000 0\r\n");
}

TEST(MeasureFileWriter, AChannelThatRecordsNothingIsABoundOfZeroAndItsEnd) {
  Graphic data = SmallStore();
  Channel(data, 0).Dimension(0);
  EXPECT_EQ(Measurements(data),
            " 1 \r\nMeasurement 0\r\n 0 \r\n00000000000000 0\r\nMeasurement 1\r\n 90000 \r\n"
            "00000000000000 0\r\n");
}

std::size_t LinesOf(std::string_view text) {
  return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

TEST(MeasureFileWriter, AFullChannelHas89999Samples) {
  Graphic data = SmallStore();
  for (int i = 1; i <= 90'001; ++i) Add(data, 0, i, i % 1000);
  ASSERT_EQ(Channel(data, 0).Count(), 90'001);
  const std::string text = Measurements(data);
  EXPECT_EQ(LinesOf(text), 1 + 2 + 89'999 + 1 + 3U);
  // The first two are missing.
  EXPECT_NE(text.find("\r\n20240305140712 3\r\n00000000000000 0\r\nMeasurement 1"),
            std::string::npos);
}

TEST(MeasureFileWriter, LeavesOutTheLowestTwoElementsOfSmallChannelsToo) {
  Graphic data = SmallStore();
  Channel(data, 0).Dimension(3);
  for (int i = 0; i < 4; ++i) Add(data, 0, i, i);
  Channel(data, 1).Dimension(1);
  Add(data, 1, 0, 5);
  EXPECT_EQ(Measurements(data),
            " 1 \r\nMeasurement 0\r\n 3 \r\n20240305140712 3\r\n20240305140711 2\r\n"
            "00000000000000 0\r\nMeasurement 1\r\n 1 \r\n00000000000000 0\r\n");
}

TEST(MeasureFileWriter, OnlyNewEndsAChannelAtTheFirstSampleThatIsNotLater) {
  Graphic data = SmallStore();
  for (const int second : {0, 10, 20, 15, 30}) Add(data, 0, second, second);
  const auto text = [&](int newer_than) {
    const std::string all = Measurements(data, {.newer_than = At(newer_than)});
    return all.substr(0, all.find("00000000000000"));
  };
  const std::string begin = " 1 \r\nMeasurement 0\r\n 90000 \r\n";
  EXPECT_EQ(text(30), begin);
  EXPECT_EQ(text(29), begin + "20240305140739 30\r\n");
  // The walk ends at 15, so 20 is not reached.
  EXPECT_EQ(text(15), begin + "20240305140739 30\r\n");
  EXPECT_EQ(text(14), begin + "20240305140739 30\r\n20240305140724 15\r\n20240305140729 20\r\n");
}

TEST(MeasureFileWriter, AnElementWithoutATimeEndsItsChannel) {
  Graphic data = SmallStore();
  Channel(data, 0).Append({1, At(0)});
  Channel(data, 0).Append({2, 0});
  Channel(data, 0).Append({3, At(2)});
  EXPECT_EQ(Measurements(data),
            " 1 \r\nMeasurement 0\r\n 90000 \r\n20240305140711 3\r\n00000000000000 0\r\n"
            "Measurement 1\r\n 90000 \r\n00000000000000 0\r\n");
}

TEST(MeasureFileWriter, KeepsALineOfTextOneLine) {
  Graphic data = SmallStore();
  Line(data, 0).Alias = "two\r\nlines";
  EXPECT_NE(FileText(data).find("\r\ntwo  lines\r\n"), std::string::npos);
}

TEST(MeasureFileWriter, WritesWindows1252WhereItFitsAndOtherwiseUtf8) {
  Graphic data = SmallStore();
  Line(data, 0).Alias = "Größe";
  EXPECT_NE(FileText(data).find("\r\nGr\xF6\xDF"
                                "e\r\n"),
            std::string::npos);
  Line(data, 1).Alias = "温度";
  EXPECT_NE(FileText(data).find("\r\nGröße\r\n"), std::string::npos);
  EXPECT_NE(FileText(data).find("\r\n温度\r\n"), std::string::npos);
}

// --- While the graph goes on ---------------------------------------------------------------------

TEST(MeasureFileWriter, WritesWhatThereWasWhenItWasMade) {
  Graphic data = SmallStore();
  for (int i = 0; i < 50'000; ++i) {
    Add(data, 0, i, i);
    Add(data, 1, i, i);
  }
  const std::string before = FileText(data);
  MeasureFileWriter writer(data, {});
  std::string text;
  int second = 50'000;
  for (std::string piece; writer.Next(piece); ++second) {
    text += piece;
    Add(data, 0, second, 1);
    Add(data, 1, second, 1);
    Line(data, 0).Alias += "x";
    data.Colors.GridColor += 1;
  }
  EXPECT_GT(second, 50'004);
  EXPECT_EQ(text, before);
}

TEST(MeasureFileWriter, SamplesThatFallOutMeanwhileEndTheirChannel) {
  Graphic data = SmallStore();
  for (int i = 0; i < 90'001; ++i) Add(data, 1, i, i % 1000);
  const std::string before = FileText(data);
  MeasureFileWriter writer(data, {});
  std::string text;
  std::string piece;
  writer.Next(piece);
  text = piece;
  for (int i = 90'001; i < 90'001 + 5'000; ++i) Add(data, 1, i, 1);
  while (writer.Next(piece)) text += piece;
  const std::string end = "00000000000000 0\r\n";
  ASSERT_LT(text.size(), before.size());
  EXPECT_EQ(text, before.substr(0, text.size() - end.size()) + end);
  // 5000 are gone, of which two would not have been written.
  EXPECT_EQ(LinesOf(before) - LinesOf(text), 4'998U);
}

TEST(MeasureFileWriter, AChannelThatIsEmptiedMeanwhileEnds) {
  Graphic data = SmallStore();
  for (int i = 0; i < 50'000; ++i) Add(data, 0, i, i);
  MeasureFileWriter writer(data, {});
  std::string piece;
  writer.Next(piece);
  Channel(data, 0).Dimension(MeasureChannel::kUpperBound);
  Add(data, 0, 5, 5);
  std::string rest;
  while (writer.Next(piece)) rest += piece;
  EXPECT_EQ(rest, "00000000000000 0\r\nMeasurement 1\r\n 90000 \r\n00000000000000 0\r\n");
}

TEST(MeasureFileWriter, PiecesAreBoundedAndTheShareNeverFalls) {
  Graphic data = SmallStore();
  for (int i = 0; i < 90'000; ++i) Add(data, 0, i, i);
  MeasureFileWriter writer(data, {.newer_than = At(20'000)});
  double share = writer.Share();
  EXPECT_EQ(share, 0);
  std::set<double> shares;
  for (std::string piece; writer.Next(piece);) {
    EXPECT_LT(piece.size(), PieceSource::kPiece + 8'192);
    EXPECT_GE(writer.Share(), share);
    share = writer.Share();
    shares.insert(share);
  }
  EXPECT_EQ(share, 1);
  EXPECT_GT(shares.size(), 4U);
}

TEST(MeasureFileWriter, WithoutSamplesTheShareIsWholeInTheEnd) {
  const Graphic data = SmallStore();
  MeasureFileWriter writer(data, {.with_measurements = false});
  EXPECT_EQ(writer.Share(), 0);
  std::string piece;
  EXPECT_TRUE(writer.Next(piece));
  EXPECT_EQ(writer.Share(), 1);
  EXPECT_FALSE(writer.Next(piece));
  EXPECT_TRUE(piece.empty());
}

}  // namespace
}  // namespace tarnlink
