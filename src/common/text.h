// Small helpers on text. Text in memory is UTF-8; only ASCII letters change case here. Frames pass
// through these too, so lengths and positions count bytes; `CharacterCount` is the exception.
#pragma once

#include <string>
#include <string_view>

namespace tarnlink {

// "0" characters in front of `value` until it has `length` bytes; a longer text stays whole.
std::string Stuff(std::string_view value, int length);

// `value` right-aligned in blanks to at least `length` bytes.
std::string RightAlign(std::string_view value, int length);

// The last `length` bytes, or the whole text if it is shorter.
std::string Right(std::string_view text, int length);

// Up to `length` bytes from `position`, which counts from 1 (a lower one is 1). Past the end it is
// shorter or empty.
std::string Mid(std::string_view text, int position, int length);

// Blanks (0x20 only) cut from both ends.
std::string Trim(std::string_view text);

std::string ToUpper(std::string_view text);
std::string ToLower(std::string_view text);

// Every double quote replaced by a blank, then the ends trimmed: screen files quote their texts and
// have no escape for a quote.
std::string WithoutQuotes(std::string_view text);

// The first characters of a UTF-8 text, or the whole text if it has no more.
std::string_view FirstCharacters(std::string_view utf8, int count);

// The characters of a UTF-8 text, not its bytes.
int CharacterCount(std::string_view utf8);

// Nothing but blanks and tabs.
bool IsBlank(std::string_view line);

// "once", "2 times".
std::string TimesText(int count);

}  // namespace tarnlink
