// SPDX-FileCopyrightText: 2026 The Brevio developers
// SPDX-License-Identifier: GPL-3.0-or-later

#ifndef BREVIO_TESTS_TESTFILES_H
#define BREVIO_TESTS_TESTFILES_H

#include <QByteArray>
#include <QString>
#include <QStringList>

// Making the files a test works on and looking at what is left of them;
// QtCore and brevio_files only, so that every suite can use them.

// Writes bytes to dir/name and returns the path.
QString writeFile(const QString& dir, const QString& name, const QByteArray& bytes);

// Copies a file into dir under the given name (its own when empty),
// readable by everyone and writable by its owner, and returns the copy's path.
QString copyInto(const QString& source, const QString& dir, const QString& as = QString());

// The absolute path of a bundled example configuration.
QString exampleFile(const QString& name);

// The report path a job writes for a configuration path.
QString reportPathFor(const QString& jsonPath);

// Every entry of a folder, hidden ones included, sorted: for checking that
// nothing was left behind.
QStringList folderEntries(const QString& folder);

// Test files live in a data/ folder beside the sources of the suites that
// use them; brevio_add_test names that folder in BREVIO_TEST_DATA_DIR, so
// these are defined only in tests.
#ifdef BREVIO_TEST_DATA_DIR
// The absolute path of a file in the suite's data/ folder.
inline QString testData(const QString& name) {
    return QStringLiteral(BREVIO_TEST_DATA_DIR "/") + name;
}

// Copies a file from the suite's data/ folder into dir under the given name
// and returns the copy's path.
inline QString copyTestData(const QString& name, const QString& dir,
                            const QString& as = QString()) {
    return copyInto(testData(name), dir, as);
}
#endif

#endif
