// The EEPROM writer: makes output files from an EEPROM definition file, writes its image byte by
// byte into a slave, and proves what the slave then holds.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/control_array.h"
#include "common/dialog_controls.h"
#include "files/eeprom_source.h"
#include "tools/eeprom_line.h"
#include "tools/eeprom_map.h"
#include "tools/tool_host.h"

namespace tarnlink {

class frm_EEPROM {
 public:
  static constexpr const char* kNoFile = "No file specified";

  // `host` outlives the form.
  explicit frm_EEPROM(ToolHost& host);

  Control form{"frm_EEPROM"};
  Label caption{"frm_EEPROM.Caption", "PROM File Generator"};

  // --- The source and what is made of it ---
  GroupBox fra_SourceFile{"fra_SourceFile", "PROM Source File"};
  TextBox txt_eepromsourcefile{"txt_eepromsourcefile"};
  CommandButton cmd_Browse{"cmd_Browse", "&Browse"};
  GroupBox fra_Eewrite{"fra_Eewrite", "File Format"};
  Label lblSource{"lblSource"};  // what it holds, or why it cannot be used
  FixedArray<CheckBox> chkOutputFormat{"chkOutputFormat", 0, {"TLK File", "BIN File"}};
  CommandButton cmd_TarnlinkFile{"cmd_TarnlinkFile", "&Make Output Files"};
  CommandButton cmd_CalcFileChecksum{"cmd_CalcFileChecksum", "Checksum"};
  TextBox txt_FileChecksum{"txt_FileChecksum"};

  // --- The slave ---
  Label lblSlaveAddress{"lblSlaveAddress", "Slave Address"};
  TextBox txt_SlaveAddress{"txt_SlaveAddress"};
  SpinButton ud_SlaveAddress{"ud_SlaveAddress"};
  CommandButton cmd_WriteEEPROM{"cmd_WriteEEPROM", "&Write EEPROM"};
  CommandButton cmd_VerifyEEPROM{"cmd_VerifyEEPROM", "&Verify EEPROM"};
  CommandButton cmd_Stop{"cmd_Stop", "&Stop"};
  CommandButton cmd_Cancel{"cmd_Cancel", "&Cancel"};  // stops a run, and closes a form at rest

  // --- The run ---
  CountBar prgRun{"prgRun"};
  Label lblProgress{"lblProgress"};  // the item in work
  Label lblTrouble{"lblTrouble"};    // how often it had to be sent again, and why
  Label lblLeft{"lblLeft"};          // what is still to be done, or how it ended
  EepromMap picMap{"picMap"};
  ListBox lstResults{"lstResults"};
  CommandButton cmdCopyResults{"cmdCopyResults", "C&opy results"};
  CommandButton cmdSaveResults{"cmdSaveResults", "Save &results..."};

  std::unique_ptr<SerialPort> comm_eewrite;
  std::unique_ptr<Timer> tim_eewrite;          // runs in the write pass
  std::unique_ptr<Timer> tim_verify;           // runs in the verify pass
  std::unique_ptr<Timer> tim_eewrite_timeout;  // runs while an answer is awaited

  bool FileOpen = false;  // a source is chosen
  bool Writing = false;   // a run is on, of either pass
  bool Busy = false;      // a message is under way
  std::uint8_t ByteInBlock = 0;
  std::uint16_t Sent = 0;
  std::uint16_t Answered = 0;
  std::uint16_t ExpectedValue = 0;
  std::string LastConfirmed;  // the address that was acknowledged or found right last; or empty
  const std::string& LastMessage() const { return line_.LastMessage; }

  // Only once.
  void Show();
  // Stops what runs, and asks first while a write is under way, or its proof. Only once.
  void Unload();
  std::function<void()> Unloaded;

  void Browse();
  void MakeOutputFiles();
  void CalcFileChecksum();
  // Asks first. Behind the last byte all of them are read back.
  void WriteEEPROM();
  void VerifyEEPROM();
  void Stop();

  std::string ResultText() const;
  std::function<void(const std::string& text)> CopyText;  // what `cmdCopyResults` does with it

 private:
  bool MayClose();
  enum class Pass { kWrite, kVerify };

  // Reads and checks the chosen source; nothing if that fails, which has been told then.
  std::optional<EepromSource> ReadSource();
  std::string Path() const { return txt_eepromsourcefile.Text; }
  void ShowSource();
  void TakeRecords(const EepromSource& source);
  std::string ImageText() const;  // of one that is not empty
  bool LoadRecords();
  void ShowImage();
  void ForgetRun();
  bool AsksFirst();
  void Begin(Pass first);
  void BeginPass(Pass pass);
  void Tick();
  void SendNext();
  bool TakeAnswer(std::string_view frame);
  bool TakeWriteAnswer(std::string_view frame);
  bool IsManner(std::string_view frame);
  bool TakeReadAnswer(std::string_view frame);
  void Confirm();
  void AddBlock();
  bool IsProvedByNext() const;
  void EndWait();
  void VerifyError(std::uint16_t word);
  std::optional<std::uint16_t> WordExpected() const;
  void EndPass();
  void Halt();
  void ReportError(const std::string& text, const std::string& detail = {});
  void AddResult(const std::string& line);
  void SaveResults();
  std::string ConfirmedText() const;
  void ShowState();
  void ShowLeft();
  void StepSlave(int step);
  const EepromRecord& Record() const { return records_[next_]; }
  const char* Verb() const { return pass_ == Pass::kWrite ? "written" : "verified"; }

  ToolHost& host_;
  EepromLine line_;
  Pass pass_ = Pass::kWrite;
  bool was_written_ = false;  // in this run
  bool is_asking_ = false;    // whether the form may be closed
  std::string folder_;        // where the file dialogs were left
  std::string slave_;
  std::vector<EepromRecord> records_;
  std::vector<std::uint16_t> addresses_;
  std::size_t next_ = 0;           // the record in work
  int repeats_ = 0;                // in the present block
  bool is_block_due_ = false;      // it is done when the next answer proves its last byte
  std::string other_acknowledge_;  // ID and offset of one that was not of the byte in work
  int other_acknowledges_ = 0;     // one behind the other, all alike
  int acknowledges_ = 0;           // of the byte in work, that were not of it
  int wrong_answers_ = 0;
  std::uint16_t last_wrong_ = 0;
  bool is_held_ = false;  // the answer is right, and the line is watched for another one
  int answers_with_more_ = 0;
};

}  // namespace tarnlink
