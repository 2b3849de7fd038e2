// A folder with one document in it, the process that saves it, and what is on the disk afterwards.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "disk/documents.h"
#include "disk/writer_process.h"
#include "support/temporary_folder.h"

namespace tarnlink::disk {

// Every kill, every call and every step, which takes minutes; otherwise a part of them.
bool IsFull();

// What a test has seen, for the line that it prints in the end.
struct Figures {
  int kills = 0;
  int told_saved = 0;
  int told_failed = 0;
  int old = 0;
  int fresh = 0;  // the document that was being saved
  int none = 0;   // there was no document before, and there is none
  int half = 0;
  int left_over = 0;

  void Print(const std::string& test) const;
};

class Bench {
 public:
  static constexpr char kNone = '-';
  static constexpr char kHalf = '?';

  // Saves all versions once, and learns from it how they look. `size` as of `MakeDocument`.
  Bench(const Kind& kind, int size);

  const Kind& kind() const { return kind_; }
  bool IsLog() const { return kind_.name == kLog; }
  std::string folder() const { return folder_.path() + "/work"; }
  std::string path() const { return folder() + "/" + std::string(kind_.file); }
  // Of the longest version, as it stands on the disk.
  long long bytes() const { return bytes_; }
  // That a save takes at most.
  double seconds() const { return seconds_; }

  // Temporary files come into the folder of the document, unless it has no room for them.
  std::unique_ptr<WriterProcess> Start(bool with_temporary_files = true) const;
  // What a process looks for with its first save is behind it. A log is left empty.
  std::unique_ptr<WriterProcess> StartBehindASave() const;
  // Nothing else is in the folder then, and the document is of that version or not there.
  void Lay(char version) const;
  // A version, `kNone`, or `kHalf` for anything else, in the folder as the process with that root
  // sees it.
  char Look(const std::string& root = {}) const;
  // The whole rows of a log; -1 if anything else stands in it but the one that a kill cut at the
  // end of a page.
  int Rows(const std::string& root = {}) const;
  // Files beside the document, those for temporary files included. None may look like a document.
  int LeftOver(const std::string& root = {}) const;
  // What the process answered to "save B" goes with what is on the disk: the answer of a failure
  // names the document and `reason`.
  void Judge(const std::string& answer, const std::string& reason, Figures& figures,
             const std::string& root = {}, char left_by_failure = 'A') const;

 private:
  void JudgeFailure(const std::string& answer, const std::string& reason) const;

  Kind kind_;
  int size_;
  TemporaryFolder folder_;
  std::map<char, std::string> saved_;    // the bytes of each version
  std::map<char, std::string> content_;  // as `ContentOf` has it
  long long bytes_ = 0;
  double seconds_ = 0;
};

}  // namespace tarnlink::disk
