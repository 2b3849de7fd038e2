#include "common/dates.h"

#include "common/text.h"
#include "common/text_file.h"
#include "files/screen_export.h"
#include "fuzz/claim.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/readers/number_bytes.h"
#include "fuzz/readers/reader_claims.h"
#include "fuzz/readers/readers.h"
#include "graph/measure_stamps.h"

namespace tarnlink {
namespace {

void ClaimCivil(Date date) {
  const CivilTime time = ToCivil(date);
  Claim(time.year >= 100 && time.year <= 9999, "the year has a place in a calendar");
  Claim(time.month >= 1 && time.month <= 12 && time.day >= 1 && time.day <= 31, "so has the day");
  Claim(time.hour >= 0 && time.hour <= 23 && time.minute >= 0 && time.minute <= 59 &&
            time.second >= 0 && time.second <= 59,
        "and a clock shows the time");
  const auto seconds =
      SecondsOf(time.year, time.month, time.day, time.hour, time.minute, time.second);
  Claim(seconds && *seconds == ToSeconds(ToDate(time)), "there is such a moment");
  const CivilTime again = ToCivil(FromSeconds(*seconds));
  Claim(again.day == time.day && again.second == time.second && again.year == time.year,
        "it comes back as it went");
}

void ClaimStamp(std::string_view digits) {
  if (digits.size() < kStampDigits) return;
  StampReader reader;
  const auto seconds = reader.Read(digits.data());
  if (!seconds) return;
  std::string written(kStampDigits, ' ');
  SampleStamps stamps;
  stamps.Put(*seconds, written.data());
  Claim(written == digits.substr(0, kStampDigits), "a stamp is written as it was read");
}

void Run(std::string_view input) {
  FuzzInput bytes(input);
  const Date date = AnyDouble(bytes);
  ClaimCivil(date);
  ClaimCivil(static_cast<double>(Whole32(bytes)) / 1000);
  const std::int64_t seconds = Whole64(bytes) % std::int64_t{1'000'000'000'000};
  Claim(ToSeconds(FromSeconds(seconds)) == seconds, "no second is lost");
  constexpr std::size_t kLongestName = 12;
  MonthNames names = EnglishMonthNames();
  for (int i = bytes.Below(4); i > 0; --i) {
    names.at(static_cast<std::size_t>(bytes.Below(12))) =
        DecodeText(bytes.ShortText().substr(0, kLongestName));
  }
  Claim(IsText(ExportMoment(date, names)), "a moment is a text");
  const std::string_view pattern = bytes.Rest();
  ClaimStamp(pattern);
  const std::string text = DecodeText(pattern);
  Claim(IsText(FormatDate(date, text, names)), "a date is a text");
}

std::vector<std::string> Seeds() {
  const std::string day("\0\0\0\0\x80\x1D\xE6\x40\1\2\3\4\0\0\0\0\1\0\0\0", 20);
  return {day + std::string("\0d-mmm-yyyy hh:nn:ss", 21),
          day + std::string("\0", 1) + "20240305140709",
          day + "\2\5\4juin\6\4juilmmm mmmm mm hhmm dd yy", std::string(20, '\xFF') + "yyyy"};
}

}  // namespace

FuzzTarget DatesTarget() { return {"dates", Run, Seeds}; }

}  // namespace tarnlink
