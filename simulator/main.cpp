#include <exception>
#include <iostream>

#include "simulator/options.h"
#include "simulator/program.h"

int main(int argc, char** argv) try {
  const boiler::ProgramOptions options = boiler::ParseOptions({argv + 1, argv + argc});
  if (options.help) {
    std::cout << boiler::HelpText();
    return 0;
  }
  boiler::Program(options).Run();
  return 0;
} catch (const std::exception& problem) {
  std::cerr << "boiler_simulator: " << problem.what() << '\n';
  return 2;
}
