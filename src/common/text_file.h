// Text on disk: bytes in, UTF-8 out, and back.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnlink {

inline constexpr std::string_view kLineEnd = "\r\n";

// Valid UTF-8 is taken as it is (a byte order mark is dropped), anything else as Windows-1252.
std::string DecodeText(std::string_view bytes);

// Windows-1252 when every character fits, otherwise UTF-8; also UTF-8 for the rare text whose
// Windows-1252 bytes would be taken for UTF-8, so that `DecodeText` gives the same text back.
std::string EncodeText(std::string_view utf8);

// Windows-1252 whatever the text holds: "?" for each character that does not fit.
std::string EncodeWindows1252(std::string_view utf8);

// Walks the lines of a text without copying it. CR LF and LF end a line; the text's last line needs
// no end (nor the second half of one), and an end at the very end opens no further line.
class LineReader {
 public:
  explicit LineReader(std::string_view text) : text_(text) {}

  // False when there is no further line. `line` stays valid as long as the text does.
  bool Next(std::string_view& line);

 private:
  std::string_view text_;
  std::size_t position_ = 0;
};

// The same lines of a text that comes in pieces. Every piece is fed and then walked to its end
// before the next one; what it holds of an unfinished line is kept. Of a line that is longer than
// `kLongest` the rest is dropped.
class PieceLines {
 public:
  static constexpr std::size_t kLongest = 65'536;  // bytes

  void Feed(std::string_view piece) { piece_ = piece; }
  // False when the piece holds no further whole line. `line` is valid until the next call.
  bool Next(std::string_view& line);
  // Once, behind the last piece: the last line, if it had no end.
  bool Last(std::string_view& line);

 private:
  void Keep(std::string_view part);

  std::string_view piece_;
  std::string begun_;  // of the line whose end has not come yet
  bool begun_is_out_ = false;
};

}  // namespace tarnlink
