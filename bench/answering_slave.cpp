#include "answering_slave.h"

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include "protocols/zolt_frame.h"

namespace bench {

namespace {

constexpr std::size_t kTarnlinkRequestLength = 9;

bool IsZolt(const std::string& request) { return request.front() == tarnlink::zolt_frame::kStart; }

std::size_t LengthOf(const std::string& request) {
  return IsZolt(request) ? tarnlink::zolt_frame::kLength : kTarnlinkRequestLength;
}

std::string AnswerTo(const std::string& request, long number) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  const std::string digits = {kDigits[number / 16 % 16], kDigits[number % 16]};
  if (IsZolt(request)) {
    std::string body = request.substr(1, 6) + "00" + digits;
    body[0] = static_cast<char>(body[0] + tarnlink::zolt_frame::kReadAcknowledge);
    return tarnlink::zolt_frame::FinishFrame(body);
  }
  const bool word = request[1] == 0x01;
  return request.substr(0, 6) + digits + (word ? "00" : "") + "00\x03";
}

}  // namespace

AnsweringSlave::AnsweringSlave() : master_(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
  grantpt(master_);
  unlockpt(master_);
  path_ = ptsname(master_);
  termios raw{};
  tcgetattr(master_, &raw);
  cfmakeraw(&raw);
  tcsetattr(master_, TCSANOW, &raw);
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) == 0) {
    stop_read_ = ends[0];
    stop_write_ = ends[1];
  }
  thread_ = std::thread([this] { Run(); });
}

AnsweringSlave::~AnsweringSlave() {
  close(stop_write_);
  thread_.join();
  close(stop_read_);
  close(master_);
}

void AnsweringSlave::Run() {
  // Its own hold on the slave side keeps the master from reading as hung up while no program has
  // the device open.
  const int hold = open(path_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
  std::string heard;
  for (;;) {
    pollfd wanted[2] = {{master_, POLLIN, 0}, {stop_read_, POLLIN, 0}};
    if (poll(wanted, 2, -1) < 0 || wanted[1].revents != 0) break;
    char buffer[256];
    const ssize_t count = read(master_, buffer, sizeof buffer);
    if (count <= 0) break;
    heard.append(buffer, static_cast<std::size_t>(count));
    while (!heard.empty() && heard.size() >= LengthOf(heard)) {
      const std::string answer = AnswerTo(heard, answered_);
      heard.erase(0, LengthOf(heard));
      ++answered_;
      if (write(master_, answer.data(), answer.size()) < 0) break;
    }
  }
  close(hold);
}

}  // namespace bench
