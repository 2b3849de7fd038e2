// A program with a mistake in it, which the guards of the build are to end: `copy TEXT` copies a
// text of any length into eight bytes, `container TEXT` reads behind the end of one.

#include <cstdio>
#include <cstring>
#include <span>
#include <string_view>

int main(int count, char** words) {
  const std::span<char*> given(words, static_cast<std::size_t>(count));
  if (given.size() != 3) return 2;
  const std::string_view mistake(given[1]);
  const std::string_view text(given[2]);
  if (mistake == "copy") {
    char place[8];
    std::memcpy(place, text.data(), text.size());
    std::printf("%.8s\n", place);
  } else if (mistake == "container") {
    std::printf("%c\n", text[text.size()]);
  }
  return 0;
}
