#include "graph/measure_file_reader.h"

#include <algorithm>
#include <array>
#include <utility>

#include "common/local_decimal.h"
#include "common/numbers.h"
#include "common/run_time_error.h"
#include "common/shown_text.h"
#include "common/text.h"

namespace tarnlink {

namespace {

constexpr std::size_t kColours = 5;

// Fewer lines could not share a channel as lanes do. More than the greatest are not to be had, so
// that a damaged count takes no memory.
constexpr int kLowestLast = kLanes;  // index of the last line
constexpr int kHighestLast = 1015;   // of the last line, and of the last channel

// Of a file's lines, fifteen for each line of the graph.
constexpr int kFieldLines = 15;

constexpr std::string_view kEndMark = "0000";

// `number`, which was read from `text`, if that is whole as it is written: a fraction or an
// exponent would have been rounded.
template <class Number>
Number Whole(Number number, std::string_view text, const char* letters = "+-0123456789 ") {
  if (text.find_first_not_of(letters) == std::string_view::npos) return number;
  throw RunTimeError(kTypeMismatch, "\"" + ShownText(text) + "\" is no whole number.");
}

int CountIn(std::string_view line, int lowest, int highest, const char* what) {
  const std::int32_t count = Whole(ToLong(line), line);
  if (count >= lowest && count <= highest) return count;
  throw RunTimeError(kSubscript, std::string(what) + " is " + std::to_string(count) +
                                     ", which is not between " + std::to_string(lowest) + " and " +
                                     std::to_string(highest) + ".");
}

bool ToBoolean(std::string_view line) {
  const std::string word = ToLower(line);
  if (word == "true") return true;
  if (word == "false") return false;
  throw RunTimeError(kTypeMismatch, "neither \"True\" nor \"False\" stands there.");
}

// With a point or a comma, whoever wrote it.
float ToFactor(std::string_view line) { return ToSingle(LocalizeDecimal(line, ".")); }

void SetField(GraphAttribute& attribute, int field, std::string_view line) {
  switch (field) {
    case 1:
      attribute.Class = Whole(ToByte(line), line);
      break;
    case 2:
      attribute.ID = Whole(ToLong(line), line);
      break;
    case 3:
      attribute.Data = Whole(ToLong(line), line);
      break;
    case 4:
      attribute.SlaveAddress = Whole(ToByte(line), line);
      break;
    case 5:
      attribute.FixedCaption = line;
      break;
    case 6:
      attribute.ShowLine = ToBoolean(line);
      break;
    case 7:
      attribute.ShowCaption = ToBoolean(line);
      break;
    case 8:
      attribute.Alias = line;
      break;
    case 9:
      attribute.Description = line;
      break;
    case 10:
      attribute.LineColor = Whole(ToLong(line), line);
      break;
    case 11:
      attribute.LineStyle = Whole(ToInteger(line), line);
      break;
    case 12:
      attribute.Unit = Whole(ToLong(line), line);
      break;
    case 13:
      attribute.Factor = ToFactor(line);
      break;
    case 14:
      attribute.StoredAs = Whole(ToLong(line), line);
      break;
    default:
      break;  // the line in front of them, which says nothing
  }
}

// A time in any form that a number may have, such as with blanks.
std::int64_t TimeOf(std::string_view line) {
  const auto part = [line](int position, int length) {
    const std::string text = Mid(line, position, length);
    return Whole(ToInteger(text), text, "0123456789 ");
  };
  const std::optional<std::int64_t> seconds =
      SecondsOf(part(1, 4), part(5, 2), part(7, 2), part(9, 2), part(11, 2), part(13, 2));
  if (seconds) return *seconds;
  throw RunTimeError(kTypeMismatch,
                     "\"" + ShownText(line.substr(0, kStampDigits)) + "\" is no date and time.");
}

std::vector<std::string*> TextsOf(std::vector<GraphAttribute>& attributes) {
  std::vector<std::string*> texts;
  for (GraphAttribute& line : attributes) {
    for (std::string* text : {&line.FixedCaption, &line.Alias, &line.Description}) {
      texts.push_back(text);
    }
  }
  return texts;
}

}  // namespace

bool MeasureFileReader::Take(std::string_view piece) {
  while (!piece.empty() && !IsDone()) {
    if (stage_ == Stage::kSamples && !in_line_) {
      piece.remove_prefix(TakePlainSamples(piece));
    }
    const std::size_t end = piece.find('\n');
    in_line_ = end == std::string_view::npos;
    const std::string_view next = in_line_ ? piece : piece.substr(0, end + 1);
    piece.remove_prefix(next.size());
    lines_.Feed(next);
    for (std::string_view line; lines_.Next(line);) TakeLine(line);
  }
  return !IsDone();
}

void MeasureFileReader::Finish() {
  std::string_view line;
  if (!IsDone() && lines_.Last(line)) TakeLine(line);
  if (!IsDone()) Fail(kPastEndOfFile, "it ends behind line " + std::to_string(line_) + ".");
}

void MeasureFileReader::Fail(int code, const std::string& reason) const {
  throw RunTimeError(code, "\"" + path_ + "\" could not be read: " + reason);
}

void MeasureFileReader::TakeLine(std::string_view line) {
  ++line_;
  try {
    switch (stage_) {
      case Stage::kTitle:
        stage_ = Stage::kColours;
        break;
      case Stage::kColours:
        TakeColour(line);
        break;
      case Stage::kLastLine:
        TakeLastAttribute(line);
        break;
      case Stage::kAttributes:
        TakeField(line);
        break;
      case Stage::kLastChannel:
        TakeLastChannel(line);
        break;
      case Stage::kChannelTitle:
        stage_ = Stage::kUpperBound;
        break;
      case Stage::kUpperBound:
        TakeUpperBound(line);
        break;
      case Stage::kSamples:
        TakeSample(line);
        break;
      case Stage::kDone:
        break;
    }
  } catch (const RunTimeError& error) {
    Fail(error.code(), "line " + std::to_string(line_) + ": " + error.what());
  }
}

void MeasureFileReader::TakeColour(std::string_view line) {
  colours_.push_back(Whole(ToLong(line), line));
  if (colours_.size() == kColours) stage_ = Stage::kLastLine;
}

void MeasureFileReader::TakeLastAttribute(std::string_view line) {
  const int last = CountIn(line, kLowestLast, kHighestLast, "the number of the last line");
  attributes_.emplace(static_cast<std::size_t>(last) + 1);
  stage_ = Stage::kAttributes;
}

void MeasureFileReader::TakeField(std::string_view line) {
  const auto index = static_cast<std::size_t>(position_ / kFieldLines);
  SetField((*attributes_)[index], position_ % kFieldLines, line);
  ++position_;
  if (static_cast<std::size_t>(position_) < attributes_->size() * kFieldLines) return;
  stage_ = with_measurements_ ? Stage::kLastChannel : Stage::kDone;
}

void MeasureFileReader::TakeLastChannel(std::string_view line) {
  const int last = CountIn(line, 0, kHighestLast, "the number of the last channel");
  channels_.emplace(static_cast<std::size_t>(last) + 1);
  stage_ = Stage::kChannelTitle;
}

void MeasureFileReader::TakeUpperBound(std::string_view line) {
  upper_bound_ = CountIn(line, 0, MeasureChannel::kUpperBound, "the size of a channel");
  position_ = upper_bound_;
  samples_.clear();
  stage_ = Stage::kSamples;
}

// As many lines as the bound says, one at least: the last of them ends the channel also where it
// holds a sample.
void MeasureFileReader::TakeSample(std::string_view line) {
  const bool is_end = line.substr(0, kEndMark.size()) == kEndMark;
  if (!is_end) {
    const std::int64_t time = TimeOf(line);
    const std::string_view value = line.substr(std::min(kStampDigits, line.size()));
    Store(Whole(ToLong(value), value), time);
  }
  --position_;
  if (is_end || position_ <= 0) EndChannel();
}

std::size_t MeasureFileReader::TakePlainSamples(std::string_view text) {
  constexpr int kMostDigits = 9;
  constexpr std::size_t kLongest = kStampDigits + 1 + kMostDigits + kLineEnd.size();
  const char* at = text.data();
  const char* const last = at + text.size() - std::min(text.size(), kLongest);
  // The last line of a channel is left to `TakeSample`, and so is anything unusual.
  while (at < last && position_ > 1) {
    if (std::string_view(at, kEndMark.size()) == kEndMark || at[kStampDigits] != ' ') break;
    const std::optional<std::int64_t> time = stamps_.Read(at);
    if (!time) break;
    const char* const digits = at + kStampDigits + 1;
    const char* behind = digits;
    std::int32_t value = 0;
    while (*behind >= '0' && *behind <= '9' && behind < digits + kMostDigits) {
      value = value * 10 + (*behind++ - '0');
    }
    if (behind == digits || behind[0] != '\r' || behind[1] != '\n') break;
    Store(value, *time);
    --position_;
    ++line_;
    at = behind + kLineEnd.size();
  }
  return static_cast<std::size_t>(at - text.data());
}

void MeasureFileReader::Store(std::int32_t value, std::int64_t time) {
  samples_.push_back({value, time});
  if (!has_sample_) first_time_ = last_time_ = time;
  has_sample_ = true;
  first_time_ = std::min(first_time_, time);
  last_time_ = std::max(last_time_, time);
}

void MeasureFileReader::EndChannel() {
  FillChannel();
  ++channel_;
  stage_ = channel_ < channels_->size() ? Stage::kChannelTitle : Stage::kDone;
}

void MeasureFileReader::FillChannel() { (*channels_)[channel_].Fill(upper_bound_, samples_); }

void MeasureFileReader::HandOver(Graphic& data) {
  const std::array<Colour*, kColours> colours = {&data.Colors.GridColor, &data.Colors.GraphColor,
                                                 &data.Colors.BackColor, &data.Colors.CursorColor,
                                                 &data.Colors.CaptionColor};
  for (std::size_t i = 0; i < colours_.size(); ++i) *colours.at(i) = colours_[i];
  if (stage_ == Stage::kSamples) FillChannel();
  if (attributes_) {
    DecodeTexts();
    data.Attributes = std::move(*attributes_);
    if (IsDone() && !with_measurements_) data.Channels = ChannelsOf(data.Attributes);
  }
  if (channels_) data.Channels = std::move(*channels_);
  if (!has_sample_) return;
  data.FirstTime = FromSeconds(first_time_);
  data.LastTime = FromSeconds(last_time_);
}

// All texts of a file are in one encoding, which shows only in all of them.
void MeasureFileReader::DecodeTexts() {
  const std::vector<std::string*> texts = TextsOf(*attributes_);
  std::string all;
  for (const std::string* text : texts) all += '\n' + *text;
  all = DecodeText(all);
  std::string_view rest = all;
  for (std::string* text : texts) {
    rest.remove_prefix(1);
    const std::string_view next = rest.substr(0, rest.find('\n'));
    *text = next;
    rest.remove_prefix(next.size());
  }
}

std::vector<MeasureChannel> ChannelsOf(const std::vector<GraphAttribute>& lines) {
  std::vector<MeasureChannel> channels(lines.size() - (kLanes - 1));
  for (std::size_t i = 0; i < channels.size(); ++i) {
    if (lines[i].IsShown() || i + 1 == channels.size()) {
      channels[i].Dimension(MeasureChannel::kUpperBound);
    }
  }
  return channels;
}

}  // namespace tarnlink
