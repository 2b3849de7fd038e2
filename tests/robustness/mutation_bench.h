// One for each kind of file: the command of the program that opens such a file, with what may
// become of it. Everything else fails the test.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnlink {

enum class FileOutcome { kLoaded, kPart, kRefused };

class FileBench {
 public:
  virtual ~FileBench() = default;

  // Opens a file of these bytes as a user does, in the form as the file before has left it, and
  // expects of what is shown, told and held then that it is one of the outcomes that the format
  // allows.
  virtual FileOutcome Open(std::string_view bytes) = 0;

  // The memory that one of the commands took at its worst moment since this was asked last, beside
  // what it found; of those that took less nothing is said. At least one has run.
  std::size_t TakePeak();

 protected:
  // The commands of one opening stand in here, each of them, and nothing that only the test needs.
  void Run(const std::function<void()>& command);

 private:
  std::size_t peak_ = 0;
};

// A new bench in a world of its own.
using MakeFileBench = std::function<std::unique_ptr<FileBench>()>;

std::unique_ptr<FileBench> MakeScreenBench();
std::unique_ptr<FileBench> MakeProjectBench();
std::unique_ptr<FileBench> MakeAvrMapBench();
std::unique_ptr<FileBench> MakeListingBench();
std::unique_ptr<FileBench> MakeIdBench();
std::unique_ptr<FileBench> MakeErrorTextBench();
std::unique_ptr<FileBench> MakeSnifferBench();
std::unique_ptr<FileBench> MakeParameterBench();
std::unique_ptr<FileBench> MakeEepromBench();
std::unique_ptr<FileBench> MakeConfigBench();
std::unique_ptr<FileBench> MakeLinesBench();
std::unique_ptr<FileBench> MakeMeasurementBench();

// --- For the benches -----------------------------------------------------------------------------

// Longer than any message may be that quotes a damaged file.
inline constexpr std::size_t kLongestMessage = 1'000;

// The first `count` lines of a text.
std::string_view FirstLines(std::string_view text, int count);
int CountLines(std::string_view text);

// What a reader has to say about a text; nothing if all is well.
using ReasonOf = std::function<std::optional<std::string>(std::string_view text)>;

// Expects that line `number`, counted from 1, is to blame: with it and all lines before it the
// reader says `reason`, and without it something else or nothing.
void ExpectBlamed(std::string_view text, int number, const std::string& reason,
                  const ReasonOf& reason_of);

// The number that stands between `before` and whatever follows, and what follows; nothing if `text`
// does not begin so.
struct NumberedText {
  int number;
  std::string rest;
};
std::optional<NumberedText> TakeNumber(std::string_view text, std::string_view before);

// Cuts `before` off the front of `text`; a text that does not begin so fails the test.
std::string Behind(const std::string& text, const std::string& before);

}  // namespace tarnlink
