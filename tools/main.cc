// qrconfig: inspects and checks a qr_config installation (qrconfig(1)).
#include <iostream>
#include <string>
#include <vector>

#include "app/tool.h"

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  return qrconfig::RunTool(arguments, std::cout, std::cerr);
}
