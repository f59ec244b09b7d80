#include "app/error_advice.h"

#include <Poco/Exception.h>

namespace qrconfig {

namespace {

struct Advice {
  std::int32_t Code;
  const char* Text;
};

constexpr const char* kCheck = "Run 'qrconfig check' to see the cause with file and line.";

// One row per code of platform/qr_error.h.
constexpr Advice kAdvice[] = {
    {1,
     "A value was read in another type than the one its text gave it (texts are typed by "
     "their content: Yes/No are Bool, digits are Long). Run 'qrconfig check' to find it."},
    {4, "Give a node path with at least one level, such as '\\Quorin'."},
    {5,
     "Show the existing nodes with 'qrconfig tree'; node names are case-sensitive and the "
     "first level is \"Quorin\"."},
    {10,
     "The start-up stopped at something other than a broken file: a missing or wrongly "
     "typed setting, no locale or character-set section for this platform, a failing "
     "driver. Run 'qrconfig check' to see the cause with file and line."},
    {13,
     "List the driver's databases and aliases with 'qrconfig databases DRIVER'; names "
     "are case-sensitive."},
    {22,
     "List the drivers and their aliases with 'qrconfig drivers'; names are "
     "case-sensitive."},
    {45, "Check that the file exists and is readable."},
    {46, "Fix the XML syntax of the file."},
    {47, "Save the file as UTF-8, or declare its real encoding in the XML declaration."},
    {48, "Remove entity declarations and external references from the file."},
    {50,
     "Add a NetworkLayer element for the driver, with a \"Name\" message, to the "
     "localised driver file."},
    {259, "The configuration is already loaded in this process."},
    {260, "Load the configuration first (ConfigStartup::Initialize)."},
    {261,
     "Show the node's fields with 'qrconfig get NODEPATH'; field names are "
     "case-sensitive."},
    {262,
     "Give the database the parameter \"Unicode\" = CharSet and a \"CharSet Table\" "
     "naming a character-set table file in its directory, with a [CharSets] section."},
    {263,
     "Add the entry to the character-set list or table, or look the name up with its "
     "exact spelling."},
    {264,
     "Check that the file exists, is readable, and that --config-dir or QR_CONFIG_DIR "
     "names the configuration directory."},
    {265, "Fix the XML syntax of the file; 'qrconfig check' shows the line and column."},
    {266,
     "Save the file as UTF-8, or declare its real encoding; 'qrconfig check' shows the "
     "line and column."},
    {267,
     "In the main file, close only elements that are open (a \"Trace\" that holds no "
     "other \"Trace\" stands inside a group, a \"NetworkLayer\" needs a \"Name\"); in "
     "other files remove entity declarations. Run 'qrconfig check' to find it."},
    {268,
     "Add a Locale entry whose CharSet names this platform (or a family of it) to "
     "qr.cfg, or load for another platform with --platform."},
    {270,
     "Add the language to the Locale entries of qr.cfg, or ask for a language that is "
     "there."},
    {279,
     "Check the setup file's Directory and DataFileName and the \"Config File "
     "Extension\" setting: the data-access file they name must exist."},
    {280,
     "Fix the XML syntax of the data-access file; 'qrconfig check' shows the line and "
     "column."},
    {281, "Save the data-access file as UTF-8, or declare its real encoding."},
    {282, "Remove entity declarations and external references from the data-access file."},
    {283, "Fix the regular expression of the active data source."},
    {284,
     "Check the character-set names of the platform character-set list and the text "
     "being converted."},
};

}  // namespace

std::string AdviceFor(std::int32_t code) {
  for (const Advice& advice : kAdvice) {
    if (advice.Code == code) return advice.Text;
  }
  return kCheck;
}

std::string ExceptionText(const std::exception& error) {
  const auto* poco = dynamic_cast<const Poco::Exception*>(&error);
  return poco != nullptr ? poco->displayText() : error.what();
}

}  // namespace qrconfig
