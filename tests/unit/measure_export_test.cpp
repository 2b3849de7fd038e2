// The table of what was measured: its rows, its cells, its times.

#include "graph/measure_export.h"

#include <gtest/gtest.h>

#include "common/numbers.h"
#include "common/text_file.h"
#include "graph/row_times.h"
#include "support/fake_locale.h"
#include "support/samples.h"
#include "unit/measure_store.h"

namespace tarnlink {
namespace {

using Form = MeasureExport::Form;

class MeasureExportTest : public ::testing::Test {
 protected:
  MeasureExportTest() {
    Show(0, "Flow", kStoredBoth, 1);
    Show(1, "Return", kStoredBoth, 1);
  }

  void Show(int index, const std::string& alias, int stored_as, float factor) {
    Line(data, index).Alias = alias;
    Line(data, index).StoredAs = stored_as;
    Line(data, index).Factor = factor;
    data.AllocateChannel(index);
  }
  void SetRange(int first, int last) {
    data.FirstTime = FromSeconds(At(first));
    data.LastTime = FromSeconds(At(last));
  }
  std::string Text(Form form = Form::kFile) {
    MeasureExport source(data, locale, form);
    std::string text;
    for (std::string piece; source.Next(piece);) text += piece;
    return text;
  }
  // The rows without their first column, each cell with a blank in front.
  std::string Cells() {
    std::string cells;
    const std::string text = Text();
    LineReader lines(text);
    std::string_view line;
    lines.Next(line);
    while (lines.Next(line)) {
      std::string row(line.substr(std::min(line.find('\t'), line.size())));
      for (char& c : row) c = c == '\t' ? ' ' : c;
      cells += row + ";";
    }
    return cells;
  }

