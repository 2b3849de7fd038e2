#include "simulator/fault.h"

#include <set>

#include <gtest/gtest.h>

#include "problem_text.h"

namespace boiler {
namespace {

TEST(ParseFaultPlan, ReadsNameNumberRateAndCount) {
  using enum FaultKind;
  struct Row {
    const char* text;
    FaultPlan plan;
  };
  for (const Row& row : {
           Row{"no_reply", {{kNoReply, 0}, 1, 0}},
           Row{"no_reply#5", {{kNoReply, 0}, 0, 5}},
           Row{"no_reply@0.25", {{kNoReply, 0}, 0.25, 0}},
           Row{"no_reply@1", {{kNoReply, 0}, 1, 0}},
           Row{"bit_flip(2)@0.1", {{kBitFlip, 2}, 0.1, 0}},
           Row{"bit_flip", {{kBitFlip, 1}, 1, 0}},
           Row{"late_reply(3500)#1", {{kLateReply, 3500}, 0, 1}},
           Row{"late_reply@1e-3", {{kLateReply, 1000}, 1e-3, 0}},
           Row{"endless_stream", {{kEndlessStream, 0}, 1, 0}},
           Row{"open_busy", {{kOpenBusy, 0}, 1, 0}},
       }) {
    EXPECT_EQ(ParseFaultPlan(row.text), row.plan) << row.text;
  }
}

TEST(ParseFaultPlan, RefusesTextWithASentence) {
  const std::string no_name = "there is no fault of this name.";
  const std::string rate = "the rate must be above 0 and at most 1.";
  const std::string count = "the count must be a whole number of at least 1.";
  const std::string flips = "the number must be one of 1 to 64.";
  struct Row {
    const char* text;
    std::string reason;
  };
  for (const Row& row : {
           Row{"", no_name},
           Row{"no_replies", no_name},
           Row{"No_reply", no_name},
           Row{" no_reply", no_name},
           Row{"no_reply ", no_name},
           Row{"@0.5", no_name},
           Row{"(2)", no_name},
           Row{"no_reply(1)", "this fault takes no number."},
           Row{"no_reply()", "this fault takes no number."},
           Row{"bit_flip()", flips},
           Row{"bit_flip(0)", flips},
           Row{"bit_flip(65)", flips},
           Row{"bit_flip(-1)", flips},
           Row{"bit_flip(2x)", flips},
           Row{"bit_flip(2.0)", flips},
           Row{"bit_flip(99999999999)", flips},
           Row{"bit_flip(2", "the round bracket is not closed."},
           Row{"bit_flip(2)x", "the round bracket is not closed."},
           Row{"bit_flip2)", no_name},
           Row{"no_reply@", rate},
           Row{"no_reply@0", rate},
           Row{"no_reply@1.01", rate},
           Row{"no_reply@-0.5", rate},
           Row{"no_reply@nan", rate},
           Row{"no_reply@0.5#3", rate},
           Row{"no_reply#", count},
           Row{"no_reply#0", count},
           Row{"no_reply#-2", count},
           Row{"no_reply#1.5", count},
           Row{"no_reply#2@0.5", count},
           Row{"open_missing#1",
               "it holds at once and until it is cleared, without a rate or a count."},
           Row{"open_busy@0.5",
               "it holds at once and until it is cleared, without a rate or a count."},
       }) {
    EXPECT_EQ(ProblemText([&] { ParseFaultPlan(row.text); }),
              "Fault \"" + std::string(row.text) + "\": " + row.reason);
  }
}

TEST(AllFaults, StandInTheOrderOfTheirKindsWithNamesOfTheirOwn) {
  std::set<std::string_view> names;
  int place = 0;
  for (const FaultInfo& info : AllFaults()) {
    EXPECT_EQ(static_cast<int>(info.kind), place++) << info.name;
    EXPECT_TRUE(names.insert(info.name).second) << info.name;
  }
  EXPECT_EQ(names.size(), 50u);
}

TEST(FaultText, IsReadBack) {
  for (const FaultInfo& info : AllFaults()) {
    const Fault fault{info.kind, info.highest};
    EXPECT_EQ(ParseFaultPlan(FaultText(fault)).fault, fault);
  }
}

}  // namespace
}  // namespace boiler
