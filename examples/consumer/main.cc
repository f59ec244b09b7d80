// A component that reads its database settings through qr_config: it loads the
// configuration directory given as its argument, resolves the driver alias "CRV" and the
// database alias "CRV19", and prints the database's client library and port, the driver's
// localised name and an entry of the database's character-set table.
#include <qr_config/qr_config.h>

#include <Poco/Exception.h>

#include <cstdint>
#include <exception>
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

    const ConfigManager::Node& node = qr_config::DatabaseNode(config, "CRV", "CRV19");
    const std::string library = qr_config::Value<std::string>(node, "Library");
    const std::int32_t port = qr_config::Value<std::int32_t>(node, "Port");
    const std::string& driver = config.ResolveDriverName("CRV");
    std::cout << driver << " " << node.Name() << ": library " << library << ", port " << port
              << '\n';

    const Quorin::LocaleDescriptor& locale = config.GetLocale("fr", "");
    const ConfigManager::Node& texts = config.GetLocalizedDriver(driver, locale).value();
    std::cout << "in " << locale.LocaleId() << ": "
              << qr_config::Value<orv_utf8string>(texts, "External Name").str() << '\n';

    std::cout << "UTF-8 is " << config.GetCharSetTableEntry(driver, node.Name(), "UTF-8") << " for "
              << node.Name() << '\n';
  } catch (const QRError& error) {
    // what() names the code, its meaning and the file or name involved.
    std::cerr << "qr_consumer: " << error.what() << '\n';
    return 1;
  } catch (const Poco::Exception& error) {
    // A file-system failure while the start-up lists a directory (the setup directory is
    // missing or unreadable, a broken link among the extension packages); displayText()
    // names it, what() gives only the class name.
    std::cerr << "qr_consumer: the configuration in " << argv[1]
              << " cannot be read: " << error.displayText() << '\n';
    return 1;
  } catch (const std::exception& error) {  // std::bad_alloc and the like
    std::cerr << "qr_consumer: " << error.what() << '\n';
    return 1;
  }
  return 0;
}
