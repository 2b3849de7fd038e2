#include "job_folder.h"

#include <gtest/gtest.h>

namespace e2e {

namespace {

constexpr const char* kMap = "atmega.map";

}  // namespace

JobFolder::JobFolder() {
  for (const char* name : {"boiler.prj", "boiler.wcr", "service.wcr", "zolt.wcr", "modbus.prj",
                           "modbus.wcr", kMap, "default.ids", "default.erc", "MBID.ids", "MBID.erc",
                           "burner.grp", "burner_start.mss", "burner_start.txt"}) {
    std::filesystem::copy_file(std::filesystem::path(TARNLINK_SAMPLES) / name, Path(name));
  }
}

void JobFolder::Move(const std::string& variable, const std::string& address) const {
  std::string text = Read(kMap);
  const std::size_t line = text.find("\n" + variable + " ");
  ASSERT_NE(line, std::string::npos) << "The map has no " << variable << ".";
  const std::size_t end = text.find_first_of("\r\n", line + 1);
  Write(kMap, text.replace(end - address.size(), address.size(), address));
}

std::string TarnLinkSettings(const std::string& port) {
  return "[Communication]\nProtocol=0\nBaudrate=3\nCommport=1\nStopBits=0\nParity=0\n"
         "IgnoreErrors=1\nMsgTimeout=5\n\n[Ports]\nCOM1=" +
         port + "\n";
}

std::string Replaced(std::string text, const std::string& old, const std::string& replacement) {
  const std::size_t at = text.find(old);
  if (at == std::string::npos) {
    ADD_FAILURE() << "There is no " << old << " in:\n" << text;
    return text;
  }
  return text.replace(at, old.size(), replacement);
}

void OpenFromTree(DrivenProgram& program, const std::string& file) {
  program.Twice("trvProject/" + file);
}

void ExpectScreen(DrivenProgram& program, const std::string& file) {
  ASSERT_TRUE(program.Becomes("title frm_Main", "TarnLink - " + file));
  EXPECT_EQ(program.Ask("modal"), "none");
}

void OpenSettings(DrivenProgram& program, int index) {
  program.Twice("RAM_LOC_TEXT(" + std::to_string(index) + ")");
  ASSERT_TRUE(program.Becomes("modal", kSettings));
}

void TypeName(DrivenProgram& program, const std::string& name) {
  program.Mouse("cmbActualVariable");
  program.Key("Ctrl+A");
  program.Keys(name);
}

}  // namespace e2e
