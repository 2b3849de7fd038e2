// The windows of the EEPROM writer and the EEPROM downloader under a user's hands.

#include <QClipboard>
#include <QGuiApplication>
#include <QHelpEvent>
#include <QLabel>
#include <QListWidget>
#include <QProgressBar>
#include <QScrollArea>
#include <QToolTip>

#include "ui/eeprom_fixture.h"
#include "ui/eeprom_map_view.h"

namespace tarnlink {
namespace {

class EepromWriterWindow : public EepromWindowsTest {
 protected:
  std::string Label(const std::string& name) {
    return In<QLabel>(writer, name).text().toStdString();
  }
  QListWidget& Results() { return In<QListWidget>(writer, "lstResults"); }
  // The colour in the middle of a byte's square.
  QColor Square(std::size_t cell) {
    auto& map = In<QScrollArea>(writer, "picMap");
    const QImage picture = map.widget()->grab().toImage();
    constexpr int kSquare = 10;
    const int left = map.widget()->sizeHint().width() - 16 * kSquare;
    const qreal ratio = picture.devicePixelRatio();
    const int row = static_cast<int>(cell) / 16;
    const int column = static_cast<int>(cell) % 16;
    return picture.pixelColor(static_cast<int>((left + column * kSquare + 4) * ratio),
                              static_cast<int>((row * kSquare + 5) * ratio));
  }

