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
