#include "tools/sniffer_text.h"

#include <array>

#include "common/numbers.h"
#include "common/text.h"
#include "common/text_file.h"
#include "files/log_file.h"
#include "protocols/frame_bytes.h"
#include "protocols/zolt_frame.h"

namespace tarnlink {
namespace {

struct KnownKind {
  std::uint8_t kind;
  FrameKind meaning;
};

constexpr std::array<KnownKind, 7> kKinds = {{
    {zolt_frame::kRead, {"M->S Read", true}},
    {zolt_frame::kWrite, {"M->S Write", true}},
    {zolt_frame::kReadAcknowledge, {"S->M Read ACK", false}},
    {zolt_frame::kWriteAcknowledge, {"S->M Write ACK", false}},
    {zolt_frame::kUnknownDataId, {"S->M Unknown ID", false}},
    {zolt_frame::kCorruptedMessage, {"S->M Corrupted", false}},
    {zolt_frame::kOutsideRange, {"*->* Limits", std::nullopt}},
}};

std::string KindText(const SniffedFrame& frame) {
  return Hex(frame.type) + " " + std::string(KindOfFrame(frame.type).text);
}

std::string Day(Date now, const Locale& locale) {
  return FormatDate(now, "d-mmm-yyyy", locale.Months());
}

std::string Decimal(std::string_view digits) { return std::to_string(HexNumber(digits)); }

}  // namespace

SniffedFrame TakeApart(std::string_view raw) {
  const auto field = [&](zolt_frame::Field which) {
    return ShownCharacters(zolt_frame::Text(raw, which));
  };
  return {.characters = ShownCharacters(raw.substr(0, zolt_frame::kLength)),
          .type = zolt_frame::TypeOf(raw),
          .id = field(zolt_frame::kId),
          .high = field(zolt_frame::kDataHigh),
          .low = field(zolt_frame::kDataLow)};
}

FrameKind KindOfFrame(std::uint8_t type) {
  for (const KnownKind& known : kKinds) {
    if (known.kind == zolt_frame::KindOf(type)) return known.meaning;
  }
  return {};
}

std::string ShownCharacters(std::string_view raw) {
  std::string shown(raw);
  for (char& one : shown) {
    if (one < ' ' || one > '~') one = ' ';
  }
  return shown;
}

std::string TextLine(const SniffedFrame& frame, Date now, const Locale& locale) {
  return locale.LongDate(now) + " " + locale.LongTime(now) + " " + frame.characters + " 0x" +
         frame.id + " 0x" + frame.high + " 0x" + frame.low + " " + KindText(frame) +
         std::string(kLineEnd);
}

std::string LogRow(const SniffedFrame& frame, Date now, const Locale& locale) {
  return LogField(Day(now, locale)) + " ." + LogField(locale.LongTime(now)) + " ." +
         frame.characters + " .0x" + frame.id + " ." + Decimal(frame.high) + " ." +
         Decimal(frame.low) + " ." + KindText(frame) + std::string(kLineEnd);
}

std::string SnifferLogHeading(Date now, const Locale& locale) {
  constexpr std::string_view kColumns =
      "    Date    .Time         .Received message .ID      .MSB   .LSB   .Message type";
  std::string heading = LogField(Day(now, locale)) + " " + LogField(locale.LongTime(now));
  heading.append(kLineEnd).append(kColumns).append(kLineEnd);
  return heading;
}

void RunningText::Append(std::string_view line) {
  constexpr int kLongest = 30'000;    // characters
  constexpr int kFirstKept = 29'000;  // counted from 1
  if (CharacterCount(text_) > kLongest) {
    text_.erase(0, FirstCharacters(text_, kFirstKept - 1).size());
  }
  text_ += line;
}

std::optional<TextPiece> FindInText(std::string_view text, std::string_view what, int from) {
  if (what.empty()) return std::nullopt;
  const std::string letters = ToLower(text);
  const std::string wanted = ToLower(what);
  std::size_t found = letters.find(wanted, FirstCharacters(text, from).size());
  if (found == std::string::npos) found = letters.find(wanted);
  if (found == std::string::npos) return std::nullopt;
  return TextPiece{CharacterCount(text.substr(0, found)), CharacterCount(what)};
}

}  // namespace tarnlink
