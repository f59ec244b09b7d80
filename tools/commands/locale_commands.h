// The commands about locales and character sets: locale, texts and charset.
#pragma once

#include <ostream>

#include "cli/command_line.h"
#include "qr_config/config/manager/config_manager.h"

namespace qrconfig {

// locale LANGUAGE [COUNTRY]: the descriptor GetLocale gives. Throws QRError 270.
int RunLocale(const Invocation& invocation, ConfigManager& config, std::ostream& out);

// texts DRIVER LANGUAGE [COUNTRY]: the driver's localised node (GetLocalizedDriver) with the
// file it comes from. Throws QRError 22, 270, 264 to 267 or 50 as those operations do.
int RunTexts(const Invocation& invocation, ConfigManager& config, std::ostream& out);

// charset NAME, or charset DRIVER DATABASE NAME: the entry's text alone. Throws QRError 263,
// or 22, 13, 262 and 263 for the three-argument form.
int RunCharset(const Invocation& invocation, ConfigManager& config, std::ostream& out);

}  // namespace qrconfig
