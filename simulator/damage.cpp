#include "simulator/damage.h"

#include <algorithm>
#include <vector>

#include "simulator/bytes.h"

namespace boiler {
namespace {

using enum FaultKind;

std::size_t Place(std::size_t count, Random& random) {
  return static_cast<std::size_t>(random.Below(static_cast<int>(count)));
}

void FlipBit(std::string& frame, std::size_t bit) {
  frame[bit / 8] = static_cast<char>(frame[bit / 8] ^ (1 << bit % 8));
}

std::string BitFlip(std::string frame, int count, Random& random) {
  std::vector<std::size_t> left(frame.size() * 8);
  for (std::size_t bit = 0; bit < left.size(); ++bit) left[bit] = bit;
  for (; count > 0 && !left.empty(); --count) {
    const std::size_t chosen = Place(left.size(), random);
    FlipBit(frame, left[chosen]);
    left.erase(left.begin() + static_cast<std::ptrdiff_t>(chosen));
  }
  return frame;
}

// The first and the last bit of the burst are wrong, those between by chance.
std::string Burst(std::string frame, int length, Random& random) {
  const std::size_t bits = frame.size() * 8;
  const std::size_t span = std::min(static_cast<std::size_t>(length), bits);
  const std::size_t first = Place(bits - span + 1, random);
  for (std::size_t i = 0; i < span; ++i) {
    const bool end = i == 0 || i + 1 == span;
    if (end || random.Below(2) == 1) FlipBit(frame, first + i);
  }
  return frame;
}

std::string ByteReplace(std::string frame, Random& random) {
  char& byte = frame[Place(frame.size(), random)];
  byte = static_cast<char>(byte ^ (1 + random.Below(255)));
  return frame;
}

std::string ByteDrop(std::string frame, Random& random) {
  if (frame.size() > 1) frame.erase(Place(frame.size(), random), 1);
  return frame;
}

std::string ByteInsert(std::string frame, Random& random) {
  frame.insert(Place(frame.size() + 1, random), 1, random.Byte());
  return frame;
}

// Two neighbours that differ.
std::string ByteSwap(std::string frame, Random& random) {
  std::vector<std::size_t> places;
  for (std::size_t i = 0; i + 1 < frame.size(); ++i) {
    if (frame[i] != frame[i + 1]) places.push_back(i);
  }
  if (places.empty()) return frame;
  const std::size_t at = places[Place(places.size(), random)];
  std::swap(frame[at], frame[at + 1]);
  return frame;
}

std::string Truncate(std::string frame, int count) {
  const std::size_t cut = std::min(static_cast<std::size_t>(count), frame.size() - 1);
  frame.resize(frame.size() - cut);
  return frame;
}

std::string HighBitStripped(std::string frame) {
  for (char& byte : frame) byte = static_cast<char>(byte & 0x7F);
  return frame;
}

// What a terminal that takes the line for text makes of it: a line feed gets a carriage return in
// front.
std::string CrlfTranslated(const std::string& frame) {
  std::string text;
  for (const char byte : frame) {
    if (byte == '\n') text += '\r';
    text += byte;
  }
  return text;
}

}  // namespace

std::string Damaged(const Fault& fault, std::string frame, Random& random) {
  if (frame.empty()) return frame;
  switch (fault.kind) {
    case kBitFlip:
      return BitFlip(std::move(frame), fault.number, random);
    case kBurst:
      return Burst(std::move(frame), fault.number, random);
    case kByteReplace:
      return ByteReplace(std::move(frame), random);
    case kByteDrop:
      return ByteDrop(std::move(frame), random);
    case kByteInsert:
      return ByteInsert(std::move(frame), random);
    case kByteSwap:
      return ByteSwap(std::move(frame), random);
    case kTruncate:
      return Truncate(std::move(frame), fault.number);
    case kAllZero:
      return std::string(frame.size(), '\0');
    case kAllFf:
      return std::string(frame.size(), '\xFF');
    case kRandomFrame:
      return NoiseBytes(static_cast<int>(frame.size()), random);
    case kHighBitStripped:
      return HighBitStripped(std::move(frame));
    case kCrlfTranslated:
      return CrlfTranslated(frame);
    default:
      return frame;
  }
}

std::string NoiseBytes(int count, Random& random) {
  std::string bytes(static_cast<std::size_t>(count), '\0');
  for (char& byte : bytes) byte = random.Byte();
  return bytes;
}

std::string RandomDigits(int count, Random& random) {
  std::string digits;
  while (count-- > 0) digits += HexDigits(static_cast<unsigned>(random.Below(16)), 1);
  return digits;
}

}  // namespace boiler
