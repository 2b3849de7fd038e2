#include "robustness/mutation_bench.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <charconv>
#include <utility>

#include "robustness/memory_watch.h"

namespace tarnlink {

void FileBench::Run(const std::function<void()>& command) {
  const MemoryWatch watch;
  command();
  // Whoever opens a file takes some memory, so that a peak of 0 says that nothing was measured.
  peak_ = std::max(peak_, watch.Peak());
}

std::size_t FileBench::TakePeak() {
  EXPECT_GT(peak_, 0U) << "no command was measured";
  return std::exchange(peak_, 0);
}

std::string_view FirstLines(std::string_view text, int count) {
  std::size_t end = 0;
  for (int i = 0; i < count && end < text.size(); ++i) {
    const std::size_t line_end = text.find('\n', end);
    end = line_end == std::string_view::npos ? text.size() : line_end + 1;
  }
  return text.substr(0, end);
}

int CountLines(std::string_view text) {
  const auto ends = std::count(text.begin(), text.end(), '\n');
  return static_cast<int>(ends) + (text.empty() || text.ends_with('\n') ? 0 : 1);
}

void ExpectBlamed(std::string_view text, int number, const std::string& reason,
                  const ReasonOf& reason_of) {
  ASSERT_GE(number, 1) << reason;
  ASSERT_LE(number, CountLines(text)) << reason;
  EXPECT_EQ(reason_of(FirstLines(text, number)), reason) << "with line " << number;
  EXPECT_NE(reason_of(FirstLines(text, number - 1)), reason) << "without line " << number;
}

std::optional<NumberedText> TakeNumber(std::string_view text, std::string_view before) {
  if (!text.starts_with(before)) return std::nullopt;
  text.remove_prefix(before.size());
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc()) return std::nullopt;
  return NumberedText{number, std::string(end, text.data() + text.size())};
}

std::string Behind(const std::string& text, const std::string& before) {
  EXPECT_TRUE(text.starts_with(before)) << text << "\n does not begin with\n" << before;
  return text.size() < before.size() ? std::string() : text.substr(before.size());
}

}  // namespace tarnlink
