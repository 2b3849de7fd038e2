#include "contract/workbook_benches.h"

#include <gtest/gtest.h>

#include <QProcess>

#include "platform/qt/qt_text.h"

namespace tarnlink {

std::string ReadXlsx(const std::string& path) {
  // The reader stands in the source tree, which an ordinary user may not see.
  const RootAgain root;
  QProcess reader;
  reader.start("/usr/bin/python3", {TARNLINK_READ_WORKBOOK, ToQt(path)});
  EXPECT_TRUE(reader.waitForFinished());
  EXPECT_EQ(reader.exitCode(), 0) << reader.readAllStandardError().toStdString();
  return reader.readAllStandardOutput().toStdString();
}

}  // namespace tarnlink
