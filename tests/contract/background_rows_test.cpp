#include "platform/qt/background_rows.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <semaphore>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "common/run_time_error.h"
#include "platform/qt/file_errors.h"
#include "platform/qt/left_threads.h"

namespace tarnlink {
namespace {

constexpr const char* kPath = "/logs/boiler.log";
constexpr int kAll = 10'000;  // more pieces than any test writes

// A disk that answers when the test lets it.
struct Disk {
  void Take(std::string_view piece) {
    answers.acquire();
    const std::lock_guard lock(mutex);
    if (fail) fail();
    pieces.emplace_back(piece);
  }

  std::counting_semaphore<> answers{0};
  std::mutex mutex;
  std::function<void()> fail;  // throws, if there is one
  std::vector<std::string> pieces;
  bool is_closed = false;
};

class RowsOfDisk final : public RowWriter {
 public:
  explicit RowsOfDisk(std::shared_ptr<Disk> disk) : disk_(std::move(disk)) {}
  ~RowsOfDisk() override {
    const std::lock_guard lock(disk_->mutex);
    disk_->is_closed = true;
  }
  void Append(std::string_view piece) override { disk_->Take(piece); }

 private:
  std::shared_ptr<Disk> disk_;
};

class BackgroundRowsTest : public testing::Test {
 protected:
  ~BackgroundRowsTest() override {
    LetAllThrough();
    rows_.reset();
  }

  void LetAllThrough() { disk_->answers.release(kAll); }

  // Closes the file and waits until the disk has all of it.
  std::vector<std::string> Written() {
    LetAllThrough();
    rows_.reset();
    left_.reset();
    return disk_->pieces;
  }

  void FailWith(std::function<void()> fail) {
    const std::lock_guard lock(disk_->mutex);
    disk_->fail = std::move(fail);
  }

  std::optional<RunTimeError> Append(std::string_view piece) {
    try {
      rows_->Append(piece);
      return {};
    } catch (const RunTimeError& error) {
      return error;
    }
  }

  // What the disk has said to a piece before this moment, or says soon.
  std::optional<RunTimeError> Failure() {
    const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (std::chrono::steady_clock::now() < end) {
      const std::optional<RunTimeError> failure = Append("");
      if (failure) return failure;
      std::this_thread::yield();
    }
    return {};
  }

  std::shared_ptr<Disk> disk_ = std::make_shared<Disk>();
  std::unique_ptr<LeftThreads> left_ = std::make_unique<LeftThreads>(std::chrono::minutes(1));
  std::unique_ptr<BackgroundRows> rows_ =
      std::make_unique<BackgroundRows>(kPath, std::make_unique<RowsOfDisk>(disk_), *left_);
};

TEST_F(BackgroundRowsTest, WhatTheDiskIsBehindItGetsInOrderAfterTheFileWasClosed) {
  for (const char* piece : {"heading\n", "first\t", "second\t", "", "third\n"}) {
    EXPECT_FALSE(Append(piece));
  }
  EXPECT_TRUE(disk_->pieces.empty());
  EXPECT_FALSE(disk_->is_closed);
  EXPECT_EQ(Written(), (std::vector<std::string>{"heading\n", "first\t", "second\t", "third\n"}));
  EXPECT_TRUE(disk_->is_closed);
}

TEST_F(BackgroundRowsTest, AFailureIsToldOnceAndWhatWaitsBehindItIsNotWritten) {
  FailWith([] { throw RunTimeError(kDiskFull, "The disk is full."); });
  EXPECT_FALSE(Append("first\n")) << "Nothing is known of it yet.";
  EXPECT_FALSE(Append("second\n"));
  disk_->answers.release();
  const auto failure = Failure();
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->code(), kDiskFull);
  EXPECT_EQ(std::string(failure->what()), "The disk is full.");
  FailWith({});
  EXPECT_FALSE(Append("third\n")) << "It has been told.";
  EXPECT_EQ(Written(), std::vector<std::string>{"third\n"});
}

TEST_F(BackgroundRowsTest, AFailureThatHasNoNumberIsOneOfTheDevice) {
  FailWith([] { throw std::runtime_error("No room for a text."); });
  EXPECT_FALSE(Append("first\n"));
  disk_->answers.release();
  const auto failure = Failure();
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->code(), kDeviceIo);
  EXPECT_EQ(std::string(failure->what()), "No room for a text.");
}

TEST_F(BackgroundRowsTest, NoMoreThanAMebibyteWaits) {
  const std::string half(std::size_t{1} << 19, 'a');
  EXPECT_FALSE(Append(half));
  EXPECT_FALSE(Append(half));
  const auto failure = Append("b");
  ASSERT_TRUE(failure);
  EXPECT_EQ(failure->code(), kDeviceIo);
  EXPECT_EQ(std::string(failure->what()), NoAnswerFrom(kPath, FileAction::kWrite));
  EXPECT_EQ(Written(), (std::vector<std::string>{half, half})) << "What was taken is written.";
}

}  // namespace
}  // namespace tarnlink
