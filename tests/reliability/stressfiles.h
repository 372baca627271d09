// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_TESTS_STRESSFILES_H
#define BREVIO_TESTS_STRESSFILES_H

#include <QByteArray>
#include <QString>
#include <QStringList>

// Configuration files for parallel runs: each one different, so a report
// that shows another file's values is caught. Every fourth file has twelve
// output channels and runs over two pages.
namespace stressFiles {

QByteArray configuration(int index);
int channelCount(int index);
QString name(int index);
QString location(int index);
// The measured quantity of every channel of file index.
QString measure(int index);

// Empty when the report at reportPath shows file index's values where
// they belong: the header and general block on page 1, the first channel
// there too, the last channel, the relay and the Modbus address on some
// page. Otherwise what is missing.
QString problemsInReport(const QString& reportPath, const QString& jsonPath, int index);

// Writes count files named anlage-N.json into dir; returns their paths.
QStringList write(const QString& dir, int count);

} // namespace stressFiles

#endif
