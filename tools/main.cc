// qrconfig: inspects and checks a qr_config installation (docs/qrconfig.md).
#include <iostream>
#include <string>
#include <vector>

#include "app/tool.h"

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  const int status = qrconfig::RunTool(arguments, std::cout, std::cerr);
  std::cout.flush();
  return std::cout.fail() ? qrconfig::kExitFailure : status;
}
