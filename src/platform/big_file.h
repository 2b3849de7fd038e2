// Files that are too long to be read or written in one go. The adapter's own thread does it while
// the program goes on, which asks now and then how far it is: nothing here waits for the disk but
// `Wait`. `Files` makes them. Real classes: `BackgroundReader`, `BackgroundWriter`; fakes:
// `FakeBigReader`, `FakeBigWriter`.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tarnlink {

class BigReader {
 public:
  // What has not been read is left.
  virtual ~BigReader() = default;

  // The next piece, in the file's order and never empty, valid until the next call. False while
  // none has come in and at the file's end. Throws as `Files::ReadWhole` does, behind the last good
  // piece.
  virtual bool Next(std::string_view& piece) = 0;
  virtual bool AtEnd() const = 0;
  // Bytes of the whole file; 0 until that is known.
  virtual std::int64_t Size() const = 0;

  // Returns when there is something new to ask for.
  virtual void Wait() = 0;
};

// Writes beside the old file and puts the new one in its place when it is whole and on the disk.
class BigWriter {
 public:
  // Without `Finish`, or before it has come to the replacing, the old file stays, and nothing is
  // left beside it. A write that is under way is not waited for.
  virtual ~BigWriter() = default;

  // Whether a piece can be written now; a few of them wait for the disk at most. This and
  // `IsFinished` throw what went wrong, RunTimeError 61 (disk full), 70, 76 or 57.
  virtual bool HasRoom() = 0;
  // Takes the bytes of `piece`. What it leaves there is memory for the next one.
  virtual void Write(std::string& piece) = 0;
  // There are no more pieces.
  virtual void Finish() = 0;
  // The new file is in its place, on the disk.
  virtual bool IsFinished() = 0;

  // Returns when there is something new to ask for.
  virtual void Wait() = 0;
};

}  // namespace tarnlink
