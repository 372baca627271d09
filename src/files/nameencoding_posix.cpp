// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "files/nameencoding.h"

#include "files/filenamecodec.h"

namespace nameEncoding {

void keepNamesExact() {
    FileNameCodec::useForLocale();
}

} // namespace nameEncoding
