#include "qr_config/platform/locale_descriptor.h"

#include "qr_config/platform/orv_locale.h"

namespace Quorin {

LocaleDescriptor::LocaleDescriptor(std::string language, std::string country, std::string charSet)
    : m_Language(std::move(language)),
      m_Country(std::move(country)),
      m_CharSet(std::move(charSet)),
      m_LocaleId(orv_locale::makeLocaleId(m_Language, m_Country)) {}

void LocaleDescriptor::SetCountry(const std::string& country) {
  m_Country = country;
  m_LocaleId = orv_locale::makeLocaleId(m_Language, m_Country);
}

}  // namespace Quorin
