#include "tools/sniffer_text.h"

#include "common/text.h"
#include "common/text_file.h"
#include "fuzz/claim.h"
#include "fuzz/readers/number_bytes.h"
#include "fuzz/readers/reader_claims.h"
#include "fuzz/readers/readers.h"
#include "support/fake_locale.h"

namespace tarnlink {
namespace {

void ClaimFrame(std::string_view raw, Date now) {
  static const FakeLocale locale;
  const SniffedFrame frame = TakeApart(raw);
  for (const std::string& text : {TextLine(frame, now, locale), LogRow(frame, now, locale)}) {
    Claim(LineCount(text) == 1 && text.ends_with(kLineEnd), "a frame is a line");
    Claim(text.size() < 200, "and a short one");
    for (const char c : text) Claim((c >= ' ' && c <= '~') || c == '\r' || c == '\n', "to be read");
  }
  Claim(LineCount(SnifferLogHeading(now, locale)) == 2, "a heading is two lines");
}

void ClaimFound(const std::string& text, const std::string& what, int from) {
  const auto found = FindInText(text, what, from);
  if (!found) return;
  Claim(found->start >= 0 && found->length == CharacterCount(what), "what is found is as long");
  Claim(found->start + found->length <= CharacterCount(text), "and lies in the text");
}

void Run(std::string_view input) {
  FuzzInput bytes(input);
  const Date now = AnyDouble(bytes);
  const int from = bytes.Word();
  const std::string what = DecodeText(bytes.ShortText());
  const std::string_view raw = bytes.Rest();
  // A frame has its type.
  constexpr std::size_t kType = 2;
  if (raw.size() >= kType) ClaimFrame(raw, now);
  const std::string text = DecodeText(raw);
  ClaimFound(text, what, from);
  RunningText running;
  for (int i = 0; i < 3; ++i) running.Append(text);
  Claim(running.get().ends_with(text) && IsText(running.get()), "the newest stands at the end");
}

std::vector<std::string> Seeds() {
  const std::string now("\0\0\0\0\x80\x1D\xE6\x40\0\0", 10);
  return {now + "\2FA" +
              std::string("\x02\x10"
                          "40A10102F00A",
                          14),
          now + "\1x" + "aXbX\xC3\xA9x", now + std::string("\0\4\x90", 3),
          std::string(8, '\xFF') + "\2\0\1y\2yyyy"};
}

}  // namespace

FuzzTarget SnifferTextTarget() { return {"sniffer_text", Run, Seeds}; }

}  // namespace tarnlink
