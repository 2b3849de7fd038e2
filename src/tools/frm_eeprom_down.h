// The EEPROM downloader: reads a slave's EEPROM into an EEPROM definition file, with its image
// beside it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "common/dialog_controls.h"
#include "files/eeprom_source.h"
#include "tools/eeprom_line.h"
#include "tools/frm_eeprom_read_progress.h"
#include "tools/tool_host.h"

namespace tarnlink {

// A text box that asks for its text when it is clicked.
class ClickText : public TextBox {
 public:
  using TextBox::TextBox;

  std::function<void()> Click;  // reported by the view
};

class frm_EEPROM_Down {
 public:
  static constexpr int kBcUnit = 0;
  static constexpr int kDsp = 1;

  // `host` outlives the form.
  explicit frm_EEPROM_Down(ToolHost& host);

  Control form{"frm_EEPROM_Down"};
  Label caption{"frm_EEPROM_Down.Caption", "EEPROM Downloader"};
  GroupBox fraSlave{"fraSlave", "Slave address"};
  PickBox Slave_address{"Slave_address"};
  GroupBox fraDevice{"fraDevice", "Connected device"};
  OptionGroup Option1{"Option1", {"BC Unit", "DSP"}};
  GroupBox fraSize{"fraSize", "Size [B]"};
  TextBox EESize{"EESize"};
  GroupBox fraDestination{"fraDestination", "EEPROM Destination File"};
  ClickText txt_eepromsourcefile{"txt_eepromsourcefile"};
  CommandButton cmd_read_EEPROM{"cmd_read_EEPROM", "Read EE"};
  CommandButton cmd_Cancel{"cmd_Cancel", "&Cancel"};  // stops a run, and closes a form at rest
  Label lblState{"lblState"};                         // how the last run ended
  frm_EEPROMRead_Progress progress;

  std::unique_ptr<SerialPort> comm_eeread;
  std::unique_ptr<Timer> tim_eeread;          // runs while the EEPROM is read
  std::unique_ptr<Timer> tim_eeread_timeout;  // runs while an answer is awaited

  std::int32_t NextAddress = 0;  // the address in work
  const std::string& LastMessage() const { return line_.LastMessage; }

  // Only once.
  void Show();
  // Stops what runs. Only once.
  void Unload();
  std::function<void()> Unloaded;

  // False: the user left it as it was.
  bool ChooseFile();
  void ReadEEPROM();
  // Stops timers and port, and hides the progress form. What has been read is dropped.
  void ShutDownCom();
  void ErrorHandler(const std::string& text, const std::string& detail = {});

 private:
  void Tick();
  bool TakeAnswer(std::string_view frame);
  std::size_t BlockBegin() const { return (bytes_.size() - 1) / kEepromBlock * kEepromBlock; }
  bool IsWordSure(std::int32_t word);
  bool IsBlockSound() const;
  void CheckBlock();
  void TakeBlock(bool is_steady);
  void ReadBlockAgain(const std::string& why);
  void Finish();
  bool WriteDefinition();
  std::string WriteFailure();
  void BinaryStep();
  std::string DifferenceText() const;
  std::string BytesRead() const;
  void Stopped(const std::string& what);
  std::string LastReadText() const;
  void ShowProgress();
  void ShowState();

  ToolHost& host_;
  EepromLine line_;
  bool is_reading_ = false;
  bool is_busy_ = false;
  std::string path_;
  std::string folder_;  // where the file dialog was left
  std::string slave_;
  std::int32_t first_ = 0;  // address
  std::int32_t end_ = 0;    // of NextAddress
  std::vector<std::uint8_t> bytes_;
  bool is_block_read_ = false;         // and not checked yet
  bool hears_more_ = false;            // has heard more than was asked for
  int readings_ = 0;                   // of the present block that have not been taken
  std::string again_;                  // why it is read again
  std::vector<std::uint8_t> doubted_;  // the block as it was read before
  int askings_ = 0;                    // for the present address, whose word is not sure
  std::int32_t doubted_word_ = 0;      // its last one
  // Their addresses.
  std::vector<std::int32_t> unsound_blocks_;
  std::vector<std::int32_t> changing_blocks_;
};

}  // namespace tarnlink
