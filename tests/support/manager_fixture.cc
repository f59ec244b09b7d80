#include "support/manager_fixture.h"

std::vector<std::string> ManagerTest::Children(const std::string& path) {
  std::vector<std::string> names;
  const tree_node<ConfigManager::Node>& node =
      ConfigManager::Instance().GetTree().Find(ConfigManager::NodePath(path));
  for (auto it = node.ch_begin(); it != node.ch_end(); ++it) names.push_back((*it).value().Name());
  return names;
}

QRError CatchQRError(const std::function<void()>& call) {
  try {
    call();
  } catch (const QRError& error) {
    return error;
  }
  ADD_FAILURE() << "no QRError was thrown";
  return QRError(0, 0, 0);
}

namespace {

std::string Place(std::string_view file, unsigned long line) {
  const auto slash = file.find_last_of('/');
  if (slash != std::string_view::npos) file.remove_prefix(slash + 1);
  return std::string(file) + ":" + std::to_string(line);
}

}  // namespace

void RecordingObserver::OnDiagnostic(const LoadDiagnostic& diagnostic) {
  Diagnostics.push_back(std::string(DiagnosticKindName(diagnostic.Kind)) + " " +
                        Place(diagnostic.Where.File, diagnostic.Where.Line));
}

void RecordingObserver::OnFile(const LoadedFile& file) {
  const std::string_view name = file.Path.substr(file.Path.find_last_of('/') + 1);
  Files.push_back((file.Read ? "read " : "skipped ") + std::string(FileRoleName(file.Role)) + " " +
                  std::string(name));
}

void RecordingObserver::OnValue(const LoadedValue& value) {
  std::string chain = std::string(value.NodePath) + "|" + value.Field->Name();
  for (const ValueOrigin* origin = value.Origin; origin != nullptr; origin = origin->Replaced)
    chain +=
        " <= " + std::string(origin->Text) + "@" + Place(origin->Where.File, origin->Where.Line);
  Origins.push_back(chain);
}
