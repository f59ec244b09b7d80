// Quorin::LocaleDescriptor: a locale made of a language, a country and a character set, with
// the locale identifier derived from the first two (orv_locale::makeLocaleId).
// A plain value: copying copies all texts.
#pragma once

#include <string>

#include "qr_config/platform/qr_export.h"

namespace Quorin {

class QR_API LocaleDescriptor {
 public:
  LocaleDescriptor(std::string language, std::string country, std::string charSet);

  const std::string& Language() const { return m_Language; }
  const std::string& Country() const { return m_Country; }
  const std::string& CharSet() const { return m_CharSet; }
  // makeLocaleId(Language(), Country()), kept up to date by SetCountry.
  const std::string& LocaleId() const { return m_LocaleId; }

  // Replaces the country; the locale identifier follows.
  void SetCountry(const std::string& country);

 private:
  std::string m_Language;
  std::string m_Country;
  std::string m_CharSet;
  std::string m_LocaleId;
};

}  // namespace Quorin
