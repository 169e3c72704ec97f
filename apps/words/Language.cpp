// SPDX-FileCopyrightText: Hush Mode developers
// SPDX-License-Identifier: MIT

#include "apps/words/Language.h"

#include <clocale>
#include <cstdlib>
#include <libintl.h>

namespace hushmode {

void useLanguageOfEnvironment() {
  std::setlocale(LC_ALL, "");
  std::setlocale(LC_NUMERIC, "C");
  const char* folder = std::getenv("HUSHMODE_LOCALE");
  ::bindtextdomain("hushmode", folder && *folder ? folder : HUSHMODE_LOCALE_FOLDER);
  ::bind_textdomain_codeset("hushmode", "UTF-8");
  ::textdomain("hushmode");
}

}  // namespace hushmode
