// What the sniffer says of a frame: a line of its running text, and a row of its log.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "common/dates.h"
#include "platform/locale.h"

namespace tarnlink {

// A frame taken apart. IDs and data stand as they came, digits or not.
struct SniffedFrame {
  std::string characters;  // the first sixteen, see ShownCharacters
  std::uint8_t type = 0;
  std::string id;
  std::string high;
  std::string low;
};

// `raw` has a type byte.
SniffedFrame TakeApart(std::string_view raw);

// What a kind of frame is called, and who sends it; neither says anything of a kind that is not
// known, and the limits nothing of the sender.
struct FrameKind {
  std::string_view text;
  std::optional<bool> from_master;
};
FrameKind KindOfFrame(std::uint8_t type);

// Of the same length: what is no printable character of ASCII is a blank, so that a frame stands in
// one line whatever it is made of.
std::string ShownCharacters(std::string_view raw);

// With a line end.
std::string TextLine(const SniffedFrame& frame, Date now, const Locale& locale);
std::string LogRow(const SniffedFrame& frame, Date now, const Locale& locale);
// What a log begins with each time that it is opened: the moment and the names of the columns.
std::string SnifferLogHeading(Date now, const Locale& locale);

// The last lines of what went by.
class RunningText {
 public:
  // A text that has become too long is cut first: about its last thousand characters stay.
  void Append(std::string_view line);
  void Clear() { text_.clear(); }
  const std::string& get() const { return text_; }

 private:
  std::string text_;
};

// A piece of a text, in characters.
struct TextPiece {
  int start = 0;
  int length = 0;

  bool operator==(const TextPiece&) const = default;
};

// The next place of `what` behind the first `from` characters, and from the top again at the end.
// Small and capital letters count alike.
std::optional<TextPiece> FindInText(std::string_view text, std::string_view what, int from);

}  // namespace tarnlink
