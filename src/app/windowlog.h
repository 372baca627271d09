// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_WINDOWLOG_H
#define BREVIO_WINDOWLOG_H

#include <QLoggingCategory>

// The window's debug log: drag and drop and rows that are not rows.
// QT_LOGGING_RULES="brevio.window.debug=false" silences it.
Q_DECLARE_LOGGING_CATEGORY(brevioWindow)

// Why a job did not convert its file, which the window itself never shows.
// Quiet unless asked for with QT_LOGGING_RULES="brevio.job.debug=true": a
// failed job leaves no trace in the default log.
Q_DECLARE_LOGGING_CATEGORY(brevioJob)

#endif
