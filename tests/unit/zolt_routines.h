// The routines of the ZOLT protocol on a run that notes what they do to it.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "protocols/zolt_frame.h"
#include "protocols/zolt_protocol.h"
#include "support/byte_text.h"
#include "support/zolt_text.h"
#include "unit/noting_run.h"

namespace tarnlink {

// The note of a frame that goes out; the CRC is the last of the digits.
inline std::string Out(int type, const std::string& digits) {
  return "output " + HexText(Frame(type, digits)) + "\n";
}

// A sound answer: its CRC is made here.
inline std::string Reply(int type, const std::string& digits) {
  return zolt_frame::FinishFrame(Body(type, digits));
}

// Location 1 is a data ID, Location 2 a byte of memory.
class ZoltRoutines : public ::testing::Test {
 protected:
  ZoltRoutines() {
    run.fields().CommRunning = true;
    run.fields().MaxId = 2;
    id().Address = "0001";
    id().Alias = "Flow";
    memory().Specification = 0;
    memory().StorageType = kUnsignedByte;
    memory().Address = "1234";
    memory().Alias = "Cell";
  }

  Location& id() { return run.locations()[1]; }
  Location& memory() { return run.locations()[2]; }

  // What a poll that comes to Location `index` does.
  std::string Poll(int index) {
    run.fields().MsgPointer = index - 1;
    KEM3_Protocol(run);
    return run.TakeNotes();
  }

  // What the bytes do as the answer to the request for Location `index`.
  std::string Answer(int index, const std::string& bytes) {
    run.fields().MsgPointer = index;
    run.fields().message_received = false;
    run.world.port().Receive(bytes);
    KEM3SlaveResponse(run);
    return run.TakeNotes();
  }

  std::string Write(int index, std::string value) {
    BuildKEM3WriteMessage(run, index, value);
    return run.TakeNotes();
  }

  NotingRun run;
};

}  // namespace tarnlink
