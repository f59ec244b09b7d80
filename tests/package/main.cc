// Includes its own config/ and platform/ headers first, then the library's, in a project that
// asked for C++14: it builds only if the library's headers reach their own files and the
// target raised the standard to C++17. Prints the port of the sample's database CRV19.
#include "config/settings.h"
#include "platform/error.h"

#define QR_CONFIG_LIBRARY_HEADERS_SEEN
#include <qr_config/qr_config.h>

#include <Poco/Exception.h>

#include <iostream>

static_assert(__cplusplus >= 201703L, "qr_config::qr_config raises its consumers to C++17");

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: qr_package_consumer CONFIG_DIRECTORY\n";
    return 2;
  }
  Registry::SetParameter("Config Directory", argv[1]);
  try {
    ConfigSession session(Initialization::Library);
    const ConfigManager::Node& node =
        qr_config::DatabaseNode(ConfigManager::Instance(), consumer::DriverAlias(), "CRV19");
    std::cout << node.Name() << " port " << qr_config::Value<std::int32_t>(node, "Port") << '\n';
  } catch (const QRError& error) {
    std::cerr << consumer::ErrorPrefix() << ' ' << error.what() << '\n';
    return 1;
  } catch (const Poco::Exception& error) {
    std::cerr << consumer::ErrorPrefix() << ' ' << error.displayText() << '\n';
    return 1;
  }
  return 0;
}
