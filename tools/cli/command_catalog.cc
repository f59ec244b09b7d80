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
       "Reads every file of the installation and reports what an administrator needs to\n"
       "fix, beyond the first error the library raises: XML errors with line and column,\n"
       "element and attribute names that are ignored, values whose type is rejected where\n"
       "they are read, values that do not stand on the line of their start tag, setup\n"
       "files naming unknown or non-native drivers or missing data-access files, aliases\n"
       "that collide and lose, settings the start-up needs, character-set lists and\n"
       "tables, databases skipped by Active, Platform or the active data sources, and\n"
       "finally whether the library loads the installation. Each finding names its\n"
       "severity (error, warning or note), file and line, and what to do. The exit status\n"
       "is 1 when there is an error or a warning; notes alone give 0."},
      {"help", "[COMMAND]", Counts({0, 1}), "the help of the program or of one command",
       "Shows the help of the program, or of COMMAND."},
  };
  return commands;
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