  Graphic data = DefaultStore();
  FakeLocale locale;
};

TEST_F(MeasureExportTest, IsARowForEachSecondOfTheRange) {
  Add(data, 0, 0, 10);
  Add(data, 0, 2, 12);
  Add(data, 1, 1, 7);
  Add(data, 100, 0, 3);
  SetRange(0, 2);
  EXPECT_EQ(Text(),
            "Time\tFlow\tReturn\tStatus bits\r\n"
            "05/03/2024 14:07:09\t10\t7\t0\r\n"
            "05/03/2024 14:07:10\t10\t7\t0\r\n"
            "05/03/2024 14:07:11\t12\t7\t0\r\n");
}

TEST_F(MeasureExportTest, WithoutSamplesItHasTimesAlone) {
  SetRange(0, 1);
  EXPECT_EQ(Text(), "Time\tStatus bits\r\n05/03/2024 14:07:09\r\n05/03/2024 14:07:10\r\n");
}

TEST_F(MeasureExportTest, AStatusChannelWithoutSamplesHasItsHeadingOnly) {
  Add(data, 0, 0, 10);
  SetRange(0, 0);
  EXPECT_EQ(Text(), "Time\tFlow\tStatus bits\r\n05/03/2024 14:07:09\t10\r\n");
}

TEST_F(MeasureExportTest, AnEmptyRangeHasNoRows) {
  Add(data, 0, 0, 10);
  SetRange(1, 0);
  EXPECT_EQ(Text(), "Time\tFlow\tStatus bits\r\n");
}

TEST_F(MeasureExportTest, AChannelThatRecordsNothingHasNoColumn) {
  Channel(data, 0).Dimension(0);
  Add(data, 1, 0, 7);
  SetRange(0, 0);
  EXPECT_EQ(Text(), "Time\tReturn\tStatus bits\r\n05/03/2024 14:07:09\t7\r\n");
}

TEST_F(MeasureExportTest, BeginsWithTheOldestSampleAlsoWhereThatIsLater) {
  Add(data, 0, 5, 1);
  Add(data, 0, 6, 2);
  SetRange(3, 7);
  EXPECT_EQ(Cells(), " 1; 1; 1; 2; 2;");
}

TEST_F(MeasureExportTest, GoesOnByOneSampleARowAtMost) {
  for (int i = 0; i < 5; ++i) Add(data, 0, i, i);
  // All but the first are due at once.
  SetRange(10, 15);
  EXPECT_EQ(Cells(), " 1; 2; 3; 4; 4; 4;");
}

TEST_F(MeasureExportTest, WaitsAtATimeThatFellUntilItIsPassed) {
  for (const int second : {0, 5, 2, 6}) Add(data, 0, second, second);
  SetRange(0, 7);
  // 2 comes behind 5, and one row later.
  EXPECT_EQ(Cells(), " 0; 0; 0; 0; 0; 5; 2; 6;");
}

TEST_F(MeasureExportTest, TakesTheBytesThatTheLineIsStoredAs) {
  Show(0, "Msb", kStoredMsb, 1);
  Show(1, "Lsb", kStoredLsb, 1);
  Show(2, "Both", kStoredBoth, 1);
  Show(3, "Other", 7, 1);
  for (const int channel : {0, 1, 2, 3, 100}) Add(data, channel, 0, 0x1234);
  SetRange(0, 0);
  EXPECT_EQ(Cells(), " 18 52 4660 4660 0;");
  Line(data, 100).StoredAs = kStoredBoth;
  Line(data, 100).Factor = 2;
  EXPECT_EQ(Cells(), " 18 52 4660 4660 9320;");
}

TEST_F(MeasureExportTest, OfALaneTheFactorIsNoBitNumber) {
  Show(0, "Lane", kStoredLsb, 3);
  Line(data, 0).Unit = kOnOff;
  Add(data, 0, 0, 5);
  SetRange(0, 0);
  EXPECT_EQ(Cells(), " 15;");
}

TEST_F(MeasureExportTest, CellsAreTheShortestTextsOf32BitProducts) {
  const std::vector<std::tuple<float, int, std::string>> cells = {
      {0.1F, 3, "0.3"},
      {0.1F, 65535, "6553.5"},
      {1e-3F, 5, "0.0050000004"},
      {-1.0F, 5, "-5"},
      {30.0F, 255, "7650"},
      {2e5F, 5, "1000000"},
      {0.0F, 9, "0"},
      {1e20F, 1, "100000002004087734272"},
      {0.1F, 9, "0.90000004"}};
  for (const auto& [factor, raw, text] : cells) {
    Line(data, 0).Factor = factor;
    Channel(data, 0).Dimension(MeasureChannel::kUpperBound);
    Add(data, 0, 0, raw);
    SetRange(0, 0);
    EXPECT_EQ(Cells(), " " + text + ";");
    // As 32-bit numbers the product and the text are one.
    EXPECT_EQ(std::stof(text), static_cast<float>(raw) * factor);
  }
}

TEST_F(MeasureExportTest, RawValuesBeyondTheLineReadAsTheyAre) {
  Add(data, 0, 0, -70'000);
  Add(data, 0, 1, 70'000);
  Add(data, 0, 2, 2'147'483'647);
  SetRange(0, 2);
  EXPECT_EQ(Cells(), " -70000; 70000; 2147483648;");
}

TEST_F(MeasureExportTest, TextsTooLongForATableStandInTheirRows) {
  Show(0, "Long", kStoredBoth, 1e25F);
  Show(1, "Short", kStoredBoth, 1);
  for (int i = 0; i < 3; ++i) {
    Add(data, 0, i * 100, i);
    Add(data, 1, i, i + 5);
  }
  SetRange(0, 300);
  std::string expected;
  for (int row = 0; row <= 300; ++row) {
    const std::string value =
        FormatSingle(1e25F * static_cast<float>(row / 100 < 2 ? row / 100 : 2));
    if (row >= 100) {
      ASSERT_GT(value.size(), 20U);
    }
    expected += " " + value + " " + std::to_string(5 + std::min(row, 2)) + ";";
  }
  EXPECT_EQ(Cells(), expected);
}

// More kinds of lines than there are tables.
TEST_F(MeasureExportTest, LinesOfManyFactorsHaveTheirOwnValues) {
  std::string expected;
  for (int i = 0; i < 40; ++i) {
    Show(i, "L", kStoredBoth, static_cast<float>(i));
    Add(data, i, 0, 2);
    Add(data, i, 70, 3);
  }
  SetRange(0, 150);
  for (int row = 0; row <= 150; ++row) {
    for (int i = 0; i < 40; ++i) expected += " " + std::to_string((row < 70 ? 2 : 3) * i);
    expected += ";";
  }
  EXPECT_EQ(Cells(), expected);
}

TEST_F(MeasureExportTest, ElementZeroIsNeverShown) {
  for (int i = 0; i < 90'001; ++i) Add(data, 0, i, i);
  SetRange(0, 1);
  EXPECT_EQ(Cells(), " 1; 1;");
}

TEST_F(MeasureExportTest, BehindAnElementWithoutATimeNothingIsShown) {
  Channel(data, 0).Append({1, At(0)});
  Channel(data, 0).Append({2, 0});
  Channel(data, 0).Append({3, At(2)});
  Channel(data, 1).Append({4, At(0)});
  Channel(data, 1).Append({5, 0});
  SetRange(0, 2);
  EXPECT_EQ(Cells(), " 3; 3; 3;");
}

TEST_F(MeasureExportTest, NamesKeepTheirFieldAndTheFilesEncoding) {
  Line(data, 0).Alias = "Grö\tße\n";
  Add(data, 0, 0, 1);
  SetRange(0, 0);
  EXPECT_EQ(Text(),
            "Time\tGr\xF6 \xDF"
            "e \tStatus bits\r\n05/03/2024 14:07:09\t1\r\n");
  Line(data, 0).Alias = "温度";
  EXPECT_EQ(Text(), "Time\t温度\tStatus bits\r\n05/03/2024 14:07:09\t1\r\n");
}

TEST_F(MeasureExportTest, NumbersHaveTheSystemsSeparatorButForASheet) {
  locale.SetDecimalSeparator(",");
  Line(data, 0).Factor = 0.5F;
  Line(data, 0).Alias = "Größe";
  Add(data, 0, 0, 1);
  SetRange(0, 0);
  EXPECT_EQ(Cells(), " 0,5;");
  EXPECT_EQ(Text(Form::kSheet), "Time\tGröße\tStatus bits\r\n05/03/2024 14:07:09\t0.5\r\n");
}

// A plain retelling, row by row, of what the table has to be.
std::string Retold(const Graphic& data, const Locale& locale) {
  std::string text;
  std::vector<std::pair<int, int>> places;
  for (int i = 0; i <= data.LastChannel(); ++i) {
    const MeasureChannel& channel = data.Channels[static_cast<std::size_t>(i)];
    int at = channel.UpperBound();
    while (at >= 1 && channel[at].Time != 0) --at;
    if (channel.UpperBound() > 0 && at < channel.UpperBound()) places.emplace_back(i, at + 1);
  }
  for (std::int64_t t = ToSeconds(data.FirstTime); t <= ToSeconds(data.LastTime); ++t) {
    text += locale.ShortDate(FromSeconds(t)) + " " + locale.LongTime(FromSeconds(t));
    for (auto& [index, at] : places) {
      const MeasureChannel& channel = data.Channels[static_cast<std::size_t>(index)];
      if (at < channel.UpperBound() && channel[at + 1].Time <= t) ++at;
      GraphAttribute line = data.LineAt(index);
      line.Unit = kNoUnit;
      text += "\t" + FormatSingle(ValueOfLine(line, channel[at].Value));
    }
    text += "\r\n";
  }
  return text;
}

// The table was not made by this program.
TEST_F(MeasureExportTest, TheSampleIsExportedAsItIsKnown) {
  ReadInto(data, SampleBytes("burner_start.mss"));
  EXPECT_EQ(Text(), SampleBytes("burner_start.txt"));
}

TEST_F(MeasureExportTest, IsWhatAPlainRetellingSays) {
  for (unsigned seed = 1; seed <= 40; ++seed) {
    SCOPED_TRACE(seed);
    data = RandomStore(seed);
    SetRange(50'000, 53'000);
    const std::string text = Text();
    EXPECT_EQ(text.substr(text.find('\n') + 1), Retold(data, locale));
  }
}

// --- While the graph goes on ---------------------------------------------------------------------

TEST_F(MeasureExportTest, ShowsWhatThereWasWhenItWasMade) {
  for (int i = 0; i < 60'000; ++i) Add(data, 0, i, i % 777);
  SetRange(0, 59'999);
  const std::string before = Text();
  MeasureExport source(data, locale, Form::kFile);
  std::string text;
  int second = 60'000;
  double share = 0;
  for (std::string piece; source.Next(piece); ++second) {
    text += piece;
    Add(data, 0, second, 1);
    EXPECT_LT(piece.size(), PieceSource::kPiece + 8'192);
    EXPECT_GE(source.Share(), share);
    share = source.Share();
  }
  EXPECT_EQ(text, before);
  EXPECT_EQ(share, 1);
  EXPECT_GT(second, 60'004);
}

TEST_F(MeasureExportTest, SamplesThatFallOutMeanwhileArePassedOver) {
  for (int i = 0; i < 90'001; ++i) Add(data, 0, i, i % 1000);
  SetRange(0, 90'000);
  MeasureExport source(data, locale, Form::kFile);
  std::string text;
  std::string piece;
  source.Next(text);
  const auto rows = static_cast<int>(std::count(text.begin(), text.end(), '\n')) - 1;
  for (int i = 0; i < 20'000; ++i) Add(data, 0, 100'000 + i, 1);
  while (source.Next(piece)) text += piece;
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 90'002);
  // Until the oldest one that is left is due, the last one is shown; from there on all is as it
  // was.
  ASSERT_LT(rows, 20'000);
  const auto cell = [&](int second) {
    const std::string time = "05/03/2024 " + locale.LongTime(FromSeconds(At(second))) + "\t";
    const std::size_t at = text.find(time) + time.size();
    return text.substr(at, text.find('\r', at) - at);
  };
  EXPECT_EQ(cell(rows), std::to_string((rows - 1) % 1000));
  EXPECT_EQ(cell(19'999), std::to_string((rows - 1) % 1000));
  EXPECT_EQ(cell(20'000), "0");
  EXPECT_EQ(cell(25'123), "123");
}

TEST_F(MeasureExportTest, AChannelThatIsEmptiedMeanwhileStaysAtItsLastValue) {
  for (int i = 0; i < 40'000; ++i) Add(data, 0, i, 5);
  SetRange(0, 39'999);
  MeasureExport source(data, locale, Form::kFile);
  std::string text;
  std::string piece;
  source.Next(text);
  data.Channels.clear();
  while (source.Next(piece)) text += piece;
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 40'001);
  EXPECT_TRUE(text.ends_with("\t5\r\n"));
}

// One hour has a letter that neither the first row nor the last one shows.
class OmegaAtThree final : public Locale {
 public:
  std::string LongTime(Date date) const override {
    return plain_.LongTime(date) + (ToCivil(date).hour == 15 ? " Ω" : "");
  }
  std::string ShortDate(Date date) const override { return plain_.ShortDate(date); }
  std::string LongDate(Date date) const override { return plain_.LongDate(date); }
  const MonthNames& Months() const override { return plain_.Months(); }
  std::string DecimalSeparator() const override { return "."; }

 private:
  FakeLocale plain_;
};

TEST_F(MeasureExportTest, IsOneTextWhateverATimeInTheMiddleHolds) {
  Line(data, 0).Alias = "Wärme";
  Add(data, 0, 0, 5);
  SetRange(0, 7'200);
  const OmegaAtThree at_three;
  MeasureExport source(data, at_three, Form::kFile);
  std::string bytes;
  for (std::string piece; source.Next(piece);) bytes += piece;
  const std::string text = DecodeText(bytes);
  EXPECT_TRUE(text.starts_with("Time\tWärme\tStatus bits\r\n"));
  EXPECT_NE(text.find("\r\n05/03/2024 15:00:00 ?\t5\r\n"), std::string::npos);
}

TEST_F(MeasureExportTest, WithoutASampleIsTheTimesAlone) {
  SetRange(0, 2);
  EXPECT_EQ(Text(),
            "Time\tStatus bits\r\n05/03/2024 14:07:09\r\n05/03/2024 14:07:10\r\n"
            "05/03/2024 14:07:11\r\n");
}

// --- Times ---------------------------------------------------------------------------------------

// Where the digits of a time do not stand as the others' do.
class OddLocale final : public Locale {
 public:
  explicit OddLocale(std::string pattern) : pattern_(std::move(pattern)) {}

  std::string LongTime(Date date) const override {
    ++asked;
    if (pattern_ != "half day") return FormatDate(date, pattern_, Months());
    const CivilTime time = ToCivil(date);
    return std::to_string((time.hour + 11) % 12 + 1) +
           FormatDate(date, "hh:nn:ss", Months()).substr(2) + (time.hour < 12 ? " am" : " pm");
  }
  std::string ShortDate(Date date) const override { return plain_.ShortDate(date); }
  std::string LongDate(Date date) const override { return plain_.LongDate(date); }
  const MonthNames& Months() const override { return plain_.Months(); }
  std::string DecimalSeparator() const override { return plain_.DecimalSeparator(); }

  mutable int asked = 0;

 private:
  std::string pattern_;
  FakeLocale plain_;
};

TEST(RowTimes, AreWhatTheLocaleSaysOfEachSecond) {
  for (const char* pattern :
       {"hh:nn:ss", "half day", "ss:nn:hh", "hh nn", "hh", "hhnn.ss ss", "nn:ss hh", "mmmm"}) {
    SCOPED_TRACE(pattern);
    const OddLocale locale(pattern);
    RowTimes times(locale);
    const std::int64_t begin = ToSeconds(ToDate({2024, 2, 29, 22, 58, 30}));
    for (std::int64_t second = begin; second < begin + 8'000; ++second) {
      const Date time = FromSeconds(second);
      ASSERT_EQ(times.Text(second), locale.ShortDate(time) + " " + locale.LongTime(time));
    }
  }
}

TEST(RowTimes, AlsoBeforeDayZeroAndInAnyOrder) {
  const FakeLocale locale;
  RowTimes times(locale);
  for (const std::int64_t second : {-1, -3'600, -3'601, 0, 7'200, 3'599, -86'400}) {
    const Date time = FromSeconds(second);
    EXPECT_EQ(times.Text(second), locale.ShortDate(time) + " " + locale.LongTime(time)) << second;
  }
}

TEST(RowTimes, AskTheLocaleSeldom) {
  const OddLocale locale("hh:nn:ss");
  RowTimes times(locale);
  for (int second = 0; second < 86'400; ++second) times.Text(second);
  EXPECT_EQ(locale.asked, 3 * 24);
}

}  // namespace
}  // namespace tarnlink
