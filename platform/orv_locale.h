// Locale identifiers: "language_country", or the bare language when there is no country.
//
// The two functions are inverse for identifiers whose language has no '_':
// splitLocaleId(makeLocaleId(l, c)) == (l, c). Texts are taken byte for byte; nothing is
// checked, trimmed or case-folded.
#pragma once

#include <string>
#include <utility>

#include "qr_config/platform/qr_export.h"

namespace orv_locale {

// "language_country"; the bare `language` when `country` is empty.
QR_API std::string makeLocaleId(const std::string& language, const std::string& country);

// The identifier split at its first '_': (language, country). Without '_' the whole
// identifier is the language and the country is empty: "fr" gives ("fr", ""),
// "zh_Hant_TW" gives ("zh", "Hant_TW"), "_CA" gives ("", "CA").
QR_API std::pair<std::string, std::string> splitLocaleId(const std::string& id);

}  // namespace orv_locale
