#include "cli/command_catalog.h"

namespace qrconfig {

namespace {

constexpr unsigned Counts(std::initializer_list<unsigned> counts) {
  unsigned bits = 0;
  for (unsigned count : counts) bits |= 1u << count;
  return bits;
}

}  // namespace

const std::vector<CommandSpec>& Commands() {
  static const std::vector<CommandSpec> commands = {
      {"tree", "[NODEPATH]", Counts({0, 1}),
       "the configuration tree or a subtree, with every field",
       "Shows the configuration tree as the library loaded it, or the subtree at NODEPATH,\n"
       "indented like the tree command. Each field shows as NAME: TYPE = VALUE, texts in\n"
       "double quotes; fields come before child nodes. NODEPATH is a node path such as\n"
       "'\\Quorin\\DBDrivers' (quote it for the shell) or, for convenience, with slashes:\n"
       "/Quorin/DBDrivers. With --json, one object per node with \"name\", \"fields\" and\n"
       "\"children\"."},
      {"get", "NODEPATH [FIELD]", Counts({1, 2}),
       "the fields of a node, or one field's value alone",
       "Shows the fields of the node at NODEPATH, one per line as NAME: TYPE = VALUE.\n"
       "With FIELD, prints that field's value alone (texts unquoted, Long in decimal, Bool\n"
       "as true or false), for scripts; the first field of that name counts. With --json,\n"
       "the node's fields, or the one field, as JSON objects {\"name\", \"type\", \"value\"}."},
      {"drivers", "", Counts({0}), "the drivers with their aliases, native or not",
       "Lists the drivers of the driver list: native drivers (implemented in C, the ones\n"
       "the library loads) first, then the others, each in driver-list order, with its\n"
       "aliases and the number of databases loaded for it."},
      {"databases", "DRIVER", Counts({1}),
       "a driver's databases with aliases, library and directory",
       "Lists the databases loaded for DRIVER (a driver name or alias): each database's\n"
       "aliases, its client library (or the libraries of its \"Libraries\" list) and its\n"
       "directory, in the order the data-access files declare them."},
      {"resolve", "DRIVER-OR-ALIAS [DATABASE-OR-ALIAS]", Counts({1, 2}),
       "the driver or database name that an alias stands for",
       "Prints the driver name that DRIVER-OR-ALIAS stands for or, with a second argument,\n"
       "the database name that DATABASE-OR-ALIAS stands for within that driver. The name\n"
       "is printed alone, for scripts."},
      {"locale", "LANGUAGE [COUNTRY]", Counts({1, 2}),
       "the locale descriptor of a language and country",
       "Shows the locale descriptor that the library gives for LANGUAGE and COUNTRY on\n"
       "the running platform: identifier, language, country and character set. A known\n"
       "language with an unknown country yields the language's descriptor with that\n"
       "country."},
      {"texts", "DRIVER LANGUAGE [COUNTRY]", Counts({2, 3}),
       "a driver's localised external name and comment",
       "Shows the localised texts of DRIVER (a name or alias) in the locale of LANGUAGE\n"
       "and COUNTRY: its external name and comment, and the localised file they come\n"
       "from (driver<locale>.cfg, falling back to the language and then to \"en\")."},
      {"charset", "NAME | DRIVER DATABASE NAME", Counts({1, 3}),
       "an entry of the platform or a database character-set list",
       "With one argument, prints the entry NAME of the platform character-set list\n"
       "(the running platform's section). With three, prints the entry NAME of the\n"
       "character-set table of DATABASE (a name or alias) of DRIVER (a name or alias).\n"
       "The text is printed alone, for scripts."},
      {"check", "", Counts({0}), "what an administrator needs to fix in the installation",
       "Loads the installation with the library, going on past each error, and reports\n"
       "what the library reports: XML errors with line and column, element and attribute\n"
       "names that are ignored, values whose type is rejected where they are read, values\n"
       "taken other than written, settings given twice, setup files naming unknown or\n"
       "non-native drivers or missing data-access files, drivers without setup file,\n"
       "names and aliases that lose, settings the start-up needs, character-set lists\n"
       "and tables, databases skipped by Active, Platform or the active data sources,\n"
       "localised texts a request would miss, and finally whether the library loads the\n"
       "installation.\n"
       "\n"
       "Each finding is one line FILE:LINE:COLUMN: SEVERITY: MESSAGE [KIND] (line and\n"
       "column where known; FILE as usable from the current directory) followed by what\n"
       "to do, sorted by file, errors before warnings before notes within a file, then by\n"
       "line; a summary line ends the report. --severity error|warning|note reports only\n"
       "findings of that severity or above (default note); --quiet reports only errors\n"
       "and warnings, without the summary, and prints nothing when there are none.\n"
       "\n"
       "Exit status: 0 when no error or warning is reported, 1 when an error is (or the\n"
       "directory holds no configuration), 3 when warnings but no error are."},
      {"list", "", Counts({0}), "every field of the configuration, one per line",
       "Prints every field of the loaded configuration on a line of its own, in tree\n"
       "order, as PATH, FIELD, TYPE and VALUE separated by tabs (control characters\n"
       "written as \\xNN), for grep and diff. --show-origin adds a fifth column: the\n"
       "FILE:LINE that set the value, or its source in parentheses for a value from no\n"
       "file (a registry parameter, a start-up fall-back). With --json, one array of\n"
       "objects {\"path\", \"field\", \"type\", \"value\", \"origin\"}."},
      {"explain", "NODEPATH [FIELD]", Counts({1, 2}),
       "where each value of a node came from, and what it replaced",
       "Shows each field of the node at NODEPATH (or the fields named FIELD) with its\n"
       "value, the FILE:LINE and section that set it, and every value it replaced, newest\n"
       "first, for example:\n"
       "  Connection Timeout = 60   qr.cfg:49 (Library section), replaces 30 from\n"
       "  qr.cfg:35 (Settings)\n"
       "A database's fields go on into the defaults it copied: the main file's\n"
       "DriverDefaults, the start-up's fall-backs, its data-access file's Defaults.\n"
       "With --json, {\"path\", \"fields\": [{\"name\", \"type\", \"value\", \"origin\":\n"
       "[{\"file\", \"line\", \"source\", \"value\"}]}]}."},
      {"diff", "DIR1 DIR2", Counts({2}), "compare the configurations of two installations",
       "Loads the installations in DIR1 and DIR2 (each as --config-dir would) and\n"
       "compares their fields as list prints them, each field paired with the same field\n"
       "of the other (same node path, same name, same rank among the fields of that\n"
       "name). Where a directory's own path starts a text value it is written $DIR, so\n"
       "two copies of one installation agree wherever they live. Prints the differences\n"
       "as \"-\" lines (DIR1) and \"+\" lines (DIR2) after a --- and +++ header, nothing\n"
       "when they agree. Exit status, as for diff: 0 when they agree, 1 when they\n"
       "differ, 2 when one does not load or the command line is wrong."},
      {"names", "WHAT [NODEPATH | DRIVER]", Counts({1, 2}),
       "names for scripts and shell completion, one per line",
       "Prints names alone, one per line, for scripts and shell completion. WHAT is one of:\n"
       "  commands         the commands of qrconfig\n"
       "  options          the options, each followed by its value (DIR) or its choices\n"
       "                   (server|library) when it takes one\n"
       "  nodes [NODEPATH] the path of every node, with slashes (/Quorin/DBDrivers), or\n"
       "                   of every node below NODEPATH\n"
       "  fields NODEPATH  the field names of the node at NODEPATH, in order\n"
       "  drivers          the driver names, native ones first, in driver-list order\n"
       "  databases DRIVER the databases loaded for DRIVER (a name or alias)\n"
       "The lists of commands and options need no configuration directory."},
      {"help", "[COMMAND]", Counts({0, 1}), "the help of the program or of one command",
       "Shows the help of the program, or of COMMAND."},
  };
  return commands;
}

const std::vector<OptionSpec>& Options() {
  static const std::vector<OptionSpec> options = {
      {"config-dir", nullptr, "DIR", false, nullptr,
       "The configuration directory to read. Default: the environment variable "
       "QR_CONFIG_DIR; with neither, qrconfig stops with status 2."},
      {"mode", nullptr, "server|library", false, nullptr,
       "Initialise in server or library mode (default library): selects the main file's "
       "Server or Library section and the mode's rules."},
      {"param", nullptr, "NAME=VALUE", true, nullptr,
       "Set the registry parameter NAME to VALUE before loading; repeatable. "
       "\"Config Directory\" is --config-dir."},
      {"active", nullptr, "DRIVER=PATTERN", true, nullptr,
       "Register an active data source: databases of DRIVER whose whole name matches the "
       "regular expression PATTERN; repeatable. Takes effect in server mode only."},
      {"platform", nullptr, "NAME", false, nullptr,
       "Load as if running on the platform NAME (and its families, such as Linux and Unix "
       "for Linux-x86_64) instead of this machine's platform."},
      {"json", nullptr, nullptr, false, nullptr,
       "Print the result as JSON instead of text; failures too, as one object "
       "{\"error\": {...}} on standard output."},
      {"quiet", nullptr, nullptr, false, "check",
       "check: report only errors and warnings, without the summary; print nothing when "
       "there are none."},
      {"severity", nullptr, "error|warning|note", false, "check",
       "check: report only findings of this severity or above (default note)."},
      {"show-origin", nullptr, nullptr, false, "list",
       "list: add the place that set each value, as FILE:LINE, in a fifth column."},
      {"help", "-h", nullptr, false, nullptr, "Show the help of the program or of the command."},
      {"version", nullptr, nullptr, false, nullptr, "Show the version of the library and exit."},
  };
  return options;
}

const OptionSpec* FindOption(const std::string& name) {
  for (const OptionSpec& option : Options()) {
    if (name == option.Name) return &option;
  }
  return nullptr;
}

const CommandSpec* FindCommand(const std::string& name) {
  for (const CommandSpec& command : Commands()) {
    if (name == command.Name) return &command;
  }
  return nullptr;
}

std::string DescribeCounts(unsigned allowedCounts) {
  std::string text;
  unsigned highest = 0;
  for (unsigned n = 0; n < 32; ++n) {
    if (allowedCounts & (1u << n)) highest = n;
  }
  for (unsigned n = 0; n <= highest; ++n) {
    if (!(allowedCounts & (1u << n))) continue;
    if (!text.empty()) text += n == highest ? " or " : ", ";
    text += std::to_string(n);
  }
  if (allowedCounts == 1u) return "no argument";
  return text + (highest == 1 ? " argument" : " arguments");
}

}  // namespace qrconfig
