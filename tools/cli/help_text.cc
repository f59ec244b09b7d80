#include "cli/help_text.h"

#include <algorithm>
#include <cstring>
#include <string>

#include <Poco/Util/HelpFormatter.h>

#include "cli/command_line.h"

namespace qrconfig {

namespace {

constexpr const char* kFooter =
    "Exit status: 0 on success; 1 when the configuration fails to load, a lookup finds\n"
    "nothing or check finds problems; 2 on a usage error.\n"
    "The reference is docs/qrconfig.md.";

// The options part, laid out by POCO's formatter from the option descriptions.
void WriteOptions(const std::string& usage, std::ostream& out) {
  const Poco::Util::OptionSet options = ToolOptions();
  Poco::Util::HelpFormatter formatter(options);
  formatter.setUnixStyle(true);
  formatter.setWidth(80);
  formatter.setCommand("qrconfig");
  formatter.setUsage(usage);
  formatter.setHeader("\nOptions, before or after the command:");
  formatter.format(out);
}

}  // namespace

void WriteProgramHelp(std::ostream& out) {
  out << "qrconfig: inspects and checks a qr_config installation.\n\n";
  out << "Commands:\n";
  std::size_t width = 0;
  for (const CommandSpec& command : Commands()) width = std::max(width, std::strlen(command.Name));
  for (const CommandSpec& command : Commands()) {
    out << "  " << command.Name << std::string(width - std::strlen(command.Name) + 2, ' ')
        << command.Summary << '\n';
  }
  out << "Run 'qrconfig COMMAND --help' for a command's arguments.\n";
  out << '\n';
  WriteOptions("COMMAND [ARGUMENTS] [OPTIONS]", out);
  out << '\n' << kFooter << '\n';
}

void WriteCommandHelp(const CommandSpec& command, std::ostream& out) {
  out << "qrconfig " << command.Name << (*command.Synopsis ? " " : "") << command.Synopsis << ": "
      << command.Summary << ".\n\n"
      << command.Description << "\n\n";
  WriteOptions(
      std::string(command.Name) + (*command.Synopsis ? " " : "") + command.Synopsis + " [OPTIONS]",
      out);
  out << '\n' << kFooter << '\n';
}

}  // namespace qrconfig
