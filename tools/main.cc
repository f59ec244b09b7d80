// qrconfig: inspects and checks a qr_config installation (qrconfig(1)).
#include <pthread.h>

#include <csignal>
#include <iostream>
#include <string>
#include <vector>

#include "app/tool.h"

int main(int argc, char** argv) {
  // A reader that stops early (`qrconfig list | head`) ends qrconfig quietly, as it ends cat or
  // grep: POCO blocks SIGPIPE when it loads, and the parent process may have left it ignored.
  sigset_t pipe;
  sigemptyset(&pipe);
  sigaddset(&pipe, SIGPIPE);
  pthread_sigmask(SIG_UNBLOCK, &pipe, nullptr);
  std::signal(SIGPIPE, SIG_DFL);
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  return qrconfig::RunTool(arguments, std::cout, std::cerr);
}
