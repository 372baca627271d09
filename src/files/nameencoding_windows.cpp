// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "files/nameencoding.h"

namespace nameEncoding {

void keepNamesExact() {
    // Qt reaches every name through the wide API: nothing is lost on the
    // way, and no codec stands between.
}

} // namespace nameEncoding
