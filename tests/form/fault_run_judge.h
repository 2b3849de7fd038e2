// Judges what a run under faults shows, by the very bytes that it took from its port and by the
// boiler's log: each value by the check of its frame, and whether it is what the memory held.
#pragma once

#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "monitor/frm_main.h"
#include "monitor/run_recorder.h"
#include "simulator/controller.h"
#include "simulator/fault.h"
#include "simulator/log.h"

namespace tarnlink {

// What frames mean for the screen. Each protocol has its own here, which shares nothing with the
// program's.
class FrameReader {
 public:
  virtual ~FrameReader() = default;

  // The Locations in whose boxes an answer to this request is shown as values, if it is one to a
  // read.
  virtual std::vector<int> Shows(std::string_view request) const = 0;
  // The part of the bytes taken in answer to the request that values come from, with its check;
  // empty where the check fails or too little is there.
  virtual std::string_view Sound(std::string_view bytes, std::string_view request) const = 0;
  // Whether such bytes are an answer to a read that this Location may show.
  virtual bool Fits(std::string_view bytes, int index) const = 0;
  // What the box of the Location then says of the value at `place`, counted from 0.
  virtual std::string TextOf(std::string_view bytes, int place, int index) const = 0;
  // Whether bytes taken for another word than a value, "-" or "can not read", call for it.
  virtual bool IsWord(std::string_view bytes, std::string_view request,
                      const std::string& word) const = 0;

  // What the box should say of what the boiler holds now.
  virtual std::string Held(const boiler::Controller& controller, int index) const = 0;
};

// What a run has come to.
struct FaultCounts {
  int exchanges = 0;
  int writes = 0;  // of the exchanges
  int struck = 0;  // exchanges with a fault
  // Values shown: all, and those that the memory did not hold when the frame was made.
  int shown = 0;
  int wrong = 0;
  // Answers that a fault made of other bytes and whose check holds all the same.
  int altered_sound = 0;
  // Values shown from answers that a fault made of other bytes, and those among them that were
  // wrong; and how many the log foretells of both.
  int altered_shown = 0;
  int altered_wrong = 0;
  int foretold_shown = 0;
  int foretold_wrong = 0;
  // Wrong values of sound answers to something else than the Location.
  int astray = 0;
  // Values of bytes that were no answer at all.
  int of_noise = 0;
};

class FaultJudge final : public RunRecorder {
 public:
  FaultJudge(frm_Main& main, const FrameReader& reader, const boiler::Controller& controller)
      : main_(main), reader_(reader), controller_(controller) {}

  // From now on each value box of the screen tells it of a change.
  void WatchBoxes();
  // An entry of the boiler's log.
  void Hear(const boiler::LogEntry& entry);
  // Bytes that the run takes from its port, and the request that went out last.
  void Take(std::string_view bytes, std::string_view request);

  // A line of all counts.
  std::string Text() const;

  FaultCounts counts;
  // Values that were right, shown of the right answer; also what rightly can not be read.
  int sound = 0;

  void PrepareLog() override {}
  void StartSpreadsheet() override {}
  void LogRequest(int) override {}
  void RecordValue(int index) override;
  void LogUnreadable(int index) override;
  void EndLogRow() override {}
  void CloseLogFile() override {}

 private:
  struct Exchange {
    int number;
    std::string request;
    std::vector<std::string> held;  // by Location
  };
  struct Piece {
    std::string bytes;
    int exchange;
    bool altered;  // by a fault, and not only its time or place
  };

  void HearRequest(const boiler::LogEntry& entry);
  void HearFault(const boiler::LogEntry& entry);
  void BoxChanged(int index);
  // Fails the test unless the box says what sound bytes say.
  void ExpectFromSoundBytes(int index) const;
  const Piece* PieceWith(std::string_view bytes) const;
  const Exchange* Find(int number) const;

  frm_Main& main_;
  const FrameReader& reader_;
  const boiler::Controller& controller_;
  std::deque<Exchange> exchanges_;    // the last ones
  std::deque<Piece> pieces_;          // the same
  std::map<int, std::string> texts_;  // of the boxes
  std::string taken_;
  std::string request_;
  int place_ = 0;  // of the next value of what was taken
};

}  // namespace tarnlink
