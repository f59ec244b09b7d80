#include "qr_config/platform/orv_locale.h"

namespace orv_locale {

std::string makeLocaleId(const std::string& language, const std::string& country) {
  if (country.empty()) return language;
  return language + '_' + country;
}

std::pair<std::string, std::string> splitLocaleId(const std::string& id) {
  std::string::size_type separator = id.find('_');
  if (separator == std::string::npos) return {id, std::string()};
  return {id.substr(0, separator), id.substr(separator + 1)};
}

}  // namespace orv_locale
