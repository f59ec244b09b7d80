#include "check/checker.h"

#include <memory>

#include "check/alias_check.h"
#include "check/database_check.h"
#include "check/installation.h"
#include "check/load_check.h"
#include "check/localised_file_check.h"
#include "check/main_file_check.h"
#include "check/setup_check.h"
#include "check/value_layout_check.h"
#include "check/vocabulary_check.h"
#include "check/xml_error_check.h"

namespace qrconfig {

CheckResult Checker::Run(const std::string& configDirectory, Initialization::Mode mode,
                         const std::vector<std::pair<std::string, std::string>>& activeSources) {
  CheckResult result{Findings(configDirectory), false};
  {
    const Installation installation(configDirectory, mode, activeSources);
    const std::unique_ptr<Check> checks[] = {
        std::make_unique<XmlErrorCheck>(),    std::make_unique<VocabularyCheck>(),
        std::make_unique<ValueLayoutCheck>(), std::make_unique<MainFileCheck>(),
        std::make_unique<SetupCheck>(),       std::make_unique<AliasCheck>(),
        std::make_unique<DatabaseCheck>(),    std::make_unique<LocalisedFileCheck>(),
    };
    for (const auto& check : checks) check->Run(installation, result.Found);
    LoadCheck load;
    load.Run(installation, result.Found);
    result.Loaded = load.Loaded();
  }
  return result;
}

}  // namespace qrconfig
