#include "simulator/options.h"

#include <algorithm>
#include <charconv>
#include <functional>
#include <map>

#include "simulator/problem.h"

namespace boiler {
namespace {

constexpr std::string_view kHelp =
    "Usage: boiler_simulator [OPTION]...\n"
    "A gas boiler's controller at the end of a serial line. Makes a pseudo terminal and prints "
    "its\n"
    "path as the first line.\n"
    "\n"
    "  --device PATH    use this serial device instead, at the speed of --baud\n"
    "  --link PATH      name the pseudo terminal by a symbolic link\n"
    "  --protocol NAME  tarnlink (the default), zolt, modbus, or any: whichever is spoken\n"
    "  --slaves LIST    addresses with commas between them: zolt and any 0 to F, 0 when not "
    "given;\n"
    "                   modbus 1 to 247, 1 when not given\n"
    "  --corrupted      zolt, any: answers a ZOLT request whose check is wrong as corrupted\n"
    "  --wrong-limits   zolt, any: three parameters take other values than they should\n"
    "  --write-once ADDRESSES\n"
    "                   zolt, any: these addresses, with commas between them, take one write and\n"
    "                   refuse those behind it\n"
    "  --write-once-silent ADDRESSES\n"
    "                   the same, but they say that they have stored what they have not\n"
    "  --poll LIST      zolt, any: a second master on the line asks these slaves for all data IDs\n"
    "                   in turn, again and again\n"
    "  --poll-gap MS    of silence ahead of each of its requests, 20 when not given\n"
    "  --baud N         speed of the line, 9600 when not given\n"
    "  --bits N         bits per byte on the line, 10 (the default) or 11\n"
    "  --at-once        bytes take no time\n"
    "  --delay MS       from a request to its answer, 5 when not given\n"
    "  --fault TEXT     NAME, NAME(NUMBER), with @RATE or #COUNT behind it; may come repeatedly\n"
    "  --seed N         what chance follows from, 1 when not given\n"
    "  --log FILE       one line per event\n"
    "  --until-eof      end with the end of standard input\n"
    "  --help           print this and end\n"
    "\n"
    "Commands on standard input, one per line: fault TEXT, clear, set ADDRESS HEXBYTES,\n"
    "get ADDRESS [COUNT], unplug, replug, replug other, reboot, quit. Each is answered by a line,\n"
    "\"ok\", what was asked for or \"error: \" and why; \"port PATH\" tells of a port plugged "
    "again.\n";

std::int64_t Number(const std::string& option, const std::string& text, std::int64_t lowest,
                    std::int64_t highest) {
  std::int64_t number = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stop != end || number < lowest || number > highest) {
    throw Problem(option + " takes a whole number from " + std::to_string(lowest) + " to " +
                  std::to_string(highest) + ", not \"" + text + "\".");
  }
  return number;
}

using Value = const std::string&;

std::map<std::string, std::function<void(Value)>> OptionsWithValue(ProgramOptions& options,
                                                                   int& baud) {
  LineOptions& line = options.boiler.line;
  return {
      {"--device", [&](Value text) { options.device = text; }},
      {"--link", [&](Value text) { options.link = text; }},
      {"--protocol", [&](Value text) { options.boiler.protocol = text; }},
      {"--slaves", [&](Value text) { options.boiler.slave.addresses = text; }},
      {"--write-once", [&](Value text) { options.boiler.slave.write_once = text; }},
      {"--write-once-silent", [&](Value text) { options.boiler.slave.write_once_silent = text; }},
      {"--baud",
       [&](Value text) { baud = static_cast<int>(Number("--baud", text, 50, 4'000'000)); }},
      {"--bits",
       [&](Value text) {
         line.pace.bits_per_byte = static_cast<int>(Number("--bits", text, 10, 11));
       }},
      {"--delay",
       [&](Value text) { line.answer_delay_us = Number("--delay", text, 0, 3'600'000) * 1000; }},
      {"--poll", [&](Value text) { options.boiler.second_master.addresses = text; }},
      {"--poll-gap",
       [&](Value text) {
         options.boiler.second_master.gap_us = Number("--poll-gap", text, 1, 3'600'000) * 1000;
       }},
      {"--fault", [&](Value text) { options.faults.push_back(text); }},
      {"--seed",
       [&](Value text) {
         options.boiler.seed = static_cast<std::uint64_t>(Number("--seed", text, 0, INT64_MAX));
       }},
      {"--log", [&](Value text) { options.log = text; }},
  };
}

}  // namespace

ProgramOptions ParseOptions(const std::vector<std::string>& words) {
  ProgramOptions options;
  options.boiler.line.answer_delay_us = 5'000;
  int baud = 9600;
  bool at_once = false;
  const auto with_value = OptionsWithValue(options, baud);
  const std::map<std::string, bool*> plain = {
      {"--at-once", &at_once},
      {"--corrupted", &options.boiler.slave.answers_corrupted},
      {"--wrong-limits", &options.boiler.slave.has_wrong_limits},
      {"--until-eof", &options.until_eof},
      {"--help", &options.help}};
  for (auto word = words.begin(); word != words.end();) {
    const std::string& name = *word++;
    if (const auto found = plain.find(name); found != plain.end()) {
      *found->second = true;
    } else if (const auto option = with_value.find(name); option != with_value.end()) {
      if (word == words.end()) throw Problem(name + " needs a value.");
      option->second(*word++);
    } else {
      throw Problem("There is no option \"" + name + "\"; --help lists them.");
    }
  }
  if (!options.device.empty() && !options.link.empty()) {
    throw Problem("--link names a pseudo terminal and does not go with --device.");
  }
  options.device_baud = baud;
  // A real device keeps its own pace.
  options.boiler.line.pace.baud = at_once || !options.device.empty() ? 0 : baud;
  return options;
}

std::string_view HelpText() { return kHelp; }

}  // namespace boiler
