#include "files/field_stream.h"

#include <cmath>

#include "common/text_file.h"
#include "fuzz/claim.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/readers/reader_claims.h"
#include "fuzz/readers/readers.h"
#include "support/samples.h"

namespace tarnlink {
namespace {

void ClaimField(const Field& field) {
  Claim(field.text.find('\n') == std::string_view::npos, "a field is a part of a line");
  Claim(!field.quoted || field.text.find('"') == std::string_view::npos, "a quote ends a field");
  if (field.quoted || field.text.empty()) return;
  Claim(field.text.find(',') == std::string_view::npos, "a comma ends a field");
  Claim(field.text.front() != ' ' && field.text.back() != ' ', "blanks around do not count");
}

// Each field as what a byte says; true while there are more.
bool ReadOne(FieldStream& fields, int kind) {
  switch (kind) {
    case 0:
      return Tried([&] { return fields.ReadByte("a byte"); }).has_value();
    case 1:
      return Tried([&] { return fields.ReadInteger("an integer"); }).has_value();
    case 2:
      return Tried([&] { return fields.ReadLong("a long"); }).has_value();
    case 3: {
      const auto single = Tried([&] { return fields.ReadSingle("a single"); });
      Claim(!single || std::isfinite(*single), "a number is finite");
      return single.has_value();
    }
    case 4:
      return Tried([&] { return fields.ReadBoolean("a Boolean"); }).has_value();
    default:
      return Tried([&] { return fields.ReadText("a text"); }).has_value();
  }
}

void Run(std::string_view input) {
  FuzzInput bytes(input);
  const std::string_view kinds = bytes.ShortText();
  const std::string text = DecodeText(bytes.Rest());
  std::string written;
  std::vector<std::string> texts;
  FieldStream all(text);
  while (const auto field = all.Next()) {
    ClaimField(*field);
    written += QuotedField(field->text) + ",";
    texts.emplace_back(field->text);
    Claim(texts.size() <= text.size(), "a field takes a character at least");
  }
  FieldStream again(written);
  for (const std::string& each : texts) {
    const auto field = again.Next();
    Claim(field && field->quoted && QuotedField(field->text) == QuotedField(each),
          "what is quoted is read again");
  }
  Claim(!again.Next(), "and nothing else");
  FieldStream typed(text);
  // A field of another kind is refused, which takes long.
  constexpr std::size_t kMostTyped = 12;
  for (const char kind : kinds.substr(0, kMostTyped)) {
    ReadOne(typed, static_cast<unsigned char>(kind) % 6);
  }
}

std::vector<std::string> Seeds() {
  return {std::string("\6\0\1\2\3\4\5", 7) + "1, 2 ,3,4.5,#TRUE#,\"a,b\" x,\"open\r\n\n c\"d ,",
          "\2\4\4#false#,\"#TRUE#\"",
          std::string(1, '\0') + SampleText("boiler.wcr").substr(0, 400)};
}

}  // namespace

FuzzTarget FieldStreamTarget() { return {"field_stream", Run, Seeds}; }

}  // namespace tarnlink
