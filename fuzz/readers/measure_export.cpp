#include "graph/measure_export.h"

#include <algorithm>
#include <limits>

#include "common/text_file.h"
#include "fuzz/claim.h"
#include "fuzz/readers/measure_input.h"
#include "fuzz/readers/reader_claims.h"
#include "fuzz/readers/readers.h"
#include "support/fake_locale.h"

namespace tarnlink {
namespace {

constexpr int kMostRows = 100;  // of a run: it is to be short

// Morning and afternoon have words of their own.
class TwelveHours final : public Locale {
 public:
  TwelveHours(std::string morning, std::string afternoon, std::string separator)
      : morning_(std::move(morning)),
        afternoon_(std::move(afternoon)),
        separator_(std::move(separator)) {}

  std::string LongTime(Date date) const override {
    return plain_.LongTime(date) + (ToCivil(date).hour < 12 ? morning_ : afternoon_);
  }
  std::string ShortDate(Date date) const override { return plain_.ShortDate(date); }
  std::string LongDate(Date date) const override { return plain_.LongDate(date); }
  const MonthNames& Months() const override { return plain_.Months(); }
  std::string DecimalSeparator() const override { return separator_; }

 private:
  FakeLocale plain_;
  std::string morning_;
  std::string afternoon_;
  std::string separator_;
};

std::string Exported(const Graphic& data, const Locale& locale, MeasureExport::Form form) {
  MeasureExport source(data, locale, form);
  std::string text;
  double share = source.Share();
  for (std::string piece; source.Next(piece);) {
    text += piece;
    Claim(source.Share() >= share && source.Share() <= 1, "a share only rises");
    share = source.Share();
  }
  return text;
}

// Every row has the same fields; the header may name one that no row has.
void ClaimTable(std::string_view text, std::size_t rows) {
  Claim(text.starts_with("Time\t") && LineCount(text) == rows + 1, "a row for each second");
  LineReader lines(text);
  std::string_view line;
  lines.Next(line);
  const auto header = std::count(line.begin(), line.end(), '\t');
  std::optional<std::ptrdiff_t> fields;
  while (lines.Next(line)) {
    const auto count = std::count(line.begin(), line.end(), '\t');
    Claim(count == fields.value_or(count), "all rows have the same fields");
    fields = count;
  }
  Claim(!fields || *fields == header || *fields == header - 1, "which the header names");
}

void Run(std::string_view input) {
  FuzzInput bytes(input);
  const bool has_comma = bytes.Coin();
  const auto word = [&bytes] { return LogField(DecodeText(bytes.Field())); };
  const std::string morning = word();
  const TwelveHours locale(morning, word(), has_comma ? "," : ".");
  constexpr std::size_t kAll = std::numeric_limits<std::size_t>::max();
  Graphic data = ReadGraphFile(bytes.Rest(), true, kAll, kAll).data;
  const std::int64_t first = ToSeconds(data.FirstTime);
  const std::int64_t last = std::min(ToSeconds(data.LastTime), first + kMostRows - 1);
  data.LastTime = FromSeconds(last);
  const auto rows = static_cast<std::size_t>(last - first + 1);
  const std::string sheet = Exported(data, locale, MeasureExport::Form::kSheet);
  Claim(IsText(sheet), "a sheet is a text");
  ClaimTable(sheet, rows);
  const std::string file = DecodeText(Exported(data, locale, MeasureExport::Form::kFile));
  ClaimTable(file, rows);
  Claim(file.substr(0, file.find('\n')) == sheet.substr(0, sheet.find('\n')),
        "a file has the same header");
  Claim(has_comma || morning.find('\xEF') != std::string::npos || file == sheet,
        "a file is read as one text");
}

std::vector<std::string> Seeds() {
  const std::string samples = "20240305115959 65535\r\n20240305120001 5\r\n20240305115930 -3\r\n";
  using namespace std::string_literals;
  // Channels without room: there are times, but no column.
  std::string narrow = ShortMeasureFile("");
  narrow.resize(narrow.find(" 1 \r\nM"));
  narrow += " 1 \r\nM\r\n 0 \r\n20240305140709 7\r\nM\r\n 0 \r\n20240305140719 7\r\n";
  return {"\0\0\0"s + narrow,
          "\0\0\0"s + ShortMeasureFile(samples),
          "\1 a.m.\0 p.m.\0"s + ShortMeasureFile(samples),
          "\0 \xCF\x80\xCE\xBC\0 \xE9\0"s + ShortMeasureFile("20240305115959 1\r\n"),
          "\0\0\0"s + ShortMeasureFile(""),
          "\1\0\0"s};
}

}  // namespace

FuzzTarget MeasureExportTarget() { return {"measure_export", Run, Seeds}; }

}  // namespace tarnlink
