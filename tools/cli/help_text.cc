#include "cli/help_text.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <string>

namespace qrconfig {

namespace {

constexpr std::size_t kWidth = 80;
constexpr std::size_t kOptionColumn = 26;

constexpr const char* kExitStatus =
    "Exit status:\n"
    "  0  success; for check: no error and no warning reported\n"
    "  1  the configuration does not load, a lookup finds nothing, the output cannot\n"
    "     be written, or check reported an error\n"
    "  2  the command line is wrong or names no configuration directory\n"
    "  3  check reported warnings but no error\n";

constexpr const char* kExamples =
    "Examples:\n"
    "  qrconfig check --config-dir /etc/quorin\n"
    "      List what is wrong with the installation in /etc/quorin.\n"
    "  QR_CONFIG_DIR=/etc/quorin qrconfig check --quiet --severity error\n"
    "      Print its errors alone; print nothing and exit with 0 when there are none.\n"
    "  qrconfig tree /Quorin/DBDrivers/Corvane\n"
    "      Show the driver's subtree with every field.\n"
    "  qrconfig get /Quorin/DBDrivers/Corvane/crv19 Port\n"
    "      Print one field's value alone.\n"
    "  qrconfig resolve CRV CRV19 --json\n"
    "      Print the driver and database names that two aliases stand for, as JSON.\n";

constexpr const char* kManual = "The manual: man qrconfig (qrconfig(1)).\n";

// `text` as lines of at most kWidth columns, each after `indent` blanks (the first after
// `first` characters already written), cut at blanks.
void WriteWrapped(const std::string& text, std::size_t first, std::size_t indent,
                  std::ostream& out) {
  std::size_t column = first;
  std::size_t start = 0;
  bool lineEmpty = true;
  while (start < text.size()) {
    std::size_t end = text.find(' ', start);
    if (end == std::string::npos) end = text.size();
    const std::string word = text.substr(start, end - start);
    start = end + 1;
    if (word.empty()) continue;
    if (!lineEmpty && column + 1 + word.size() > kWidth) {
      out << '\n' << std::string(indent, ' ');
      column = indent;
      lineEmpty = true;
    }
    if (!lineEmpty) {
      out << ' ';
      ++column;
    }
    out << word;
    column += word.size();
    lineEmpty = false;
  }
  out << '\n';
}

// A command's description: runs of lines that start with a letter are joined and wrapped
// anew; indented lines (tables) and blank lines stay as they are.
void WriteDescription(const std::string& text, std::ostream& out) {
  std::string run;
  std::size_t start = 0;
  while (start <= text.size()) {
    std::size_t end = text.find('\n', start);
    if (end == std::string::npos) end = text.size();
    const std::string line = text.substr(start, end - start);
    start = end + 1;
    if (!line.empty() && line[0] != ' ') {
      run += (run.empty() ? "" : " ") + line;
      continue;
    }
    if (!run.empty()) WriteWrapped(run, 0, 0, out);
    run.clear();
    out << line << '\n';
  }
  if (!run.empty()) WriteWrapped(run, 0, 0, out);
}

// The options of `command` (every option when null).
void WriteOptions(const char* command, std::ostream& out) {
  for (const OptionSpec& option : Options()) {
    if (command != nullptr && option.OnlyFor != nullptr &&
        std::strcmp(command, option.OnlyFor) != 0)
      continue;
    std::string left = "  ";
    if (option.Short != nullptr) left += std::string(option.Short) + ", ";
    left += "--" + std::string(option.Name);
    if (option.Argument != nullptr) left += " " + std::string(option.Argument);
    out << left;
    if (left.size() + 2 > kOptionColumn) {
      out << '\n' << std::string(kOptionColumn, ' ');
    } else {
      out << std::string(kOptionColumn - left.size(), ' ');
    }
    WriteWrapped(option.Help, kOptionColumn, kOptionColumn, out);
  }
}

}  // namespace

void WriteProgramHelp(std::ostream& out) {
  out << "Usage: qrconfig COMMAND [ARGUMENTS] [OPTIONS]\n"
         "Inspect and check a qr_config installation: show what the library loads from a\n"
         "configuration directory, and list what an administrator needs to fix in it.\n\n";
  out << "Commands:\n";
  std::size_t width = 0;
  for (const CommandSpec& command : Commands()) width = std::max(width, std::strlen(command.Name));
  for (const CommandSpec& command : Commands()) {
    out << "  " << command.Name << std::string(width - std::strlen(command.Name) + 2, ' ')
        << command.Summary << '\n';
  }
  out << "Run 'qrconfig COMMAND --help' for a command's arguments and details.\n\n";
  out << "Options, before or after the command:\n";
  WriteOptions(nullptr, out);
  out << '\n' << kExitStatus << '\n' << kExamples << '\n' << kManual;
}

void WriteCommandHelp(const CommandSpec& command, std::ostream& out) {
  const std::string synopsis = *command.Synopsis ? " " + std::string(command.Synopsis) : "";
  std::string summary = command.Summary;
  summary[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(summary[0])));
  out << "Usage: qrconfig " << command.Name << synopsis << " [OPTIONS]\n" << summary << ".\n\n";
  WriteDescription(command.Description, out);
  out << "\nOptions, before or after the command:\n";
  WriteOptions(command.Name, out);
  out << "\nRun 'qrconfig --help' for the exit statuses and examples.\n" << kManual;
}

}  // namespace qrconfig