  QWidget& writer = OpenWriter();
};

TEST_F(EepromWriterWindow, WritesAndVerifiesAnImage) {
  EXPECT_EQ(writer.windowTitle().toStdString(), "PROM File Generator");
  EXPECT_FALSE(In(writer, "cmd_WriteEEPROM").isEnabled());
  Choose(writer, 2);
  EXPECT_EQ(Text(writer, "txt_eepromsourcefile"), kImagePath);
  EXPECT_EQ(Label("lblSource"), "32 bytes, 0X8000 to 0X801F");
  PressWrite(writer, "Write 32 bytes, 0X8000 to 0X801F, into slave 0?");
  world.Advance(500ms);
  EXPECT_NE(Label("lblProgress").find(" : "), std::string::npos);
  EXPECT_NE(Label("lblLeft").find(" of 32 bytes left to be written"), std::string::npos);
  auto& bar = In<QProgressBar>(writer, "prgRun");
  EXPECT_EQ(bar.maximum(), 32);
  EXPECT_GT(bar.value(), 0);
  EXPECT_LT(bar.value(), 32);
  world.Advance(20s);
  EXPECT_EQ(Label("lblLeft"), "32 bytes written and verified.");
  EXPECT_EQ(bar.value(), 32);
  EXPECT_EQ(Results().count(), 5);
  EXPECT_EQ(Results().item(0)->text(), "0X8000 to 0X800F written");
  Click(writer, "cmdCopyResults");
  EXPECT_TRUE(QGuiApplication::clipboard()->text().endsWith("32 bytes written and verified.\n"));
  // The next run begins a list of its own.
  Click(writer, "cmd_VerifyEEPROM");
  EXPECT_EQ(Results().count(), 0);
  world.Advance(20s);
  EXPECT_EQ(Results().count(), 3);
  Click(writer, "cmd_Cancel");
  EXPECT_FALSE(writer.isVisible());
}

TEST_F(EepromWriterWindow, MakesOutputFilesAndASum) {
  Choose(writer);
  Click(writer, "cmd_CalcFileChecksum");
  EXPECT_EQ(Text(writer, "txt_FileChecksum").substr(0, 2), "&H");
  Click(writer, "chkOutputFormat(0)");
  world.dialogs().ExpectMessageBox("Tarnlink File is generated", "File Generation Done...");
  Click(writer, "cmd_TarnlinkFile");
  EXPECT_TRUE(world.disk().Exists("/home/user/work/boiler.bin"));
  EXPECT_FALSE(world.disk().Exists("/home/user/work/boiler.tlk"));
  EXPECT_EQ(FramesSent(), 0U);
  writer.close();
}

TEST_F(EepromWriterWindow, PaintsWhatIsWrittenVerifiedAndWrong) {
  Choose(writer, 2);
  EXPECT_EQ(Square(3), Square(31)) << "open";
  const QColor open = Square(3);
  PressWrite(writer, "Write 32 bytes, 0X8000 to 0X801F, into slave 0?");
  world.RunUntil([this] { return file_tools->eeprom.Answered == 20; }, 10s);
  const QColor written = Square(3);
  EXPECT_GT(written.blue() - written.red(), 80);
  EXPECT_EQ(Square(30), open);
  world.RunUntil([this] { return file_tools->eeprom.Answered == 32; }, 10s);
  boiler.controller().WriteByte(0x8009, 0xEE);
  world.dialogs().ExpectMessageBox("Verify Error on " + kImagePath, "Error");
  world.Advance(20s);
  EXPECT_GT(Square(3).green() - Square(3).red(), 60) << "verified";
  EXPECT_EQ(Square(20), written);
  auto& map = In<QScrollArea>(writer, "picMap");
  const int left = map.widget()->sizeHint().width() - 16 * 10;
  const QPoint ninth(left + 9 * 10 + 4, 4);
  QHelpEvent help(QEvent::ToolTip, ninth, map.widget()->mapToGlobal(ninth));
  QApplication::sendEvent(map.widget(), &help);
  EXPECT_EQ(QToolTip::text().toStdString(), "0X8009: 09 cell 9, wrong");
  QToolTip::hideText();
  writer.close();
}

TEST_F(EepromWriterWindow, ScrollsALongMapToTheByteInWork) {
  Choose(writer, 100);
  auto& bar = *In<QScrollArea>(writer, "picMap").verticalScrollBar();
  EXPECT_TRUE(QTest::qWaitFor([&] { return bar.maximum() > 0; }, 2000));
  EXPECT_EQ(bar.value(), 0);
  EepromMap& map = file_tools->eeprom.picMap;
  for (std::size_t i = 0; i < 1600; i += 16) map.Mark(i, CellState::kWritten);
  EXPECT_GT(bar.value(), bar.maximum() / 2);
  // Who looks elsewhere goes on doing so.
  bar.setValue(0);
  map.Mark(1599, CellState::kWritten);
  EXPECT_EQ(bar.value(), 0);
  writer.close();
}

TEST_F(EepromWriterWindow, AsksBeforeItClosesInTheMiddleOfAWrite) {
  Choose(writer, 2);
  PressWrite(writer, "Write 32 bytes, 0X8000 to 0X801F, into slave 0?");
  world.Advance(200ms);
  const std::string question = "The EEPROM is being written. Stop and close the window?";
  world.dialogs().ExpectMessageBox(question, "PROM File Generator").Press(Answer::kNo);
  Key(writer, Qt::Key_Escape);
  EXPECT_TRUE(writer.isVisible());
  EXPECT_TRUE(file_tools->eeprom.Writing);
  world.dialogs().ExpectMessageBox(question, "PROM File Generator").Press(Answer::kNo);
  writer.close();
  EXPECT_TRUE(writer.isVisible());
  // Cancel stops the run and leaves the window.
  Click(writer, "cmd_Cancel");
  EXPECT_TRUE(writer.isVisible());
  EXPECT_FALSE(file_tools->eeprom.Writing);
  EXPECT_FALSE(world.port().PortOpen());
  PressWrite(writer, "Write 32 bytes, 0X8000 to 0X801F, into slave 0?");
  world.dialogs().ExpectMessageBox(question, "PROM File Generator").Press(Answer::kYes);
  Key(writer, Qt::Key_Escape);
  EXPECT_FALSE(writer.isVisible());
  EXPECT_FALSE(world.port().PortOpen());
}

TEST_F(EepromWriterWindow, IsWalkedThroughByTheTabulator) {
  EXPECT_EQ(Focus(writer), "cmd_Browse");
  EXPECT_EQ(Walk(writer, 7),
            "chkOutputFormat(0) chkOutputFormat(1) ud_SlaveAddress.Up ud_SlaveAddress.Down "
            "lstResults cmd_Cancel cmd_Browse");
  Choose(writer, 1);
  EXPECT_EQ(Walk(writer, 9),
            "cmd_CalcFileChecksum chkOutputFormat(0) chkOutputFormat(1) cmd_TarnlinkFile "
            "ud_SlaveAddress.Up ud_SlaveAddress.Down cmd_WriteEEPROM cmd_VerifyEEPROM lstResults");
  writer.close();
}

TEST_F(EepromWriterWindow, HandsTheFocusFromWriteToStop) {
  Choose(writer, 1);
  In(writer, "cmd_WriteEEPROM").setFocus();
  world.dialogs()
      .ExpectMessageBox("Write 16 bytes, 0X8000 to 0X800F, into slave 0?", "Write EEPROM")
      .Press(Answer::kYes);
  Key(writer, Qt::Key_Return);
  EXPECT_EQ(Focus(writer), "cmd_Stop");
  world.Advance(200ms);
  Key(writer, Qt::Key_Space);
  EXPECT_FALSE(file_tools->eeprom.Writing);
  EXPECT_EQ(Focus(writer), "lstResults");
  writer.close();
}

TEST_F(EepromWriterWindow, PicksTheSlaveByItsArrows) {
  Click(writer, "ud_SlaveAddress.Up");
  Click(writer, "ud_SlaveAddress.Up");
  Click(writer, "ud_SlaveAddress.Down");
  EXPECT_EQ(Text(writer, "txt_SlaveAddress"), "1");
  Choose(writer, 1);
  Click(writer, "cmd_VerifyEEPROM");
  world.Advance(3s);
  EXPECT_EQ(Label("lblTrouble").substr(0, 11), "Sent again ");
  EXPECT_TRUE(Label("lblTrouble").ends_with(": no answer."));
  EXPECT_FALSE(In(writer, "ud_SlaveAddress.Up").isEnabled());
  writer.close();
  EXPECT_FALSE(writer.isVisible()) << "Reading can be left at any time.";
}

class EepromDownloaderWindow : public EepromWindowsTest {
 protected:
  QWidget& downloader = OpenDownloader();
};

TEST_F(EepromDownloaderWindow, ReadsAnImage) {
  EXPECT_EQ(downloader.windowTitle().toStdString(), "EEPROM Downloader");
  EXPECT_EQ(Text(downloader, "txt_eepromsourcefile"), "Output file not specified");
  StartReading(downloader, "32");
  QWidget& reading = Activated("frm_EEPROMRead_Progress");
  EXPECT_EQ(reading.windowTitle().toStdString(), "EEPROM Reading in progress");
  world.Advance(500ms);
  auto& bar = In<QProgressBar>(reading, "ProgressBar1");
  EXPECT_EQ(bar.maximum(), 32);
  EXPECT_GT(bar.value(), 0);
  EXPECT_NE(In<QLabel>(reading, "lblItem").text().indexOf(" bytes left"), -1);
  world.dialogs().ExpectMessageBox("Tarnlink File is generated", "File Generation Done...");
  world.Advance(10s);
  EXPECT_FALSE(reading.isVisible());
  EXPECT_EQ(In<QLabel>(downloader, "lblState").text(), "32 bytes read. ");
  EXPECT_EQ(world.disk().Get("/home/user/work/boiler.bin").size(), 32U);
  Click(downloader, "cmd_Cancel");
  EXPECT_FALSE(downloader.isVisible());
}

TEST_F(EepromDownloaderWindow, IsStoppedByCancelEscapeAndTheCross) {
  using Way = std::function<void(QWidget&)>;
  for (const Way& stop : {Way([](QWidget& reading) { Click(reading, "Cancel"); }),
                          Way([](QWidget& reading) { Key(reading, Qt::Key_Escape); }),
                          Way([](QWidget& reading) { reading.close(); })}) {
    StartReading(downloader);
    QWidget& reading = Activated("frm_EEPROMRead_Progress");
    world.Advance(1s);
    stop(reading);
    EXPECT_FALSE(reading.isVisible());
    EXPECT_TRUE(downloader.isVisible());
    EXPECT_EQ(In<QLabel>(downloader, "lblState").text().left(8), "Stopped.");
    EXPECT_FALSE(world.port().PortOpen());
    Activated("frm_EEPROM_Down");
  }
  downloader.close();
}

TEST_F(EepromDownloaderWindow, IsWalkedThroughByTheTabulator) {
  EXPECT_EQ(Focus(downloader), "Slave_address");
  EXPECT_EQ(Walk(downloader, 6),
            "Option1(0) EESize cmdBrowse cmd_read_EEPROM cmd_Cancel Slave_address");
  Walk(downloader, 3);
  world.dialogs().ExpectSaveFile().Give(kImagePath);
  Key(downloader, Qt::Key_Space);
  EXPECT_EQ(Text(downloader, "txt_eepromsourcefile"), kImagePath);
  EXPECT_EQ(
      In(downloader, "txt_eepromsourcefile").toolTip().remove("<wbr>").indexOf("boiler.def") >= 0,
      true);
  downloader.close();
}

TEST_F(EepromDownloaderWindow, SaysWhatIsMissing) {
  Click(downloader, "cmd_read_EEPROM");
  EXPECT_EQ(In<QLabel>(downloader, "lblState").text(),
            "Choose a destination file whose name ends in \".def\".");
  EXPECT_EQ(FramesSent(), 0U);
  downloader.close();
}

}  // namespace
}  // namespace tarnlink
