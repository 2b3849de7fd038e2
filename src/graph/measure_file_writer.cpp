#include "graph/measure_file_writer.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <string_view>

#include "common/local_decimal.h"
#include "common/numbers.h"
#include "common/text_file.h"

namespace tarnlink {

namespace {

// Elements 1 and 0 are never written.
constexpr int kLowestIndex = 2;

constexpr std::string_view kEndOfChannel = "00000000000000 0\r\n";

// A value and the line's end, for all values that come from the line.
class ValueTexts {
 public:
  static constexpr std::size_t kMost = 7;

  ValueTexts() : texts_(kCount) {
    for (std::size_t value = 0; value < kCount; ++value) {
      const std::string text = std::to_string(value) + "\r\n";
      std::copy(text.begin(), text.end(), texts_[value].text.begin());
      texts_[value].length = static_cast<std::uint8_t>(text.size());
    }
  }
  // Null for any other value. Otherwise what is behind its text; a byte more may be written over.
  char* Put(std::int32_t value, char* to) const {
    if (static_cast<std::uint32_t>(value) >= kCount) return nullptr;
    const Text& text = texts_[static_cast<std::size_t>(value)];
    std::memcpy(to, &text, sizeof(text));
    return to + text.length;
  }

 private:
  static constexpr std::size_t kCount = 65'536;
  struct Text {
    std::array<char, kMost> text{};
    std::uint8_t length = 0;
  };

  std::vector<Text> texts_;
};

char* PutAnyValue(std::int32_t value, char* to) {
  const std::string text = std::to_string(value) + "\r\n";
  return std::copy(text.begin(), text.end(), to);
}

// A number on a line of its own: a blank, or the minus sign in its place, in front and one behind.
std::string NumberLine(std::int64_t number) { return Str(number) + " \r\n"; }

// The same with a decimal point, and no zero in front of it.
std::string SingleLine(float number, std::string_view decimal_separator) {
  std::string text = FormatSingle(number);
  const std::size_t digits = text.starts_with('-') ? 1 : 0;
  if (text.compare(digits, 2, "0.") == 0) text.erase(digits, 1);
  if (digits == 0) text.insert(0, 1, ' ');
  return LocalizeDecimal(text, decimal_separator) + " \r\n";
}

std::string TextLine(std::string_view text) {
  std::string line(text);
  // What would end the line.
  std::replace(line.begin(), line.end(), '\r', ' ');
  std::replace(line.begin(), line.end(), '\n', ' ');
  return line.append(kLineEnd);
}

std::string BooleanLine(bool value) { return value ? "True\r\n" : "False\r\n"; }

std::string AttributeLines(const GraphAttribute& line, std::string_view decimal_separator) {
  return NumberLine(line.Class) + NumberLine(line.ID) + NumberLine(line.Data) +
         NumberLine(line.SlaveAddress) + TextLine(line.FixedCaption) + BooleanLine(line.ShowLine) +
         BooleanLine(line.ShowCaption) + TextLine(line.Alias) + TextLine(line.Description) +
         NumberLine(line.LineColor) + NumberLine(line.LineStyle) + NumberLine(line.Unit) +
         SingleLine(line.Factor, decimal_separator) + NumberLine(line.StoredAs);
}

std::string FirstLines(const Graphic& data, const MeasureFileWriter::Content& content) {
  const GraphColors& colors = data.Colors;
  std::string text = "TarnLink Version " TARNLINK_VERSION;
  text += kLineEnd;
  for (const Colour colour : {colors.GridColor, colors.GraphColor, colors.BackColor,
                              colors.CursorColor, colors.CaptionColor}) {
    text += NumberLine(colour);
  }
  text += NumberLine(data.LastAttribute());
  for (int i = 0; i <= data.LastAttribute(); ++i) {
    text += "Attribute " + std::to_string(i);
    text += kLineEnd;
    text += AttributeLines(data.Attributes[static_cast<std::size_t>(i)], content.decimal_separator);
  }
  text = EncodeText(text);
  if (content.with_measurements) text += NumberLine(data.LastChannel());
  return text;
}

}  // namespace

MeasureFileWriter::MeasureFileWriter(const Graphic& data, const Content& content)
    : data_(data),
      newer_than_(content.newer_than.value_or(std::numeric_limits<std::int64_t>::min())),
      begin_(FirstLines(data, content)) {
  if (!content.with_measurements) return;
  for (const MeasureChannel& channel : data.Channels) {
    channels_.push_back({SampleRange(channel, kLowestIndex), channel.UpperBound()});
    total_ += channels_.back().range.behind - channels_.back().range.first;
  }
  left_ = total_;
}

bool MeasureFileWriter::Next(std::string& piece) {
  PieceFiller filler(piece);
  filler.Append(begin_);
  begin_.clear();
  while (filler.size() < kPiece && channel_ < channels_.size()) WriteChannel(filler);
  filler.Finish();
  return !piece.empty();
}

double MeasureFileWriter::Share() const {
  if (total_ == 0) return begin_.empty() ? 1 : 0;
  return 1 - static_cast<double>(left_) / static_cast<double>(total_);
}

void MeasureFileWriter::WriteChannel(PieceFiller& piece) {
  if (!in_samples_) {
    piece.Append("Measurement " + std::to_string(channel_) + "\r\n");
    piece.Append(NumberLine(channels_[channel_].upper_bound));
    in_samples_ = true;
  }
  while (piece.size() < kPiece) {
    if (WriteSamples(piece)) continue;
    piece.Append(kEndOfChannel);
    in_samples_ = false;
    ++channel_;
    return;
  }
}

bool MeasureFileWriter::WriteSamples(PieceFiller& piece) {
  constexpr std::size_t kLongest = kStampDigits + 16;  // of a line
  constexpr std::int64_t kLines = 256;
  static const ValueTexts values;
  SampleRange& range = channels_[channel_].range;
  if (channel_ >= data_.Channels.size()) return EndSamples();
  const MeasureChannel& channel = data_.Channels[channel_];
  const std::int64_t oldest = channel.Appended() - channel.Count();  // that is still there
  const std::int64_t first = std::max({range.first, oldest, range.behind - kLines});
  if (!range.IsOf(channel) || first >= range.behind) return EndSamples();
  char* to = piece.Room(kLines * kLongest);
  const auto newest = range.behind - oldest - 1;
  const std::int64_t* time = channel.Times().data() + newest;
  const std::int32_t* value = channel.Values().data() + newest;
  std::int64_t left = range.behind - first;
  for (; left > 0 && *time != 0 && *time > newer_than_; --left, --time, --value) {
    stamps_.Put(*time, to);
    to[kStampDigits] = ' ';
    to += kStampDigits + 1;
    char* const behind = values.Put(*value, to);
    to = behind != nullptr ? behind : PutAnyValue(*value, to);
  }
  piece.Take(to);
  const std::int64_t written = range.behind - first - left;
  range.behind -= written;
  left_ -= written;
  return left == 0 || EndSamples();
}

bool MeasureFileWriter::EndSamples() {
  left_ -= channels_[channel_].range.behind - channels_[channel_].range.first;
  return false;
}

}  // namespace tarnlink
