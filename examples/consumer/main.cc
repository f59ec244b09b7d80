// A component that reads its database settings through qr_config: it loads the
// configuration directory given as its argument, resolves the driver alias "CRV" and the
// database alias "CRV19", and prints the database's client library and port, the driver's
// localised name and an entry of the database's character-set table.
#include <qr_config/qr_config.h>

#include <cstdint>
#include <iostream>
#include <string>

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: qr_consumer CONFIG_DIRECTORY\n";
    return 2;
  }
  std::cout << "qr_config " << qr_config::Version() << '\n';
  Registry::SetParameter("Config Directory", argv[1]);
  try {
    ConfigSession session(Initialization::Library);  // reads the whole directory
    ConfigManager& config = ConfigManager::Instance();

    const std::string& driver = config.ResolveDriverName("CRV");
    const std::string& database = config.ResolveDatabaseName(driver, "CRV19");
    ConfigManager::NodePath path(static_cast<const char*>(config.DBDrivers()), driver);
    path += database;
    const ConfigManager::Node& node = config.GetTree().Find(path).value();

    std::string library;
    node.Find("Library").Value(library);
    std::int32_t port = 0;
    node.Find("Port").Value(port);
    std::cout << driver << " " << database << ": library " << library << ", port " << port << '\n';

    const Quorin::LocaleDescriptor& locale = config.GetLocale("fr", "");
    orv_utf8string name;
    config.GetLocalizedDriver(driver, locale).value().Find("External Name").Value(name);
    std::cout << "in " << locale.LocaleId() << ": " << name.str() << '\n';

    std::cout << "UTF-8 is " << config.GetCharSetTableEntry(driver, database, "UTF-8") << " for "
              << database << '\n';
  } catch (const QRError& error) {
    // what() names the code, its meaning and the file or name involved.
    std::cerr << "qr_consumer: " << error.what() << '\n';
    return 1;
  }
  return 0;
}
