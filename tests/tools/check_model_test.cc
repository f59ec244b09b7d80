// What `check` replays of the readers agrees with what the library loads, and the small
// helpers of the checker.
#include <gtest/gtest.h>

#include <sstream>
#include <tuple>

#include "app/suggestion.h"
#include "check/file_vocabulary.h"
#include "check/installation.h"
#include "output/field_text.h"
#include "output/text_table.h"
#include "qr_config/qr_config.h"
#include "tool_runner.h"

namespace qrconfig {
namespace {

using FieldRow = std::tuple<std::string, std::string, std::string>;  // name, type, text

TEST(DataAccessModelTest, AgreesWithTheDatabasesTheLibraryLoads) {
  // Library mode only: registrations of active data sources made by other tests of this
  // process would restrict a server-mode load.
  Registry::ClearParameters();
  Registry::SetParameter(Registry::kConfigDirectory, SampleDir());
  const Installation installation(SampleDir(), Initialization::Library, {});
  ConfigSession session(Initialization::Library);
  ConfigManager& config = ConfigManager::Instance();
  int compared = 0;
  for (const SetupEntry& entry : installation.SetupEntries()) {
    if (!entry.Model) continue;
    for (const DatabaseDeclaration& database : entry.Model->Databases()) {
      if (database.Result != DatabaseDeclaration::Accepted) continue;
      SCOPED_TRACE(database.Name);
      ConfigManager::NodePath path(static_cast<const char*>(config.DBDrivers()), entry.Driver);
      path += database.Name;
      std::vector<FieldRow> loaded;
      for (const auto& field : config.GetTree().Find(path).value()) {
        // The extension scan appends "Repository" after the data-access file is read.
        const std::string text = field.Name() == "Driver Capabilities" ? "" : PlainValue(field);
        loaded.emplace_back(field.Name(), TypeName(field.ValueType()), text);
      }
      std::vector<FieldRow> replayed;
      for (const ModelField& field : database.Fields) {
        const std::string text = field.Name == "Driver Capabilities" ? "" : field.Text;
        replayed.emplace_back(field.Name, TypeName(field.Type), text);
      }
      EXPECT_EQ(loaded, replayed);
      ++compared;
    }
  }
  EXPECT_EQ(5, compared);
  Registry::ClearParameters();
}

TEST(SuggestionTest, SuggestsTheClosestKnownName) {
  const std::vector<std::string> known = {"Parameter", "Platform", "Name", "Library", "Libraries"};
  const std::pair<std::string, std::string> cases[] = {
      {"Parmeter", "Parameter"},
      {"parameter", "Parameter"},
      {"Platfrom", "Platform"},
      {"Version", ""},
      {"Nam", ""},
      {"Libraryes", "Libraries"},
      {"Paramxyzter", ""},
      {"", ""},
  };
  for (const auto& [name, suggestion] : cases) {
    SCOPED_TRACE(name);
    EXPECT_EQ(suggestion, Suggestion(name, known));
  }
  EXPECT_EQ(nullptr, FindElement(FileKind::Setup, "Parameter"));
  EXPECT_NE(nullptr, FindElement(FileKind::DataAccess, "Parameter"));
}

TEST(TextTableTest, AlignsColumnsByCharactersNotBytes) {
  std::ostringstream out;
  TextTable table;
  table.AddRow({"NAME", "VALUE"});
  table.AddRow({"données", "x"});
  table.AddRow({"ab", "y", "extra"});
  table.Write(out);
  TextTable::WritePairs({{"é", "1"}, {"long label", "2"}}, out, 2);
  EXPECT_EQ(
      "NAME     VALUE\ndonnées  x\nab       y      extra\n"
      "  é:           1\n  long label:  2\n",
      out.str());
}

}  // namespace
}  // namespace qrconfig
