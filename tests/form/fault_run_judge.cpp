#include "form/fault_run_judge.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

#include "support/byte_text.h"

namespace tarnlink {
namespace {

// Answers that are held back come late by a few exchanges at most.
constexpr std::size_t kRemembered = 16;

template <class T>
void Remember(std::deque<T>& queue, T item) {
  queue.push_back(std::move(item));
  if (queue.size() > kRemembered) queue.pop_front();
}

// "bit_flip(2)", "bit_flip(2), cut off" and so on; "answer" is none.
std::optional<boiler::FaultInfo> FaultNamed(std::string_view meaning) {
  const std::string_view name = meaning.substr(0, meaning.find_first_of("(,"));
  for (const boiler::FaultInfo& info : boiler::AllFaults()) {
    if (info.name == name) return info;
  }
  return std::nullopt;
}

// Whether the fault makes other bytes of an answer.
bool Alters(std::string_view meaning) {
  const auto info = FaultNamed(meaning);
  return info &&
         (info->group == boiler::FaultGroup::kContent ||
          info->group == boiler::FaultGroup::kDamage || info->kind == boiler::FaultKind::kOversize);
}

}  // namespace

void FaultJudge::WatchBoxes() {
  for (int i = 0; i <= main_.MaxId; ++i) {
    texts_[i] = main_.RAM_LOC_VAL(i).Text;
    main_.RAM_LOC_VAL(i).SetView([this, i] { BoxChanged(i); });
  }
}

void FaultJudge::Hear(const boiler::LogEntry& entry) {
  switch (entry.kind) {
    case boiler::LogKind::kHeard:
      return HearRequest(entry);
    case boiler::LogKind::kFault:
      return HearFault(entry);
    case boiler::LogKind::kSaid:
      return Remember(pieces_, {entry.bytes, entry.exchange, Alters(entry.meaning)});
    default:
      return;
  }
}

void FaultJudge::HearRequest(const boiler::LogEntry& entry) {
  ++counts.exchanges;
  if (entry.meaning.starts_with("write")) ++counts.writes;
  Exchange exchange{entry.exchange, entry.bytes, {}};
  for (int i = 0; i <= main_.MaxId; ++i) {
    exchange.held.push_back(i > 0 ? reader_.Held(controller_, i) : "");
  }
  Remember(exchanges_, std::move(exchange));
}

void FaultJudge::HearFault(const boiler::LogEntry& entry) {
  ++counts.struck;
  if (!Alters(entry.meaning)) return;
  const Exchange& exchange = exchanges_.back();
  if (reader_.Sound(entry.bytes, exchange.request).empty()) return;
  ++counts.altered_sound;
  int place = 0;
  for (const int index : reader_.Shows(exchange.request)) {
    if (!reader_.Fits(entry.bytes, index)) continue;
    ++counts.foretold_shown;
    const std::string text = reader_.TextOf(entry.bytes, place++, index);
    if (text != exchange.held[static_cast<std::size_t>(index)]) ++counts.foretold_wrong;
  }
}

void FaultJudge::Take(std::string_view bytes, std::string_view request) {
  taken_ = bytes;
  request_ = request;
  place_ = 0;
}

void FaultJudge::BoxChanged(int index) {
  const std::string& text = main_.RAM_LOC_VAL(index).Text;
  // A box may change in other ways, such as that its value grows old.
  if (std::exchange(texts_[index], text) == text) return;
  if (text == "-" || text == "can not read") {
    EXPECT_TRUE(reader_.IsWord(taken_, request_, text)) << index << ": " << HexText(taken_);
  } else if (index > 0) {
    ExpectFromSoundBytes(index);
  }
}

void FaultJudge::ExpectFromSoundBytes(int index) const {
  const std::string& text = main_.RAM_LOC_VAL(index).Text;
  const std::string about = std::to_string(index) + " shows " + text + " of " + HexText(taken_) +
                            " after " + HexText(request_);
  ASSERT_FALSE(reader_.Sound(taken_, request_).empty()) << about;
  ASSERT_TRUE(reader_.Fits(taken_, index)) << about;
  ASSERT_EQ(text, reader_.TextOf(taken_, place_, index)) << about;
}

void FaultJudge::RecordValue(int index) {
  const int place = place_;
  // A second answer behind the last of a round is taken for the template's; nobody sees that.
  if (index == 0) {
    ++place_;
    return;
  }
  ExpectFromSoundBytes(index);
  ++place_;
  ++counts.shown;
  const Piece* piece = PieceWith(reader_.Sound(taken_, request_));
  const Exchange* exchange = piece == nullptr ? nullptr : Find(piece->exchange);
  if (exchange == nullptr) {
    ++counts.of_noise;
    return;
  }
  const std::string& held = exchange->held[static_cast<std::size_t>(index)];
  const std::string& text = main_.RAM_LOC_VAL(index).Text;
  const bool wrong = text != held;
  if (wrong) ++counts.wrong;
  if (piece->altered) {
    ++counts.altered_shown;
    if (wrong) ++counts.altered_wrong;
    return;
  }
  const auto shows = reader_.Shows(exchange->request);
  const auto at = static_cast<std::size_t>(place);
  if (at < shows.size() && shows[at] == index) {
    ++sound;
    EXPECT_EQ(text, held) << index << " of " << HexText(taken_);
  } else if (wrong) {
    ++counts.astray;
  }
}

void FaultJudge::LogUnreadable(int index) {
  const bool rightly = index > 0 && !reader_.Sound(taken_, request_).empty() &&
                       main_.RAM_LOC_VAL(index).Text.get() == reader_.Held(controller_, index);
  if (rightly) ++sound;
}

// The newest that has them.
const FaultJudge::Piece* FaultJudge::PieceWith(std::string_view bytes) const {
  const auto found = std::find_if(pieces_.rbegin(), pieces_.rend(), [&](const Piece& piece) {
    return piece.bytes.find(bytes) != std::string::npos;
  });
  return found == pieces_.rend() ? nullptr : &*found;
}

const FaultJudge::Exchange* FaultJudge::Find(int number) const {
  const auto found =
      std::find_if(exchanges_.begin(), exchanges_.end(),
                   [&](const Exchange& exchange) { return exchange.number == number; });
  return found == exchanges_.end() ? nullptr : &*found;
}

std::string FaultJudge::Text() const {
  return std::to_string(counts.exchanges) + " exchanges, " + std::to_string(counts.writes) +
         " writes, " + std::to_string(counts.struck) + " struck, " + std::to_string(counts.shown) +
         " values shown, " + std::to_string(counts.wrong) +
         " wrong; altered answers: " + std::to_string(counts.altered_sound) +
         " with a sound check, shown " + std::to_string(counts.altered_shown) + " (" +
         std::to_string(counts.foretold_shown) + " foretold), wrong " +
         std::to_string(counts.altered_wrong) + " (" + std::to_string(counts.foretold_wrong) +
         "); astray " + std::to_string(counts.astray) + ", of noise " +
         std::to_string(counts.of_noise);
}

}  // namespace tarnlink
