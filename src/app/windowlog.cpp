// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/windowlog.h"

Q_LOGGING_CATEGORY(brevioWindow, "brevio.window")
Q_LOGGING_CATEGORY(brevioJob, "brevio.job", QtInfoMsg)
