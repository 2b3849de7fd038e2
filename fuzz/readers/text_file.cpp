#include "common/text_file.h"

#include "common/text.h"
#include "fuzz/claim.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/readers/reader_claims.h"
#include "fuzz/readers/readers.h"
#include "support/pieces.h"
#include "support/samples.h"

namespace tarnlink {
namespace {

std::vector<std::string> LinesInPieces(std::string_view text, std::size_t size) {
  std::vector<std::string> found;
  PieceLines lines;
  std::string_view line;
  FeedPieces(text, size, [&](std::string_view piece) {
    lines.Feed(piece);
    while (lines.Next(line)) found.emplace_back(line);
  });
  if (lines.Last(line)) found.emplace_back(line);
  return found;
}

void ClaimLines(std::string_view text, std::size_t piece) {
  const std::vector<std::string> in_pieces = LinesInPieces(text, piece);
  std::size_t number = 0;
  LineReader lines(text);
  for (std::string_view line; lines.Next(line); ++number) {
    Claim(line.find('\n') == std::string_view::npos, "a line has no end inside");
    Claim(number < in_pieces.size(), "in pieces there are the same lines");
    Claim(in_pieces[number].size() <= PieceLines::kLongest, "of a long line the rest is dropped");
    Claim(line.size() >= PieceLines::kLongest || in_pieces[number] == line,
          "in pieces a line is the same");
  }
  Claim(number == in_pieces.size() && number == LineCount(text), "every line is there");
}

void Run(std::string_view input) {
  FuzzInput bytes(input);
  const std::size_t piece = 1 + std::size_t{bytes.Byte()};
  const std::string_view rest = bytes.Rest();
  const std::string text = DecodeText(rest);
  Claim(IsText(text), "what is decoded is a text");
  Claim(DecodeText(EncodeText(text)) == text, "what is encoded is decoded again");
  const std::string windows = EncodeWindows1252(text);
  Claim(windows.size() == static_cast<std::size_t>(CharacterCount(text)),
        "each character is a byte");
  EncodeText(rest);
  Claim(EncodeWindows1252(rest).size() <= rest.size(), "no byte becomes two");
  ClaimLines(rest, piece);
}

std::vector<std::string> Seeds() {
  return {"\1a\r\nb\nc\r", "\3\xEF\xBB\xBF\xC3\xA9\xE2\x82\xAC\n", "\2\xE9\x80\x81\xF0\x9F\x94\xA5",
          "\x7F\xEF\xBB\xBF\xEF\xBB\xBFx", "\xFF" + SampleText("default.ids").substr(0, 500)};
}

}  // namespace

FuzzTarget TextFileTarget() { return {"text_file", Run, Seeds}; }

}  // namespace tarnlink
