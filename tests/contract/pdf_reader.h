// What the programs of a PDF reader say about a file.
#pragma once

#include <gtest/gtest.h>

#include <QProcess>
#include <QString>
#include <QStringList>

namespace tarnlink {

// What `program` writes to its standard output.
inline QString OutputOf(const QString& program, const QStringList& arguments) {
  QProcess process;
  process.start(program, arguments);
  EXPECT_TRUE(process.waitForFinished()) << program.toStdString() << " of poppler-utils is missing";
  EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
  return QString::fromUtf8(process.readAllStandardOutput());
}

}  // namespace tarnlink
